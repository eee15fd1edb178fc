// The customer at the till: Session.pickup, an object of the library, and the screen's parts. A customer collects
// tickets ("pickup") or pays ahead for tickets that are still in the shop ("prepay").
var desk = Server.include("shared/desk.js");
var text = Server.include("shared/text.js");
var cards = Server.include("shared/cards.js");
var tickets = Server.include("shared/tickets.js");
var customers = Server.include("shared/customers.js");

// The tenders that the counter takes by hand: what their reference is called, and whether change is given on them.
exports.tenders = [
  ["Cash",             "",                   true],
  ["Check",            "Check number",       true],
  ["Gift Certificate", "Certificate number", false],
  ["GiftCard",         "Card number",        false],
  ["On Account",       "",                   false]
];

// Those of them that the shop takes; a shop that lists none takes all. Only who has an account buys on it.
exports.tendersHere = function (session) {
  var account = Database.query("select customerSequenceNumber from Customer where (temporaryaccount = 1 or permanentaccount = 1) and customerSequenceNumber = " + session.custSeqNumber);
  var taken = text.rows(Database.query("select paymentTypeName from StorePaymentType where storeId = " + desk.place().store), function (field) { return field("paymentTypeName"); });
  return exports.tenders.filter(function (one) { return (!taken.length || taken.indexOf(one[0]) >= 0) && (one[0] !== "On Account" || !account.EOF); });
};

exports.isCardTaken = function () {
  return cards.isThere() && !Database.query("select paymentTypeName from StorePaymentType where paymentTypeName = 'Credit Card' and storeId = " + desk.place().store).EOF;
};

// Begins a visit at the till, or begins it again with other tickets.
exports.start = function (customerId, numbers, action) {
  var session = CreateObject("OndrelCorpComponents.pickup");
  session.DBConnectionString = Database.connectionString;
  session.storeid = desk.place().store;
  session.custSeqNumber = customerId;
  session.userAction = action;
  session.initStorePaymentTypeInfo();
  Session.pickup = session;
  numbers.forEach(put);
  exports.refresh(session);
};

// The visit that the request is about, with its tickets as they stand now; null when it is another one by now.
exports.meant = function (number) {
  if (!desk.isMeant("pickup", number)) return null;
  Session.tables = "";
  return Session.pickup;
};

// What the tickets cost less than the session says when their prepay discount is taken: surcharges and taxes follow it.
function excess(session) {
  if (!session.isPrepay()) return 0;
  return exports.numbers().reduce(function (sum, number) {
    var ticket = session.pickupInvoices.Item(number);
    if (!(ticket.prepayDiscount > 0)) return sum;
    var invoice = tickets.made();
    invoice.getExistingDetails(number);
    invoice.setStoreDays(desk.place().store);
    invoice.applyPrepay(true);
    invoice.invoiceDone2();
    return sum + ticket.invoiceTotal - ticket.prepayDiscount - invoice.getInvoiceAmountToPay();
  }, 0);
}

function open(session) {
  return Math.round((session.getTotal() - session.getPrepayDiscount() - Session.tillExcess - session.getAmountPaid()) * 100) / 100;
}
exports.due = function (session) { return Math.max(open(session), 0); };
exports.change = function (session) { return Math.min(Math.max(-open(session), 0), session.getCashPaid()); };

// Tickets, gift cards and card sales as they stand now: another counter may have been at them since. True when the
// tickets are as they were shown.
exports.refresh = function (session) {
  session.reloadInvoices();
  var sums = [session.getTotal(), session.getAmountPrepaid(), session.getPrepayDiscount()].join();
  var isSame = Session.tillSums === sums;
  Session.tillSums = sums;
  Session.tillExcess = excess(session);
  Session.tables = "";
  return isSame;
};

// What keeps the tenders from being booked, or nothing.
exports.payTrouble = function (session) {
  var open = customers.openTickets(session.custSeqNumber).map(function (ticket) { return ticket.number; });
  if (exports.numbers().some(function (number) { return open.indexOf(number) < 0; })) return "A ticket is no longer here: leave it out.";
  if (!exports.refresh(session)) return "The tickets have changed meanwhile: look again.";
  return text.rows(session.payments.Clone(), function (field) {
    if (field("paymentType") === "GiftCard") return giftCardTrouble(session, field("checkCardNo"), 0);
    if (field("paymentType") !== "Credit Card") return "";
    return cards.restOf(field("transactionNo")) + 0.001 < field("amountPaid") ? "The card sale of " + text.money(field("amountPaid")) + " has been used meanwhile: take it off." : "";
  }).filter(function (one) { return one; })[0] || "";
};

// Tickets with money or garments in them: a bag goes out when it has been itemised.
function ticketOf(session, number) {
  return customers.openTickets(session.custSeqNumber).filter(function (one) { return one.number === number; })[0];
}
exports.addTrouble = function (session, number) {
  var ticket = ticketOf(session, number);
  if (!ticket) return "This ticket is no longer here.";
  return ticket.isBag ? "Itemise the bag first." : "";
};

exports.numbers = function () {
  return Session.pickup.pickupInvoices.Keys().map(Number);
};

function put(number) {
  if (Session.pickup.isPrepay()) Session.pickup.addInvoiceToPrepay(number);
  else Session.pickup.addInvoiceToPickup(number);
}
exports.add = function (number) {
  put(number);
  exports.refresh(Session.pickup);
};

function total(session, test) {
  return text.rows(session.payments.Clone(), function (field) { return test(field) ? field("amountPaid") : 0; }).reduce(function (sum, one) { return sum + one; }, 0);
}

// What is wrong with a gift card, or nothing.
function giftCardTrouble(session, number, amount) {
  var card = Database.query("select giftValue from GIFTCARD where giftCardId = " + number);
  if (card.EOF) return "There is no gift card " + number + ".";
  var left = card.Fields("giftValue").Value - total(session, function (field) { return field("paymentType") === "GiftCard" && field("checkCardNo") === number; });
  return left < -0.001 || amount > left + 0.001 ? "The gift card has " + text.money(left) + " left." : "";
}

// A reference as the books take it: a gift card by its number alone, however many zeros stand before it.
exports.referenceOf = function (type, value) {
  var reference = String(value || "").replace(/^\s+|\s+$/g, "").substr(0, 50);
  return type === "GiftCard" ? String(text.whole(reference)) : reference;
};

// What keeps this tender from being taken, or nothing. Beyond what is due only that is taken which gives change.
exports.tenderTrouble = function (session, type, amount, reference) {
  var known = exports.tendersHere(session).filter(function (one) { return one[0] === type; })[0];
  if (!known) return "There is no such tender.";
  if (!exports.numbers().length) return "No ticket is chosen.";
  if (!amount) return "This is not an amount.";
  if (known[1] && !reference) return known[1] + " is missing.";
  // It goes into the books as it stands.
  if (!/^[\w .#\/-]*$/.test(reference)) return known[1] + " takes letters and digits only.";
  if (reference.replace(/\D/g, "").length > 12) return "This looks like the number of a payment card.";
  if (!known[2] && amount > exports.due(session)) return "No change is given on this: take " + text.money(exports.due(session)) + " at most.";
  return type === "GiftCard" ? giftCardTrouble(session, reference, amount) : "";
};

exports.takeSale = function (session, sale) {
  session.addPayment(sale.amount, "Credit Card", sale.number, sale.expiration, sale.brand, sale.amount, sale.code, sale.transaction);
};

exports.unusedSales = function (session) {
  return cards.unused(session.custSeqNumber, text.rows(session.payments.Clone(), function (field) { return field("transactionNo"); }));
};

// ---- the screen's parts

function amounts(session) {
  var discount = session.getPrepayDiscount();
  return [["Total", session.getTotal()]].concat(discount ? [["Prepay discount", -discount - Session.tillExcess]] : []).concat(
    [["Paid", session.getAmountPaid()], ["Change", exports.change(session)], ["Due", exports.due(session)]]);
}

function tenderRows(session) {
  return text.rows(session.payments.Clone(), function (field) {
    return "<tr><th scope=\"row\">" + text.encoded(field("paymentType")) + "</th><td>" + text.encoded(field("checkCardNo")) + "</td><td class=\"money\">" + text.money(field("amountPaid")) +
           "</td><td><button class=\"quiet\" data-off=\"" + field("paymentNumber") + "\">Take off</button></td></tr>";
  }).join("");
}

// The tickets of the customer: those of the session with their lines, the others to be added.
function ticketParts(session) {
  var chosen = exports.numbers();
  var words = session.isPrepay() ? ["Not now", "Pay for it"] : ["Leave it here", "Collect"];
  return customers.openTickets(session.custSeqNumber).map(function (ticket) {
    var within = chosen.indexOf(ticket.number) >= 0;
    var racks = Database.query("select dbo.pivotTicketRackLocationBrief(" + ticket.number + ", ', ') as rack").Fields("rack").Value;
    return "<section class=\"paper\"><h2>" + text.encoded(ticket.invoice) + "</h2><p>" + (racks ? "Rack " + text.encoded(racks) : "<strong>Not on the rack</strong>") + " &middot; due " +
           text.day(ticket.due) + (ticket.state ? " <strong>" + ticket.state + "</strong>" : "") + " &middot; " + ticket.pieces + (ticket.pieces === 1 ? " piece" : " pieces") + " &middot; " +
           text.money(ticket.total - ticket.paid) + " to pay</p>" + (within ? lines(session, ticket) : "") + "<button data-ticket=\"" + ticket.number +
           "\" data-within=\"" + (within ? 1 : "") + "\"" + (ticket.isBag && !within ? " disabled" : "") + ">" + (ticket.isBag && !within ? "Not itemised yet" : words[within ? 0 : 1]) + "</button></section>";
  }).join("");
}

// The garments of a ticket: what was said about them, a day of their own, and whether they have gone out already.
function lines(session, ticket) {
  var rows = session.displayRst.Clone(), children = session.displayRst.Clone();
  rows.Filter = "ticketNumber=" + ticket.number;
  var list = text.rows(rows, function (field) {
    var kind = field("itemType");
    if (kind !== "IT" && kind !== "DE" && kind !== "AC") return "";
    var due = field("dueDate"), own = due && ticket.due && text.day(due) !== text.day(ticket.due) ? text.day(due) : "";
    children.Filter = "ticketNumber=" + ticket.number + " and parentLineNumber=" + field("lineNumber");
    var hanging = text.rows(children, function (child) { return child("itemName"); });
    var small = hanging.concat([field("heatSeal"), field("notes"), field("promptResponse"), own, field("pickedUp") ? "handed out" : ""]).filter(function (one) { return one; });
    return "<li>" + field("quantity") + " " + text.encoded(field("itemName") || field("deptName")) + " <span class=\"small\">" + text.encoded(small.join(", ")) + "</span></li>";
  }).join("");
  return "<ul>" + list + "</ul>";
}

function saleParts(session) {
  if (cards.waiting(session.custSeqNumber))
    return "<p class=\"notice\" data-waiting>The card terminal is at work&hellip; <button class=\"quiet\" data-give-up>Do not wait</button></p>";
  var other = cards.isThere() ? cards.busyWith() : 0;
  return (other ? "<p class=\"notice\">The card terminal waits for the sale of another customer. <button class=\"quiet\" data-give-up>Do not wait</button></p>" : "") + exports.unusedSales(session).map(function (one) {
    return "<p>Approved on a card: " + text.money(one.rest) + " <button class=\"quiet\" data-sale=\"" + text.encoded(one.transaction) + "\">Use it</button></p>";
  }).join("");
}

// Reads every ticket of the visit, so it is asked for when it is looked at.
exports.coupons = function (session) {
  return text.rows(session.getDisplayCouponRst(), function (field) {
    return "<button data-coupon=\"" + field("discountId") + "\">" + text.encoded(field("discountName")) + "</button>";
  }).join("") || "<p class=\"notice\">No coupon fits.</p>";
};

exports.canPay = function (session) {
  if (!exports.numbers().length || cards.waiting(session.custSeqNumber)) return false;
  return session.isPrepay() ? session.payments.RecordCount > 0 : exports.due(session) <= 0;
};

exports.parts = function (session) {
  return {
    tickets: ticketParts(session) || "<p class=\"notice\">Nothing is in the shop.</p>",
    tenders: tenderRows(session),
    sales: saleParts(session),
    amounts: amounts(session).map(function (row) {
      return "<div class=\"total\"><div class=\"value\">" + text.money(row[1]) + "</div><div class=\"name\">" + row[0] + "</div></div>";
    }).join(""),
    due: exports.due(session),
    canPay: exports.canPay(session)
  };
};
