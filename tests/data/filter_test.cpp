#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>

#include "data/recordset/recordset.h"
#include "support/error_of.h"

namespace ondrel {
namespace {

using testing::HasSubstr;

// clang-format off
constexpr std::array<ColumnSpec, 8> kFilterColumns = {{
    {"lineNumber", FieldType::Long},
    {"deptId",     FieldType::Long,    0, true},
    {"unitPrice",  FieldType::Double,  0, true},
    {"redo",       FieldType::Boolean, 0, true},
    {"itemType",   FieldType::Text,   20, true},
    {"itemName",   FieldType::Text,   64, true},
    {"dueDate",    FieldType::Date,    0, true},
    {"pieces left", FieldType::Long},
}};

const Variant kNull = Variant::null();
const Variant kRows[][8] = {
    {1, 1,     2.5,   false, "IT",  "Shirt",              Date::of(2026, 11, 24),    1},
    {2, 1,     0,     true,  "UP",  "Starch",             Date::of(2026, 11, 25, 9), 0},
    {3, 2,     -4,    false, "it",  "O'Brien's long coat", kNull,                    0},
    {4, kNull, kNull, kNull, kNull, kNull,                kNull,                     0},
    {5, 12,    1e3,   true,  "",    "BL\xC3\x89 brod\xC3\xA9 main", Date::of(2026, 12, 1), 7},
};
// clang-format on

class FilterTest : public testing::Test {
 protected:
  FilterTest() {
    for (const auto& row : kRows) rs_->appendRow(row);
    rs_->moveFirst();
  }

  // The line numbers shown, as "1 3 5".
  std::string shown(const std::string& filter) {
    std::string lines;
    for (rs_->setFilter(filter); !rs_->eof(); rs_->moveNext())
      lines += (lines.empty() ? "" : " ") + rs_->text("lineNumber");
    return lines;
  }

  RecordsetRef rs_ = Recordset::create(kFilterColumns);
};

// What the comparison with SQLite does not draw; the other forms are there.
TEST_F(FilterTest, ShowsTheRowsThatPass) {
  // clang-format off
  const struct { const char* filter; const char* lines; } cases[] = {
      // numbers, bare and quoted; a missing value passes no comparison
      {"LINENUMBER = 2", "2"},        {"deptId = ' 1 '", "1 2"},       {"unitPrice=1E3", "5"},
      {"unitPrice<=.0", "2 3"},       {"unitPrice='$1,000.00'", "5"},  {"deptId > 1.5", "3 5"},
      {"deptId = 1.5", ""},           {"deptId <> 1.5", "1 2 3 5"},    {"deptId < 3000000000", "1 2 3 5"},
      {"lineNumber=+4", "4"},         {"[pieces left]=7", "5"},        {"redo>0", "2 5"},
      {"deptId>null", ""},            {"lineNumber=null", ""},         {"lineNumber<>null", "1 2 3 4 5"},
      // text, without regard to case
      {"itemName='o''brien''S LONG coat'", "3"},                       {"itemName<>'o''brien''s long coat'", "1 2 5"},
      {"itemName='bl\xC3\xA9 BROD\xC3\x89 main'", "5"},                {"itemName='BLE brode main'", ""},
      {"itemType='I'", ""},           {"itemName > 'shirt'", "2"},     {"itemName<'o'", "5"},
      // dates
      {"dueDate='11/24/2026'", "1"},  {"dueDate > '2026-11-24'", "2 5"}, {"dueDate<#11/25/2026 9:00 AM#", "1"},
      {"dueDate = #11/25/2026 9:00 AM#", "2"},                         {"dueDate<>'12/1/2026'", "1 2"},
      // texts that look like one that the table has seen
      {"lineNumber=5", "5"},          {"lineNumber='5'", "5"},         {"itemName=12", ""},
      {"itemName='Shirt'", "1"},      {"itemName='a=1 or b=''2'''", ""}, {"itemName='' or itemType=''", "5"},
      // junctions
      {"lineNumber=5 or itemType='IT' and deptId=1", "1 5"},           {"itemType='IT' And redo=0 aNd deptId = 2", "3"},
      {"((lineNumber=1)or(lineNumber=4))and((deptId=null))", "4"},     {"\tlineNumber=1\r\nor lineNumber=2 ", "1 2"},
  };
  // clang-format on
  for (const auto& [filter, lines] : cases) EXPECT_EQ(shown(filter), lines) << filter;
}

TEST_F(FilterTest, AssignedValueReadsBack) {
  for (const Variant& filter : {Variant("lineNumber=1"), Variant(""), Variant(0)}) {
    rs_->setFilter(filter);
    EXPECT_TRUE(rs_->filter().identicalTo(filter)) << filter.toText();
  }
  EXPECT_EQ(rs_->recordCount(), 5);
  rs_->setFilter(Variant());
  EXPECT_TRUE(rs_->filter().identicalTo(0));
}

TEST_F(FilterTest, ErrorsNamePositionAndWord) {
  // clang-format off
  const struct { const char* filter; int number; const char* description; } cases[] = {
      {"lineNumber=1 and colour=1",    3265, "colour"},
      {"lineNumber=1 and ",            3001, "the end"},
      {"lineNumber",                   3001, "position 11: the end"},
      {"lineNumber=1 lineNumber=2",    3001, "position 14: \"lineNumber\""},
      {"lineNumber=deptId",            3001, "position 12: \"deptId\""},
      {"lineNumber=1 and or redo=1",   3001, "position 18: \"or\""},
      {"lineNumber=1)",                3001, "position 13: \")\""},
      {"itemName='Shirt",              3001, "position 10: \"'Shirt\""},
      {"lineNumber=1; lineNumber=2",   3001, "position 13"},
      {"1=1",                          3001, "position 1: \"1\""},
      {"itemType='IT' and deptId=''",  3001, "position 26: \"''\""},
      {"redo='maybe'",                 3001, "position 6"},
      {"dueDate='soon'",               3001, "position 9: \"'soon'\""},
  };
  // clang-format on
  rs_->setFilter("deptId=1");
  rs_->moveNext();
  for (const auto& [filter, number, description] : cases) {
    const auto action = [&] { rs_->setFilter(filter); };
    EXPECT_EQ(errorOf(action), number) << filter;
    const std::string said = descriptionOf(action);
    EXPECT_THAT(said, HasSubstr(description)) << filter;
    EXPECT_EQ(said.find(filter) != std::string::npos, number == 3001) << filter;
    EXPECT_EQ(rs_->filter().text(), "deptId=1");
    EXPECT_EQ(rs_->integer("lineNumber"), 2);
  }
  const std::string open(100'000, '('), close(100'000, ')');
  EXPECT_THAT(descriptionOf([&] { rs_->setFilter(open + "lineNumber=1" + close); }), HasSubstr("too deeply"));
  EXPECT_THROW(rs_->setFilter(2), Error);
  EXPECT_THROW(rs_->setFilter(kNull), Error);
  rs_->moveNext();
  EXPECT_TRUE(rs_->eof());
}

}  // namespace
}  // namespace ondrel
