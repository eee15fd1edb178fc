// The customer at the till: Session.pickup, an object of the library. A customer collects tickets ("pickup")
// or pays ahead for tickets that are still in the shop ("prepay"). What the screen shows of it is in
// till_screen.js.
var desk = Server.include("shared/desk.js");
var text = Server.include("shared/text.js");
var cards = Server.include("shared/cards.js");
var credit = Server.include("shared/credit.js");
var tickets = Server.include("shared/tickets.js");
var customers = Server.include("shared/customers.js");

// The tenders that the counter takes by hand: what their reference is called, and whether change is given on
// them.
// clang-format off
exports.tenders = [
  ["Cash",             "",                   true],
  ["Check",            "Check number",       true],
  ["Gift Certificate", "Certificate number", false],
  ["GiftCard",         "Card number",        false],
  ["On Account",       "",                   false]
];
// clang-format on

// Those of them that the shop takes; a shop that lists none takes all. Only who has an account buys on it.
exports.tendersHere = function(session) {
  var taken = text.rows(
    Database.query("select paymentTypeName from StorePaymentType where storeId = " + desk.place().store),
    function(field) { return field("paymentTypeName"); });
  return exports.tenders.filter(function(one) {
    return (!taken.length || taken.indexOf(one[0]) >= 0) &&
      (one[0] !== "On Account" || credit.hasAccount(session.custSeqNumber));
  });
};

exports.isCardTaken = function() {
  return cards.isThere() &&
    !Database
       .query(
         "select paymentTypeName from StorePaymentType where paymentTypeName = 'Credit Card' and storeId = " +
         desk.place().store)
       .EOF;
};

// ---- the visit

// Begins a visit at the till.
exports.start = function(customerId, numbers, action) {
  var session = CreateObject("OndrelCorpComponents.pickup");
  session.DBConnectionString = Database.connectionString;
  session.storeid = desk.place().store;
  session.custSeqNumber = customerId;
  session.userAction = action;
  session.initStorePaymentTypeInfo();
  Session.pickup = session;
  Session.tillCoupons = [];
  numbers.forEach(put);
  exports.refresh(session);
};

// The library only takes tickets in: one is left by beginning again without it, with the tenders as they are.
exports.leave = function(session, number) {
  var tendered = text.rows(session.payments.Clone(), function(field) {
    return [
      field("amountPaid"), field("paymentType"), field("checkCardNo"), field("creditCardExpDate"),
      field("creditCardType"), field("amountPaid"), field("approvalCode"), field("transactionNo")
    ].map(function(value) { return value === null || value === undefined ? "" : value; });
  });
  var coupons = Session.tillCoupons;
  exports.start(
    session.custSeqNumber, exports.numbers().filter(function(one) { return one !== number; }),
    session.userAction);
  Session.tillCoupons = coupons;
  tendered.forEach(function(one) { Session.pickup.addPayment.apply(Session.pickup, one); });
};

// The visit that the request is about, with its tickets as they stand now; null when it is another one by
// now.
exports.meant = function(number) {
  if (!desk.isMeant("pickup", number)) return null;
  Session.tables = "";
  return Session.pickup;
};

exports.numbers = function() { return Session.pickup.pickupInvoices.Keys().map(Number); };

function put(number) {
  if (Session.pickup.isPrepay()) Session.pickup.addInvoiceToPrepay(number);
  else Session.pickup.addInvoiceToPickup(number);
}
exports.add = function(number) {
  put(number);
  exports.refresh(Session.pickup);
};

// Tickets with money or garments in them: a bag goes out when it has been itemised.
exports.addTrouble = function(session, number) {
  var ticket =
    customers.openTickets(session.custSeqNumber).filter(function(one) { return one.number === number; })[0];
  if (!ticket) return "This ticket is no longer here.";
  return ticket.isBag ? "Itemise the bag first." : "";
};

// ---- what tickets cost and what is open on them

// A ticket that is paid ahead is priced with its discount, which surcharges and taxes follow; the session
// only knows the discount itself. What the price list demands to be paid ahead goes with it.
function paidAhead(ticket, number) {
  var invoice = tickets.loaded(number), isEarned = ticket.prepayDiscount > 0;
  var least = invoice.getMinimumPrepay();
  if (!isEarned || invoice.isPrepayEnabled())
    return { price: ticket.invoiceTotal - ticket.prepayDiscount, least: least };
  invoice.setStoreDays(desk.place().store);
  invoice.applyPrepay(true);
  invoice.invoiceDone2();
  return { price: invoice.getInvoiceAmountToPay(), least: least };
}

// Tickets, gift cards and card sales as they stand now: another counter may have been at them since. True
// when the tickets are as they were shown.
exports.refresh = function(session) {
  session.reloadInvoices();
  var sums = [session.getTotal(), session.getAmountPrepaid(), session.getPrepayDiscount()].join();
  var isSame = Session.tillSums === sums;
  Session.tillSums = sums;
  Session.tillAhead = {};
  if (session.isPrepay())
    exports.numbers().forEach(function(
      number) { Session.tillAhead[number] = paidAhead(session.pickupInvoices.Item(number), number); });
  Session.tables = "";
  return isSame;
};

// Each ticket of the visit: what it costs without and with the discount of who pays ahead, and what is open
// or too much.
exports.balances = function(session) {
  return exports.numbers().map(function(number) {
    var ticket = session.pickupInvoices.Item(number), ahead = Session.tillAhead[number];
    var total = text.cents(ticket.invoiceTotal - ticket.prepayDiscount);
    var price = ahead ? text.cents(ahead.price) : total;
    var balance = text.cents(price - ticket.amountPaid);
    return {
      number: number,
      invoice: ticket.InvoiceNumber,
      total: total,
      price: price,
      paid: ticket.amountPaid,
      least: ahead ? ahead.least : 0,
      owed: Math.max(balance, 0),
      credit: Math.max(-balance, 0)
    };
  });
};

function sum(list, name) {
  return text.cents(list.reduce(function(all, one) { return all + one[name]; }, 0));
}

// All sums of the screen. Change comes out of cash and checks of this visit alone; what any other tender has
// too much has to be taken off, and what was paid too much on an earlier day is a credit.
exports.sums = function(session) {
  var all = exports.balances(session);
  var owed = sum(all, "owed"), tendered = exports.tendered(session), over = text.cents(tendered - owed);
  var change =
    Math.min(Math.max(over, 0), exports.tendered(session, "Cash") + exports.tendered(session, "Check"));
  return {
    total: sum(all, "total"),
    discount: text.cents(sum(all, "total") - sum(all, "price")),
    paid: sum(all, "paid"),
    least: sum(all, "least"),
    tendered: tendered,
    due: Math.max(-over, 0),
    change: text.cents(change),
    excess: text.cents(Math.max(over, 0) - change),
    credit: session.isPrepay() ? 0 : sum(all, "credit")
  };
};
exports.due = function(session) { return exports.sums(session).due; };
exports.change = function(session) { return exports.sums(session).change; };

// What was tendered in this visit, by all or by one kind of tender.
exports.tendered = function(session, type) {
  return text.cents(total(session, function(field) { return !type || field("paymentType") === type; }));
};

function total(session, test) {
  return text
    .rows(session.payments.Clone(), function(field) { return test(field) ? field("amountPaid") : 0; })
    .reduce(function(all, one) { return all + one; }, 0);
}

// ---- tenders

// What is wrong with a gift card, or nothing.
function giftCardTrouble(session, number, amount) {
  var card = Database.query("select giftValue from GIFTCARD where giftCardId = " + number);
  if (card.EOF) return "There is no gift card " + number + ".";
  var left = card.Fields("giftValue").Value -
    total(session,
          function(field) { return field("paymentType") === "GiftCard" && field("checkCardNo") === number; });
  return left < -0.001 || amount > left + 0.001 ? "The gift card has " + text.money(left) + " left." : "";
}

var referenceSize = 50;

// A reference as the books take it: a gift card by its number alone, however many zeros stand before it.
exports.referenceOf = function(type, value) {
  var reference = String(value || "").replace(/^\s+|\s+$/g, "");
  return type === "GiftCard" ? String(text.whole(reference)) : reference;
};

// What keeps this tender from being taken, or nothing. Beyond what is due only that is taken which gives
// change.
exports.tenderTrouble = function(session, type, amount, reference) {
  var known = exports.tendersHere(session).filter(function(one) { return one[0] === type; })[0];
  if (!known) return "There is no such tender.";
  if (!exports.numbers().length) return "No ticket is chosen.";
  if (!amount) return "This is not an amount.";
  if (known[1] && !reference) return known[1] + " is missing.";
  if (reference.length > referenceSize) return known[1] + " takes " + referenceSize + " letters at most.";
  // It goes into the books as it stands.
  if (!/^[\w .#\/-]*$/.test(reference)) return known[1] + " takes letters and digits only.";
  if (reference.replace(/\D/g, "").length > 12) return "This looks like the number of a payment card.";
  if (!known[2] && amount > exports.due(session))
    return "No change is given on this: take " + text.money(exports.due(session)) + " at most.";
  return type === "GiftCard" ? giftCardTrouble(session, reference, amount) : "";
};

// What the clerk is asked before a tender is taken: a slip of the finger in the amount, money back for a
// check.
exports.tenderQuestion = function(session, type, amount) {
  var due = exports.due(session);
  if (type === "Cash" && amount > 10 * Math.max(due, 1))
    return "Cash of " + text.money(amount) + " for " + text.money(due) + "?";
  if (type === "Check" && amount > due)
    return "A check of " + text.money(amount) + " for " + text.money(due) + ": give " +
      text.money(amount - due) + " back in cash?";
  return "";
};

exports.takeSale = function(session, sale) {
  session.addPayment(
    sale.amount, "Credit Card", sale.number, sale.expiration, sale.brand, sale.amount, sale.code,
    sale.transaction);
};

exports.unusedSales = function(session) {
  return cards.unused(
    session.custSeqNumber,
    text.rows(session.payments.Clone(), function(field) { return field("transactionNo"); }));
};

// The ledger shares tenders out in their order and books none beyond what is open: those that give change
// come last, so that what the drawer holds of each is what the ledger says.
exports.inOrder = function(session) {
  session.payments.Filter = 0;
  session.payments.Sort = "paymentType desc, paymentNumber";
};

// ---- coupons, saved on the tickets at once

function couponWork(session, number, work) {
  var place = desk.place(), employee = desk.employee();
  var invoice = tickets.loaded(number);
  invoice.setStoreDays(place.store);
  work(invoice);
  var setup = Database.query("select oneDiscountPerInvoice from miscsetup where storeid = " + place.store);
  invoice.invoiceDone(
    !setup.EOF && setup.Fields(0).Value,
    Database.query("Select taxCode, description, taxPercent FROM Tax Where storeID = '" + place.store + "'"));
  invoice.saveInvoice("edit", employee.id, place.terminal, "0", employee.name, place.storeName, true);
}

function couponLines(id) { return "itemType='CU' and lineItemId=" + id; }

function hasCoupon(number, id) {
  return !Database
            .query(
              "select lineItemNumber from TicketLineItem where ticketLineType = 'CU' and lineItemId = " + id +
              " and ticketNumber = " + number)
            .EOF;
}

// The tickets of the visit that a coupon is on.
exports.ticketsOfCoupon = function(
  id) { return exports.numbers().filter(function(number) { return hasCoupon(number, id); }); };

exports.couponName = function(id) {
  var found = Database.query("select isnull(discountName, '') from Discount where discountID = " + id);
  return found.EOF ? "" : found.Fields(0).Value;
};

exports.addCoupon = function(session, id) {
  var employee = desk.employee(), place = desk.place();
  var one = Database.query("select oneDiscountPerInvoice from miscsetup where storeid = " + place.store);
  session.addCoupon(
    id, !one.EOF && one.Fields(0).Value, employee.id, place.terminal, employee.name, place.storeName);
};

exports.takeCouponOff = function(session, id, numbers) {
  numbers.filter(function(number) { return hasCoupon(number, id); }).forEach(function(number) {
    couponWork(session, number, function(invoice) {
      for (var line; (line = tickets.lineOf(invoice, couponLines(id))) > 0; invoice.lineItems.Filter = 0)
        invoice.removeCoupon(line);
    });
  });
};

// ---- paying

// The ledger's last row, by which a visit knows what it booked itself.
exports.ledgerEnd =
  function() { return Database.query("select isnull(max(paymentId), 0) from Payment").Fields(0).Value; };

// What this visit has in the ledger: {amount, isOut} with isOut when its tickets have been handed out.
exports.booked = function(session) {
  var list = exports.numbers().concat(0).join(",");
  var sum = Database
              .query(
                "select isnull(sum(paymentAmount), 0) from Payment where paymentId > " +
                (Session.tillLedger || 0) + " and terminalId = " + desk.place().terminal +
                " and paymentAction in ('Pickup', 'Pre pay') and ticketNumber in (" + list + ")")
              .Fields(0)
              .Value;
  var inside =
    Database
      .query("select count(*) from Ticket where ticketStatus <> 'FI' and ticketNumber in (" + list + ")")
      .Fields(0)
      .Value;
  return { amount: text.cents(sum), isOut: exports.numbers().length > 0 && inside === 0 };
};

// True when the tenders of the visit stand in the ledger.
exports.isBooked = function(session) {
  var booked = exports.booked(session);
  return session.isPrepay() ? booked.amount > 0 : booked.isOut;
};


// What keeps the tenders from being booked, or nothing.
exports.payTrouble = function(session) {
  var open = customers.openTickets(session.custSeqNumber).map(function(ticket) { return ticket.number; });
  if (exports.numbers().some(function(number) { return open.indexOf(number) < 0; }))
    return "A ticket is no longer here: leave it out.";
  if (!exports.refresh(session)) return "The tickets have changed meanwhile: look again.";
  return exports.whyNot(session) ||
    text
      .rows(
        session.payments.Clone(),
        function(field) {
          if (field("paymentType") === "GiftCard") return giftCardTrouble(session, field("checkCardNo"), 0);
          if (field("paymentType") !== "Credit Card") return "";
          return cards.restOf(field("transactionNo")) + 0.001 < field("amountPaid") ?
            "The card sale of " + text.money(field("amountPaid")) + " has been used meanwhile: take it off." :
            "";
        })
      .filter(function(one) { return one; })[0] ||
    "";
};

// Why Pay is off, in words; nothing when it is on.
exports.whyNot = function(session) {
  var sums = exports.sums(session);
  if (!exports.numbers().length) return "No ticket is chosen.";
  if (cards.waiting(session.custSeqNumber)) return "The card terminal is still at work.";
  if (sums.credit > 0) return text.money(sums.credit) + " was paid too much earlier: settle that first.";
  if (sums.excess > 0)
    return "The tenders are " + text.money(sums.excess) +
      " more than what is due, and no change is given on them: take one off.";
  if (session.isPrepay()) return session.payments.RecordCount > 0 ? "" : "Nothing is tendered yet.";
  return sums.due > 0 ? text.money(sums.due) + " is still due." : "";
};

// What the clerk is asked before tickets go out or less than the price list demands is paid ahead.
exports.payQuestions = function(session) {
  var now = Server.now(), today = new Date(now.getFullYear(), now.getMonth(), now.getDate(), 23, 59, 59);
  var sums = exports.sums(session), chosen = exports.numbers();
  if (session.isPrepay())
    return sums.paid + sums.tendered - sums.change < sums.least - 0.001 ?
      ["At least " + text.money(sums.least) + " is to be paid ahead. Take less?"] :
      [];
  return customers.openTickets(session.custSeqNumber)
    .filter(function(ticket) { return chosen.indexOf(ticket.number) >= 0 && ticket.state !== "ready"; })
    .map(function(ticket) {
      return ticket.invoice +
        (ticket.due && ticket.due > today ? " is not due before " + text.day(ticket.due) :
                                            " is not on the rack") +
        ". Hand it out?";
    });
};
