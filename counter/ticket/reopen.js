// Back from the finished tickets to the entry screen, as if nothing had been finished.
var tickets = Server.include("shared/tickets.js");

if (Request.method === "POST" && tickets.meant(Request.form.work))
  Server.include("shared/finishing.js").reopen();
Response.redirect("/ticket");
