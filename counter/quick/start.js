// A bag is taken in: the pieces of each department are counted, nothing is itemised yet.
var desk = Server.include("shared/desk.js");
var text = Server.include("shared/text.js");
var quicks = Server.include("shared/quick.js");
var layout = Server.include("shared/layout.js");
var tickets = Server.include("shared/tickets.js");

if (Request.method !== "POST") return Response.redirect("/");
if (!desk.staffed()) return;
if (Session.quick) return layout.unfinished("A bag is still being taken in", [desk.works[1]]);
var customerId = text.whole(Request.form.customer);
var terms = tickets.termsOf(customerId);
if (!terms) return layout.notice("Quick drop-off", "There is no such customer.", "/", "Find a customer");
if (!terms.list)
  return layout.notice(
    "Quick drop-off", "This shop has no price list with departments yet.", "/", "Find a customer");

Session.quick = quicks.made(customerId, terms);
Session.quickGiven = null;
delete Session.quickSaved;
Session.tables = "";
desk.begin("quick");
Response.redirect("/quick");
