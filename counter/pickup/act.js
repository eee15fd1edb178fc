// One click at the till: a ticket more or less, a tender more or less, a coupon.
var till = Server.include("shared/till.js");
var cards = Server.include("shared/cards.js");
var desk = Server.include("shared/desk.js");
var text = Server.include("shared/text.js");

var click = Request.json || {};
var session = Request.method === "POST" ? till.meant(click.work) : null;
if (!session) {
  Response.status = 409;
  return Response.json({ problem: "This visit at the till is over. Load the page again." });
}

var clicks = {
  add: function (c) {
    var trouble = till.addTrouble(session, text.whole(c.ticket));
    if (!trouble) till.add(text.whole(c.ticket));
    return trouble;
  },
  // A session only takes tickets in: one is left by beginning again without it.
  leave: function (c) {
    var taken = session.payments.RecordCount;
    till.start(session.custSeqNumber, till.numbers().filter(function (one) { return one !== text.whole(c.ticket); }), session.userAction);
    if (taken > 0) return "What was tendered has been taken off: take it again.";
  },
  tender: function (c) {
    var amount = text.amount(c.amount), reference = till.referenceOf(c.type, c.reference);
    var trouble = till.tenderTrouble(session, String(c.type), amount, reference);
    if (!trouble) session.addPayment(amount, String(c.type), reference);
    return trouble;
  },
  // One tender alone: another check stays.
  off: function (c) {
    session.payments.Filter = "paymentNumber=" + text.whole(c.number);
    if (!session.payments.EOF) session.payments.Delete();
    session.payments.Filter = 0;
  },
  // The card program has answered. Recorded: after a restart the sale is known and the answer has been read.
  settle: function () {
    var sale = Server.recorded(function () { return cards.settle(session.custSeqNumber); });
    if (sale.problem) return sale.problem;
    till.takeSale(session, sale);
  },
  giveUp: function () {
    Server.recorded(function () { cards.giveUp(); });
    return "If the card is charged after all, only the card terminal knows: look there before you ask again.";
  },
  // A sale that was approved before is used as far as something is due.
  sale: function (c) {
    var chosen = till.unusedSales(session).filter(function (one) { return one.transaction === c.transaction; })[0];
    if (!chosen) return "This sale is used up.";
    var amount = Math.min(chosen.rest, till.due(session));
    if (amount <= 0) return "Nothing is due.";
    till.takeSale(session, { amount: amount, number: "", expiration: "", brand: "", code: chosen.code, transaction: chosen.transaction });
  },
  // Recorded: a coupon is saved on its tickets at once, and after a restart it stands there.
  coupon: function (c) {
    var employee = desk.employee(), place = desk.place();
    Server.recorded(function () {
      var one = Database.query("select oneDiscountPerInvoice from miscsetup where storeid = " + place.store);
      session.addCoupon(text.whole(c.id), !one.EOF && one.Fields(0).Value, employee.id, place.terminal, employee.name, place.storeName);
    });
    var before = session.getTotal();
    till.refresh(session);
    if (session.getTotal() === before) return "This coupon takes nothing off these tickets.";
  }
};

var act = Object.prototype.hasOwnProperty.call(clicks, String(click.click)) ? clicks[click.click] : function () { return "There is no such click."; };
var problem = act(click) || "";
var answer = till.parts(Session.pickup);
answer.problem = problem;
Response.json(answer);
