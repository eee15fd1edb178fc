#include "invoice/invoice_fixture.h"

namespace ondrel {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using enum LineColumn;

class InvoiceObject : public UntaxedInvoiceTest {
 protected:
  // One of the pieces that a line was flattened into.
  void piece(int number, int group, const char* kindOfLine = "IT", int parent = -1) {
    invoice.lineItems->addNew({{lineNumber, number},
                               {parentLineNumber, parent},
                               {itemType, kindOfLine},
                               {itemName, "Shirt"},
                               {flattenedGroup, group},
                               {quantity, 1},
                               {unitPrice, 2.5},
                               {lineItemTotal, 2.5},
                               {totalTax, 0.15},
                               {totalSurcharge, 0.1},
                               {taxableAmt, 2},
                               {balance, 1},
                               {upchargeTotal, 0.5},
                               {colorTotal, 0.25},
                               {patternTotal, 0}});
  }
};

TEST_F(InvoiceObject, StartsEmpty) {
  const Invoice fresh;
  EXPECT_EQ(fresh.currentLineNumber, 1);
  EXPECT_EQ(fresh.lineItems->recordCount(), 0);
  EXPECT_EQ(fresh.lineItems->fieldCount(), 47);
  EXPECT_EQ(fresh.invoiceType, "D");
  EXPECT_TRUE(fresh.tagsSameAsInvNos);
  EXPECT_FALSE(fresh.hasCleared);
  EXPECT_EQ(fresh.createdDate.text(), "11/24/2026 10:30:00 AM");
  for (int column = 0; column < 47; ++column)
    EXPECT_EQ(fresh.lineItems->fieldName(Column(column)), kLineLayout[static_cast<size_t>(column)].name);
  EXPECT_EQ(fresh.lineItems->column("split").index, static_cast<int>(split));
}

TEST_F(InvoiceObject, ClearingLogsEveryVisibleLineAndKeepsTheTicketsPast) {
  invoice.addItem(101, 0, 2, 1.0, 0.01);
  invoice.addUpcharge(1, "Stain Treatment", 2, true, 1.0, 0.01);
  invoice.addChargeLineNew(1, 1, 5, "Hem", 1, 5, 1);
  log();
  invoice.excludeTaxes = true;
  invoice.setDeptIdDueDate(2, "12/4/2026");
  const Date created = invoice.createdDate;
  clock->set(Date::of(2026, 11, 25, 9, 0));
  invoice.clearInvoice();
  EXPECT_THAT(log(), ElementsAre("D 2 Dry Cleaning: Pants -16", "D 2 Dry Cleaning: Stain Treatment -6",
                                 "D 1 Alterations: Hem -5"));
  EXPECT_EQ(invoice.currentLineNumber, 1);
  EXPECT_EQ(invoice.createdDate, created);
  EXPECT_TRUE(invoice.excludeTaxes);
  EXPECT_EQ(invoice.getDeptIDDaysToProcess(2).toLong(), 7);
  invoice.clearInvoice();
  EXPECT_THAT(log(), IsEmpty());
}

TEST_F(InvoiceObject, ClearingLooksThroughTheFilterAsItStands) {
  invoice.addItem(101, 0, 1, 1.0, 0.01);
  invoice.addItem(201, 0, 1, 1.0, 0.01);
  log();
  invoice.lineItems->setFilter("deptId=2");
  invoice.clearInvoice();
  EXPECT_THAT(log(), ElementsAre("D 1 Shirts: Shirt on Hanger -2.5"));
}

TEST_F(InvoiceObject, PiecesOfOneLineAreJoinedInTheLast) {
  piece(1, 1);
  piece(2, 0, "UP", 1);
  piece(3, 1);
  piece(4, 1);
  piece(5, 2);
  piece(6, 3);
  invoice.collectLineItems();
  EXPECT_THAT(lines(), ElementsAre("2<4 UP Shirt 1 x 2.5 = 2.5", "4 IT Shirt 3 x 2.5 = 7.5",
                                   "5 IT Shirt 1 x 2.5 = 2.5", "6 IT Shirt 1 x 2.5 = 2.5"));
  const struct {
    LineColumn column;
    double sum;
  } sums[] = {{totalTax, 0.45}, {totalSurcharge, 0.3}, {taxableAmt, 6},
              {balance, 3},     {upchargeTotal, 1.5},  {colorTotal, 0.75}};
  for (const auto& [column, sum] : sums) EXPECT_DOUBLE_EQ(cell(4, column).toDouble(), sum);
  EXPECT_EQ(text(5, flattenedGroup), "0") << "a piece alone is no group";
  EXPECT_EQ(invoice.lineItems->sort(), "flattenedGroup");
}

TEST_F(InvoiceObject, NothingFlattenedNothingChanged) {
  invoice.addItem(101, 0, 1, 1.0, 0.01);
  invoice.collectLineItems();
  EXPECT_THAT(lines(), ElementsAre("1 IT Pants 1 x 8 = 8"));
}

TEST_F(InvoiceObject, FirstDepartment) {
  EXPECT_EQ(invoice.getFirstDeptId().toLong(), 0);
  invoice.addItem(201, 0, 1, 1.0, 0.01);
  invoice.addItem(101, 0, 1, 1.0, 0.01);
  EXPECT_EQ(invoice.getFirstDeptId().toLong(), 2);
  EXPECT_TRUE(filterIsClear());
}

TEST_F(InvoiceObject, AStoreThatSortsByUseCountsIt) {
  invoice.addItem(101, 0, 1, 1.0, 0.01);
  EXPECT_EQ(scalar("select usecounter from PriceListItem where priceListItemId = 101").toLong(), 1);
  Invoice other;
  startTicket(other, 8, 3, 2);
  other.addItem(3101, 0, 1, 1.0, 0.01);
  EXPECT_EQ(scalar("select usecounter from PriceListItem where priceListItemId = 3101").toLong(), 0);
}

TEST_F(InvoiceObject, SumsLeaveNullsOut) {
  piece(1, 0);
  invoice.lineItems->addNew({{lineNumber, 2}, {parentLineNumber, -1}, {itemType, "CU"}});
  EXPECT_EQ(invoice.liColTotal("quantity", 0).toLong(), 1);
  EXPECT_DOUBLE_EQ(invoice.liColTotal("upchargeTotal", "itemType='it'").toDouble(), 0.5);
  EXPECT_EQ(errorOf([&] { invoice.liColTotal("pieces", 0); }), static_cast<int>(ErrorNumber::ItemNotFound));
}

TEST_F(InvoiceObject, ObjectsOfOneApartmentShareTheConnectionString) {
  Invoice other;
  other.setDBConnectionString("Driver=Embedded;Database=elsewhere");
  EXPECT_EQ(invoice.DBConnectionString(), "Driver=Embedded;Database=elsewhere");
}

}  // namespace
}  // namespace ondrel
