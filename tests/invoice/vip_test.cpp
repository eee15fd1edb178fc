#include "pricing_story.h"

namespace ondrel {
namespace {

using ::testing::ElementsAre;
using ::testing::UnorderedElementsAre;
using enum LineColumn;

class VipTest : public PricingTest {};

TEST_F(VipTest, WhoQualifies) {
  struct {
    const char* who;
    int customer, priceList;
    bool qualified;
  } const cases[] = {
      {"125.50 in the window", 2, 1, true},
      {"exactly the least spending", 3, 1, false},
      {"an expired date does not count", 4, 1, true},
      {"not marked", 1, 1, false},
      {"260.00 in the year", 14, 2, true},
      {"nobody has spent nothing", 999, 1, false},
      {"a list without the rule", 2, 3, false},
      {"an unknown list", 2, 77, false},
  };
  for (const auto& [who, customer, priceList, qualified] : cases)
    EXPECT_EQ(begin(customer, priceList).isVIPQualified().toBoolean(), qualified) << who;

  begin(4).isVIPQualified();
  EXPECT_EQ(invoice().vipExpiryDate, Date::of(2026, 5, 31));
  EXPECT_TRUE(invoice().isVipValidWithOtherOffer().toBoolean());
  EXPECT_FALSE(begin(14, 2).isVipValidWithOtherOffer().toBoolean());
  EXPECT_FALSE(Invoice().isVipValidWithOtherOffer().toBoolean());
}

// Straight 10 percent beside a coupon of 5.00. The coupon is spread over all 35.25, the VIP discount over what
// is open to it.
//
// | line            | amount | VIP  | own  | taxable | coupon share   | own      | taxable | 2 %    | State  | City    |
// |-----------------|--------|------|------|---------|----------------|----------|---------|--------|--------|---------|
// | bag             |  20.00 | 2.00 | 2.00 |   18.00 | 2.836879       | 2.836879 |   15.16 |        |        |         |
// | pants           |   8.00 | 1.10 | 0.80 |    7.20 | 1.560284 of 11 | 1.134752 |    6.07 | 0.1214 | 0.3642 | 0.15175 |
// | stain treatment |   3.00 |      | 0.30 |    2.70 |                | 0.425532 |    2.27 |        | 0.1362 | 0.05675 |
// | necktie         |   4.25 |      |      |    4.25 | 0.602837       | 0.602837 |    3.65 |        | 0.2190 | 0.09125 |
// | fee             |   0.12 |      |      |         |                |          |    0.12 |        | 0.0072 |         |
TEST_F(VipTest, StraightBesideACoupon) {
  enter({{301}, {101, 1, "Stain Treatment"}, {112}}, 2);
  offer("CU", 1, "5 Off 25", 5);
  finish();
  EXPECT_THAT(goods(), ElementsAre("Wash and Fold Bag 20: taxable 15.16, tax 0, surcharge 0",
                                   "Pants 8: taxable 6.07, tax 0.516, surcharge 0.1214",
                                   "Stain Treatment 3: taxable 2.27, tax 0.193, surcharge 0",
                                   "Necktie 4.25: taxable 3.65, tax 0.3103, surcharge 0"));
  EXPECT_THAT(made(), UnorderedElementsAre("VI  Laundry: 2", "VI  Dry Cleaning: 1.1", "CU 1 Laundry: 2.8369",
                                           "CU 1 Dry Cleaning: 2.1631", "SU 1 Dry Cleaning: 0.12",
                                           "TA 1 Dry Cleaning: 0.73", "TA 2 Dry Cleaning: 0.3"));
  EXPECT_DOUBLE_EQ(invoice().getInvoiceAmountToPay(), 28.30);
}

// Smart: 5.00 for every 50.00 of 149.00 is 10.00. The list does not let it stand beside others, so the coupon goes.
//
// | line        | price | share | taxable | 1 %   | State  |
// |-------------|-------|-------|---------|-------|--------|
// | 5 suits     | 70.00 |  4.70 |   65.30 | 0.653 | 3.918  |
// | 3 overcoats | 45.00 |  3.02 |   41.98 |       | 2.5188 |
// | 4 coveralls | 24.00 |  1.61 |   22.39 |       |        |
// | 2 sets      | 10.00 |  0.67 |    9.33 |       |        |
TEST_F(VipTest, SmartSharesByPriceAndRemovesCoupons) {
  enter({{2103, 5}, {2106, 3}, {2204, 4}, {2203, 2}}, 14, 2);
  offer("CU", 51, "Corporate 5 Percent", 7.45);
  finish();
  EXPECT_THAT(goods(), ElementsAre("Suit 2-Piece 70: taxable 65.3, tax 3.918, surcharge 0.653",
                                   "Overcoat 45: taxable 41.98, tax 2.5188, surcharge 0",
                                   "Coverall 24: taxable 22.39, tax 0, surcharge 0",
                                   "Uniform Set 10: taxable 9.33, tax 0, surcharge 0"));
  EXPECT_THAT(made(), UnorderedElementsAre("VI  Corporate Cleaning: 7.72", "VI  Uniforms: 2.28",
                                           "SU 1 Corporate Cleaning: 0.65", "TA 1 Corporate Cleaning: 6.44"));
  EXPECT_DOUBLE_EQ(invoice().getInvoiceAmountToPay(), 146.09);
  invoice().ticketLogItems->moveLast();
  EXPECT_EQ(invoice().ticketLogItems->text(LogColumn::itemLogType), "D");
  EXPECT_EQ(invoice().ticketLogItems->text(LogColumn::itemName), "Corporate 5 Percent");
  EXPECT_EQ(invoice().ticketLogItems->number(LogColumn::amount), -7.45);
}

}  // namespace
}  // namespace ondrel
