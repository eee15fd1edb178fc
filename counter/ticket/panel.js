// The pick list that the clerk has turned to, and the bar of groups above it. Changes nothing.
var fragments = Server.include("shared/fragments.js");
var presses = Server.include("shared/presses.js");
var text = Server.include("shared/text.js");
var tickets = Server.include("shared/tickets.js");
var month = Server.include("shared/month.js");

var asked = Request.query;
var invoice = tickets.meant(asked.work);
if (!invoice) return presses.over("This ticket is no longer being written. Load the page again.");
var line = text.whole(asked.line);

// The day that stands for a department, or for the whole ticket.
function dayOf(department) {
  var lines = invoice.lineItems.Clone(), latest = null;
  if (department) lines.Filter = "deptId=" + department;
  text.rows(lines, function(field) {
    if (field("dueDate") && !(latest > field("dueDate"))) latest = field("dueDate");
  });
  return latest;
}

if (asked.due !== undefined) {
  var department = text.whole(asked.due);
  return Response.json({
    due: month.of(invoice, department, dayOf(department), Math.max(-24, Math.min(24, text.whole(asked.page))))
  });
}
if (asked.preview) return Response.json({ preview: fragments.preview(invoice, text.whole(asked.preview)) });
Response.json({
  panel: fragments.panel(
    invoice, String(asked.group || "it"), asked.department ? text.whole(asked.department) : "", line,
    text.clean(asked.filter, 40).replace(/["&]/g, "")),
  groups: fragments.groups(invoice, line, String(asked.group || "it")),
  similar: asked.similar ? invoice.htmlSimilarInvoices() : ""
});
