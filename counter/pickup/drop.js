// The customer leaves the till without anything.
if (Request.method === "POST") {
  delete Session.pickup;
  delete Session.card;
  Server.include("shared/desk.js").workDone();
}
Response.redirect("/");
