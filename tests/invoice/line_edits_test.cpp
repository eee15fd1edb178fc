#include "invoice/invoice_fixture.h"

namespace ondrel {
namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using enum LineColumn;

// Sample store: 201 Shirt on Hanger 2.50, 103 Suit 16.00 (two pieces, Two Day Rush 2.00, colour White 1.00, pattern
// Pinstripe 0.50), 107 Evening Gown in five days, 121 Wedding Dress priced later.

class LineEdits : public InvoiceTest {
 protected:
  // A suit of two with every kind of child, the log read.
  void suit() {
    garment(103, 2);
    upcharge(1, "Two Day Rush", 2);
    color(1, "White", 2);
    invoice.addPattern(1, "Pinstripe", 4, true, 1.0, 0.01);
    log();
  }
};

TEST_F(LineEdits, AMorningAtTheCounter) {
  garment(201, 2);
  garment(103);
  invoice.addUpcharge2(2, "Two Day Rush", 1);
  invoice.changeQuantity(1, 1);  // one shirt deleted
  invoice.setLineToRedo(2);
  invoice.setDeptIdDueDate(1, "12/4/2026");
  EXPECT_THAT(lines(), ElementsAre("1 IT Shirt on Hanger 1 x 2.5 = 2.5", "2 IT Suit 2-Piece 1 x 0 = 0",
                                   "3<2 UP Two Day Rush 1 x 0 = 0"));
  EXPECT_THAT(log(),
              ElementsAre("A 2 Shirts: Shirt on Hanger 5", "A 1 Dry Cleaning: Suit 2-Piece 16",
                          "A 1 Dry Cleaning: Two Day Rush 2", "C -1 Shirts: Shirt on Hanger -2.5",
                          "O 1 Dry Cleaning: Suit 2-Piece -16",
                          "O 1 Dry Cleaning: Suit 2-Piece -2"));  // the suit's 0 less the upcharge's old 2
  EXPECT_EQ(text(2, redo) + text(3, redo), "TrueFalse");
  EXPECT_EQ(text(2, dueDate), "12/4/2026");
  EXPECT_EQ(text(2, daysToProcess), "7");
  EXPECT_EQ(text(1, dueDate), "11/28/2026 10:30:00 AM") << "the shirts keep their own day";
  EXPECT_EQ(invoice.InvDueDate.text(), "12/4/2026");
  EXPECT_EQ(text(2, upchargeTotal), "0");
  EXPECT_TRUE(filterIsClear());
}

TEST_F(LineEdits, DeletingAGarmentTakesItsChildrenUnlogged) {
  suit();
  invoice.deleteItem(1);
  EXPECT_THAT(lines(), IsEmpty());
  EXPECT_THAT(log(), ElementsAre("D 2 Dry Cleaning: Suit 2-Piece -32"));
  EXPECT_EQ(invoice.currentLineNumber, 5) << "numbers are not used again";
}

TEST_F(LineEdits, DeletingAChildLogsTheGarmentsValues) {
  suit();
  for (const int child : {2, 3, 4}) {
    invoice.deleteItem(child);
    EXPECT_THAT(log(), ElementsAre("D 2 Dry Cleaning: Suit 2-Piece -32"));
  }
  EXPECT_THAT(lines(), ElementsAre("1 IT Suit 2-Piece 2 x 16 = 32"));
  EXPECT_EQ(text(1, upchargeTotal) + text(1, colorTotal) + text(1, patternTotal), "000");
  invoice.addRedoItem(103, 1);
  color(5, "White");
  upcharge(5, "Lining");
  log();
  invoice.deleteItem(6);
  EXPECT_THAT(log(), IsEmpty()) << "the colour of a garment that costs nothing";
  invoice.deleteItem(7);
  EXPECT_THAT(log(), ElementsAre("D 1 Dry Cleaning: Suit 2-Piece 0"))
      << "an upcharge is logged without a test";
}

TEST_F(LineEdits, TheDateFallsBackUnlessItWasSetByHand) {
  garment(107);
  garment(201);
  EXPECT_EQ(invoice.InvDueDate.text(), "12/2/2026 10:30:00 AM");
  invoice.deleteItem(1);
  EXPECT_EQ(invoice.InvDueDate.text(), "11/28/2026 10:30:00 AM") << "the shirt's";
  apartment->store.lastCounted = invoice.createdDate;
  invoice.deleteItem(2);
  EXPECT_EQ(invoice.InvDueDate.text(), "11/30/2026 10:30:00 AM") << "the store's three days";
  garment(201);
  garment(202);
  invoice.addOrEdit = "edit";
  invoice.setInvoiceDueDate("12/9/2026");
  invoice.deleteItem(3);
  EXPECT_EQ(invoice.InvDueDate.text(), "12/9/2026");
}

TEST_F(LineEdits, AQuantityTakesTheChildrenAlongByTheirShare) {
  suit();  // children 2, 2 and 4 on two suits: 1, 1 and 2 each
  invoice.changeQuantity("2", 1);
  EXPECT_THAT(log(), ElementsAre("C 0 Dry Cleaning: Two Day Rush 0", "C 0 Dry Cleaning: Suit 2-Piece 0"));
  invoice.changeQuantity(3, 1);
  EXPECT_THAT(lines(), ElementsAre("1 IT Suit 2-Piece 3 x 16 = 48", "2<1 UP Two Day Rush 3 x 2 = 6",
                                   "3<1 CO White 3 x 1 = 3", "4<1 PA Pinstripe 6 x 0.5 = 3"));
  EXPECT_EQ(text(1, upchargeTotal) + " " + text(1, colorTotal) + " " + text(1, patternTotal), "6 3 3");
  EXPECT_EQ(text(1, taxableAmt) + " " + text(4, taxableAmt), "48 3");
  EXPECT_THAT(log(), ElementsAre("C 1 Dry Cleaning: Two Day Rush 2", "C 1 Dry Cleaning: Suit 2-Piece 1",
                                 "C 2 Dry Cleaning: Suit 2-Piece 1", "C 1 Dry Cleaning: Suit 2-Piece 16"));
}

TEST_F(LineEdits, SharesRoundHalfToEvenAndAGarmentOfNoneDividesByZero) {
  garment(103, 2);
  upcharge(1, "Lining", 5);  // 2.5 each: 2
  invoice.changeQuantity(4, 1);
  EXPECT_EQ(text(2, quantity), "8");
  invoice.changeQuantity(0, 1);
  EXPECT_THROW(invoice.changeQuantity(1, 2), Error);
  EXPECT_THROW(invoice.changeQuantity("two", 1), Error);
}

TEST_F(LineEdits, ChargesTurnTheSign) {
  invoice.addChargeLineNew(1, 1, 10, "Delivery", 2, 1, 1);
  invoice.addChargeLine(Variant(), 7.5, "Mending", 1, 5);
  log();
  invoice.changeQuantity(3, 1);
  invoice.changeQuantity(2, 2);
  EXPECT_THAT(lines(), ElementsAre("1 AC Delivery 3 x 10 = 30", "2 AC Mending 2 x 0 = 0"))
      << "the second keeps no unit price";
  EXPECT_THAT(log(), ElementsAre("C 1 Dry Cleaning: Delivery -10"));
}

TEST_F(LineEdits, PriceOverrides) {
  suit();
  invoice.overRidePrice(10.006, 1);
  invoice.overRidePrice("1.5", 2);
  invoice.overRidePrice(2, 3);
  invoice.overRidePrice(0.25, 4);
  invoice.overRidePrice("free", 1);
  EXPECT_THAT(lines(), ElementsAre("1 IT Suit 2-Piece 2 x 10.01 = 20.02", "2<1 UP Two Day Rush 2 x 1.5 = 3",
                                   "3<1 CO White 2 x 2 = 4", "4<1 PA Pinstripe 4 x 0.25 = 1"));
  EXPECT_EQ(text(1, originalUnitPrice) + " " + text(1, taxableAmt), "16 20.02");
  EXPECT_EQ(text(1, upchargeTotal) + " " + text(1, colorTotal) + " " + text(1, patternTotal), "3 4 1");
  // A child's row tells the garment's total less the child's old one: 20.02 less 4, 2 and 2.
  EXPECT_THAT(log(),
              ElementsAre("O 2 Dry Cleaning: Suit 2-Piece -11.98", "O 2 Dry Cleaning: Suit 2-Piece 16.02",
                          "O 2 Dry Cleaning: Suit 2-Piece 18.02", "O 2 Dry Cleaning: Suit 2-Piece 18.02"));
}

TEST_F(LineEdits, OverridesOfOtherLines) {
  garment(201);
  invoice.addChargeLineNew(1, 1, 10, "Delivery", 3, 1, 1);
  invoice.lineItems->addNew({{lineNumber, 3}, {parentLineNumber, -1}, {itemType, "CU"}, {lineItemTotal, 5}});
  log();
  invoice.overRidePrice(12, 2);
  EXPECT_EQ(lines()[1], "2 AC Delivery 3 x 12 = 12") << "the price alone, whatever the count";
  invoice.overRidePrice(4, 3);
  EXPECT_EQ(text(3, lineItemTotal), "4");
  // The coupon's row takes the first line of the table: 2.50 less 5.00.
  EXPECT_THAT(log(), ElementsAre("O 3 Dry Cleaning: Delivery -18", "O 1 Shirts: Shirt on Hanger -2.5"));
  invoice.overRidePrice(1, 9);
  EXPECT_FALSE(filterIsClear()) << "an unknown line leaves its filter";
}

TEST_F(LineEdits, APriceThatWasLeftOpenIsSettledOnlyUpwards) {
  garment(121);
  invoice.overRidePrice(0, 1);
  EXPECT_TRUE(cell(1, priceLater).toBoolean());
  invoice.overRidePrice(120, 1);
  EXPECT_FALSE(cell(1, priceLater).toBoolean());
}

TEST_F(LineEdits, TextsOfALine) {
  garment(201);
  invoice.attachNotes(1, "mind the button");
  invoice.attachPromptReponse(1, "folded");
  invoice.renameLineItem(1, "Best Shirt");
  EXPECT_THROW(invoice.attachNotes(1, std::string(256, 'x')), Error);
  EXPECT_EQ(invoice.getItemNotes(1).text() + invoice.getItemNotes(9).text(), "mind the button");
  EXPECT_EQ(text(1, itemName) + "/" + text(1, promptResponse), "Best Shirt/folded");
  invoice.lineItems->setFilter("itemType='UP'");
  EXPECT_EQ(invoice.getLineQuantity(1).toLong() - invoice.getLineQuantity(9).toLong(), 1);
  EXPECT_EQ(invoice.lineItems->filter().text(), "itemType='UP'");
}

TEST_F(LineEdits, ClearingLogsEveryVisibleLineAndKeepsTheTicketsPast) {
  garment(101, 2);
  garment(201);
  upcharge(1, "Stain Treatment", 2);
  log();
  invoice.setDeptIdDueDate(3, "12/4/2026");
  const Date created = invoice.createdDate;
  clock->set(Date::of(2026, 11, 25, 9, 0));
  invoice.lineItems->setFilter("deptId=1");
  invoice.clearInvoice();
  EXPECT_THAT(log(), ElementsAre("D 2 Dry Cleaning: Pants -16", "D 2 Dry Cleaning: Stain Treatment -6"));
  EXPECT_THAT(lines(), IsEmpty());
  EXPECT_EQ(invoice.currentLineNumber, 1);
  EXPECT_EQ(invoice.createdDate, created);
  EXPECT_TRUE(invoice.excludeTaxes);
  EXPECT_EQ(invoice.getDeptIDDaysToProcess(3).toLong(), 7);
}

// ---------------------------------------------------------------- charges

class Charges : public InvoiceTest {};

TEST_F(Charges, WhatACountAndAnAmountComeTo) {
  const struct {
    double amount;
    int count;
    double plain, detailed;
  } cases[] = {{10, 1, 10, 10}, {10, 3, 30, 30}, {10, 0, 10, 10},       {-5, 2, -5, -5},
               {-5, 0, 0, -5},  {-5, -1, 5, -5}, {2.005, 1, 2.01, 2.01}};
  int line = 0;
  for (const auto& row : cases) {
    invoice.addChargeLine(Variant(), row.amount, "plain", row.count, 1);
    invoice.addChargeLineNew(1, 1, row.amount, "detailed", row.count, 1, 1);
    EXPECT_DOUBLE_EQ(cell(++line, lineItemTotal).toDouble(), row.plain) << row.count << " x " << row.amount;
    EXPECT_DOUBLE_EQ(cell(++line, lineItemTotal).toDouble(), row.detailed)
        << row.count << " x " << row.amount;
  }
}

TEST_F(Charges, TheTwoWaysDiffer) {
  invoice.addChargeLineNew(1, 1, "much", "Delivery", 1, 1, 1);  // no number, no charge
  invoice.addChargeLine(Variant(), 7.5, "Mending", 2, 5);
  EXPECT_THAT(log(), IsEmpty());
  invoice.addChargeLineNew(1, 1, 7.5, "Mending", 2, 5, 3);
  EXPECT_THAT(log(), ElementsAre("A 2 Alterations: Mending 15"));
  EXPECT_THAT(
      reads(),
      Contains("SELECT taxCode FROM DEPARTMENTTAX WHERE storeid = '1' and departmentid = '5'").Times(1));
  EXPECT_THAT(lines(), ElementsAre("1 AC Mending 2 x 0 = 15", "2 AC Mending 2 x 7.5 = 15"));
  EXPECT_EQ(text(1, chargeTaxCode) + " " + text(2, pkgQuantity), "-1 3");
  EXPECT_EQ(text(1, dueDate), "12/1/2026 10:30:00 AM") << "alterations take four days";
  EXPECT_TRUE(cell(1, lineItemId).isNull());
}

TEST_F(Charges, OfTheFirstDepartmentOrNone) {
  invoice.addChargeLine(4, 1, "before", 1, -1);
  garment(201);
  EXPECT_EQ(text(1, deptId) + "/" + text(1, deptName) + "/" + text(1, chargeTaxCode), "0//4");
  invoice.deleteItem(1);
  invoice.addChargeLine(4, 1, "after", 1, -1);
  EXPECT_EQ(text(3, deptName), "Shirts");
}

}  // namespace
}  // namespace ondrel
