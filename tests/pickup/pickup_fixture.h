#pragma once

#include <gmock/gmock.h>

#include <string>
#include <vector>

#include "pickup/pickup.h"
#include "support/error_of.h"
#include "support/store_fixture.h"

namespace ondrel {

// Counter sessions at shop 1 of the sample store, terminal 3, employee 4. Customer 15 has three tickets without
// tax ready: 1013 20.00, 1014 40.00, 1015 28.00; customer 16 has 1010, 45.00 with 20.00 paid.
class PickupTest : public StoreTest {
 protected:
  PickupTest() { start(session); }

  static void start(Pickup& made, int customer = 15, const char* action = "pickup") {
    made.storeid = 1;
    made.custSeqNumber = customer;
    made.userAction = action;
    made.initStorePaymentTypeInfo();
  }
  static void pay(Pickup& at, double amount, const char* type, const char* number = "") {
    const bool card = std::string(type) == "Credit Card";
    at.addPayment(amount, type, number, card ? "2812" : "", card ? "Visa" : "", 0, card ? "OK1" : "",
                  card ? "XC-1001" : "");
  }
  void add(std::initializer_list<int> tickets) {
    for (const int ticket : tickets) session.addInvoiceToPickup(ticket);
  }
  // What terminal 3 has booked, "1013 Cash 20".
  std::vector<std::string> ledger() {
    return rows(
        "select convert(varchar, ticketNumber) + ' ' + paymentType, paymentAmount from Payment where "
        "terminalId = 3 order by paymentId");
  }
  std::string ticket(int number) {
    return rows("select ticketStatus, amountPaid, netTotal, dateout from Ticket where ticketNumber = " +
                std::to_string(number))[0];
  }
  // What the tests of a failure must not find changed: all that an applied payment touches.
  static constexpr const char* kMoney[] = {
      "select ticketNumber, ticketStatus, amountPaid, netTotal, prepayEnabled, dateout from Ticket order by "
      "ticketNumber",
      "select ticketNumber, paymentType, paymentAmount from Payment order by paymentId",
      "select ticketNumber, amountPaid from TicketPickup order by ticketPickupId",
      "select giftCardId, giftValue from GIFTCARD order by giftCardId",
      "select transactionid, amountapplied from cardpayment order by transactionid",
      "select * from TerminalPayment"};

  Pickup session;
};

}  // namespace ondrel
