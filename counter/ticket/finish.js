// Finishes the ticket, unless something is missing; the next page shows what came of it.
var tickets = Server.include("shared/tickets.js");
var finishing = Server.include("shared/finishing.js");

var invoice = Request.method === "POST" ? tickets.meant(Request.form.work) : null;
if (!invoice) return Response.redirect("/ticket");
if (!Session.finished && !finishing.obstacles(invoice).length) finishing.finish(invoice);
Response.redirect("/finish");
