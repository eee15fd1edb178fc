// Money given back on a ticket, and tickets that are void. Nothing is deleted: the ledger gets rows below
// nothing.
//
// | way       | ledger                                | besides                                           |
// |-----------|---------------------------------------|---------------------------------------------------|
// | Cash      | the ticket's row below nothing        | the drawer gives                                  |
// | other     | the same with the tender that was paid | a gift card has its money again; a card is paid back at its terminal |
// | On Account| the same as "On Account"              | the customer owes so much less                    |
var text = Server.include("shared/text.js");
var desk = Server.include("shared/desk.js");
var shop = Server.include("shared/shop.js");
var credit = Server.include("shared/credit.js");
var history = Server.include("shared/ticket_history.js");

// The ways in which money of a ticket can be given back: {type, most, reference}. Cash gives back what any
// tender paid.
exports.ways = function(ticket) {
  var paid = text.rows(
    Database.query(
      "select paymentType, isnull(checkOrCardNumber, '') as reference, sum(paymentAmount) as amount from " +
      "Payment where ticketNumber = " + ticket.number +
      " group by paymentType, isnull(checkOrCardNumber, '') having sum(paymentAmount) > 0 order by " +
      "paymentType"),
    function(field) {
      return {
        type: field("paymentType"),
        reference: field("paymentType") === "GiftCard" || field("paymentType") === "Credit Card" ?
          field("reference") :
          "",
        most: text.cents(field("amount"))
      };
    });
  var ways = [], all = text.cents(ticket.paid);
  // What was bought on account was never money: it goes back there alone.
  var onAccount = paid.filter(function(one) { return one.type === "On Account"; })
                    .reduce(function(sum, one) { return sum + one.most; }, 0);
  var money = text.cents(Math.min(all, all - onAccount));
  if (money > 0) ways.push({ type: "Cash", reference: "", most: money });
  paid.forEach(function(one) {
    if (one.type === "GiftCard" || one.type === "Credit Card")
      ways.push({ type: one.type, reference: one.reference, most: Math.min(one.most, all) });
  });
  if (all > 0 && (onAccount > 0 || credit.hasAccount(ticket.customer)))
    ways.push({ type: "On Account", reference: "", most: all });
  return ways;
};

exports.isOpenFor = function(ticket) { return ticket.status !== "VO"; };

function booked(ticket, way, amount, reason, isVoid) {
  var place = desk.place(), clerk = text.whole(desk.employee().id),
      tax = ticket.total > 0 ? text.cents((ticket.tax || 0) * amount / ticket.total) : 0;
  var all = [
    "insert into Payment (paymentDate, paymentAction, storeId, terminalId, employeeId, " +
      "customerSequenceNumber, ticketNumber, paymentType, paymentAmount, checkOrCardNumber) values " +
      "(getdate(), 'Refund', " +
      [
        place.store, place.terminal, clerk, ticket.customer || "null", ticket.number, text.quoted(way.type),
        (-amount).toFixed(2), way.reference ? text.quoted(way.reference) : "null"
      ].join(", ") +
      ")",
    "update Ticket set amountPaid = amountPaid - " + amount.toFixed(2) +
      " where ticketNumber = " + ticket.number,
    "insert into Refund (ticketNumber, customerSequenceNumber, storeId, terminalId, employeeId, " +
      "refundDate, amount, taxAmount, paymentType, reason, isVoid) values (" +
      [
        ticket.number, ticket.customer || "null", place.store, place.terminal, clerk, "getdate()",
        amount.toFixed(2), tax.toFixed(2), text.quoted(way.type), shop.literal(reason, 128), isVoid ? 1 : 0
      ].join(", ") +
      ")",
    shop.logged(
      "refund", { ticket: ticket.number, customer: ticket.customer, amount: -amount, detail: reason })
  ];
  if (way.type === "GiftCard")
    all.push(
      "update GIFTCARD set giftValue = giftValue + " + amount.toFixed(2) +
      ", lastUsedDate = getdate() where giftCardId = " + text.whole(way.reference));
  return all;
}

function wayOf(ticket, at) { return exports.ways(ticket)[at] || null; }

// Gives an amount back by one of the ways. The result is {} or {problem}.
exports.give = function(number, at, amount, reason) {
  var ticket = history.ticket(number), way = ticket ? wayOf(ticket, at) : null;
  if (!way) return { problem: "Nothing was paid that could be given back so." };
  if (!(amount > 0)) return { problem: "This is no amount." };
  if (amount > way.most + 0.001)
    return { problem: way.type + " takes back " + text.money(way.most) + " at most." };
  shop.book(booked(ticket, way, amount, reason, false));
  return {};
};

// Voids a ticket: what was paid goes back by the way of each tender, or all of it in cash; it leaves rack and
// stock.
exports.voidTicket = function(number, isCash, reason) {
  var ticket = history.ticket(number);
  if (!ticket) return { problem: "There is no such ticket in this shop." };
  if (ticket.status === "VO") return { problem: "The ticket is void already." };
  var left = text.cents(ticket.paid), all = [];
  // Tenders that go back to where they came from first; the rest is cash.
  var ways = exports.ways(ticket),
      own = ways.filter(function(one) { return one.type === "On Account"; })
              .map(function(one) { return { type: one.type, reference: "", most: onAccount(ticket) }; });
  var order = own.concat(
    isCash ? [] :
             ways.filter(function(one) { return one.type === "GiftCard" || one.type === "Credit Card"; }),
    ways.filter(function(one) { return one.type === "Cash"; }));
  order.forEach(function(way) {
    var part = text.cents(Math.min(left, way.most));
    if (part <= 0) return;
    all = all.concat(booked(ticket, way, part, reason, true));
    left = text.cents(left - part);
  });
  if (left > 0) return { problem: text.money(left) + " of this ticket cannot be given back here." };
  shop.book(all.concat(
    "update Ticket set ticketStatus = 'VO', lastModifiedDate = getdate() where ticketNumber = " +
      ticket.number,
    "delete from rackassignment where ticketnumber = " + ticket.number,
    "delete from CustomerMessage where takenDate is null and ticketNumber = " + ticket.number,
    "UpdateInventory " + ticket.number + ",0",
    shop.logged("void", { ticket: ticket.number, customer: ticket.customer, detail: reason })));
  return {};
};

function onAccount(ticket) {
  return Math.max(
    text.cents(shop.value(
      "select isnull(sum(paymentAmount), 0) " +
      "from Payment where paymentType = 'On Account' and ticketNumber = " + ticket.number)),
    0);
}
