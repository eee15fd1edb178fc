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
  invoice.invoiceDone2();
  // A bag was split when it was taken in: what comes out of it stays on its ticket.
  if (!invoice.isQuickInvoice() && invoice.isSplitInvoice()) invoice.splitInvoice(tickets.saveAction(invoice));
  Session.finished = true;
}
var sheets = tickets.parts(invoice).map(function (part, at) {
  return "<section class=\"paper\"><h2>Ticket " + (at + 1) + "</h2>" + receipts.lines(part) + "</section>";
});
layout.page("Finished: " + (sheets.length === 1 ? "one ticket" : sheets.length + " tickets"),
  "<div class=\"sheets\">" + sheets.join("") + "</div><div class=\"finish\">" +
  layout.button("/ticket/save", "Save", {}, { kind: "main", once: true }) +
  layout.button("/ticket/reopen", "Back to the ticket", {}) + "</div>");
