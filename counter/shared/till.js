// The customer at the till: Session.pickup, an object of the library, and the screen's parts.
var desk = Server.include("shared/desk.js");
var text = Server.include("shared/text.js");
var customers = Server.include("shared/customers.js");

// The tenders that the counter takes by hand, with what their reference is called.
exports.tenders = [
  ["Cash",             ""],
  ["Check",            "Check number"],
  ["Gift Certificate", "Certificate number"],
  ["GiftCard",         "Card number"],
  ["On Account",       ""]
];

exports.start = function (customerId, tickets) {
  var session = CreateObject("OndrelCorpComponents.pickup");
  session.DBConnectionString = Database.connectionString;
  session.storeid = desk.store;
  session.custSeqNumber = customerId;
  session.userAction = "pickup";
  session.initStorePaymentTypeInfo();
  tickets.forEach(function (number) { session.addInvoiceToPickup(number); });
  Session.pickup = session;
  Session.pickupTickets = tickets;
};

function amounts(session) {
  return [["Total", session.getTotal()], ["Paid", session.getAmountPaid()], ["Change", session.getChangeDue()], ["Due", session.getAmountDue()]];
}

function tenderRows(session) {
  return text.rows(session.payments.Clone(), function (field) {
    return "<tr><th scope=\"row\">" + text.encoded(field("paymentType")) + "</th><td>" + text.encoded(field("checkCardNo")) + "</td><td class=\"money\">" + text.money(field("amountPaid")) +
           "</td><td><button class=\"quiet\" data-off=\"" + text.encoded(field("paymentType")) + "\">Take off</button></td></tr>";
  }).join("");
}

// The tickets of the customer: those of the session with their lines, the others to be added.
function ticketParts(session) {
  return customers.openTickets(session.custSeqNumber).map(function (ticket) {
    var within = Session.pickupTickets.indexOf(ticket.number) >= 0;
    var racks = Database.query("select dbo.pivotTicketRackLocationBrief(" + ticket.number + ", ', ') as rack").Fields("rack").Value;
    return "<section class=\"paper\"><h2>" + text.encoded(ticket.invoice) + "</h2><p>" + (racks ? "Rack " + text.encoded(racks) : "<strong>Not on the rack</strong>") + " &middot; due " +
           text.day(ticket.due) + " &middot; " + ticket.pieces + (ticket.pieces === 1 ? " piece" : " pieces") + " &middot; " + text.money(ticket.total - ticket.paid) + " to pay</p>" +
           (within ? lines(session, ticket.invoice) : "") + "<button data-ticket=\"" + ticket.number + "\" data-within=\"" + (within ? 1 : "") + "\">" +
           (within ? "Leave it here" : "Collect") + "</button></section>";
  }).join("");
}

function lines(session, invoiceNumber) {
  var rows = session.displayRst.Clone();
  rows.Filter = "invoiceNumber='" + String(invoiceNumber).replace(/'/g, "''") + "'";
  var list = text.rows(rows, function (field) {
    var kind = field("itemType");
    if (kind !== "IT" && kind !== "DE" && kind !== "AC") return "";
    return "<li>" + field("quantity") + " " + text.encoded(field("itemName") || field("deptName")) + " <span class=\"small\">" + text.encoded(field("notes")) + "</span></li>";
  }).join("");
  return "<ul>" + list + "</ul>";
}

exports.parts = function (session) {
  return {
    tickets: ticketParts(session) || "<p class=\"notice\">Nothing is in the shop.</p>",
    tenders: tenderRows(session),
    amounts: amounts(session).map(function (row) {
      return "<div class=\"total\"><div class=\"value\">" + text.money(row[1]) + "</div><div class=\"name\">" + row[0] + "</div></div>";
    }).join(""),
    due: session.getAmountDue(),
    tickets_chosen: Session.pickupTickets.length
  };
};
