// A new ticket for a customer.
var tickets = Server.include("shared/tickets.js");
var layout = Server.include("shared/layout.js");
var text = Server.include("shared/text.js");
var desk = Server.include("shared/desk.js");

if (Request.method !== "POST") return Response.redirect("/");
if (!desk.staffed()) return;
if (tickets.isWriting()) return layout.unfinished("A ticket is still being written", [desk.works[0]]);
var trouble = tickets.start(text.whole(Request.form.customer));
if (trouble) return layout.notice("Ticket", trouble, "/", "Find a customer");
Response.redirect("/ticket");
