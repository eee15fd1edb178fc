// The money is taken and the clothes go out, together and once.
var till = Server.include("shared/till.js");
var desk = Server.include("shared/desk.js");
var layout = Server.include("shared/layout.js");

var session = Session.pickup;
if (Request.method !== "POST" || !session) return Response.redirect(session ? "/pickup" : "/");
var employee = desk.employee();
if (!employee) return Response.redirect("/employee");
if (!Session.pickupTickets.length) return layout.notice("Pickup", "No ticket is being collected.", "/pickup", "Back");
if (session.getAmountDue() > 0) return layout.notice("Pickup", "There is still something to pay.", "/pickup", "Back");

if (Request.form.claimant) {
  session.claimReceipt = CreateObject("OndrelCorpComponents.claimReceiptFields");
  session.claimReceipt.name = String(Request.form.claimant).substr(0, 60);
  session.claimReceipt.relationship = String(Request.form.relationship || "").substr(0, 30);
  session.claimReceipt.identificationType = String(Request.form.identification || "").substr(0, 30);
}
var change = session.getChangeDue();
session.applyPayments(employee.id, desk.terminal);
session.recordPickupAction(employee.id);
var numbers = Session.pickupTickets.join("-");
delete Session.pickup;
desk.workDone();
Session.pickupTickets = [];
Response.redirect("/collected?tickets=" + numbers + "&change=" + change.toFixed(2));
