// The parts of the till's screen.
var html = Server.include("shared/html.js");
var text = Server.include("shared/text.js");
var till = Server.include("shared/till.js");
var cards = Server.include("shared/cards.js");
var credit = Server.include("shared/credit.js");
var customers = Server.include("shared/customers.js");
var h = html.tag;

function line(name, amount, kind) {
  return h(
    "div", { "class": "total" + (kind ? " " + kind : "") },
    h("div", { "class": "value" }, text.money(amount)), h("div", { "class": "name" }, name));
}

function amounts(sums) {
  return html.all(
    line("Total", sums.total), sums.discount ? line("Prepay discount", -sums.discount) : "",
    sums.paid ? line("Paid before", sums.paid) : "", sums.tendered ? line("Tendered", sums.tendered) : "",
    sums.change ? line("Change", sums.change, "large") : "", line("Due", sums.due, "large"));
}

function tenderRows(session) {
  return html.all(text.rows(session.payments.Clone(), function(field) {
    var name = field("paymentType");
    return h(
      "tr", null, h("th", { scope: "row" }, name), h("td", null, field("checkCardNo")),
      h("td", { "class": "money" }, text.money(field("amountPaid"))),
      h("td", null,
        h("button",
          { "class": "quiet", "data-off": field("paymentNumber"), "aria-label": "Take " + name + " off" },
          "Take off")));
  }));
}

function couponRows() {
  return html.all(Session.tillCoupons.map(function(one) {
    return h(
      "p", { "class": "row" }, one.name,
      h("button", { "class": "quiet", "data-coupon-off": one.id, "aria-label": "Take " + one.name + " off" },
        "Take off"));
  }));
}

// ---- the customer's tickets: those of the visit with their lines, the others to be added

var verbs = { pickup: ["Leave it here", "Collect"], prepay: ["Not now", "Pay for it"] };

function ticketParts(session) {
  var chosen = till.numbers(), words = verbs[session.isPrepay() ? "prepay" : "pickup"];
  return html.all(customers.openTickets(session.custSeqNumber).map(function(ticket) {
    var isIn = chosen.indexOf(ticket.number) >= 0, isShut = ticket.isBag && !isIn;
    return h(
      "section", { "class": "paper ticket" + (isIn ? " within" : "") },
      h("div", { "class": "rack" }, h("span", { "class": "name" }, ticket.rack ? "Rack" : ""),
        h("strong", null, ticket.rack || "Not on the rack")),
      h("div", null, h("h2", null, ticket.invoice),
        h("p", null,
          ticket.isBag ? "price not yet known, due " :
                         [h("strong", null, text.money(ticket.total - ticket.paid)), " to pay, due "],
          text.day(ticket.due), ", ", text.pieces(ticket.pieces),
          ticket.gone ? ", " + ticket.gone + " handed out before" : "",
          ticket.state ? h("strong", { "class": "state " + ticket.state }, " ", ticket.state) : ""),
        isIn ? lines(session, ticket) : ""),
      h("button", {
        "data-ticket": ticket.number,
        "data-within": isIn ? 1 : "",
        disabled: isShut,
        "aria-label": (isShut ? "Not itemised yet" : words[isIn ? 0 : 1]) + ", " + ticket.invoice
      },
        isShut ? "Not itemised yet" : words[isIn ? 0 : 1]));
  }));
}

// The garments of a ticket: what was said about them, a day of their own, and whether they have gone out
// already.
function lines(session, ticket) {
  var rows = session.displayRst.Clone(), children = session.displayRst.Clone();
  rows.Filter = "ticketNumber=" + ticket.number;
  return h("ul", { "class": "garments" }, text.rows(rows, function(field) {
    var kind = field("itemType");
    if (kind !== "IT" && kind !== "DE" && kind !== "AC") return "";
    var due = field("dueDate"),
        own = due && ticket.due && text.day(due) !== text.day(ticket.due) ? text.day(due) : "";
    children.Filter = "ticketNumber=" + ticket.number + " and parentLineNumber=" + field("lineNumber");
    var small = text.rows(children, function(child) { return child("itemName"); })
                  .concat([
                    field("heatSeal"), field("notes"), field("promptResponse"), own,
                    field("pickedUp") ? "handed out" : ""
                  ])
                  .filter(function(one) { return one; });
    return h(
      "li", null, field("quantity"), " ", field("itemName") || field("deptName"), " ",
      h("span", { "class": "small" }, small.join(", ")));
  }));
}

// ---- what has to be settled beside the tenders

var wayNames = {
  tickets: "Use it for the other tickets",
  account: "To the account",
  refund: "Give it back in cash"
};

function creditParts(session, sums) {
  if (!sums.credit) return "";
  return h(
    "div", { "class": "problem", role: "status" },
    h("p", null, text.money(sums.credit), " was paid too much earlier."),
    h("div", { "class": "row" },
      credit.ways(session.custSeqNumber, till.balances(session))
        .map(function(way) { return h("button", { "data-credit": way }, wayNames[way]); })));
}

function saleParts(session) {
  var quit = h("button", { "class": "quiet", "data-give-up": true }, "Do not wait");
  if (cards.waiting(session.custSeqNumber))
    return h("p", { "class": "notice", "data-waiting": true }, "The card terminal is at work\u2026 ", quit);
  var other = cards.isThere() ? cards.busyWith() : 0;
  return html.all(
    other ?
      h("p", { "class": "notice" }, "The card terminal waits for the sale of another customer. ", quit) :
      "",
    till.unusedSales(session).map(function(one) {
      return h(
        "p", { "class": "row" }, "Approved on a card: " + text.money(one.rest),
        h("button", { "class": "quiet", "data-sale": one.transaction }, "Use it"));
    }));
}

// Reads every ticket of the visit, so it is asked for when it is looked at.
exports.coupons = function(session) {
  return String(html.all(text.rows(session.getDisplayCouponRst(), function(field) {
           return h("button", { "data-coupon": field("discountId") }, field("discountName"));
         }))) || "<p class=\"notice\">No coupon fits.</p>";
};

exports.parts = function(session) {
  var sums = till.sums(session), why = till.whyNot(session);
  return {
    tickets: String(ticketParts(session)) || "<p class=\"notice\">Nothing is in the shop.</p>",
    tenders: String(tenderRows(session)),
    taken: String(couponRows()),
    sales: String(saleParts(session)),
    credit: String(creditParts(session, sums)),
    amounts: String(amounts(sums)),
    due: sums.due,
    why: why,
    least: session.isPrepay() && sums.least > sums.paid + sums.tendered ?
      "At least " + text.money(sums.least) + " is to be paid ahead." :
      ""
  };
};
