// A customer comes to the till: all tickets that are due are taken off the rack, the clerk may add or leave some.
var till = Server.include("shared/till.js");
var text = Server.include("shared/text.js");
var layout = Server.include("shared/layout.js");
var customers = Server.include("shared/customers.js");

if (Request.method !== "POST") return Response.redirect("/");
var customer = customers.byId(Request.form.customer);
if (!customer) return layout.notice("Pickup", "There is no such customer.", "/", "Find a customer");
// Recorded: after a restart the rack may hold other tickets than those that were taken off it here.
var racked = Server.recorded(function () {
  return customers.openTickets(customer.id).filter(function (ticket) {
    return !Database.query("select ticketnumber from rackassignment where ticketnumber = " + ticket.number).EOF;
  }).map(function (ticket) { return ticket.number; });
});
till.start(customer.id, racked);
Response.redirect("/pickup");
