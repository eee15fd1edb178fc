// A saved ticket is called up to be changed, or a quick drop-off to be itemised.
var tickets = Server.include("shared/tickets.js");
var layout = Server.include("shared/layout.js");
var text = Server.include("shared/text.js");
var desk = Server.include("shared/desk.js");

if (Request.method !== "POST") return Response.redirect("/");
if (!desk.staffed()) return;
if (tickets.isWriting()) return layout.unfinished("A ticket is still being written", [desk.works[0]]);
if (!tickets.callUp(text.whole(Request.form.ticket))) return layout.notice("Ticket", "There is no such ticket.", "/", "Find a customer");
Response.redirect("/ticket");
