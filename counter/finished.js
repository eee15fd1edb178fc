// The finished tickets, shown before anything is saved: discounts, surcharges and taxes are settled, and the
// order is split by the departments' rules. Or what stands in the way of that.
var layout = Server.include("shared/layout.js");
var html = Server.include("shared/html.js");
var desk = Server.include("shared/desk.js");
var text = Server.include("shared/text.js");
var people = Server.include("shared/people.js");
var tickets = Server.include("shared/tickets.js");
var finishing = Server.include("shared/finishing.js");
var receipts = Server.include("shared/receipts.js");
var h = html.tag;

if (!desk.staffed()) return;
var invoice = tickets.meant();
if (!invoice) return Response.redirect("/");
if (!Session.finished)
  return layout.notice(
    "Finish",
    Session.finishTrouble || finishing.obstacles(invoice).join(" ") ||
      "The ticket was changed: finish it again.",
    "/ticket", "Back to the ticket");

var parts = finishing.parts(invoice), saved = Session.saved || {};
var sheets = parts.map(function(part, at) {
  var ready = finishing.readyDay(part);
  return h(
    "section", { "class": "paper" },
    h("div", { "class": "headline" }, h("h2", null, "Ticket " + (at + 1) + " of " + parts.length),
      saved[at] ? h("strong", { "class": "state ready" }, "saved") : ""),
    ready ? h("p", null, "Ready " + text.day(ready)) : "", html.raw(receipts.lines(part)));
});
var moved = Object.keys(Session.finishing.moved).map(function(id) {
  var one = Session.finishing.moved[id];
  return h(
    "p", null,
    one.name + ": " + text.day(one.to) + " in place of " + text.day(one.from) + ", " + one.why + ".");
});
var least = Session.finishing.leastAhead - Session.finishing.paid;
var total = text.cents(parts.reduce(function(sum, part) { return sum + part.getInvoiceAmountToPay(); }, 0));
layout.page(
  "Finished: " + (sheets.length === 1 ? "one ticket" : sheets.length + " tickets"),
  html.all(
    people.head(invoice.custSeqNumber),
    h("h2", null, "Finished: " + (sheets.length === 1 ? "one ticket" : sheets.length + " tickets")),
    h("div", { id: "notices" }, moved),
    finishing.isMissingSeals(invoice) ?
      h("p", { "class": "notice" },
        "Not every garment that takes a heat seal has one: tags are printed for these.") :
      "",
    least > 0 ? h("p", { "class": "problem" }, "At least " + text.money(least) + " is to be paid ahead.") :
                "",
    h("div", { "class": "sheets" }, sheets),
    h("div", { "class": "bar paper" },
      h("div", { "class": "grand" }, h("span", { "class": "name" }, "Total"), " ",
        h("strong", { "class": "value" }, text.money(total))),
      h("div", { "class": "row" },
        Session.saved ? "" :
                        html.raw(layout.button("/ticket/reopen", "Back to the ticket", layout.of("invoice"))),
        html.raw(
          layout.button("/ticket/save", "Save", layout.of("invoice"), { kind: "main", once: true }))))),
  { isHeaded: true });
