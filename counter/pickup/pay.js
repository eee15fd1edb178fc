// The money is taken and the clothes go out, together and once; or the money alone, when it is paid ahead.
var till = Server.include("shared/till.js");
var desk = Server.include("shared/desk.js");
var drawer = Server.include("shared/drawer.js");
var text = Server.include("shared/text.js");
var layout = Server.include("shared/layout.js");

var session = Request.method === "POST" ? till.meant(Request.form.work) : null;
if (!session) return Response.redirect(Session.pickup ? "/pickup" : "/");
var employee = desk.employee();
if (!employee) return Response.redirect("/employee");

// A name of the form, its field of the claim receipt and what that holds.
var claimed = [
  ["claimant", "name", 64], ["relationship", "relationship", 30],
  ["identificationType", "identificationType", 30], ["identification", "identification", 30],
  ["phone", "phoneNumber", 20], ["note", "note", 255]
];
var given = {};
claimed.forEach(function(one) {
  if (Request.form[one[0]]) given[one[0]] = Request.form[one[0]];
});
Session.tillClaim = given;
function back(words) { return layout.notice("Pickup", words, "/pickup", "Back to the till"); }
if (!given.claimant && Object.keys(given).length) return back("Who collects? The name is missing.");
var long = claimed.filter(function(one) { return String(given[one[0]] || "").length > one[2]; })[0];
if (long)
  return back(
    "This is too long, " + long[2] + " letters are taken: " + given[long[0]].substr(0, 40) + "\u2026");

// What is looked at is still so when it is booked, at all counters of this host.
Server.alone();
var trouble = till.payTrouble(session);
if (trouble) return back(trouble);
var questions = till.payQuestions(session);
if (questions.length && Request.form.sure !== questions.join(" ")) {
  var again = layout.of("pickup");
  Object.keys(given).forEach(function(name) { again[name] = given[name]; });
  return layout.asked("Before it is booked", questions, "/pickup/pay", again, "/pickup", "Back to the till");
}

if (given.claimant) {
  session.claimReceipt = CreateObject("OndrelCorpComponents.claimReceiptFields");
  claimed.forEach(function(one) { session.claimReceipt[one[1]] = given[one[0]] || ""; });
}
till.inOrder(session);
var isAhead = session.isPrepay(), numbers = till.numbers(), change = till.change(session);
var done = {
  customer: session.custSeqNumber,
  tickets: numbers,
  change: change,
  drawer: session.openCashDrawer || change > 0,
  isAhead: isAhead
};

// Change beyond the cash of the visit is given on a check: the drawer has the whole check, and so much less
// cash.
var cashGiven = till.tendered(session, "Cash");
// Recorded: brought back after a restart, what failed has failed.
var failure = Server.recorded(function() {
  try {
    if (isAhead) session.applyPayments(employee.id, desk.place().terminal, "'" + numbers.join(",") + "'");
    else session.applyPayments(employee.id, desk.place().terminal);
    return drawer.handedBack(change - cashGiven), "";
  } catch (error) {
    print("paying failed: " + (error.description || error.message));
    return till.isBooked(session) ?
      "" :
      "It could not be booked. The tickets and what was tendered are as they were: press Pay again.";
  }
});
if (failure) return back(failure);

// Booked: out of the session before anything else can fail, so that nobody pays again by accident.
delete Session.pickup;
delete Session.card;
delete Session.tillClaim;
Session.kept.collected = done;
if (!isAhead) session.recordPickupAction(employee.id);
desk.workDone();
Response.redirect("/collected");
