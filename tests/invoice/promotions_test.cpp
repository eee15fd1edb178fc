#include <algorithm>

#include "invoice/offer_fixture.h"

namespace ondrel {
namespace {

using ::testing::DoubleNear;
using ::testing::ElementsAre;
using ::testing::ElementsAreArray;
using ::testing::IsEmpty;
using ::testing::Pointwise;

constexpr double kLastBits = 1e-9;  // promotions leave unrounded amounts

// Cleaning: two pants, 16.00, with an upcharge of 1.50; a suit for 24.00. Shirts: five for 12.50.
class Promotions : public OfferTest {
 protected:
  Promotions() {
    const int pants = add({.department = 1, .price = 16.00, .pieces = 2, .item = 101});
    addUpcharge(pants, 1.50);
    add({.department = 1, .price = 24.00, .item = 103});
    add({.department = 2, .price = 12.50, .pieces = 5, .item = 201});
  }
};

TEST_F(Promotions, WhatLandsAtEachFinishing) {
  const std::vector<double> untouched = {16.00, 1.50, 24.00, 12.50};
  struct {
    const char* name;
    std::vector<OfferRow> rows;
    std::vector<std::string> lines;
    std::vector<double> taxable;  // pants, their upcharge, suit, shirts
  } const cases[] = {
      // clang-format off
      {"on no department", {{.id = 41, .amount = 5.0}}, {}, untouched},
      {"department not there", {{.id = 41, .amount = 5.0, .department = 3}}, {}, untouched},
      {"of nothing", {{.id = 41, .amount = 0.0, .department = 1}}, {}, untouched},
      // 4.15 of 41.50 by price: 1.75 and 2.40; the upcharge keeps its own
      {"percentage", {{.id = 41, .percent = 10.0, .department = 1}},
       {"41 Cleaning: 4.15"}, {14.25, 1.50, 21.60, 12.50}},
      // 5.00 x 17.5/41.5 stays as it comes
      {"flat", {{.id = 41, .amount = 5.0, .department = 1}},
       {"41 Cleaning: 5"}, {16 - 87.5 / 41.5, 1.50, 24 - 120 / 41.5, 12.50}},
      {"flat on two items, once", {{.id = 41, .amount = 4.15, .department = 1, .item = 101},
                                   {.id = 41, .amount = 4.15, .department = 1, .item = 103}},
       {"41 Cleaning: 4.15"}, {14.25, 1.50, 21.60, 12.50}},
      {"flat, once in each department", {{.id = 41, .amount = 4.15, .department = 1},
                                         {.id = 41, .amount = 2.5, .department = 2}},
       {"41 Cleaning: 4.15", "41 Shirts: 2.5"}, {14.25, 1.50, 21.60, 10.00}},
      // 1.75 and 2.40 on one line, each spread over the whole department
      {"percentage on two items", {{.id = 41, .percent = 10.0, .department = 1, .item = 101},
                                   {.id = 41, .percent = 10.0, .department = 1, .item = 103}},
       {"41 Cleaning: 4.15"}, {14.25, 1.50, 21.60, 12.50}},
      {"per unit", {{.id = 41, .amount = 0.5, .department = 2, .perUnit = true}},
       {"41 Shirts: 2.5"}, {16.00, 1.50, 24.00, 10.00}},
      {"pieces met, whatever the amount", {{.id = 41, .amount = 2.5, .department = 2, .leastPieces = 5, .leastAmount = 99.0}},
       {"41 Shirts: 2.5"}, {16.00, 1.50, 24.00, 10.00}},
      {"amount missed", {{.id = 41, .amount = 2.5, .department = 2, .leastAmount = 12.51}}, {}, untouched},
      {"the first that lands shuts out its likes", {{.id = 41, .amount = 9.0, .department = 3, .besideOthers = false},
                                                    {.id = 42, .amount = 2.5, .department = 2, .besideOthers = false},
                                                    {.id = 43, .amount = 5.0, .department = 1, .besideOthers = false},
                                                    {.id = 44, .amount = 4.15, .department = 1}},
       {"42 Shirts: 2.5", "44 Cleaning: 4.15"}, {14.25, 1.50, 21.60, 10.00}},
      // clang-format on
  };
  for (const auto& test : cases) {
    SCOPED_TRACE(test.name);
    answerPromotions(test.rows);
    for (const char* pass : {"first", "second"}) {
      SCOPED_TRACE(pass);
      finish();
      EXPECT_THAT(lines("PR"), ElementsAreArray(test.lines));
      EXPECT_THAT(taxable(), Pointwise(DoubleNear(kLastBits), test.taxable));
      EXPECT_TRUE(filterIsClear());
    }
  }
}

TEST_F(Promotions, GoByTheDiscountableFlag) {
  add({.department = 3, .price = 30.00, .couponable = true, .discountable = false});
  answerPromotions(
      {{.id = 41, .percent = 10.0, .department = 3}, {.id = 42, .amount = 5.0, .department = 3}});
  finish();
  EXPECT_THAT(statements(),
              ::testing::Contains("GetProbablePromotions  '3','8',54,'16','11/24/2026 10:30:00 AM'"));
  EXPECT_THAT(lines("PR"), ElementsAre("42 Laundry: 5")) << "a flat amount needs no garment that bears it";
  EXPECT_EQ(taxable().back(), 30.00);
}

TEST_F(Promotions, ACouponShutsOutThoseThatStandAlone) {
  answerCoupons({{.id = 7, .amount = 2.5, .department = 2}});
  answerPromotions({{.id = 41, .amount = 5.0, .department = 1, .besideOthers = false},
                    {.id = 42, .amount = 4.15, .department = 1}});
  finish();
  EXPECT_THAT(lines("PR"), ElementsAre("41 Cleaning: 5", "42 Cleaning: 4.15"));
  invoice->getQualifyingCoupons();
  invoice->addCoupon(7);
  finish();
  EXPECT_THAT(lines("CU"), ElementsAre("7 Shirts: 2.5"));
  EXPECT_THAT(lines("PR"), ElementsAre("42 Cleaning: 4.15"));
  database.answer("DiscountDepartmentRule",
                  tableOf({"departmentid", "MinPieceCount", "MinQualAmount"}, {{2, 6, Variant::null()}}));
  finish();
  EXPECT_THAT(lines("PR"), IsEmpty()) << "rules are asked first";
}

TEST_F(Promotions, FailuresOfTheStore) {
  answerPromotions({{.id = 41, .amount = 5.0, .department = 1}, {.id = 42, .amount = 2.5, .department = 2}});
  finish();
  const std::vector<std::string> sent = statements();
  const std::string call = "GetProbablePromotions  '3','8',54,'16'";
  const auto at = std::find(sent.begin(), sent.end(), call + ",'11/24/2026 10:30:00 AM'");
  ASSERT_NE(at, sent.end());
  const int asked = static_cast<int>(at - sent.begin()) + 1;

  database.failStatement(asked);  // the older form of the procedure takes no date
  finish();
  EXPECT_EQ(statements()[static_cast<size_t>(asked)], call);
  EXPECT_THAT(lines("PR"), ElementsAre("41 Cleaning: 5", "42 Shirts: 2.5"));

  database.failStatement(asked + 1);  // a read of the first promotion: it is left out, the next is not
  finish();
  EXPECT_THAT(lines("PR"), ElementsAre("42 Shirts: 2.5"));
}

}  // namespace
}  // namespace ondrel
