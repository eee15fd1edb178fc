#include <fmt/format.h>
#include <gmock/gmock.h>

#include <map>

#include "invoice/ticket_store.h"
#include "support/error_of.h"

namespace ondrel {
namespace {

using enum LineColumn;

// Ticket 1007 of the sample store with lines of its own.
class Loading : public TicketTest {
 protected:
  Loading() { execute("delete TicketLineItem where ticketNumber = 1007"); }

  // A line of the ticket; what is not named is as of pants at 8.00.
  void put(int number, const char* type, std::map<std::string, std::string> values = {}) {
    values.insert({{"lineItemID", "101"},
                   {"departmentID", "1"},
                   {"lineItemName", "'Pants'"},
                   {"quantity", "1"},
                   {"lineItemTotal", "8"},
                   {"chargeTaxCode", "5"},
                   {"packagedQuantity", "1"},
                   {"prepayDiscount", "0.5"},
                   {"invoiceNumber", "'A1'"},
                   {"heatSeal", "'HS1'"},
                   {"dueDate", "'2026-11-27'"}});
    std::string columns = "ticketNumber, lineItemNumber, displaySequence, ticketLineType";
    std::string texts = fmt::format("1007, {0}, {0}, '{1}'", number, type);
    for (const auto& [column, value] : values) {
      columns += ", " + column;
      texts += ", " + value;
    }
    execute(fmt::format("insert into TicketLineItem ({}) values ({})", columns, texts));
  }
  std::string text(int line, Column column) {
    const RecordsetRef found = invoice.lineItems->clone();
    found->setFilter(fmt::format("lineNumber={}", line));
    return found->value(column).joined();
  }
  std::string lines() {
    std::string result;
    for (const RecordsetRef each = invoice.lineItems->clone(); !each->eof(); each->moveNext())
      result += each->text(itemType) + std::to_string(each->integer(lineNumber)) + " ";
    return result;
  }

  Invoice invoice;
};

TEST_F(Loading, TakesTheHeader) {
  execute(
      "update Ticket set starchPreferenceName = 'Light', amountPaid = 12.5, invoiceType = 'Q', "
      "prepayEnabled = 1 where ticketNumber = 1007");
  invoice.routeNumber = 9;
  invoice.isAdd = true;
  invoice.getExistingDetails("1007");
  EXPECT_EQ(invoice.custSeqNumber, 1);
  EXPECT_EQ(invoice.starchPref, "Light");
  EXPECT_EQ(invoice.InvDueDate, Date::of(2026, 11, 30));
  EXPECT_EQ(invoice.invoiceNo, "5007");
  EXPECT_DOUBLE_EQ(invoice.amountPaid, 12.5);
  EXPECT_TRUE(invoice.isQuickInvoice());
  EXPECT_EQ(invoice.createdDate, Date::of(2026, 11, 24, 9, 30));
  EXPECT_EQ(invoice.routeNumber, -1) << "no route";
  EXPECT_TRUE(invoice.isPrepayEnabled().toBoolean());
  EXPECT_FALSE(invoice.isAdd);
  EXPECT_EQ(errorOf([&] { invoice.getExistingDetails("a7"); }), 13);
  statements();
  invoice.getExistingDetails(1);
  EXPECT_EQ(reads().size(), 2u) << "of an unknown ticket neither tags nor preferences";
  EXPECT_EQ(invoice.custSeqNumber, 1);
  EXPECT_EQ(lines(), "");
}

TEST_F(Loading, BringsGarmentsAndTheirDescriptors) {
  put(4, "IT", {{"quantity", "2"}, {"itemNotes", "'No crease'"}, {"pickedUp", "1"}});
  put(5, "UP", {{"parentLineNumber", "4"}, {"lineItemTotal", "1.5"}});
  put(6, "co", {{"parentLineNumber", "4"}, {"lineItemTotal", "0.25"}});
  put(8, "TA", {{"departmentID", "null"}});
  put(9, "UP", {{"parentLineNumber", "4"}, {"lineItemTotal", "1"}});
  put(10, "CU", {{"lineItemTotal", "2"}});
  put(11, "CU", {{"lineItemTotal", "1.25"}, {"departmentID", "2"}});
  put(12, "VI");
  execute("update PriceListItem set notes = 'Beads' where priceListItemId = 101");
  invoice.getExistingDetails(1007);
  EXPECT_EQ(lines(), "IT4 UP5 co6 TA8 UP9 CU10 ");
  EXPECT_EQ(text(10, lineItemTotal), "3.25") << "the shares of an offer come together";
  EXPECT_EQ(invoice.currentLineNumber, 11) << "a line that is dropped takes no number";
  // clang-format off
  const std::pair<Column, std::string> kGarment[] = {
      {upchargeTotal, "2.5"}, {colorTotal, "0.25"}, {patternTotal, "0"}, {notes, "No crease"}, {peNotes, "Beads"},
      {balance, "8"}, {origQuantity, "2"}, {originalLineNumber, "4"}, {invoiceNumber, "A1"}, {pickedUp, "True"},
      {heatSeal, "HS1"}, {requiresHeatSeal, "True"}, {dueDate, "11/27/2026"}, {prepay, "0.5"},
      {chargeTaxCode, ""}, {parentId, ""}};
  const std::pair<Column, std::string> kUpcharge[] = {
      {parentId, "101"}, {dueDate, ""}, {heatSeal, ""}, {pkgQuantity, ""}, {discountable, "True"},
      {VIPQualified, ""}, {peNotes, ""}, {origQuantity, "1"}, {upchargeTotal, ""}};
  // clang-format on
  for (const auto& [column, value] : kGarment)
    EXPECT_EQ(text(4, column), value) << kLineLayout[column.index].name;
  for (const auto& [column, value] : kUpcharge)
    EXPECT_EQ(text(5, column), value) << kLineLayout[column.index].name;
  EXPECT_TRUE(invoice.isEdittable);

  Variant known = 5, unknown = 99, empty = "";
  EXPECT_EQ(invoice.getLineItemType(known).toText() + invoice.getLineDeptID(known).toText(), "UP1");
  EXPECT_TRUE(invoice.getLineItemType(unknown).isEmpty());
  EXPECT_TRUE(invoice.getLineDeptID(empty).isEmpty());
}

TEST_F(Loading, KnowsTheDepartmentsOfGarmentsChargesAndBags) {
  put(1, "IT", {{"departmentID", "3"}});
  put(2, "AC", {{"departmentID", "4"}});
  put(3, "DE", {{"departmentID", "5"}, {"quantity", "6"}});
  put(4, "AC", {{"departmentID", "null"}});
  put(5, "PR", {{"departmentID", "6"}});
  invoice.getExistingDetails(1007);
  for (int department = 1; department <= 6; ++department) {
    Variant id = department;
    EXPECT_EQ(invoice.isDepartmentExisting(id).toBoolean(), department >= 3 && department <= 5) << department;
  }
  EXPECT_EQ(text(2, chargeTaxCode) + text(2, invoiceNumber) + text(3, invoiceNumber), "5A1");
  EXPECT_EQ(text(3, origQuantity), "6");
}

TEST_F(Loading, AGarmentWithoutItsItemCannotBeEdited) {
  put(1, "IT", {{"lineItemID", "999"}});
  put(2, "IT");
  invoice.getExistingDetails(1007);
  EXPECT_FALSE(invoice.isEdittable);
  invoice.getInvoiceDetailsForPrinting(1007);
  EXPECT_TRUE(invoice.isEdittable);
}

TEST_F(Loading, ForPrintingTellsNotesOnlyWhereTheyPrint) {
  execute(
      "update PriceListItem set notes = 'Beads', printNotes = 102 - priceListItemId where priceListItemId "
      "in (101, 102)");
  execute(
      "update ItemDescriptorPrice set descriptorName = 'Men''s', notes = 'Bleeds', printNotes = 1 where "
      "priceListItemId = 101 and descriptorName = 'Minor Repair'");
  put(1, "IT");
  put(2, "IT", {{"lineItemID", "102"}});
  put(3, "UP", {{"parentLineNumber", "1"}, {"lineItemName", "'Men''s'"}});
  put(4, "CO", {{"parentLineNumber", "1"}});
  put(5, "TA", {{"lineItemTotal", "0.5"}});
  put(6, "TA", {{"lineItemTotal", "0.25"}});
  put(7, "VI");
  put(8, "DE");
  invoice.getInvoiceDetailsForPrinting(1007);
  EXPECT_EQ(lines(), "IT1 IT2 UP3 CO4 TA5 VI7 DE8 ");
  EXPECT_EQ(text(1, peNotes) + "|" + text(2, peNotes) + "|" + text(3, peNotes) + "|" + text(4, peNotes),
            "Beads||Bleeds|");
  EXPECT_EQ(text(5, lineItemTotal), "0.75");
  EXPECT_EQ(text(1, colorTotal), "8");
  EXPECT_EQ(invoice.ticketReadyTime, "5:00 PM");
  EXPECT_DOUBLE_EQ(invoice.netTotal, 41.91);
}

}  // namespace
}  // namespace ondrel
