// The customer leaves the till without anything; until something else begins the visit can be brought back.
var desk = Server.include("shared/desk.js");

// Who has been asked for a card stays until it is known what came of it.
if (
  Request.method === "POST" && Session.pickup &&
  Server.include("shared/cards.js").waiting(Session.pickup.custSeqNumber))
  return Response.redirect("/pickup");
if (Request.method === "POST" && desk.isMeant("pickup", Request.form.work)) {
  desk.putAway("pickup", Session.pickup.payments.RecordCount > 0);
  delete Session.card;
}
Response.redirect("/");
