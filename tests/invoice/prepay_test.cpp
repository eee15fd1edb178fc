#include "pricing_story.h"

namespace ondrel {
namespace {

using ::testing::UnorderedElementsAre;
using enum LineColumn;

class PrepayTest : public PricingTest {};

// | line            | prepay a unit | discount | State                                  | City          |
// |-----------------|---------------|----------|----------------------------------------|---------------|
// | 3 pants 24.00   | 0.50          | 1.50     | 1.44, fee of 0.48: 0.0288, off -0.09   | 0.60 - 0.04   |
// | 3 shirts 7.50   | 0.25          | 0.75     | 0.45, off -0.045 to -0.04              |               |
TEST_F(PrepayTest, ANegativeChargeADepartmentLowersTheTaxes) {
  enter({{101, 3}, {201, 3}});
  finish();
  const auto without = made();
  EXPECT_THAT(made("TA"),
              UnorderedElementsAre("TA 1 Dry Cleaning: 1.47", "TA 2 Dry Cleaning: 0.6", "TA 1 Shirts: 0.45"));
  EXPECT_EQ(invoice().getPrepayDiscount().toDouble(), 2.25);

  prepay(true);
  EXPECT_TRUE(invoice().isPrepayEnabled().toBoolean());
  EXPECT_THAT(goods(), UnorderedElementsAre("Pants 24: taxable 24, tax 2.04, surcharge 0.48",
                                            "Shirt on Hanger 7.5: taxable 7.5, tax 0.45, surcharge 0.3",
                                            "Prepay Discount -1.5: taxable -1.5, tax -0.13, surcharge 0",
                                            "Prepay Discount -0.75: taxable -0.75, tax -0.04, surcharge 0"));
  EXPECT_THAT(made("TA"), UnorderedElementsAre("TA 1 Dry Cleaning: 1.38", "TA 2 Dry Cleaning: 0.56",
                                               "TA 1 Shirts: 0.41"));
  prepay(false);
  EXPECT_EQ(made(), without);
  EXPECT_THAT(goods(), ::testing::SizeIs(2));
}

// To be prepaid: tuxedos 25 % of 22.00, two of these; other items ask for none.
TEST_F(PrepayTest, GarmentsAndUpchargesEarnRedosAndColorsDoNot) {
  begin();
  const int suit = item(103, 2);
  upcharge(suit, "Hand Finish");
  color(suit, "White");
  setColumn("itemType='CO'", LineColumn::prepay, 5);
  EXPECT_EQ(invoice().getPrepayDiscount().toDouble(), 4);
  Variant cleaning = 1, shirts = 2;
  EXPECT_EQ(invoice().getDepartmentPrepayDiscount(cleaning).toDouble(), 4);
  EXPECT_EQ(invoice().getDepartmentPrepayDiscount(shirts).toDouble(), 0);
  invoice().addRedoItem(102, 1);
  EXPECT_EQ(invoice().getPrepayDiscount().toDouble(), 4);
  item(114, 2);
  setColumn("lineItemId=103", minimumPrepay, Variant::null());
  EXPECT_DOUBLE_EQ(invoice().getMinimumPrepay().toDouble(), 11);
  EXPECT_TRUE(filterIsClear());
}

// The figure of the invoice asks whether the offers on it stand beside others, that of a department does not;
// the lines ask both.
TEST_F(PrepayTest, OffersThatShutOutThePrepayDiscount) {
  struct {
    const char* what;
    bool oneDiscount;
    int coupon;
    double invoice, department;
  } const cases[] = {{"no coupon", true, 0, 1, 1},
                     {"a coupon beside others", false, 3, 1, 1},
                     {"a coupon alone", false, 2, 0, 1},
                     {"one discount only", true, 3, 0, 0}};
  for (const auto& [what, oneDiscount, coupon, ofInvoice, ofDepartment] : cases) {
    execute(fmt::format("update miscsetup set oneDiscountPerInvoice = {:d} where storeid = 1", oneDiscount));
    enter({{101, 2}});
    if (coupon > 0) offer("CU", coupon, "Coupon", 1);
    Variant cleaning = 1;
    EXPECT_EQ(invoice().getPrepayDiscount().toDouble(), ofInvoice) << what;
    EXPECT_EQ(invoice().getDepartmentPrepayDiscount(cleaning).toDouble(), ofDepartment) << what;
    prepay(true);
    EXPECT_EQ(each("itemName='Prepay Discount'")->recordCount(), ofInvoice > 0 ? 1 : 0) << what;
  }
}

}  // namespace
}  // namespace ondrel
