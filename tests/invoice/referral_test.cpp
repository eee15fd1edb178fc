#include "invoice/pricing_story.h"

namespace ondrel {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class ReferralTest : public PricingTest {
 protected:
  void save(int customer, int item, int pieces, double price = 0) {
    begin(customer).referralQualified = true;
    invoice().createdByEmployeeId = 3;
    invoice().terminalID = 2;
    const int line = this->item(item, pieces);
    if (price > 0) invoice().overRidePrice(price, line);
    finish();
    statements();
    invoice().saveInvoice("add", 1, 1, "0", "Dora Quill", Variant(), true);
  }
  std::vector<std::string> credits() {
    return rows(
        "select storeId, employeeId, customerSequenceNumber, chargeType, amount, description, chargeStatus, "
        "terminalId, active from MiscCharge order by miscChargeId");
  }
  std::string toDate(int customer) {
    return rows(fmt::format("select amountToDate from customerreferral where customersequencenumber = {}",
                            customer))
        .at(0);
  }
};

// Ten percent in steps of 5.00 up to 10.00; Lena has 4.00 built up.
//
// | ticket | earned | usable | crosses                   | credit | to date |
// |--------|--------|--------|---------------------------|--------|---------|
// |   9.00 |   0.90 |   0.90 | 4.90: none                |        |    4.90 |
// |  20.00 |   2.00 |   2.00 | 5.00                      |   5.00 |    6.90 |
// | 100.00 |  10.00 |   3.10 | 10.00, the limit          |   5.00 |   16.90 |
// |  20.00 |   2.00 |        | nothing more              |        |   18.90 |
TEST_F(ReferralTest, CreditsWholeStepsUpToTheLimit) {
  save(9, 306, 1);
  EXPECT_THAT(credits(), IsEmpty());
  EXPECT_EQ(toDate(9), "4.9");
  save(9, 301, 1);
  const char* const credit = "1 | 3 | 10 | C | 5 | Referral Credit From Lena Osgood | C | 2 | True";
  EXPECT_THAT(credits(), ElementsAre(credit));
  EXPECT_EQ(toDate(9), "6.9");
  save(9, 301, 5);
  EXPECT_THAT(credits(), ElementsAre(credit, credit));
  EXPECT_EQ(toDate(9), "16.9");
  save(9, 301, 1);
  EXPECT_EQ(credits().size(), 2u);
  EXPECT_EQ(toDate(9), "18.9");
}

// 8.03 and 1.97 are 10.00 to the cent, though not 3.03 and 1.97 in double precision. The account flag is worked
// out anew for every customer, as soon as anybody is credited.
TEST_F(ReferralTest, AStepReachedToTheCentCountsInOneTransaction) {
  execute("update customerreferral set amountToDate = 8.03 where customersequencenumber = 9");
  save(9, 301, 1, 19.7);
  auto sent = statements();
  sent.resize(7);
  EXPECT_THAT(
      std::vector<std::string>(sent.begin() + 1, sent.end()),
      ElementsAre(
          "<begin>",
          " select customerreferral.referredby, customer.customername, customerreferral.amountToDate from customerreferral inner join customer on  customerreferral.customersequencenumber = customer.customersequencenumber  where customerreferral.customersequencenumber = 9 and datediff(day, customer.createdDate, '11/24/2026 10:30:00 AM') <= 90",
          "update customer set temporaryaccount = (case permanentaccount when 1 then 0 else 1 end)",
          "execute InsertMiscCharge '1' ,'3' ,'10' ,'C' ,5.00 ,'11/24/2026 10:30:00 AM' ,'Referral Credit From Lena Osgood' ,'C' ,'2',1",
          " update customerreferral set amountToDate = amountToDate + 1.97 where customerreferral.customersequencenumber = '9'",
          "<commit>"));
  EXPECT_EQ(toDate(9), "10");
  EXPECT_EQ(rows("select customerSequenceNumber from Customer where temporaryaccount = 0"),
            (std::vector<std::string>{"13", "14"}));
}

}  // namespace
}  // namespace ondrel
