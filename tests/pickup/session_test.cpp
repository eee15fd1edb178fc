#include "pickup/pickup_fixture.h"

#include <limits>

#include "data/dialect/procedures/procedure.h"
#include "support/failing_connection.h"

namespace ondrel {

using namespace sql;

namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;

class PickupSession : public PickupTest {
 protected:
  // The display table, "1001<-1 IT 2 Pants 16".
  std::vector<std::string> shown() {
    std::vector<std::string> result;
    const RecordsetRef line = session.displayRst->clone();
    for (; !line->eof(); line->moveNext()) {
      std::string text;
      for (const char* column : {"lineNumber", "parentLineNumber", "itemType", "quantity", "itemName",
                                 "lineItemTotal", "peNotes", "invoiceNumber"})
        text += line->value(column).joined() + " ";
      result.push_back(text);
    }
    return result;
  }
};

TEST_F(PickupSession, LinesOfAllTicketsStandUnderDisplayNumbers) {
  execute(
      "update ItemDescriptorPrice set notes = 'no bleach', printnotes = 1 where priceListItemId = 102 and "
      "descriptorName = 'Navy'");
  execute("update PriceListItem set notes = 'press flat', printNotes = 1 where priceListItemId = 102");
  execute(
      "update TicketLineItem set itemNotes = 'left cuff', quantity = 2 where ticketNumber = 1011 and "
      "lineItemName = 'Navy'");
  EXPECT_EQ(session.getLineItemsGroupDetails()->recordCount(), 0);
  add({1011, 1010, 1010, 4711});
  // The store gives the lines by ticket. Coupon 1 of 4.00 and 1.00 shows once; a brand is a modifier, and a
  // modifier has no invoice number.
  EXPECT_THAT(shown(),
              ElementsAre("1001 -1 IT 2 Wash and Fold Bag 40  5010 ", "1002 -1 IT 1 Hem Pants 10  5010 ",
                          "1003 -1 CU 1 5 Off 25 5  5010 ", "1 -1 IT 1 Jacket 9 press flat 5011 ",
                          "2 1 CO 2 Navy 0 no bleach  ", "3 1 BR 1 Ardenvale 0   ",
                          "4 -1 SU 1 Environmental Fee 0.18  5011 ", "5 -1 TA 1 State Sales Tax 0.55  5011 ",
                          "6 -1 TA 1 City Tax 0.23  5011 "));
  // On a receipt a brand stands beside the colors.
  const RecordsetRef groups = session.getLineItemsGroupDetails();
  EXPECT_EQ(groups->integer("quantity"), 2);
  groups->moveNext();
  groups->moveNext();
  EXPECT_EQ(groups->text("itemDesc"), "Jacket press flat");
  EXPECT_EQ(groups->text("colorPatternDesc"), "2 Navy no bleach left cuff, Ardenvale");
  EXPECT_EQ(groups->number("total"), 9);
}

TEST_F(PickupSession, PiecesCountByPackUnlessSold) {
  add({1007});  // two pants and a suit of two pieces
  EXPECT_EQ(session.getTotalItemCount(), 4);
  execute("update TicketLineItem set saleOnly = 1 where ticketNumber = 1007 and lineItemNumber = 4");
  session.populateLineItemsToDisplay();
  EXPECT_EQ(session.getTotalItemCount(), 3);
}

TEST_F(PickupSession, WhatCannotBeReadIsNotShown) {
  StatementFaults faults;
  faults.attachTo(*apartment);
  add({1011});
  const size_t all = shown().size();
  faults.failStatement(1);
  session.populateLineItemsToDisplay();
  EXPECT_TRUE(shown().empty());
  faults.failStatement(2);  // the note of the color
  session.populateLineItemsToDisplay();
  EXPECT_EQ(shown().size(), all);
  // A line that does not fit takes no other with it, nor does an entry that is no ticket.
  execute("update TicketLineItem set quantity = null where ticketNumber = 1010 and ticketLineType = 'CU'");
  session.initPickupObject();
  add({1010});
  EXPECT_EQ(session.displayRst->recordCount(), 2) << "the garments";
  session.pickupInvoices->add(1, "no ticket");
  session.populateLineItemsToDisplay();
  EXPECT_EQ(session.displayRst->recordCount(), 0);
}

TEST_F(PickupSession, MarksTheLinesThatGoOut) {
  add({1013, 1014, 1011});
  EXPECT_EQ(session.getTicketNumberFromLine(2003).toLong(), 1011);
  EXPECT_EQ(session.getTicketLineNumberFromLine(2003).toLong(), 3);
  for (const double line : {3001.0, -1.0, 1e300, std::numeric_limits<double>::quiet_NaN()})
    EXPECT_EQ(errorOf([&] { session.getTicketNumberFromLine(line); }), 9) << line;
  statements();
  session.markLinePickedUp("", 2003);
  EXPECT_THAT(reads(), ElementsAre(" update ticketlineitem set pickedup = 1  where ticketnumber = 1011 and "
                                   "lineitemnumber = 3"));
  session.markInvoicePickedUp("5011");
  EXPECT_EQ(session.displayRst->recordCount(), 4) << "stays filtered";
  EXPECT_THAT(rows("select lineItemNumber from TicketLineItem where ticketNumber = 1011 and pickedup = 1"),
              ElementsAre("1", "3", "4", "5", "6"));
}

TEST_F(PickupSession, ListsOfTheTickets) {
  EXPECT_EQ(session.constructTicketNosString(), "");
  session.addInvoiceObjToPickup(std::make_shared<Invoice>());
  EXPECT_EQ(session.constructTicketNosString(), "''");
  EXPECT_EQ(session.getTicketNosForPrinting().toText(), "");
  add({1013, 1014});
  EXPECT_EQ(session.constructTicketNosStrForInvDetails(), "0,1013,1014");
  EXPECT_EQ(session.constructTicketNosString(), "'''1013'',''1014'''");
  EXPECT_EQ(session.getTicketNosForPrinting().toText(), "1013,1014");
  EXPECT_EQ(session.getInvoiceNosForPrinting().toText(), ", 5013, 5014");
  session.pickupInvoices = nullptr;
  EXPECT_EQ(session.constructTicketNosString(), "");
  EXPECT_EQ(errorOf([&] { session.reloadInvoices(); }), 91);
}

TEST_F(PickupSession, TheReleaseIsLoggedWithTheEmployeesName) {
  add({1013, 1014});
  statements();
  session.recordPickupAction(4);
  EXPECT_THAT(rows("select ticketnumber, logtype, employeename from ticketlog where ticketnumber > 1012"),
              ElementsAre("1013 | R | Pat O'Dell", "1014 | R | Pat O'Dell"));
  EXPECT_EQ(reads()[1],
            " insert into ticketlog (ticketnumber, logdate, logtype, employeename)  values ( 1013,  "
            "getdate(),  'R',  'Pat O''Dell'  ) ");
  EXPECT_TRUE(session.getEmployeeName(" ").isEmpty());
  EXPECT_TRUE(session.getEmployeeName(99).isEmpty());
}

// Written at 09:30. The age counts minutes begun, so the seconds of the hour make no difference.
TEST_F(PickupSession, ATicketEarnsThePrepayDiscountForTwoHours) {
  const struct {
    const char* written;
    Date now;
    double total, discount;
  } cases[] = {{"'2026-11-24 09:30'", Date::of(2026, 11, 24, 10, 30), 43.91, 2},
               {"'2026-11-24 09:30'", Date::of(2026, 11, 24, 11, 30, 59), 43.91, 2},
               {"'2026-11-24 09:30'", Date::of(2026, 11, 24, 11, 31), 41.91, 0},
               {"null", Date::of(2026, 11, 24, 10, 30), 41.91, 0}};
  for (const auto& row : cases) {
    clock->set(row.now);
    execute(std::string("update Ticket set createdDate = ") + row.written + " where ticketNumber = 1007");
    Pickup prepay;
    start(prepay, 1, "prepay");
    prepay.addInvoiceToPrepay(1007);
    EXPECT_TRUE(prepay.isPrepay().toBoolean());
    EXPECT_NEAR(prepay.getTotal().toDouble(), row.total, 1e-9);
    EXPECT_EQ(prepay.getPrepayDiscount().toDouble(), row.discount);
    EXPECT_NEAR(prepay.getAmountDue().toDouble(), 41.91, 1e-9);
  }
}

// Two bags 40.00 with 1.00 back for each, and a quilt 40.00 of which 20 % are asked for at drop-off.
TEST_F(PickupSession, AnUnsavedInvoiceStaysAsItIs) {
  const auto invoice = std::make_shared<Invoice>();
  invoice->storeNumber = invoice->priceListId = 1;
  invoice->custSeqNumber = 15;
  invoice->excludeTaxes = true;
  invoice->setStoreDays(1);
  invoice->addItem2(301, 2);
  invoice->addItem2(410, 1);
  session.addInvoiceObjToPickup(invoice);
  EXPECT_EQ(session.getTotal().toDouble(), 80);
  EXPECT_EQ(session.getPrepayDiscount().toDouble(), 2);
  EXPECT_EQ(session.getAmountDue().toDouble(), 78);
  EXPECT_EQ(session.getMinimumPrepayAmount().toDouble(), 8);
  EXPECT_EQ(invoice->getInvoiceAmountToPay(), 80);
  EXPECT_EQ(session.lastInvoiceObj, invoice);
  EXPECT_EQ(errorOf([&] { session.addInvoiceObjToPickup(invoice); }), 457);
  add({1013});
  execute("update Ticket set netTotal = 99 where ticketNumber = 1013");
  session.reloadInvoices();
  EXPECT_EQ(session.getTotal().toDouble(), 100) << "not read anew beside an unsaved invoice";
}

TEST_F(PickupSession, ReloadingKeepsThePayments) {
  add({1013});
  pay(session, 30, "On Account");
  pay(session, 10, "Cash");
  session.openCashDrawer = false;
  execute("update Ticket set netTotal = 35 where ticketNumber = 1013");
  session.reloadInvoices();
  EXPECT_EQ(session.getTotal().toDouble(), 35);
  EXPECT_EQ(session.getChangeDue().toDouble(), 5);
  EXPECT_TRUE(session.openCashDrawer);
}

// 1013 at 20.00 is below what coupon 1 asks for; 1014 takes its 5.00, and then no other does. Coupon 3 gives
// 20 % of each.
TEST_F(PickupSession, AFlatCouponGoesOnOneTicketAPercentageOnAll) {
  const auto totals = [&] {
    return rows(
        "select netTotal, couponTotal from Ticket where ticketNumber in (1013, 1014, 1015) order by "
        "ticketNumber");
  };
  add({1013, 1014, 1015});
  EXPECT_EQ(session.getDiscountType(1).toLong(), 1);
  EXPECT_EQ(session.getDiscountType(3).toLong(), 2);
  EXPECT_EQ(session.getDiscountType(99).toLong(), -1);
  statements();
  session.addCoupon(99, false, 4, 3, "Pat O'Dell", "Fernhill");
  EXPECT_THAT(reads(), Contains(HasSubstr("as lotid, prepayEnabled FROM")).Times(3)) << "all were looked at";
  EXPECT_THAT(totals(), ElementsAre("20 | 0", "40 | 0", "28 | 0"));
  session.addCoupon(1, false, 4, 3, "Pat O'Dell", "Fernhill");
  EXPECT_THAT(totals(), ElementsAre("20 | 0", "35 | 5", "28 | 0"));
  session.addInvoiceCoupon(" 5015 ", 3, true, 4, 3, "Pat O'Dell", "Fernhill");
  EXPECT_THAT(totals(), ElementsAre("20 | 0", "35 | 5", "22.4 | 5.6"));
  // With one discount a ticket only 1013 has room, but once a ticket had, those behind it count as having it:
  // 40.00 - 5.00 - 8.00, and 5.60 once more.
  session.addCoupon(3, true, 4, 3, "Pat O'Dell", "Fernhill");
  EXPECT_THAT(totals(), ElementsAre("16 | 4", "27 | 13", "16.8 | 11.2"));
  session.reloadInvoices();
  EXPECT_THAT(shown(), Contains("3 -1 CU 1 20 Percent, At Most 10 4  5013 "));
}

TEST_F(PickupSession, AfterAnErrorTheTicketsBeforeItHaveTheCoupon) {
  const Procedure update = *storeProcedures().find("UpdateTicket");
  store.replaceProcedure(update.name, update.least, update.most, [&](ProcedureCall& call) {
    if (call.integer(0) == 1014) throw Error(ErrorNumber::StatementFailed, "", "");
    return update.body(call);
  });
  add({1013, 1014, 1015});
  EXPECT_NE(errorOf([&] { session.addCoupon(3, false, 4, 3, "", ""); }), 0);
  EXPECT_THAT(rows("select netTotal from Ticket where ticketNumber > 1012"), ElementsAre("16", "40", "28"));
}

TEST_F(PickupSession, CouponsToChooseFromStandOnce) {
  add({1013, 1014});
  const auto names = [](const RecordsetRef& coupons) {
    std::vector<int> ids;
    for (; !coupons->eof(); coupons->moveNext()) ids.push_back(coupons->integer("discountId"));
    return ids;
  };
  // 2, 3 and 17 are percentages, 10 and 15 ask for nothing; 1 wants 25.00, 8 two pieces.
  EXPECT_THAT(names(session.getInvoiceCouponRst("5013")), ElementsAre(2, 3, 10, 15, 17));
  EXPECT_THAT(names(session.getDisplayCouponRst()), ElementsAre(2, 3, 10, 15, 17, 1, 8));
}

}  // namespace
}  // namespace ondrel
