// One click at the till: a ticket more or less, a tender more or less, a coupon, a credit. The result of a
// row is what was wrong, or {ask}: a question whose answer sends the click again as sure.
var till = Server.include("shared/till.js");
var screen = Server.include("shared/till_screen.js");
var presses = Server.include("shared/presses.js");
var cards = Server.include("shared/cards.js");
var credit = Server.include("shared/credit.js");
var text = Server.include("shared/text.js");

var click = Request.json || {};
var session = Request.method === "POST" ? till.meant(click.work) : null;
if (!session) return presses.over("This visit at the till is over. Load the page again.");

// A coupon is saved on its tickets at once. Recorded: after a restart it stands there.
function coupon(c) {
  var id = text.whole(c.id), total = session.getTotal();
  var taken = Server.recorded(function() {
    var before = till.ticketsOfCoupon(id);
    till.addCoupon(session, id);
    return {
      name: till.couponName(id),
      tickets: till.ticketsOfCoupon(id).filter(function(one) { return before.indexOf(one) < 0; })
    };
  });
  if (taken.tickets.length) Session.tillCoupons.push({ id: id, name: taken.name, tickets: taken.tickets });
  till.refresh(session);
  return session.getTotal() === total ? "This coupon takes nothing off these tickets." : "";
}

function couponOff(c) {
  var id = text.whole(c.id);
  var chosen = Session.tillCoupons.filter(function(one) { return one.id === id; })[0];
  if (!chosen) return "This coupon was not put on here.";
  Session.tillCoupons.splice(Session.tillCoupons.indexOf(chosen), 1);
  Server.recorded(function() { till.takeCouponOff(session, id, chosen.tickets); });
  till.refresh(session);
}

// What is looked at before a press is done is recorded with it: when the host ends right behind a payment,
// tickets are out and nothing is due any more, and the visit has to come back as it was all the same.
function looked(look) {
  return Server.recorded(function() { return look() || ""; });
}

function tender(c) {
  var amount = text.amount(c.amount), type = String(c.type), reference = till.referenceOf(type, c.reference);
  var trouble = looked(function() { return till.tenderTrouble(session, type, amount, reference); });
  var question = trouble ? "" : looked(function() { return till.tenderQuestion(session, type, amount); });
  if (question && !c.sure) return { ask: question };
  if (!trouble) session.addPayment(amount, type, reference);
  return trouble;
}

// Money that was paid too much earlier is booked at once. Recorded: after a restart it stands in the ledger.
function settleCredit(c) {
  Server.alone();
  var isSame = till.refresh(session), balances = till.balances(session), sums = till.sums(session);
  if (!isSame) return "The tickets have changed meanwhile: look again.";
  if (credit.ways(session.custSeqNumber, balances).indexOf(c.way) < 0 || !sums.credit)
    return "There is nothing to settle.";
  if (c.way === "refund" && !credit.mayRefund()) return "Somebody who may give money back has to do this.";
  if (c.way === "refund" && !c.sure)
    return { ask: "Give " + text.money(sums.credit) + " back in cash out of the drawer?" };
  Server.recorded(function() { credit.book(session.custSeqNumber, balances, c.way); });
  till.refresh(session);
}

var clicks = {
  add: function(c) {
    var trouble = looked(function() { return till.addTrouble(session, text.whole(c.ticket)); });
    if (!trouble) till.add(text.whole(c.ticket));
    return trouble;
  },
  leave: function(c) { till.leave(session, text.whole(c.ticket)); },
  tender: tender,
  // One tender alone: another check stays.
  off: function(c) {
    session.payments.Filter = "paymentNumber=" + text.whole(c.number);
    if (!session.payments.EOF) session.payments.Delete();
    session.payments.Filter = 0;
  },
  credit: settleCredit,
  // The card program has answered. Recorded: after a restart the sale is known and the answer has been read.
  settle: function() {
    var sale = Server.recorded(function() { return cards.settle(session.custSeqNumber); });
    if (sale.problem) return sale.problem;
    till.takeSale(session, sale);
  },
  giveUp: function() {
    Server.recorded(function() { cards.giveUp(); });
    return "If the card is charged after all, only the card terminal knows: look there before you ask again.";
  },
  // A sale that was approved before is used as far as something is due.
  sale: function(c) {
    var sale = looked(function() {
      var chosen =
        till.unusedSales(session).filter(function(one) { return one.transaction === c.transaction; })[0];
      return chosen ? {
        code: chosen.code,
        transaction: chosen.transaction,
        amount: Math.min(chosen.rest, till.due(session))
      } :
                      "";
    });
    if (!sale) return "This sale is used up.";
    if (sale.amount <= 0) return "Nothing is due.";
    till.takeSale(session, {
      amount: sale.amount,
      number: "",
      expiration: "",
      brand: "",
      code: sale.code,
      transaction: sale.transaction
    });
  },
  coupon: coupon,
  couponOff: couponOff
};

var result = presses.once(click, function() { return presses.row(clicks, click.click)(click) || ""; });
var answer = screen.parts(Session.pickup);
answer.problem = typeof result === "string" ? result : "";
answer.ask = result && result.ask || "";
Response.json(answer);
