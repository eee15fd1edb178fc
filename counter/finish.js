// The finished tickets, shown before anything is saved: discounts, surcharges and taxes are settled, and the order is
// split by the departments' rules. Or what stands in the way of that.
var layout = Server.include("shared/layout.js");
var desk = Server.include("shared/desk.js");
var text = Server.include("shared/text.js");
var tickets = Server.include("shared/tickets.js");
var finishing = Server.include("shared/finishing.js");
var receipts = Server.include("shared/receipts.js");

if (!desk.staffed()) return;
var invoice = tickets.meant();
if (!invoice) return Response.redirect("/");
if (!Session.finished) return layout.notice("Finish", finishing.obstacles(invoice).join(" ") || "The ticket was changed: finish it again.", "/ticket", "Back to the ticket");

var sheets = finishing.parts(invoice).map(function (part, at) {
  var ready = finishing.readyDay(part);
  return "<section class=\"paper\"><h2>Ticket " + (at + 1) + "</h2>" + receipts.lines(part) + (ready ? "<p>Ready " + text.day(ready) + "</p>" : "") + "</section>";
});
var least = Session.finishing.leastAhead - Session.finishing.paid;
layout.page("Finished: " + (sheets.length === 1 ? "one ticket" : sheets.length + " tickets"),
  (finishing.isMissingSeals(invoice) ? "<p class=\"notice\">Not every garment that takes a heat seal has one: tags are printed for these.</p>" : "") +
  (least > 0 ? "<p class=\"problem\">At least " + text.money(least) + " is to be paid ahead.</p>" : "") +
  "<div class=\"sheets\">" + sheets.join("") + "</div><div class=\"finish\">" +
  layout.button("/ticket/save", "Save", layout.of("invoice"), { kind: "main", once: true }) +
  layout.button("/ticket/reopen", "Back to the ticket", layout.of("invoice")) + "</div>");
