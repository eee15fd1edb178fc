// The parts of the entry screen, as the library draws them.
var text = Server.include("shared/text.js");

// The fragments carry styles of their own, which the security policy does not admit: they are kept as data.
function plain(fragment) { return fragment.replace(/ style="/g, " data-style=\""); }

// The coupons on the ticket, which have no line of a department, with a way to take them off.
function offers(invoice) {
  var lines = invoice.lineItems.Clone();
  lines.Filter = "itemType='CU'";
  var applied = text.rows(lines, function (field) {
    return "<p>" + text.encoded(field("itemName")) + " " + text.money(-field("lineItemTotal")) + " <button class=\"quiet\" data-offer=\"" + field("lineNumber") + "\">Take off</button></p>";
  }).join("");
  return applied;
}

// What changes with every click.
exports.paper = function (invoice, line) {
  return {
    offers: offers(invoice),
    lines: invoice.htmlLineItems(line > 0 ? line : ""),
    totals: invoice.htmlInvoiceTotals(),
    preferences: invoice.htmlInvoicePreferences(),
    seals: invoice.htmlNewHeatSeals(),
    coupons: invoice.htmlCoupons(),
    line: line > 0 ? line : 0
  };
};

// The pick list of a group: items of a department, or what hangs on the selected garment.
exports.panel = function (invoice, group, department, line, filter) {
  return plain(panelOf(invoice, group, department, line, filter));
};

function panelOf(invoice, group, department, line, filter) {
  var chosen = line > 0 ? line : "";
  switch (group) {
    case "up": return invoice.htmlUpcharges(line > 0 ? ofLine(invoice, line, "lineItemId") || "" : "", chosen);
    case "co":
    case "pa":
    case "br": return invoice.htmlDescriptor(group, chosen, filter);
    case "pr": return (line > 0 ? "<div class=\"functions\">" + invoice.htmlLineFunctions(line) + "</div>" : "") +
                      "<form class=\"properties\">" + invoice.htmlLineProperties(department, chosen) + "</form>";
    default: return invoice.htmlItems(department, "");
  }
}

function ofLine(invoice, line, column) {
  var found = invoice.lineItems.Clone();
  found.Filter = "lineNumber=" + line;
  return found.EOF ? null : found.Fields(column).Value;
}

// What the price list asks the clerk about a garment that has no answer yet.
exports.question = function (invoice, line) {
  return line > 0 && !ofLine(invoice, line, "promptResponse") && ofLine(invoice, line, "peNotes") || "";
};

// A stored ticket, to be compared with the one on the screen. Reading it loads the shop's tables for that ticket.
exports.preview = function (invoice, ticket) {
  Session.tables = "";
  return invoice.htmlSummary(ticket) + invoice.htmlPreviewLineItems(ticket);
};

exports.groups = function (invoice, line, group) {
  return line > 0 ? plain(invoice.htmlIdGroups(line, group)) : "";
};
