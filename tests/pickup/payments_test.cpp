#include <random>

#include "pickup/pickup_columns.h"
#include "pickup/pickup_fixture.h"
#include "support/failing_connection.h"

namespace ondrel {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::StartsWith;

using PickupPayments = PickupTest;

struct Tender {
  double amount;
  const char* type;
};

TEST_F(PickupPayments, WhatIsTenderedIsSharedAndChangeIsGiven) {
  const struct {
    int ticket;
    std::vector<Tender> tenders;
    double due, change;
    bool drawer;
    std::vector<std::string> ledger;
  } cases[] = {
      // 40.00 to pay
      {1014, {{50, "Cash"}}, 0, 10, true, {"1014 Cash | 40"}},
      {1014, {{10, "Cash"}, {5.5, "Cash"}}, 24.5, 0, true, {"1014 Cash | 15.5"}},
      {1014, {{50, "Credit Card"}}, 0, 0, false, {"1014 Credit Card | 40"}},
      {1014, {{50, "Credit Card"}, {5, "Cash"}}, 0, 5, true, {"1014 Credit Card | 40"}},
      {1014, {{25, "Check"}, {20, "Cash"}}, 0, 5, true, {"1014 Check | 25", "1014 Cash | 15"}},
      {1014, {{30, "GiftCard"}, {10, "Check"}}, 0, 0, true, {"1014 GiftCard | 30", "1014 Check | 10"}},
      {1014, {{40, "On Account"}}, 0, 0, false, {"1014 On Account | 40"}},
      {1014, {{15, "Gift Certificate"}}, 25, 0, true, {"1014 Gift Certificate | 15"}},
      {1014, {{5, "Trade"}}, 35, 0, false, {"1014 Trade | 5"}},
      {1014, {{5, "Coupon Payment"}, {9, "Prepay"}}, 35, 0, false, {"1014 Coupon Payment | 5"}},
      // 25.00 to pay; the 20.00 paid before can be given back
      {1010, {{50, "Credit Card"}}, 0, 20, false, {"1010 Credit Card | 25"}},
  };
  for (const auto& row : cases) {
    SCOPED_TRACE(row.ledger[0]);
    execute("delete from Payment where terminalId = 3");
    execute("update Ticket set amountPaid = 0, ticketStatus = 'AC' where ticketNumber = 1014");
    Pickup at;
    start(at);
    at.addInvoiceToPickup(row.ticket);
    for (const Tender& tender : row.tenders) pay(at, tender.amount, tender.type, "9001");
    EXPECT_NEAR(at.getAmountDue().toDouble(), row.due, 1e-9);
    EXPECT_NEAR(at.getChangeDue().toDouble(), row.change, 1e-9);
    EXPECT_EQ(at.openCashDrawer, row.drawer);
    at.applyPayments(4, 3, "", "");
    EXPECT_EQ(ledger(), row.ledger);
  }
  EXPECT_EQ(scalar("select giftValue from GIFTCARD where giftCardId = 9001").toDouble(), 20);
}

TEST_F(PickupPayments, TypesAreKeptApartAndTakenBack) {
  EXPECT_EQ(errorOf([] {
              const auto bare = std::make_shared<Apartment>();
              const ApartmentScope scope(bare);
              pay(*std::make_unique<Pickup>(), 1, "Cash");
            }),
            3704);
  add({1013});
  pay(session, 5, "Cash");
  pay(session, 5, "Cash");
  pay(session, 3, "Check", "1");
  pay(session, 4, "Check", "2");
  EXPECT_EQ(errorOf([&] { session.addPayment(1, "Cash", "", "", "", "x", "", ""); }), 13);
  const RecordsetRef row = session.payments->clone();
  std::vector<std::string> kept;
  for (; !row->eof(); row->moveNext())
    kept.push_back(row->text("paymentNumber") + " " + row->text("paymentType") + " " +
                   row->text("amountPaid") + " " + row->text("checkCardNo"));
  EXPECT_THAT(kept, ElementsAre("1 Cash 10 ", "2 Check 3 1", "3 Check 4 2"));
  EXPECT_EQ(session.getPaymentByType("-Cash"), 7);
  EXPECT_EQ(session.getPaymentByType("  "), 17);
  EXPECT_EQ(session.getPaymentLists()->items[0].toText(), "'10,3,4'");
  EXPECT_EQ(session.getPaymentLists()->items[1].toText(), "'''Cash'',''Check'',''Check'''");
  session.deletePaymentByName("  ");
  session.adjustCashToTotal();
  EXPECT_EQ(session.getPaymentByType("Cash"), 10) << "13.00 are left to pay in cash";
  pay(session, 5, "Trade");
  session.adjustCashToTotal();
  EXPECT_EQ(session.getPaymentByType("Cash"), 8);
  pay(session, 9, "Trade");
  session.adjustCashToTotal();
  EXPECT_EQ(session.getPaymentByType("Cash"), 0);
  session.deletePaymentByName(" -Trade ");
  EXPECT_EQ(session.getPaymentByType(""), 14);
  EXPECT_NE(errorOf([&] { session.addPayment("x", "Credit Card", "", "", "", 0, "", ""); }), 0);
  EXPECT_FALSE(session.creditCardTranExists);
  pay(session, 1, "Credit Card");
  EXPECT_EQ(session.payments->clone()->recordCount(), 3);
  EXPECT_TRUE(session.creditCardTranExists);
  session.initPickupObject();
  EXPECT_EQ(session.payments->recordCount(), 0);
  EXPECT_FALSE(session.creditCardTranExists || session.openCashDrawer);
}

TEST_F(PickupPayments, AWordThatIsNoTenderMayOpenTheDrawer) {
  const struct {
    const char* closed;
    bool drawer;
  } cases[] = {{"0", true}, {"1", false}, {"null", false}};
  for (const auto& row : cases) {
    execute(std::string("update StorePaymentType set doNotOpenCashDrawer = ") + row.closed +
            " where storeId = 1 and paymentTypeName = 'Cash'");
    Pickup at;
    start(at);
    pay(at, 9, "cash");
    EXPECT_EQ(at.openCashDrawer, row.drawer) << row.closed;
    EXPECT_EQ(at.payments->recordCount(), 0);
  }
}

TEST_F(PickupPayments, RoutinesForPages) {
  EXPECT_EQ(session.maskCardNumber(" 4111111111111111 ").toText(), "************1111");
  EXPECT_TRUE(session.isTicketRacked(1013).toBoolean());
  EXPECT_FALSE(session.isTicketRacked(1007).toBoolean());
  EXPECT_EQ(session.getTicketPrepayDiscount(1007).toDouble(), 0);
  execute("update Ticket set prepayEnabled = 1 where ticketNumber = 1007");
  EXPECT_EQ(session.getTicketPrepayDiscount(1007).toDouble(), 2);
}

// The signature that comes in, whether the store asks for one, and what is sent.
TEST_F(PickupPayments, ASignatureIsPassedOnWhereTheStoreAsks) {
  const struct {
    const char* given;
    bool asked;
    const char *payment, *procedure;
  } cases[] = {{"77", false, "77)", " ,1 ,-1 ,0 ,NULL"},
               {"77", true, "77)", " ,1 ,77 ,0 ,NULL"},
               {"  ", true, "-1)", " ,1 ,-1 ,0 ,NULL"}};
  for (const auto& row : cases) {
    Pickup at;
    start(at);
    at.addInvoiceToPickup(1013);
    pay(at, 1, "Cash");
    at.getPickUpSignature = row.asked;
    statements();
    at.applyPayments(4, 3, "", row.given);
    const std::vector<std::string> sent = reads();
    EXPECT_THAT(sent[0], testing::EndsWith(row.payment));
    EXPECT_EQ(sent[1], std::string("PickupPayment '''1013''', 15 ,1 ,4 ,3") + row.procedure);
  }
}

TEST_F(PickupPayments, TheStatementsOfAPickup) {
  add({1013, 1014});
  pay(session, 40, "Credit Card", "4111");
  pay(session, 12.25, "GiftCard", "9002");
  session.payments->addNew({{PaymentColumn::paymentNumber, 3},
                            {PaymentColumn::amountPaid, 5},
                            {PaymentColumn::paymentType, "Prepay "}});
  session.claimReceipt = std::make_shared<ClaimReceiptFields>();
  session.claimReceipt->name = "Ann O'Brien";
  session.claimReceipt->relationship = "sister";
  statements();
  session.applyPayments(4, 3, "", "");
  EXPECT_THAT(
      statements(),
      ElementsAre(
          "<begin>",
          " insert into claimReceipt  (name, relationship, identificationType, identification, phoneNumber, note) "
          " values  (   'Ann O''Brien', 'sister', NULL, NULL, NULL, NULL ) ",
          " select @@identity as newID ", "<commit>", "<close>", "<begin>",
          " update cardpayment set amountapplied =  isnull(amountapplied, 0) + 40 where transactionid = 'XC-1001'",
          " INSERT INTO TerminalPayment (terminalId, paymentNumber, paymentType,  paymentAmount,checkOrCardNumber, "
          "creditCardType, creditCardExpirydate,  approvalCode, transactionNumber, totalCashPayment, signatureID)  "
          "VALUES(3,1,'Credit Card',40,'4111','Visa','2812','OK1','OK1',NULL,-1)",
          " INSERT INTO TerminalPayment (terminalId, paymentNumber, paymentType,  paymentAmount,checkOrCardNumber, "
          "creditCardType, creditCardExpirydate,  approvalCode, transactionNumber, totalCashPayment, signatureID)  "
          "VALUES(3,2,'GiftCard',12.25,'9002',null,'','','',NULL,-1)",
          "UPDATE GIFTCARD SET giftValue = giftValue - 12.25 , lastUsedDate = getDate() where giftCardId = 9002",
          "PickupPayment '''1013'',''1014''', 15 ,1 ,4 ,3 ,1 ,-1 ,0 ,1", "<commit>", "<close>"));
  EXPECT_THAT(ledger(),
              ElementsAre("1013 Credit Card | 20", "1014 Credit Card | 20", "1014 GiftCard | 12.25"));
  EXPECT_EQ(ticket(1014), "FI | 32.25 | 40 | 11/24/2026 10:30:00 AM");
  EXPECT_THAT(
      rows("select C.name from Payment P inner join claimReceipt C on P.claimReceiptId = C.claimReceiptId "
           "where P.paymentType = 'GiftCard'"),
      ElementsAre("Ann O'Brien"));
}

TEST_F(PickupPayments, APickupWithoutPaymentIsOneToo) {
  add({1010, 1014});
  session.userAction = "other";
  session.applyPayments(4, 3, "", "");
  EXPECT_EQ(ticket(1010), "AC | 20 | 45 | NULL");
  session.userAction = "pickup";
  session.applyPayments(4, 3, "", "");
  EXPECT_EQ(ticket(1010), "FI | 20 | 45 | 11/24/2026 10:30:00 AM");
  EXPECT_THAT(ledger(), IsEmpty());
}

// 1007: the discount of 2.00 takes 0.12 of State and 0.05 of City tax with it, 41.91 - 2.17 = 39.74.
TEST_F(PickupPayments, APrepaymentSavesTheDiscountFirst) {
  session.userAction = "prepay";
  session.addInvoiceToPrepay(1007);
  apartment->store.calendar.cutoffExtraDays = 1;  // of some other ticket; 1007 is no rush
  statements();
  session.applyPayments(4, 3, "'1007'", "");
  EXPECT_THAT(statements(), IsEmpty()) << "nothing paid, nothing to do";
  pay(session, 30, "Cash");
  session.applyPayments(4, 3, "'1007'", "");
  EXPECT_EQ(ticket(1007), "AC | 30 | 39.74 | NULL");
  EXPECT_EQ(apartment->store.calendar.cutoffExtraDays, 1) << "what is being written is promised as before";
  EXPECT_EQ(reads().back(), "ApplyPrePayPayment '1007',15,1,4,3, 'Pre pay'");

  // Paid before, nothing tendered: the discount is saved where it is missing, and no payment is booked.
  for (const int enabled : {1, 0}) {
    execute("update Ticket set prepayEnabled = " + std::to_string(enabled) + " where ticketNumber = 1007");
    Pickup again;
    start(again, 15, "prepay");
    again.addInvoiceToPrepay(1007);
    EXPECT_NEAR(again.getAmountDue().toDouble(), 9.74, 1e-9);
    statements();
    again.applyPayments(4, 3, "'1007'", "no number");
    const std::vector<std::string> sent = reads();
    EXPECT_THAT(sent, Contains(StartsWith("UpdateTicket")).Times(1 - enabled));
    EXPECT_THAT(sent, Not(Contains(StartsWith("ApplyPrePayPayment"))));
  }
}

// ---------------------------------------------------------------- faults

class PickupFaults : public PickupTest {
 protected:
  std::string moneyAt(const EmbeddedStore& at) {
    std::string all;
    for (const char* sql : kMoney) {
      const RecordsetRef table = at.connect(clock)->query(sql);
      for (; !table->eof(); table->moveNext())
        for (int column = 0; column < table->fieldCount(); ++column)
          all += table->value(Column(column)).joined() + "|";
    }
    return all;
  }
  // Lets the n-th statement of a session's applyPayments fail, then repeats the call, on a fresh apartment with
  // a new session or on the same. It must leave what a call without a failure leaves; `ready` makes the
  // session. Statements of the first call.
  template <class Ready>
  int repeatAfterFault(int n, bool fresh, const Ready& ready, const char* tickets, std::string& after) {
    const EmbeddedStore at = store.clone();
    const auto failing = apartmentOn(at, clock);
    StatementFaults faults;
    {
      const ApartmentScope scope(failing);
      const auto first = ready();
      faults.attachTo(*failing);
      faults.failStatement(n);
      const bool failed = errorOf([&] { first->applyPayments(4, 3, tickets, ""); }) != 0;
      if (n == 0) {
        after = moneyAt(at);
        return faults.seen();
      }
      // Pricing passes over some of its reads.
      EXPECT_EQ(moneyAt(at).find("Cash|31|") == std::string::npos, failed) << "all of the payment or nothing";
      if (!failed) return 0;
      if (!fresh) first->applyPayments(4, 3, tickets, "");
    }
    if (fresh) {
      failing->sharedConnection = nullptr;  // the page's end
      const ApartmentScope scope(apartmentOn(at, clock));
      ready()->applyPayments(4, 3, tickets, "");
    }
    EXPECT_EQ(moneyAt(at), after);
    return 0;
  }
  template <class Ready>
  int repeatAfterEveryFault(const Ready& ready, const char* tickets) {
    std::string after;
    const int count = repeatAfterFault(0, false, ready, tickets, after);
    for (int n = 1; n <= count; ++n)
      for (const bool fresh : {false, true}) {
        SCOPED_TRACE(n);
        repeatAfterFault(n, fresh, ready, tickets, after);
      }
    return count;
  }
};

TEST_F(PickupFaults, AFailedPickupCanBeRepeated) {
  const int count = repeatAfterEveryFault(
      [] {
        const auto at = std::make_shared<Pickup>();
        start(*at);
        at->addInvoiceToPickup(1014);
        at->addInvoiceToPickup(1010);
        at->claimReceipt = std::make_shared<ClaimReceiptFields>();
        at->claimReceipt->name = "Ann";
        pay(*at, 31, "Cash");
        pay(*at, 20, "Credit Card");
        pay(*at, 14, "GiftCard", "9001");
        return at;
      },
      "");
  EXPECT_EQ(count, 10);  // two for the claim and its commit, six for the payments, the last commit
}

TEST_F(PickupFaults, AFailedPrepaymentCanBeRepeated) {
  const int count = repeatAfterEveryFault(
      [] {
        const auto at = std::make_shared<Pickup>();
        start(*at, 1, "prepay");
        at->addInvoiceToPrepay(1007);
        pay(*at, 31, "Cash");
        return at;
      },
      "'1007'");
  EXPECT_GT(count, 80);
}

TEST_F(PickupFaults, WhatWasCommittedStaysAndWhatFollowsJoins) {
  StatementFaults faults;
  faults.attachTo(*apartment);
  add({1014});
  session.claimReceipt = std::make_shared<ClaimReceiptFields>();
  session.claimReceipt->name = "Ann";
  pay(session, 40, "Cash");
  faults.failStatement(5);  // the procedure
  EXPECT_NE(errorOf([&] { session.applyPayments(4, 3, "", ""); }), 0);
  EXPECT_EQ(scalar("select count(*) from claimReceipt").toLong(), 1);
  EXPECT_TRUE(apartment->sharedConnection) << "open, with the payment in it";
  session.markLinePickedUp("", 1);
  EXPECT_EQ(scalar("select count(*) from TicketLineItem where pickedup = 1").toLong(), 0) << "joined it";
  session.getEmployeeName(4);
  session.markLinePickedUp("", 1);
  EXPECT_EQ(scalar("select count(*) from TicketLineItem where pickedup = 1").toLong(), 1) << "after a read";
}

// ---------------------------------------------------------------- the ledger

TEST_F(PickupFaults, TheLedgerAddsUpOverRandomSessions) {
  std::mt19937 random(20261124);
  const auto draw = [&](int least, int most) {
    return least + static_cast<int>(random() % static_cast<unsigned>(most - least + 1));
  };
  constexpr const char* kTypes[] = {"Cash", "Check", "Credit Card", "On Account", "Trade", "GiftCard"};
  constexpr int kTickets[] = {1007, 1008, 1010, 1011, 1013, 1014, 1015};
  StatementFaults faults;
  faults.attachTo(*apartment);
  int failed = 0;
  for (int round = 0; round < 150; ++round) {
    SCOPED_TRACE(round);
    if (round % 30 == 0)  // more work for the tickets, which are paid by and by
      execute("update Ticket set netTotal = netTotal + 33.37 where ticketNumber > 1006");
    Pickup at;
    const bool prepay = draw(0, 1) == 1;
    start(at, 15, prepay ? "prepay" : "pickup");
    std::string list;
    for (int k = draw(1, 3); k > 0; --k) {
      const int number = kTickets[draw(0, 6)];
      at.addInvoiceToPickup(number);
      list += (list.empty() ? "" : ",") + std::to_string(number);
    }
    for (int k = draw(0, 3); k > 0; --k) pay(at, draw(0, 2000) / 100.0, kTypes[draw(0, 5)], "9001");
    faults.failStatement(draw(0, 3) == 0 ? draw(1, 6) : 0);
    failed += errorOf([&] { at.applyPayments(4, 3, "'" + list + "'", ""); }) != 0;
    faults.failStatement(0);
    apartment->sharedConnection = nullptr;
    ASSERT_THAT(
        rows("select ticketNumber, amountPaid, netTotal from Ticket T where abs(amountPaid - (select "
             "isnull(sum(paymentAmount), 0) from Payment P where P.ticketNumber = T.ticketNumber)) > 0.00001 "
             "or amountPaid > netTotal + 0.00001"),
        IsEmpty());
    ASSERT_EQ(scalar("select count(*) from TerminalPayment").toLong(), 0);
  }
  EXPECT_GT(failed, 10);
  EXPECT_GT(ledger().size(), 100U);
}

}  // namespace
}  // namespace ondrel
