// The pick list that the clerk has turned to, and the bar of groups above it. Changes nothing.
var fragments = Server.include("shared/fragments.js");
var text = Server.include("shared/text.js");
var tickets = Server.include("shared/tickets.js");

var asked = Request.query;
var invoice = tickets.meant(asked.work);
if (!invoice) {
  Response.status = 409;
  return Response.json({ problem: "This ticket is no longer being written. Load the page again." });
}
var line = text.whole(asked.line);
if (asked.due !== undefined) {
  var page = ByRef(/^\d{1,3}$/.test(asked.page) ? Number(asked.page) : "");
  return Response.json({ due: asked.due ? invoice.htmlDeptDueDate(text.whole(asked.due), page) : invoice.htmlInvoiceDueDate() });
}
if (asked.preview) return Response.json({ preview: fragments.preview(invoice, text.whole(asked.preview)) });
Response.json({
  panel: fragments.panel(invoice, String(asked.group || "it"), asked.department ? text.whole(asked.department) : "", line, text.clean(asked.filter, 40).replace(/["&]/g, "")),
  groups: fragments.groups(invoice, line, String(asked.group || "it")),
  similar: asked.similar ? invoice.htmlSimilarInvoices() : ""
});
