#include "data/embedded/procedures/offer_procedures.h"
#include "invoice/invoice_fixture.h"

namespace ondrel {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

// The sample store's own offers and procedures. 101 Pants 8.00, 103 Suit 2-Piece 16.00 in two pieces (both
// department 1), 201 Shirt on Hanger 2.50 (department 2). What each offer asks for stands in the sample.
class OffersOfTheStore : public InvoiceTest {
 protected:
  std::vector<int> offered() {
    std::vector<int> ids;
    for (const RecordsetRef each = invoice.getDisplayCouponRst(); !each->eof(); each->moveNext())
      ids.push_back(each->integer("discountId"));
    return ids;
  }
  std::vector<int> coupons() {
    invoice.getQualifyingCoupons();
    return offered();
  }
  std::vector<int> loyalty(int customer) {
    invoice.custSeqNumber = customer;
    invoice.getQualifyingLoyalty();
    return offered();
  }
  std::vector<std::string> linesOfKind(const std::string& itemType) {
    std::vector<std::string> result;
    for (const std::string& line : lines())
      if (line.find(" " + itemType + " ") != std::string::npos)
        result.push_back(line.substr(line.find(' ') + 1));
    return result;
  }
};

TEST_F(OffersOfTheStore, Coupons) {
  EXPECT_THAT(coupons(), ElementsAre(10, 15)) << "flat ones that ask for nothing";
  invoice.addItem2(101, 2);
  invoice.addItem2(201, 5);
  EXPECT_THAT(coupons(), ElementsAre(1, 2, 3, 4, 7, 9, 10, 15, 17));

  clock->set(Date::of(2026, 11, 25, 0, 5));
  EXPECT_THAT(coupons(), ElementsAre(1, 2, 3, 4, 7, 9, 10, 17)) << "the last day of 15 is over";
  clock->set(Date::of(2026, 12, 1, 8, 0));
  EXPECT_THAT(coupons(), ElementsAre(1, 2, 3, 4, 7, 9, 10, 12, 17));

  invoice.addItem2(103, 3);
  EXPECT_THAT(coupons(), ElementsAre(1, 2, 3, 4, 6, 7, 9, 10, 12, 14, 17))
      << "six pieces of suits, thirteen in all";

  execute("insert into Ticket (ticketNumber, customerSequenceNumber) values (990001, 1)");
  execute(
      "insert into TicketLineItem (ticketNumber, lineItemNumber, ticketLineType, lineItemID) "
      "values (990001, 1, 'CU', 10)");
  EXPECT_THAT(coupons(), ElementsAre(1, 2, 3, 4, 6, 7, 9, 12, 14, 17)) << "10 is used up";
  invoice.custSeqNumber = 2;
  EXPECT_THAT(coupons(), ElementsAre(1, 2, 3, 4, 6, 7, 9, 10, 12, 14, 17)) << "by that customer only";
  invoice.priceListId = 2;
  EXPECT_THAT(coupons(), ElementsAre(51));
}

TEST_F(OffersOfTheStore, ACouponFollowsTheInvoiceUntilItFallsOff) {
  invoice.addItem2(101, 2);
  invoice.addItem2(201, 5);  // 28.50
  invoice.getQualifyingCoupons();
  invoice.addCoupon(1);  // from 25.00 on
  invoice.addCoupon(2);
  EXPECT_THAT(linesOfKind("CU"), ElementsAre("CU 5 Off 25 1 x 0 = 5", "CU 10 Percent Off 1 x 0 = 2.85"));
  invoice.changeQuantity(6, 1);  // pants to 48.00
  EXPECT_THAT(linesOfKind("CU"), ElementsAre("CU 5 Off 25 1 x 0 = 5", "CU 10 Percent Off 1 x 0 = 6.05"));
  invoice.deleteItem(1);
  EXPECT_THAT(linesOfKind("CU"), ElementsAre("CU 10 Percent Off 1 x 0 = 1.25"));
}

TEST_F(OffersOfTheStore, FinishingKeepsACouponThatNoLongerQualifies) {
  invoice.addItem2(101, 2);
  invoice.addItem2(201, 5);
  invoice.getQualifyingCoupons();
  invoice.addCoupon(15);
  clock->set(Date::of(2026, 11, 25, 9, 0));
  invoice.invoiceDone2();
  invoice.invoiceDoneAgain();
  EXPECT_DOUBLE_EQ(invoice.liColTotal("lineItemTotal", "itemType='CU'").toDouble(), 1.00);
  invoice.adjustCoupon();
  EXPECT_THAT(linesOfKind("CU"), IsEmpty());
}

TEST_F(OffersOfTheStore, LoyaltyIsTheCustomersOwn) {
  invoice.addItem2(101, 2);
  EXPECT_THAT(loyalty(1), IsEmpty());
  EXPECT_THAT(loyalty(2), ElementsAre(31));
  EXPECT_THAT(loyalty(13), IsEmpty()) << "used up";
  EXPECT_THAT(loyalty(16), ElementsAre(31, 32));
  invoice.addLoyalty(32);
  invoice.changeQuantity(3, 1);
  EXPECT_THAT(linesOfKind("LY"), ElementsAre("LY Loyal 10 Percent 1 x 0 = 2.4"));
}

TEST_F(OffersOfTheStore, PromotionsGoByTheDateOfTheTicket) {
  invoice.addItem2(112, 4);  // neckties 4.25, 0.50 off each
  invoice.addItem2(301, 5);
  invoice.invoiceDone2();
  const std::vector<std::string> inTheWeek = linesOfKind("PR");
  ASSERT_EQ(inTheWeek.size(), 2u);
  EXPECT_THAT(inTheWeek[1], "PR Necktie 0.50 Off Each 1 x 0 = 2");

  invoice.createdDate = Date::of(2026, 11, 29, 9, 0);
  invoice.invoiceDoneAgain();
  EXPECT_THAT(linesOfKind("PR"), ElementsAre("PR Necktie 0.50 Off Each 1 x 0 = 2"));

  store.replaceProcedure("GetProbablePromotions", 4, 4, getProbablePromotions);
  invoice.invoiceDoneAgain();
  EXPECT_EQ(linesOfKind("PR"), inTheWeek) << "the older form knows today only";
}

}  // namespace
}  // namespace ondrel
