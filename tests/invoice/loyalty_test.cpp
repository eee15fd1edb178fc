#include "invoice/offer_fixture.h"

namespace ondrel {
namespace {

using ::testing::DoubleEq;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Pointwise;

// A garment of 10.00 in each of the three departments.
class Loyalty : public OfferTest {
 protected:
  Loyalty() {
    for (const int department : {1, 2, 3}) add({.department = department, .price = 10.00});
  }
  void put(std::initializer_list<int> ids) {
    invoice->getQualifyingLoyalty();
    for (const int id : ids) invoice->addLoyalty(id);
  }
};

TEST_F(Loyalty, NothingLimitsTheAmountAndTheLogTellsItAsItIs) {
  invoice->addLoyalty(31);
  EXPECT_THAT(lines("LY"), IsEmpty()) << "nothing was asked yet";
  answerLoyalty({{.id = 31, .amount = 50.0, .department = 1, .most = 40.0},
                 {.id = 31, .amount = 50.0, .department = 2, .most = 40.0}});
  put({99, 31});
  EXPECT_EQ(statements()[0], "GetProbableLoyaltyDiscounts  '16','3','3',30");
  EXPECT_THAT(lines("LY"), ElementsAre("31 : 80")) << "more than the invoice, and more than its face value";
  EXPECT_THAT(log(), ElementsAre("A 1 Loyalty: Offer 31 80"));
}

TEST_F(Loyalty, AChangeOfTheInvoiceWorksThemOutAgain) {
  answerCoupons({});
  answerLoyalty({{.id = 31, .percent = 10.0}, {.id = 32, .percent = 10.0, .department = 2}});
  put({32, 31});
  setPrice(2, 20.00);
  answerLoyalty({{.id = 32, .percent = 10.0, .department = 2}});
  statements();
  invoice->adjustCoupon();
  EXPECT_THAT(statements()[0], HasSubstr("AND D.discountID IN(32,31)  Order By"));
  EXPECT_THAT(lines("LY"), ElementsAre("32 : 2"));
  EXPECT_TRUE(filterIsClear());
}

TEST_F(Loyalty, SharesAreWholeCentsAndDriftWhenSpreadAgain) {
  answerLoyalty({{.id = 31, .amount = 10.0}});
  put({31});
  finish();
  EXPECT_THAT(lines("LY"), ElementsAre("31 Cleaning: 3.33", "31 Shirts: 3.33", "31 Laundry: 3.33"));
  EXPECT_THAT(taxable(), Pointwise(DoubleEq(), {6.67, 6.67, 6.67}));

  // Only the first line is collected: 3.33 in thirds on top of the lines that stand.
  finish();
  EXPECT_THAT(lines("LY"), ElementsAre("31 Shirts: 4.44", "31 Laundry: 4.44", "31 Cleaning: 1.11"));
  EXPECT_THAT(taxable(), Pointwise(DoubleEq(), {8.89, 8.89, 8.89}));
}

TEST_F(Loyalty, TheFirstRowAfterASpreadOfferIsPassedOver) {
  answerLoyalty({{.id = 31, .amount = 3.0},
                 {.id = 32, .percent = 10.0, .department = 1},
                 {.id = 32, .percent = 10.0, .department = 2},
                 {.id = 33, .amount = 1.0}});
  put({31, 32, 33});
  finish();
  // 32 goes to the department of its second row alone; 33, which has but one row, is lost.
  EXPECT_THAT(lines("LY"), ElementsAre("31 Cleaning: 1", "31 Shirts: 1", "31 Laundry: 1", "32 Shirts: 2"));
  EXPECT_THAT(taxable(), Pointwise(DoubleEq(), {9.00, 7.00, 9.00}));
}

}  // namespace
}  // namespace ondrel
