// The customer leaves the till without anything.
if (Request.method === "POST") {
  delete Session.pickup;
  Session.pickupTickets = [];
  Server.include("shared/desk.js").workDone();
}
Response.redirect("/");
