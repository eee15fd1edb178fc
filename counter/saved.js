// What was saved, and what can be printed of it.
var layout = Server.include("shared/layout.js");
var text = Server.include("shared/text.js");

var numbers = text.numbers(Request.query.tickets);
var all = numbers.join("-");
var rows = numbers.length ? text.rows(Database.query("select ticketNumber, invoiceNumber, dueDate, netTotal, customerSequenceNumber from Ticket where ticketNumber in (" +
                                                     numbers.join(",") + ") order by ticketNumber"), function (field) {
  return { invoice: field("invoiceNumber"), due: text.day(field("dueDate")), total: text.money(field("netTotal")), customer: field("customerSequenceNumber") };
}) : [];
if (!rows.length) return layout.notice("Saved", "There is no such ticket.", "/", "Find a customer");

layout.page("Saved",
  "<table><thead><tr><th scope=\"col\">Invoice</th><th scope=\"col\">Due</th><th scope=\"col\" class=\"money\">Total</th></tr></thead><tbody>" + rows.map(function (row) {
    return "<tr><th scope=\"row\">" + text.encoded(row.invoice) + "</th><td>" + row.due + "</td><td class=\"money\">" + row.total + "</td></tr>";
  }).join("") + "</tbody></table><div class=\"finish\"><a class=\"button main\" href=\"/receipt?tickets=" + all + "\">Receipt</a>" +
  "<a class=\"button\" href=\"/tags?tickets=" + all + "\">Tags</a>" +
  layout.button("/pickup/start", "Pay ahead", { customer: rows[0].customer, action: "prepay", tickets: all }) + "<a class=\"button\" href=\"/customer?id=" + rows[0].customer + "\">Customer</a>" +
  "<a class=\"button\" href=\"/\">Next customer</a></div>");
