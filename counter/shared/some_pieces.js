// Some pieces of a ticket go out and the others stay: the ticket stays open, on its rack and on the board,
// until the last of it is collected at the till. A line goes as a whole. Money is taken at the till alone;
// what is worth more than what was paid goes out only when the clerk says so.
var text = Server.include("shared/text.js");
var desk = Server.include("shared/desk.js");
var shop = Server.include("shared/shop.js");
var history = Server.include("shared/ticket_history.js");

function sessionOf(ticket) {
  var session = CreateObject("OndrelCorpComponents.pickup");
  session.DBConnectionString = Database.connectionString;
  session.storeid = desk.place().store;
  session.custSeqNumber = ticket.customer;
  session.userAction = "pickup";
  session.addInvoiceToPickup(ticket.number);
  return session;
}

// The lines of a ticket that can be handed out: {line, pieces, name, seal, worth, isOut}. `worth` is the
// line's part of what the ticket costs, by its price with all that is on it.
exports.lines = function(ticket) {
  var all = [], byLine = {}, goods = 0;
  text.rows(sessionOf(ticket).displayRst.Clone(), function(field) {
    var kind = field("itemType"), own = byLine[field("parentLineNumber")];
    if (kind === "IT" || kind === "AC") {
      own = byLine[field("lineNumber")] = {
        line: field("lineNumber"),
        pieces: field("quantity"),
        name: field("itemName"),
        seal: field("heatSeal") || "",
        isOut: !!field("pickedUp"),
        worth: 0
      };
      all.push(own);
    } else if (["UP", "CO", "PA", "BR"].indexOf(kind) < 0) return;
    if (!own) return;
    own.worth += field("lineItemTotal") || 0;
    goods += field("lineItemTotal") || 0;
  });
  all.forEach(function(one) { one.worth = goods > 0 ? one.worth * ticket.total / goods : 0; });
  return all;
};

// What is worth more than what was paid, once these lines have gone out as well; 0 when it is paid.
exports.unpaid = function(ticket, lines, chosen) {
  var worth = lines.reduce(
    function(sum, one) { return sum + (one.isOut || chosen.indexOf(one.line) >= 0 ? one.worth : 0); }, 0);
  return Math.max(text.cents(worth - ticket.paid), 0);
};

// Why these lines cannot go out, or nothing.
exports.trouble = function(ticket, lines, chosen) {
  var here = lines.filter(function(one) { return !one.isOut; });
  if (ticket.status !== "AC" && ticket.status !== "OD") return "The ticket is " + ticket.state + ".";
  if (!chosen.length) return "Choose the pieces that go out.";
  if (chosen.some(function(line) { return !here.some(function(one) { return one.line === line; }); }))
    return "One of these has gone out meanwhile: look again.";
  return chosen.length === here.length ? "Nothing would stay: collect the ticket at the till." : "";
};

function named(lines, chosen) {
  return lines.filter(function(one) { return chosen.indexOf(one.line) >= 0; })
    .map(function(one) { return one.pieces + " " + one.name; })
    .join(", ");
}

exports.handOut = function(number, chosen) {
  var ticket = history.ticket(number), lines = exports.lines(ticket);
  var trouble = exports.trouble(ticket, lines, chosen);
  if (trouble) return { problem: trouble };
  var session = sessionOf(ticket);
  Database.begin();
  chosen.forEach(function(line) { session.markLinePickedUp(ticket.invoice, line); });
  Database.execute(
    shop.logged("out", { ticket: number, customer: ticket.customer, detail: named(lines, chosen) }));
  Database.commit();
  return {};
};

// A line that went out by mistake, or was brought back, is here again.
exports.takeBack = function(number, line) {
  var ticket = history.ticket(number),
      lines = exports.lines(ticket).filter(function(one) { return one.line === line && one.isOut; });
  if (!lines.length || (ticket.status !== "AC" && ticket.status !== "OD"))
    return { problem: "This piece is not out." };
  shop.book([
    "update TicketLineItem set pickedup = 0 where ticketNumber = " + number +
      " and lineItemNumber = " + line % 1000,
    shop.logged("in", { ticket: number, customer: ticket.customer, detail: named(lines, [line]) })
  ]);
  return {};
};
