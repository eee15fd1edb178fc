// The host ended while something was saved or booked here, and what was being written has been brought back. Only the
// clerk can see whether it is done already.
var layout = Server.include("shared/layout.js");
var desk = Server.include("shared/desk.js");
var text = Server.include("shared/text.js");
var till = Server.include("shared/till.js");
var customers = Server.include("shared/customers.js");

// What was answered is done again when the work is brought back once more, and nothing is in doubt then.
if (Request.method === "POST") {
  if (desk.works.some(function (work) { return work[0] === Request.form.done; })) delete Session[Request.form.done];
  // Tenders may have been booked: the visit begins again without them.
  if (Session.pickup) till.start(Session.pickup.custSeqNumber, [], Session.pickup.userAction);
  Server.settleDoubt();
  desk.workDone();
  return Response.redirect("/");
}

if (!Server.doubtful() || !desk.openWorks().length) return Response.redirect("/");

function ticketRows(id) {
  return customers.openTickets(id).map(function (ticket) {
    return "<tr><th scope=\"row\">" + text.encoded(ticket.invoice) + "</th><td>" + ticket.pieces + "</td><td>" + text.day(ticket.due) + "</td><td class=\"money\">" +
           text.money(ticket.total) + "</td><td class=\"money\">" + text.money(ticket.total - ticket.paid) + "</td></tr>";
  }).join("");
}

layout.page("Was it saved?",
  "<p class=\"problem\" role=\"alert\">The counter was interrupted while it was saving. Look whether it is done before you go on.</p>" + desk.openWorks().map(function (work) {
    var customer = customers.byId(Session[work[0]].custSeqNumber);
    return "<section class=\"paper\"><h2>" + work[2] + (customer ? " of " + text.encoded(customer.name) : "") + "</h2><p>In the shop now:</p><table><thead><tr><th scope=\"col\">Invoice</th>" +
           "<th scope=\"col\">Pieces</th><th scope=\"col\">Due</th><th scope=\"col\" class=\"money\">Total</th><th scope=\"col\" class=\"money\">To pay</th></tr></thead><tbody>" +
           (customer ? ticketRows(customer.id) : "") + "</tbody></table>" + layout.button("/doubt", "It is done: put it away", { done: work[0] }) + "</section>";
  }).join("") + "<p class=\"notice\">Tenders at the till are taken again. A card that was asked for is found there.</p><div class=\"choices\">" +
  layout.button("/doubt", "It is not done: go on", {}) + "</div>");
