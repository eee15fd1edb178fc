// The money is taken and the clothes go out, together and once; or the money alone, when it is paid ahead.
var till = Server.include("shared/till.js");
var desk = Server.include("shared/desk.js");
var layout = Server.include("shared/layout.js");

var session = Request.method === "POST" ? till.meant(Request.form.work) : null;
if (!session) return Response.redirect(Session.pickup ? "/pickup" : "/");
var employee = desk.employee();
if (!employee) return Response.redirect("/employee");
var claimed = { claimant: "name", relationship: "relationship", identificationType: "identificationType", identification: "identification", phone: "phoneNumber", note: "note" };
if (!Request.form.claimant && Object.keys(claimed).some(function (name) { return Request.form[name]; }))
  return layout.notice("Pickup", "Who collects? The name is missing.", "/pickup", "Back");
// What is looked at is still so when it is booked, at all counters of this host.
Server.alone();
var trouble = till.payTrouble(session);
if (trouble) return layout.notice("Pickup", trouble, "/pickup", "Back");
if (!till.canPay(session)) return layout.notice("Pickup", "There is still something to pay, or nothing to pay for.", "/pickup", "Back");

if (Request.form.claimant) {
  session.claimReceipt = CreateObject("OndrelCorpComponents.claimReceiptFields");
  Object.keys(claimed).forEach(function (name) { session.claimReceipt[claimed[name]] = String(Request.form[name] || "").substr(0, name === "note" ? 255 : name === "phone" ? 20 : 60); });
}
var isAhead = session.isPrepay(), numbers = till.numbers();
var done = { tickets: numbers, change: till.change(session), drawer: session.openCashDrawer, isAhead: isAhead };
if (isAhead) session.applyPayments(employee.id, desk.place().terminal, "'" + numbers.join(",") + "'");
else session.applyPayments(employee.id, desk.place().terminal);

// Booked: out of the session before anything else can fail, so that nobody pays again by accident.
delete Session.pickup;
delete Session.card;
Session.kept.collected = done;
if (!isAhead) session.recordPickupAction(employee.id);
desk.workDone();
Response.redirect("/collected");
