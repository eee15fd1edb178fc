#include <gmock/gmock.h>

#include "data/embedded/embedded_connection.h"
#include "support/error_of.h"
#include "support/store_fixture.h"

namespace ondrel {

using namespace sql;

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

// Tickets of customer 1: 1007 with 41.91 to pay, 1008 with 11.00; 1010 of customer 16: 45.00, 20.00 of it paid.
class PaymentProcedures : public StoreTest {
 protected:
  void tender(const char* type, double amount, const char* number = "", int terminal = 3) {
    execute(
        "insert into TerminalPayment (terminalId, paymentNumber, paymentType, paymentAmount, "
        "checkOrCardNumber, signatureID) values (" +
        std::to_string(terminal) + ", 1, '" + type + "', " + Variant(amount).toText() + ", '" + number +
        "', 77)");
  }
  // In a transaction of its own; the number of the error.
  int call(const std::string& statement) {
    connection->begin();
    const int error = errorOf([&] { connection->execute(statement); });
    connection->commit();
    return error;
  }
  std::vector<std::string> booked() {
    return rows(
        "select ticketNumber, paymentType, paymentAmount, checkOrCardNumber, paymentAction, "
        "signatureId, claimReceiptId from Payment where terminalId = 3 order by paymentId");
  }
  std::vector<std::string> paid() {
    return rows(
        "select ticketNumber, amountPaid, ticketStatus, dateout from Ticket where ticketNumber in "
        "(1007, 1008, 1010) order by ticketNumber");
  }
  int waiting() { return scalar("select count(*) from TerminalPayment").toLong(); }

  std::unique_ptr<Connection> connection = store.connect(clock);
};

// 60.00 by card: 41.91 goes on 1007, 11.00 on 1008 and the last 7.09 on 1010; a check of 17.91 closes it, and
// of 5.00 in cash nothing is booked: they went back.
TEST_F(PaymentProcedures, TicketsAreFilledInTheirOrderByPaymentsInTheirs) {
  tender("Credit Card", 60, "4111111111111111");
  tender("Check", 17.91, "300");
  tender("Cash", 5);
  tender("Cash", 9, "", 2);
  EXPECT_EQ(call("PickupPayment '''1007'',''1008'',''1010''', 1 ,1 ,4 ,3 ,1 ,-1 ,0 ,12"), 0);
  EXPECT_THAT(booked(), ElementsAre("1007 | Credit Card | 41.91 | ************1111 | Pickup | 77 | 12",
                                    "1008 | Credit Card | 11 | ************1111 | Pickup | 77 | 12",
                                    "1010 | Credit Card | 7.09 | ************1111 | Pickup | 77 | 12",
                                    "1010 | Check | 17.91 | 300 | Pickup | 77 | 12"));
  EXPECT_THAT(paid(), ElementsAre("1007 | 41.91 | FI | 11/24/2026 10:30:00 AM",
                                  "1008 | 11 | FI | 11/24/2026 10:30:00 AM",
                                  "1010 | 45 | FI | 11/24/2026 10:30:00 AM"));
  EXPECT_EQ(waiting(), 1) << "the other terminal's";
  EXPECT_THAT(
      rows("select ticketNumber, amountPaid, signatureId, pickupReceipt, claimReceiptId from "
           "TicketPickup order by ticketPickupId"),
      ElementsAre("1007 | 41.91 | -1 | 0 | 12", "1008 | 11 | -1 | 0 | 12", "1010 | 25 | -1 | 0 | 12"));
}

TEST_F(PaymentProcedures, APrepaymentKeepsTheTicketsInTheShop) {
  tender("Cash", 5);
  EXPECT_EQ(call("ApplyPrePayPayment 1008,1,1,4,3, 'Pre pay'"), 0);
  EXPECT_THAT(booked(), ElementsAre("1008 | Cash | 5 |  | Pre pay | 77 | NULL"));
  EXPECT_EQ(paid()[1], "1008 | 5 | AC | NULL");
  tender("Cash", 7);
  EXPECT_EQ(call("ApplyPrePayPayment '1008, 1008',1,1,4,3, 'Pickup'"), 0);
  EXPECT_EQ(booked().back(), "1008 | Cash | 6 |  | Pickup | 77 | NULL");
  EXPECT_EQ(paid()[1], "1008 | 11 | FI | 11/24/2026 10:30:00 AM");
}

TEST_F(PaymentProcedures, ATicketGoesOutOnceAndUnpaidToo) {
  EXPECT_EQ(call("PickupPayment '''1008''', 1 ,1 ,4 ,3 ,1 ,-1 ,0 ,NULL"), 0);
  clock->set(Date::of(2026, 11, 24, 12, 0));
  tender("Cash", 11);
  EXPECT_EQ(call("PickupPayment '''1008''', 1 ,1 ,4 ,3 ,1 ,-1 ,0 ,NULL"), 0);
  EXPECT_EQ(paid()[1], "1008 | 11 | FI | 11/24/2026 10:30:00 AM");
  EXPECT_THAT(rows("select amountPaid from TicketPickup"), ElementsAre("0"));
}

TEST_F(PaymentProcedures, ACallThatFailsChangesNothingInItsTransaction) {
  const std::vector<std::string> before = paid();
  tender("Cash", 50);
  EXPECT_NE(call("PickupPayment '''1007'',''9999''', 1 ,1 ,4 ,3 ,1 ,-1 ,0 ,NULL"), 0) << "no such ticket";
  EXPECT_NE(call("PickupPayment '''10x7''', 1 ,1 ,4 ,3 ,1 ,-1 ,0 ,NULL"), 0);
  EXPECT_NE(call("PickupPayment '', 1 ,1 ,4 ,3 ,1 ,-1 ,0 ,NULL"), 0) << "money and no ticket";
  EXPECT_NE(call("PickupPayment '''1007''', 1 ,1 ,4 ,3 ,1 ,'a' ,0 ,NULL"), 0) << "behind the bookings";
  tender("Cash", -1);
  EXPECT_NE(call("ApplyPrePayPayment '1007',1,1,4,3, 'Pre pay'"), 0);
  EXPECT_EQ(paid(), before);
  EXPECT_THAT(booked(), IsEmpty());
  EXPECT_EQ(waiting(), 2);
  EXPECT_EQ(call("PickupPayment '', 1 ,1 ,4 ,2 ,1 ,-1 ,0 ,NULL"), 0) << "nothing to do";
}

TEST_F(PaymentProcedures, TheLedgerOfTheSampleStoreAddsUp) {
  EXPECT_THAT(
      rows(
          "select t.ticketNumber from Ticket t where t.amountPaid <> (select isnull(sum(p.paymentAmount), 0) "
          "from Payment p where p.ticketNumber = t.ticketNumber)"),
      IsEmpty());
}

}  // namespace
}  // namespace ondrel
