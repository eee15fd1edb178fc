// The till.
var layout = Server.include("shared/layout.js");
var html = Server.include("shared/html.js");
var desk = Server.include("shared/desk.js");
var till = Server.include("shared/till.js");
var screen = Server.include("shared/till_screen.js");
var people = Server.include("shared/people.js");
var h = html.tag;

if (!desk.staffed()) return;
var session = till.meant();
if (!session) return layout.notice("Pickup", "Nobody is at the till.", "/", "Find a customer");
till.refresh(session);

var isAhead = session.isPrepay(), parts = screen.parts(session), claim = Session.tillClaim || {};

function field(id, label, more) {
  return h(
    "div", null, h("label", { "for": id }, label),
    h("input", Object.keys(more || {}).reduce(function(all, name) {
      all[name] = more[name];
      return all;
    }, { id: id })));
}
function claimField(id, label, name) { return field(id, label, { name: name, value: claim[name] }); }

// One button a kind of tender; notes that are often given take one press.
var kinds =
  till.tendersHere(session).concat(till.isCardTaken() ? [["Credit Card", ""]] : []).map(function(one) {
    return h(
      "button", {
        type: "button",
        "data-type": one[0],
        "data-reference": one[1],
        "aria-pressed": one[0] === "Cash" ? "true" : "false"
      },
      one[0] === "GiftCard" ? "Gift card" : one[0]);
  });
var notes = ["5", "10", "20", "50", "100"].map(function(one) {
  return h(
    "button", { type: "button", "data-note": one, "aria-label": "Cash, " + one + " dollars" }, "$" + one);
});

var tenderForm =
  h("form", { id: "tender", autocomplete: "off" },
    h("div", { "class": "row kinds", role: "group", "aria-label": "Paid by" }, kinds),
    h("div", { "class": "row", id: "notes" },
      h("button", { type: "button", "data-note": "exact", "aria-label": "Cash, the exact sum" }, "Exact"),
      notes),
    h("div", { "class": "pair" },
      field(
        "amount", "Amount",
        { inputmode: "decimal", autofocus: true, value: parts.due ? parts.due.toFixed(2) : "" }),
      h("button", { id: "take" }, "Take")),
    h("div", { id: "reference-field", hidden: true }, h("label", { "for": "reference" }, "Number"),
      h("input", { id: "reference" })),
    h("div", { id: "card-fields", hidden: true }, field("card-number", "Card number, or swipe"),
      field("card-expiration", "Month and year", { placeholder: "12/28" }), field("card-zip", "ZIP code"),
      field("card-code", "Code on the card", { inputmode: "numeric" })));

var claimForm =
  h("details", { open: !!claim.claimant || Object.keys(claim).length > 0 },
    h("summary", null, "Collected by somebody else"), claimField("claimant", "Name", "claimant"),
    claimField("relationship", "Who is it?", "relationship"),
    claimField("identification-type", "Document", "identificationType"),
    claimField("identification", "Its number", "identification"), claimField("claim-phone", "Phone", "phone"),
    claimField("claim-note", "Note", "note"));

var payment =
  h("section", { "class": "paper side", "aria-label": "Payment" },
    h("p", { id: "problem", "class": "problem", role: "alert", hidden: true }),
    h("div", { id: "totals" }, html.raw(parts.amounts)), h("div", { id: "credit" }, html.raw(parts.credit)),
    h("p", { id: "least", "class": "notice", hidden: !parts.least }, parts.least),
    h("table", { "aria-label": "Tenders" }, h("tbody", { id: "tenders" }, html.raw(parts.tenders))),
    h("div", { id: "taken" }, html.raw(parts.taken)), h("div", { id: "sales" }, html.raw(parts.sales)),
    tenderForm,
    h("details", null, h("summary", null, "Coupons"), h("div", { id: "coupons", "class": "choices" })),
    h("form", { method: "post", action: "/pickup/pay" }, html.raw(layout.token()), html.raw(layout.once()),
      html.raw(layout.hidden(layout.of("pickup"))), isAhead ? "" : claimForm,
      h("div", { "class": "bar" }, h("p", { id: "why", "class": "notice" }, parts.why),
        h("button", { "class": "main", id: "pay", disabled: !!parts.why },
          isAhead ? "Pay" : "Pay and hand out"))));

layout.page(
  isAhead ? "Pay ahead" : "Pickup",
  html.all(
    people.head(session.custSeqNumber),
    h("div", { "class": "desk till", "data-work": desk.numberOf("pickup") },
      h("section", { id: "tickets", "aria-label": "Tickets" }, html.raw(parts.tickets)), payment),
    h("div", { "class": "away" },
      html.raw(layout.button("/pickup/drop", "Give up", layout.of("pickup"), { kind: "quiet" })))),
  { scripts: ["desk.js", "till.js"], isHeaded: true });
