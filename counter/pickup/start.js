// A customer comes to the till. To collect: all tickets on the rack are taken off it, the clerk may add or
// leave some. To pay ahead: the tickets that were named, or all that have something to pay.
var till = Server.include("shared/till.js");
var text = Server.include("shared/text.js");
var layout = Server.include("shared/layout.js");
var cards = Server.include("shared/cards.js");
var desk = Server.include("shared/desk.js");
var customers = Server.include("shared/customers.js");

if (Request.method !== "POST") return Response.redirect("/");
if (!desk.staffed()) return;
var customer = customers.byId(Request.form.customer);
if (!customer) return layout.notice("Pickup", "There is no such customer.", "/", "Find a customer");

if (
  Session.pickup && (Session.pickup.payments.RecordCount > 0 || cards.waiting(Session.pickup.custSeqNumber)))
  return layout.unfinished("Somebody is still paying", [desk.works[2]]);
var isAhead = Request.form.action === "prepay";
var named = text.numbers(Request.form.tickets);
function isRacked(ticket) {
  return !Database.query("select ticketnumber from rackassignment where ticketnumber = " + ticket.number).EOF;
}
// Recorded: after a restart the rack may hold other tickets than those that were taken off it here.
var chosen = Server.recorded(function() {
  return customers.openTickets(customer.id)
    .filter(function(ticket) {
      if (isAhead) return named.length ? named.indexOf(ticket.number) >= 0 : ticket.total > ticket.paid;
      return isRacked(ticket) && !ticket.isBag;
    })
    .map(function(ticket) { return ticket.number; });
});
Session.tillLedger = Server.recorded(till.ledgerEnd);
delete Session.tillClaim;
till.start(customer.id, chosen, isAhead ? "prepay" : "pickup");
desk.begin("pickup");
Session.tables = "";
Response.redirect("/pickup");
