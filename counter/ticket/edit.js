// A saved ticket is called up to be changed, or a quick drop-off to be itemised.
var tickets = Server.include("shared/tickets.js");
var coupons = Server.include("shared/coupons.js");
var layout = Server.include("shared/layout.js");
var text = Server.include("shared/text.js");
var desk = Server.include("shared/desk.js");

if (Request.method !== "POST") return Response.redirect("/");
if (!desk.staffed()) return;
if (tickets.isWriting()) return layout.unfinished("A ticket is still being written", [desk.works[0]]);
function none(words) { return layout.notice("Ticket", words, "/", "Find a customer"); }
try {
  if (!tickets.callUp(text.whole(Request.form.ticket))) return none("There is no such ticket.");
} catch (error) {
  print("not called up: " + (error.description || error.message));
  return none("The ticket could not be read. Nothing was changed: call it up again.");
}
coupons.takeUp(Session.invoice);
Response.redirect("/ticket");
