// One click at the till: a ticket more or less, a tender more or less.
var till = Server.include("shared/till.js");
var text = Server.include("shared/text.js");

var session = Session.pickup;
if (Request.method !== "POST" || !session) {
  Response.status = 409;
  return Response.json({ problem: "Nobody is at the till." });
}

function amount(value) {
  var number = Number(String(value).replace(/[$,\s]/g, ""));
  return number > 0 && number <= 99999 ? Math.round(number * 100) / 100 : 0;
}

var clicks = {
  add: function (c) {
    if (Session.pickupTickets.indexOf(text.whole(c.ticket)) >= 0) return;
    session.addInvoiceToPickup(text.whole(c.ticket));
    Session.pickupTickets.push(text.whole(c.ticket));
  },
  // A session only takes tickets in: one is left by beginning again without it.
  leave: function (c) {
    var taken = session.payments.RecordCount;
    till.start(session.custSeqNumber, Session.pickupTickets.filter(function (one) { return one !== text.whole(c.ticket); }));
    session = Session.pickup;
    if (taken > 0) return "What was tendered has been taken off: take it again.";
  },
  tender: function (c) {
    var known = till.tenders.filter(function (one) { return one[0] === c.type; })[0];
    if (!known) return "There is no such tender.";
    if (!amount(c.amount)) return "This is not an amount.";
    if (known[1] && !String(c.reference || "").length) return known[1] + " is missing.";
    session.addPayment(amount(c.amount), known[0], String(c.reference || "").substr(0, 50));
  },
  off: function (c) { session.deletePaymentByName(String(c.type || "")); }
};

var click = Request.json || {};
var act = Object.prototype.hasOwnProperty.call(clicks, String(click.click)) ? clicks[click.click] : function () { return "There is no such click."; };
var problem = act(click) || "";
var answer = till.parts(session);
answer.problem = problem;
Response.json(answer);
