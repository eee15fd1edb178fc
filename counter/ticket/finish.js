// Finishing: discounts, surcharges and taxes are settled, the order is split by the departments' rules, and the
// tickets are shown before anything is saved.
var layout = Server.include("shared/layout.js");
var text = Server.include("shared/text.js");
var tickets = Server.include("shared/tickets.js");
var receipts = Server.include("shared/receipts.js");

var invoice = Session.invoice;
if (Request.method !== "POST" || !invoice) return Response.redirect(invoice ? "/ticket" : "/");
if (!invoice.lineItems.Clone().RecordCount && !invoice.isQuickInvoice()) return layout.notice("Finish", "Nothing is on the ticket.", "/ticket", "Back to the ticket");

if (!Session.finished) {
  var obstacles = tickets.obstacles(invoice);
  if (obstacles.length) return layout.notice("Finish", obstacles.join(" "), "/ticket", "Back to the ticket");
  tickets.finish(invoice);
}
var parts = tickets.parts(invoice);
var sheets = parts.map(function (part, at) {
  return "<section class=\"paper\"><h2>Ticket " + (at + 1) + "</h2>" + receipts.lines(part) + "<p>Ready " + text.day(part.InvDueDate) + "</p></section>";
});
layout.page("Finished: " + (sheets.length === 1 ? "one ticket" : sheets.length + " tickets"),
  (invoice.isMissingHeatSeals() ? "<p class=\"notice\">Not every garment that takes a heat seal has one: tags are printed for these.</p>" : "") +
  (Session.leastAhead > 0 ? "<p class=\"problem\">At least " + text.money(Session.leastAhead) + " is to be paid ahead.</p>" : "") +
  "<div class=\"sheets\">" + sheets.join("") + "</div><div class=\"finish\">" +
  layout.button("/ticket/save", "Save", {}, { kind: "main", once: true }) +
  layout.button("/ticket/reopen", "Back to the ticket", {}) + "</div>");
