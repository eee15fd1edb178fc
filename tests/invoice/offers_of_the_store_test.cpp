#include "data/dialect/procedures/offer_procedures.h"
#include "invoice/pricing_story.h"

namespace ondrel {

using namespace sql;

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

// The sample store's own offers and procedures. 101 Pants 8.00, 103 Suit 2-Piece 16.00 in two pieces (both
// department 1), 201 Shirt on Hanger 2.50 (department 2). What each offer asks for stands in the sample.
class OffersOfTheStore : public PricingTest {
 protected:
  std::vector<int> offered() {
    std::vector<int> ids;
    for (const RecordsetRef each = invoice().getDisplayCouponRst(); !each->eof(); each->moveNext())
      ids.push_back(each->integer("discountId"));
    return ids;
  }
  std::vector<int> coupons() {
    invoice().getQualifyingCoupons();
    return offered();
  }
  std::vector<int> loyalty(int customer) {
    invoice().custSeqNumber = customer;
    invoice().getQualifyingLoyalty();
    return offered();
  }
};

TEST_F(OffersOfTheStore, Coupons) {
  begin();
  EXPECT_THAT(coupons(), ElementsAre(10, 15)) << "flat ones that ask for nothing";
  item(101, 2);
  item(201, 5);
  EXPECT_THAT(coupons(), ElementsAre(1, 2, 3, 4, 7, 9, 10, 15, 17));

  clock->set(Date::of(2026, 11, 25, 0, 5));
  EXPECT_THAT(coupons(), ElementsAre(1, 2, 3, 4, 7, 9, 10, 17)) << "the last day of 15 is over";
  clock->set(Date::of(2026, 12, 1, 8, 0));
  EXPECT_THAT(coupons(), ElementsAre(1, 2, 3, 4, 7, 9, 10, 12, 17));

  item(103, 3);
  EXPECT_THAT(coupons(), ElementsAre(1, 2, 3, 4, 6, 7, 9, 10, 12, 14, 17))
      << "six pieces of suits, thirteen in all";

  execute("insert into Ticket (ticketNumber, customerSequenceNumber) values (990001, 1)");
  execute(
      "insert into TicketLineItem (ticketNumber, lineItemNumber, ticketLineType, lineItemID) "
      "values (990001, 1, 'CU', 10)");
  EXPECT_THAT(coupons(), ElementsAre(1, 2, 3, 4, 6, 7, 9, 12, 14, 17)) << "10 is used up";
  invoice().custSeqNumber = 2;
  EXPECT_THAT(coupons(), ElementsAre(1, 2, 3, 4, 6, 7, 9, 10, 12, 14, 17)) << "by that customer only";
  invoice().priceListId = 2;
  EXPECT_THAT(coupons(), ElementsAre(51));
}

TEST_F(OffersOfTheStore, ACouponFollowsTheInvoiceUntilItFallsOff) {
  enter({{101, 2}, {201, 5}});  // 28.50
  invoice().getQualifyingCoupons();
  invoice().addCoupon(1);  // 5.00 from 25.00 on
  invoice().addCoupon(2);  // 10 percent
  EXPECT_THAT(made("CU"), ElementsAre("CU 1 : 5", "CU 2 : 2.85"));
  invoice().changeQuantity(6, 1);  // pants to 48.00
  EXPECT_THAT(made("CU"), ElementsAre("CU 1 : 5", "CU 2 : 6.05"));
  invoice().deleteItem(1);
  EXPECT_THAT(made("CU"), ElementsAre("CU 2 : 1.25"));
}

TEST_F(OffersOfTheStore, FinishingKeepsACouponThatNoLongerQualifies) {
  enter({{201, 5}});
  invoice().getQualifyingCoupons();
  invoice().addCoupon(15);
  clock->set(Date::of(2026, 11, 25, 9, 0));
  finish();
  invoice().invoiceDoneAgain();
  EXPECT_THAT(made("CU"), ElementsAre("CU 15 Shirts: 1"));
  invoice().adjustCoupon();
  EXPECT_THAT(made("CU"), IsEmpty());
}

TEST_F(OffersOfTheStore, LoyaltyIsTheCustomersOwn) {
  enter({{101, 2}});
  EXPECT_THAT(loyalty(1), IsEmpty());
  EXPECT_THAT(loyalty(2), ElementsAre(31));
  EXPECT_THAT(loyalty(13), IsEmpty()) << "used up";
  EXPECT_THAT(loyalty(16), ElementsAre(31, 32));
  invoice().addLoyalty(32);  // 10 percent
  invoice().changeQuantity(3, 1);
  EXPECT_THAT(made("LY"), ElementsAre("LY 32 : 2.4"));
}

// Neckties of 4.25, 0.50 off each, and bags that are on offer in this week only.
TEST_F(OffersOfTheStore, PromotionsGoByTheDateOfTheTicket) {
  enter({{112, 4}, {301, 5}});
  finish();
  const std::vector<std::string> inTheWeek = made("PR");
  ASSERT_EQ(inTheWeek.size(), 2u);
  invoice().createdDate = Date::of(2026, 11, 29, 9, 0);
  invoice().invoiceDoneAgain();
  EXPECT_THAT(made("PR"), ElementsAre(::testing::EndsWith(" Dry Cleaning: 2")));
  store.replaceProcedure("GetProbablePromotions", 4, 4, getProbablePromotions);
  invoice().invoiceDoneAgain();
  EXPECT_EQ(made("PR"), inTheWeek) << "the older form knows today only";
}

}  // namespace
}  // namespace ondrel
