// Back from the finished tickets to the entry screen, as if nothing had been finished.
if (Request.method === "POST") Server.include("shared/tickets.js").reopen();
Response.redirect("/ticket");
