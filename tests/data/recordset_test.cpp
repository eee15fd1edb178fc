#include "data/recordset/recordset.h"

#include <fmt/format.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>

#include "base/text.h"
#include "support/error_of.h"

namespace ondrel {
namespace {

using testing::ElementsAre;

// clang-format off
enum Lines { lineNumber, parentLineNumber, deptId, itemType, itemName, quantity, unitPrice, redo, heatSeal, dueDate };

constexpr std::array<ColumnSpec, 10> kLines = {{
    {"lineNumber",       FieldType::Long},
    {"parentLineNumber", FieldType::Long},
    {"deptId",           FieldType::Long,     0, true},
    {"itemType",         FieldType::Text,    20},
    {"itemName",         FieldType::Text,     8, true},
    {"quantity",         FieldType::Long,     0, true},
    {"unitPrice",        FieldType::Double},
    {"redo",             FieldType::Boolean},
    {"heatSeal",         FieldType::Text,    20},
    {"dueDate",          FieldType::Date,     0, true},
}};
// clang-format on

RecordsetRef ticket() {
  const Column columns[] = {lineNumber, parentLineNumber, itemType, itemName, quantity, deptId};
  const Variant null = Variant::null();
  // clang-format off
  const Variant lines[][6] = {{1, -1, "IT", "Shirt",  2,    1},
                              {2,  1, "UP", "Starch", 2,    1},
                              {3, -1, "IT", "Pants",  1,    2},
                              {4,  3, "CO", "Blue",   1,    2},
                              {5, -1, "AC", null,     null, null}};
  // clang-format on
  RecordsetRef rs = Recordset::create(kLines);
  for (const auto& line : lines) rs->addNew(columns, line);
  rs->setFilter(0);
  return rs;
}

// Line numbers from the current row to the end.
std::vector<int> rest(Recordset& rs) {
  std::vector<int> lines;
  for (; !rs.eof(); rs.moveNext()) lines.push_back(rs.integer(lineNumber));
  return lines;
}

std::vector<int> shown(Recordset& rs, const Variant& filter) {
  rs.setFilter(filter);
  return rest(rs);
}

TEST(Recordset, BuiltFieldByFieldAsPagesDo) {
  RecordsetRef rs = Recordset::create();
  rs->appendField("discountId", FieldType::Long);
  rs->appendField("discountName", FieldType::Text, 50, kNullableColumn);
  EXPECT_EQ(errorOf([&] { rs->recordCount(); }), 3704);
  rs->setCursorLocation(3);
  rs->open();
  EXPECT_EQ(errorOf([&] { rs->appendField("late", FieldType::Long); }), 3705);
  EXPECT_TRUE(rs->eof() && rs->bof());
  EXPECT_EQ(rs->recordCount(), 0);
  EXPECT_EQ(errorOf([&] { rs->value("discountId"); }), 3021);

  rs->addNew();
  rs->setValue("DISCOUNTID", "7");
  EXPECT_EQ(rs->integer("DiscountID"), 7);
  EXPECT_TRUE(rs->isNull("discountname"));
  EXPECT_EQ(errorOf([&] { rs->value("discount"); }), 3265);
  EXPECT_EQ(errorOf([&] { rs->value(Column(2)); }), 3265);
  rs->close();
  EXPECT_EQ(errorOf([&] { rs->moveFirst(); }), 3704);
}

TEST(Recordset, ColumnsAreFoundByName) {
  // clang-format off
  const std::string names[] = {"id", "originalUnitPrice", "originalCaseUnitPrice", "notes", "note", "pr\xC3\xA9nom",
                               "pieces left", "ID", ""};
  // clang-format on
  RecordsetRef rs = Recordset::create();
  for (const std::string& name : names) rs->appendField(name, FieldType::Text);
  for (int position = 1; position < 7; ++position)
    for (const std::string& form : {names[position], toLower(names[position]), toUpper(names[position])})
      EXPECT_EQ(rs->column(form).index, position) << form;
  EXPECT_EQ(rs->column("iD").index, 0);
  for (const char* name : {"originalunitpric", "originalXaseUnitPrice", "note s", "prenom", "i", "id "})
    EXPECT_FALSE(rs->hasColumn(name)) << name;

  rs->open();
  const std::string given[] = {"ORIGINALUNITPRICE", "originalCaseUnitPrice", "note", "notes"};
  const Variant values[] = {"a", "b", "c", "d"};
  rs->addNew(given, values);
  EXPECT_EQ(rs->text(Column(1)) + rs->text(Column(2)) + rs->text(Column(4)) + rs->text(Column(3)), "abcd");
}

TEST(Recordset, UnnamedColumnsOfANewRow) {
  RecordsetRef rs = Recordset::create(kLines);
  rs->addNew({{lineNumber, 1}});
  EXPECT_TRUE(rs->isNull(deptId) && rs->isNull(itemName) && rs->isNull(dueDate));
  EXPECT_EQ(errorOf([&] { rs->integer(deptId); }), 94);
  EXPECT_TRUE(rs->value(unitPrice).identicalTo(0.0) && rs->value(redo).identicalTo(false));
  EXPECT_TRUE(rs->value(heatSeal).identicalTo(""));
}

TEST(Recordset, ValuesTakeTheTypeOfTheirColumn) {
  RecordsetRef rs = ticket();
  const Variant noon = Date::of(2026, 11, 24, 12);
  const struct {
    Lines column;
    Variant written, read;
    int error;
  } cases[] = {
      // clang-format off
      {quantity, "12", 12, 0},    {quantity, 2.5, 2, 0},   {quantity, Variant::null(), Variant::null(), 0},
      {quantity, "many", {}, 13}, {quantity, 3e9, {}, 6},  {lineNumber, Variant::null(), {}, -2147217887},
      {redo, -1, true, 0},        {redo, "false", false, 0}, {unitPrice, "1,234.5", 1234.5, 0},
      {itemName, 12, "12", 0},    {dueDate, "soon", {}, 13}, {dueDate, "11/24/2026 12:00:00 PM", noon, 0},
      {itemName, "Gr\u00fc\u00dfe 12", "Gr\u00fc\u00dfe 12", 0},  // 8 characters, 10 bytes
      {itemName, "Overcoats", {}, -2147217887},
      // clang-format on
  };
  for (const auto& [column, written, read, error] : cases) {
    const Variant before = rs->value(column);
    EXPECT_EQ(errorOf([&] { rs->setValue(column, written); }), error) << column;
    EXPECT_TRUE(rs->value(column).identicalTo(error == 0 ? read : before)) << column << rs->text(column);
  }
}

TEST(Recordset, AddNewThatFailsAddsNothing) {
  RecordsetRef rs = ticket();
  rs->moveLast();
  const Variant failing[] = {9, "far too long a name"};
  const Column columns[] = {lineNumber, itemName};
  EXPECT_NE(errorOf([&] { rs->addNew(columns, failing); }), 0);
  EXPECT_EQ(rs->integer(lineNumber), 5);
  EXPECT_EQ(rs->recordCount(), 5);
  rs->addNew();
  EXPECT_EQ(rs->integer(lineNumber), 0);
}

TEST(Recordset, NewRowJoinsTheViewAtTheNextMove) {
  RecordsetRef rs = ticket();
  rs->setFilter("itemType='IT'");
  rs->addNew();
  EXPECT_EQ(rs->recordCount(), 2);
  rs->setValue(lineNumber, 6);
  rs->setValue(itemType, "it");
  rs->moveFirst();
  EXPECT_EQ(rs->recordCount(), 3);
  EXPECT_THAT(rest(*rs), ElementsAre(1, 3, 6));

  rs->addNew({{lineNumber, 7}, {itemType, "UP"}});
  EXPECT_EQ(rs->integer(lineNumber), 7);
  EXPECT_EQ(rs->recordCount(), 3);
  rs->moveNext();
  EXPECT_TRUE(rs->eof());
  EXPECT_THAT(shown(*rs, 0), ElementsAre(1, 2, 3, 4, 5, 6, 7));
}

TEST(Recordset, NewRowTakesItsPlaceInTheSort) {
  RecordsetRef rs = ticket();
  rs->setSort("quantity DESC");
  rs->addNew({{lineNumber, 6}, {itemType, "IT"}, {quantity, 2}});
  rs->moveNext();
  EXPECT_THAT(rest(*rs), ElementsAre(3, 4, 5));
  rs->moveFirst();
  EXPECT_THAT(rest(*rs), ElementsAre(1, 2, 6, 3, 4, 5));
}

TEST(Recordset, RowThatLeavesAndComesBackBeforeTheMoveStays) {
  RecordsetRef rs = ticket();
  rs->setFilter("itemType='IT'");
  rs->setValue(itemType, "XX");
  rs->setValue(itemType, "IT");
  rs->moveNext();
  EXPECT_EQ(rs->integer(lineNumber), 3);
  rs->setValue(itemType, "XX");
  rs->movePrevious();
  EXPECT_EQ(rs->integer(lineNumber), 1);
  EXPECT_EQ(rs->recordCount(), 1);
}

TEST(Recordset, DeleteInsideALoopSkipsNothing) {
  RecordsetRef rs = ticket();
  std::vector<int> visited;
  for (; !rs->eof(); rs->moveNext()) {
    visited.push_back(rs->integer(lineNumber));
    if (visited.back() % 2 == 0) continue;
    rs->deleteRow();
    EXPECT_EQ(errorOf([&] { rs->value(lineNumber); }), 3021);
    EXPECT_EQ(errorOf([&] { rs->deleteRow(); }), 3021);
    EXPECT_FALSE(rs->eof() || rs->bof());
  }
  EXPECT_THAT(visited, ElementsAre(1, 2, 3, 4, 5));
  rs->setFilter("lineNumber>2");
  rs->deleteVisibleRows();
  EXPECT_TRUE(rs->eof() && rs->bof());
  rs->moveNext();
  EXPECT_TRUE(rs->eof());
  EXPECT_THAT(shown(*rs, 0), ElementsAre(2));
}

TEST(Recordset, RowsDeletedAndAddedManyTimesKeepOrderAndBookmarks) {
  RecordsetRef rs = ticket();
  RecordsetRef walker = rs->clone();
  std::vector<Variant> marks;
  for (int round = 0; round < 100; ++round) {
    rs->addNew({{lineNumber, 100 + round}, {itemType, "TA"}});
    rs->addNew({{lineNumber, 300 + round}, {itemType, "SU"}});
    marks.push_back(rs->bookmark());
    rs->setFilter("itemType='TA'");
    rs->deleteVisibleRows();
    if (round != 50) continue;
    walker->setFilter("itemType='SU'");
    walker->moveLast();
    walker->movePrevious();
  }
  EXPECT_EQ(walker->integer(lineNumber), 349);
  walker->moveNext();
  EXPECT_EQ(walker->integer(lineNumber), 350);
  rs->setFilter(0);
  for (int round = 0; round < 100; ++round) {
    rs->setBookmark(marks[static_cast<size_t>(round)]);
    EXPECT_EQ(rs->integer(lineNumber), 300 + round);
  }
  rs->moveFirst();
  EXPECT_EQ(rest(*rs).size(), 105U);
}

TEST(Recordset, RowsDeletedThroughACloneAroundAWalk) {
  const auto gone = [](Recordset& clone, int line) {
    clone.setFilter(fmt::format("lineNumber={}", line));
    clone.deleteRow();
  };
  for (const char* sort : {"", "lineNumber"}) {
    RecordsetRef rs = ticket();
    RecordsetRef clone = rs->clone();
    rs->setSort(sort);
    rs->moveNext();
    rs->moveNext();
    gone(*clone, 1);
    EXPECT_EQ(rs->integer(lineNumber), 3);
    rs->moveNext();
    EXPECT_EQ(rs->integer(lineNumber), 4);
    gone(*clone, 3);
    gone(*clone, 5);
    rs->movePrevious();
    EXPECT_EQ(rs->integer(lineNumber), 2);
    EXPECT_THAT(rest(*rs), ElementsAre(2, 4));
  }
}

TEST(Recordset, ClonesShareRowsOnly) {
  RecordsetRef rs = ticket();
  rs->setFilter("itemType='IT'");
  rs->moveNext();
  RecordsetRef clone = rs->clone();
  EXPECT_TRUE(clone->filter().identicalTo(0));
  EXPECT_EQ(clone->integer(lineNumber), 1);
  EXPECT_THAT(shown(*clone, "parentLineNumber = 3"), ElementsAre(4));
  EXPECT_EQ(rs->integer(lineNumber), 3);

  clone->addNew({{lineNumber, 6}, {itemType, "IT"}});
  EXPECT_EQ(rs->recordCount(), 2);
  clone->setFilter("lineNumber=3");
  clone->deleteRow();
  EXPECT_EQ(errorOf([&] { rs->value(lineNumber); }), 3021);
  rs->moveNext();
  EXPECT_TRUE(rs->eof());
  EXPECT_THAT(shown(*rs, "itemType='IT'"), ElementsAre(1, 6));

  rs->moveFirst();
  clone->setFilter("lineNumber=1");
  clone->setValue(itemType, "XX");
  EXPECT_EQ(rs->integer(lineNumber), 1);
  rs->moveNext();
  EXPECT_EQ(rs->integer(lineNumber), 6);
  EXPECT_EQ(rs->recordCount(), 1);
  rs.reset();
  EXPECT_THAT(shown(*clone, 0), ElementsAre(1, 2, 4, 5, 6));
}

TEST(Recordset, FilterAndSortAreSavedAndPutBack) {
  RecordsetRef rs = ticket();
  rs->setFilter("itemType='IT' OR itemType='AC'");
  rs->setSort("lineNumber desc");
  rs->moveNext();
  const Variant filter = rs->filter(), mark = rs->bookmark();
  const std::string sort = rs->sort();

  rs->setFilter("parentLineNumber = 3");
  rs->setSort("");
  rs->addNew({{lineNumber, 6}, {itemType, "UP"}});

  rs->setFilter(filter);
  rs->setSort(sort);
  EXPECT_THAT(rest(*rs), ElementsAre(5, 3, 1));
  rs->setBookmark(mark);
  EXPECT_EQ(rs->integer(lineNumber), 3);
  rs->movePrevious();
  rs->movePrevious();
  EXPECT_TRUE(rs->bof());

  rs->setFilter("lineNumber=1");
  EXPECT_EQ(errorOf([&] { rs->setBookmark(mark); }), 3021);
  EXPECT_EQ(rs->integer(lineNumber), 1);
  rs->clearFilter();
  rs->setBookmark(mark);
  rs->deleteRow();
  EXPECT_EQ(errorOf([&] { rs->setBookmark(mark); }), 3021);
  EXPECT_TRUE(rs->filter().identicalTo(0));
}

TEST(Recordset, SortForms) {
  const std::pair<const char*, std::vector<int>> cases[] = {
      {"lineNumber desc", {5, 4, 3, 2, 1}},
      {"[quantity] ASC", {5, 3, 4, 1, 2}},
      {"ITEMNAME", {5, 4, 3, 1, 2}},
      {"deptid Desc , lineNumber desc", {4, 3, 2, 1, 5}},
      {"", {1, 2, 3, 4, 5}},
  };
  RecordsetRef rs = ticket();
  for (const auto& [sort, lines] : cases) {
    rs->setSort(sort);
    EXPECT_EQ(rest(*rs), lines) << sort;
  }
  rs->setSort("quantity");
  EXPECT_EQ(errorOf([&] { rs->setSort("pieces"); }), 3265);
  EXPECT_EQ(errorOf([&] { rs->setSort("quantity downwards"); }), 3001);
  EXPECT_EQ(rs->sort(), "quantity");
}

}  // namespace
}  // namespace ondrel
