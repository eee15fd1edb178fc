#include "invoice/invoice_fixture.h"

namespace ondrel {
namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using enum LineColumn;

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
