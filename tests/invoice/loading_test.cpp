#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>

#include "invoice/invoice.h"
#include "support/error_of.h"
#include "support/fake_database.h"

namespace ondrel {
namespace {

using enum LineColumn;
using ::testing::ElementsAre;

const Variant kNull = Variant::null();

// A stored line as the views read it: what a case does not name is as below.
using StoredLine = std::map<std::string, Variant>;
const StoredLine kPlain = {{"lineItemNumber", 1},
                           {"parentLineNumber", -1},
                           {"departmentID", 1},
                           {"departmentName", "Dry"},
                           {"ticketLineType", "IT"},
                           {"lineItemID", 101},
                           {"saleOnly", false},
                           {"lineItemName", "Pants"},
                           {"originalUnitPrice", 8.0},
                           {"unitPrice", 8.0},
                           {"quantity", 1},
                           {"lineItemTotal", 8.0},
                           {"itemNotes", kNull},
                           {"lineItemTaxableAmount", 8.0},
                           {"chargeTaxCode", 5},
                           {"packagedQuantity", 1},
                           {"notes", "Beads"},
                           {"daysToProcess", 3},
                           {"redo", false},
                           {"prepayDiscount", 0.5},
                           {"InvoiceNumber", "A1"},
                           {"pickedUp", true},
                           {"heatSeal", "HS1"},
                           {"dueDate", Date::of(2026, 11, 27)}};
const StoredLine kEditOnly = {{"discountable", true}, {"couponable", true},       {"VIPDiscountable", true},
                              {"VIPQualified", true}, {"imageFileName", "p.png"}, {"color", ""},
                              {"useHeatSeals", kNull}};

class Loading : public ::testing::Test {
 protected:
  Loading() { database.attachTo(*apartment); }

  void store(std::vector<StoredLine> lines, const StoredLine& more, const char* part) {
    std::vector<std::string> names;
    std::vector<std::vector<Variant>> rows(lines.size());
    for (StoredLine& line : lines) {
      line.insert(kPlain.begin(), kPlain.end());
      line.insert(more.begin(), more.end());
    }
    for (const auto& [name, value] : lines.at(0)) names.push_back(name);
    for (size_t k = 0; k < lines.size(); ++k)
      for (const std::string& name : names) rows[k].push_back(lines[k].at(name));
    database.answer(part, tableOf(names, rows));
  }
  void edit(std::vector<StoredLine> lines) {
    store(std::move(lines), kEditOnly, "order by case ticketLineType");
    invoice.getExistingDetails(77);
  }
  void print(std::vector<StoredLine> lines) {
    store(std::move(lines), {{"printNotes", false}}, "order by t.displaySequence");
    invoice.getInvoiceDetailsForPrinting(77);
  }
  Variant valueOf(int line, Column column) {
    invoice.lineItems->setFilter("lineNumber=" + std::to_string(line));
    const Variant value =
        invoice.lineItems->eof() ? Variant("no such line") : invoice.lineItems->value(column);
    invoice.lineItems->clearFilter();
    return value;
  }
  std::string text(int line, Column column) { return valueOf(line, column).joined(); }
  std::string lines() {
    std::string result;
    const RecordsetRef all = invoice.lineItems->clone();
    for (; !all->eof(); all->moveNext())
      result += all->text(itemType) + std::to_string(all->integer(lineNumber)) + " ";
    return result;
  }

  std::shared_ptr<Apartment> apartment = std::make_shared<Apartment>();
  ApartmentScope scope{apartment};
  FakeDatabase database;
  Invoice invoice;
};

TEST_F(Loading, TakesTheHeader) {
  database.answer(
      "prepayEnabled FROM Ticket",
      tableOf(
          {"customerSequenceNumber", "starchPreferenceName", "dueDate", "invoiceNumber", "amountPaid",
           "invoiceType", "createdDate", "routeNumber", "lotid", "prepayEnabled"},
          {{7, "Light", Date::of(2026, 11, 27), "A77", 12.5, "Q", Date::of(2026, 11, 20), kNull, 4, true}}));
  invoice.routeNumber = 9;
  invoice.isAdd = true;
  invoice.getExistingDetails("77");
  EXPECT_EQ(invoice.ticketNo, 77);
  EXPECT_EQ(invoice.custSeqNumber, 7);
  EXPECT_EQ(invoice.starchPref, "Light");
  EXPECT_EQ(invoice.InvDueDate, Date::of(2026, 11, 27));
  EXPECT_EQ(invoice.invoiceNo, "A77");
  EXPECT_DOUBLE_EQ(invoice.amountPaid, 12.5);
  EXPECT_TRUE(invoice.isQuickInvoice());
  EXPECT_EQ(invoice.createdDate, Date::of(2026, 11, 20));
  EXPECT_EQ(invoice.routeNumber, -1) << "no route";
  EXPECT_TRUE(invoice.isPrepayEnabled().toBoolean());
  EXPECT_FALSE(invoice.isAdd);
  EXPECT_TRUE(invoice.isEdittable);
  EXPECT_EQ(invoice.currentLineNumber, 1) << "no lines";
  EXPECT_EQ(errorOf([&] { invoice.getExistingDetails("a7"); }), 13);
  EXPECT_EQ(invoice.ticketNo, 77);
}

TEST_F(Loading, AnUnknownTicketLeavesTheHeaderAndHasNoLines) {
  invoice.custSeqNumber = 5;
  apartment->trace.start();
  invoice.getExistingDetails(1);
  EXPECT_EQ(apartment->trace.take().size(), 2u) << "neither tags nor preferences";
  EXPECT_EQ(invoice.custSeqNumber, 5);
  EXPECT_TRUE(invoice.isEdittable);
  EXPECT_EQ(lines(), "");
}

TEST_F(Loading, BringsGarmentsAndTheirDescriptors) {
  edit({{{"lineItemNumber", 4}, {"quantity", 2}, {"itemNotes", "No crease"}},
        {{"lineItemNumber", 5}, {"ticketLineType", "UP"}, {"parentLineNumber", 4}, {"lineItemTotal", 1.5}},
        {{"lineItemNumber", 6}, {"ticketLineType", "co"}, {"parentLineNumber", 4}, {"lineItemTotal", 0.25}},
        {{"lineItemNumber", 9}, {"ticketLineType", "UP"}, {"parentLineNumber", 4}, {"lineItemTotal", 1.0}},
        {{"lineItemNumber", 8}, {"ticketLineType", "TA"}, {"departmentID", kNull}},
        {{"lineItemNumber", 12}, {"ticketLineType", "VI"}}});
  EXPECT_EQ(lines(), "IT4 UP5 co6 UP9 TA8 ");
  EXPECT_EQ(invoice.currentLineNumber, 10) << "a line that is dropped takes no number";
  // clang-format off
  const std::pair<Column, std::string> kGarment[] = {
      {upchargeTotal, "2.5"}, {colorTotal, "0.25"}, {patternTotal, "0"}, {notes, "No crease"}, {peNotes, "Beads"},
      {balance, "8"}, {origQuantity, "2"}, {originalLineNumber, "4"}, {invoiceNumber, "A1"}, {pickedUp, "True"},
      {heatSeal, "HS1"}, {requiresHeatSeal, "False"}, {dueDate, "11/27/2026"}, {prepay, "0.5"},
      {backgroundImage, "p.png"}, {chargeTaxCode, ""}, {parentId, ""}};
  const std::pair<Column, std::string> kUpcharge[] = {
      {parentId, "101"}, {dueDate, ""}, {heatSeal, ""}, {pkgQuantity, ""}, {discountable, "True"},
      {VIPQualified, ""}, {peNotes, ""}, {origQuantity, "1"}, {upchargeTotal, ""}};
  // clang-format on
  for (const auto& [column, value] : kGarment)
    EXPECT_EQ(text(4, column), value) << kLineLayout[column.index].name;
  for (const auto& [column, value] : kUpcharge)
    EXPECT_EQ(text(5, column), value) << kLineLayout[column.index].name;
  EXPECT_TRUE(valueOf(8, parentId).isNull());
  EXPECT_TRUE(invoice.isEdittable);

  Variant known = 5, unknown = 99, empty = "";
  EXPECT_EQ(invoice.getLineItemType(known).toText(), "UP");
  EXPECT_TRUE(invoice.getLineItemType(unknown).isEmpty());
  EXPECT_TRUE(invoice.getLineDeptID(empty).isEmpty());
  EXPECT_EQ(invoice.getLineDeptID(known).toLong(), 1);
}

TEST_F(Loading, BringsTheSharesOfAnOfferTogether) {
  edit({{{"lineItemNumber", 1}, {"ticketLineType", "CU"}, {"lineItemTotal", 2.0}},
        {{"lineItemNumber", 2}, {"ticketLineType", "CU"}, {"lineItemTotal", 1.25}, {"departmentID", 2}},
        {{"lineItemNumber", 3}, {"ticketLineType", "CU"}, {"lineItemID", 102}},
        {{"lineItemNumber", 4}, {"ticketLineType", "LY"}, {"lineItemTotal", 0.5}},
        {{"lineItemNumber", 5}, {"ticketLineType", "LY"}, {"lineItemTotal", 0.5}}});
  EXPECT_EQ(lines(), "CU1 CU3 LY4 ");
  EXPECT_EQ(text(1, lineItemTotal), "3.25");
  EXPECT_EQ(text(4, lineItemTotal), "1");
  EXPECT_EQ(invoice.currentLineNumber, 5);
}

TEST_F(Loading, KnowsTheDepartmentsOfGarmentsChargesAndBags) {
  edit({{{"lineItemNumber", 1}, {"departmentID", 3}},
        {{"lineItemNumber", 2}, {"ticketLineType", "AC"}, {"departmentID", 4}},
        {{"lineItemNumber", 3}, {"ticketLineType", "DE"}, {"departmentID", 5}, {"quantity", 6}},
        {{"lineItemNumber", 4}, {"ticketLineType", "AC"}, {"departmentID", kNull}},
        {{"lineItemNumber", 5}, {"ticketLineType", "PR"}, {"departmentID", 6}}});
  for (int department = 1; department <= 6; ++department) {
    Variant id = department;
    EXPECT_EQ(invoice.isDepartmentExisting(id).toBoolean(), department >= 3 && department <= 5) << department;
  }
  EXPECT_EQ(text(2, chargeTaxCode), "5");
  EXPECT_EQ(text(2, invoiceNumber) + text(3, invoiceNumber), "A1");
  EXPECT_EQ(text(3, origQuantity), "6");
}

TEST_F(Loading, AGarmentWithoutItsItemCannotBeEdited) {
  edit({{{"couponable", kNull}}, {{"lineItemNumber", 2}}});
  EXPECT_FALSE(invoice.isEdittable);
  EXPECT_EQ(lines(), "IT1 IT2 ");
  print({{}});
  EXPECT_TRUE(invoice.isEdittable);
}

TEST_F(Loading, ForPrintingTellsNotesOnlyWhereTheyPrint) {
  database.answer(
      "printnotes = 1 and priceListItemId='101' And descriptorName='Men''s' And descriptorType='CO'",
      tableOf({"notes"}, {{"Bleeds"}}));
  print(
      {{{"printNotes", true}},
       {{"lineItemNumber", 2}},
       {{"lineItemNumber", 3}, {"ticketLineType", "CO"}, {"parentLineNumber", 1}, {"lineItemName", "Men's"}},
       {{"lineItemNumber", 4}, {"ticketLineType", "UP"}, {"parentLineNumber", 1}},
       {{"lineItemNumber", 5}, {"ticketLineType", "TA"}, {"lineItemTotal", 0.5}},
       {{"lineItemNumber", 6}, {"ticketLineType", "TA"}, {"lineItemTotal", 0.25}},
       {{"lineItemNumber", 7}, {"ticketLineType", "SU"}},
       {{"lineItemNumber", 8}, {"ticketLineType", "VI"}},
       {{"lineItemNumber", 9}, {"ticketLineType", "DE"}},
       {{"lineItemNumber", 10}, {"ticketLineType", "BR"}, {"parentLineNumber", 1}}});
  EXPECT_EQ(lines(), "IT1 IT2 CO3 UP4 TA5 SU7 VI8 DE9 BR10 ");
  EXPECT_EQ(text(1, peNotes) + "|" + text(2, peNotes) + "|" + text(3, peNotes) + "|" + text(4, peNotes),
            "Beads||Bleeds|");
  EXPECT_EQ(text(5, lineItemTotal), "0.75");
  EXPECT_EQ(text(1, colorTotal), "8");
}

}  // namespace
}  // namespace ondrel
