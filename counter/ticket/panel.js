// The pick list that the clerk has turned to, and the bar of groups above it. Changes nothing.
var fragments = Server.include("shared/fragments.js");
var text = Server.include("shared/text.js");

var invoice = Session.invoice;
if (!invoice) {
  Response.status = 409;
  return Response.json({ problem: "No ticket is being written." });
}
var asked = Request.query;
var line = text.whole(asked.line);
if (asked.due !== undefined) {
  var page = ByRef(asked.page === undefined ? "" : asked.page);
  return Response.json({ due: asked.due ? invoice.htmlDeptDueDate(text.whole(asked.due), page) : invoice.htmlInvoiceDueDate() });
}
if (asked.preview) return Response.json({ preview: fragments.preview(invoice, text.whole(asked.preview)) });
Response.json({
  panel: fragments.panel(invoice, String(asked.group || "it"), asked.department ? text.whole(asked.department) : "", line, String(asked.filter || "").substr(0, 40)),
  groups: fragments.groups(invoice, line, String(asked.group || "it")),
  similar: asked.similar ? invoice.htmlSimilarInvoices() : ""
});
