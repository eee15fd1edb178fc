#include "invoice/invoice_fixture.h"

namespace ondrel {
namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using enum LineColumn;

class Charges : public UntaxedInvoiceTest {};

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
  invoice.addChargeLine(Variant(), 7.5, "Mending", 2, 5);
  EXPECT_THAT(log(), IsEmpty());
  invoice.addChargeLineNew(1, 1, 7.5, "Mending", 2, 5, 3);
  EXPECT_THAT(log(), ElementsAre("A 2 Alterations: Mending 15"));
  EXPECT_THAT(
      reads(),
      Contains("SELECT taxCode FROM DEPARTMENTTAX WHERE storeid = '1' and departmentid = '5'").Times(1));
  EXPECT_THAT(lines(), ElementsAre("1 AC Mending 2 x 0 = 15", "2 AC Mending 2 x 7.5 = 15"));
  EXPECT_EQ(text(1, chargeTaxCode), "-1");
  EXPECT_EQ(text(2, pkgQuantity), "3");
  EXPECT_EQ(text(1, dueDate), "12/1/2026 10:30:00 AM") << "alterations take four days";
  EXPECT_TRUE(cell(1, lineItemId).isNull());
}

TEST_F(Charges, OfTheFirstDepartmentOrNone) {
  invoice.addChargeLine(4, 1, "before", 1, -1);
  invoice.addItem(201, 0, 1, 1.0, 0.01);
  invoice.addChargeLine(4, 1, "after", 1, -1);
  EXPECT_EQ(text(1, deptId) + "/" + text(1, deptName), "0/");
  EXPECT_EQ(text(3, deptId), "0") << "the charge itself is the first line with a department";
  EXPECT_EQ(text(1, chargeTaxCode), "4");
  invoice.deleteItem(1);
  invoice.deleteItem(3);
  invoice.addChargeLine(4, 1, "again", 1, -1);
  EXPECT_EQ(text(4, deptName), "Shirts");
}

TEST_F(Charges, AnAmountThatIsNoNumberAddsNothing) {
  statements();
  invoice.addChargeLineNew(1, 1, "much", "Delivery", 1, 1, 1);
  EXPECT_THAT(lines(), IsEmpty());
  EXPECT_THAT(statements(), IsEmpty());
  EXPECT_EQ(invoice.currentLineNumber, 1);
}

TEST_F(Charges, ADetailedChargeTakesFromTheBagOfAQuickDropOff) {
  invoice.invoiceType = "Q";
  invoice.lineItems->addNew({{lineNumber, invoice.currentLineNumber++},
                             {parentLineNumber, -1},
                             {deptId, 5},
                             {deptName, "Alterations"},
                             {itemType, "DE"},
                             {quantity, 9}});
  invoice.addChargeLineNew(1, 1, 5, "Hem", 2, 5, 2);
  EXPECT_EQ(text(1, quantity), "5");
  invoice.addChargeLine(Variant(), 5, "Hem", 2, 5);
  EXPECT_EQ(text(1, quantity), "5");
}

}  // namespace
}  // namespace ondrel
