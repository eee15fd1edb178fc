// The ticket in progress is given up.
if (Request.method === "POST") {
  delete Session.invoice;
  Session.finished = false;
  Server.include("shared/desk.js").workDone();
}
Response.redirect("/");
