// A customer with the tickets that are in the shop.
var layout = Server.include("shared/layout.js");
var desk = Server.include("shared/desk.js");
var text = Server.include("shared/text.js");
var customers = Server.include("shared/customers.js");

if (!desk.staffed()) return;
var customer = customers.byId(Request.query.id);
if (!customer) return layout.notice("Customer", "There is no such customer.", "/", "Find a customer");

var tickets = customers.openTickets(customer.id);
var rows = tickets.map(function (ticket) {
  return "<tr" + (ticket.state === "late" ? " class=\"late\"" : "") + "><th scope=\"row\">" + text.encoded(ticket.invoice) + "</th><td>" + ticket.pieces + "</td><td>" +
         text.day(ticket.due) + (ticket.state ? " <strong>" + ticket.state + "</strong>" : "") + "</td><td class=\"money\">" + text.money(ticket.total) + "</td><td class=\"money\">" +
         text.money(ticket.total - ticket.paid) + "</td><td class=\"row-actions\">" +
         layout.button("/ticket/edit", ticket.isQuick ? "Itemise" : "Edit", { ticket: ticket.number }, { kind: "quiet" }) +
         "<a class=\"button quiet\" href=\"/receipt?ticket=" + ticket.number + "\">Receipt</a></td></tr>";
}).join("");

layout.page(customer.name,
  "<p class=\"contact\">" + text.encoded(customer.phone) + " &middot; " + text.encoded(customer.address) + "</p>" +
  "<div class=\"choices\">" +
  layout.button("/ticket/start", "New ticket", { customer: customer.id }, { kind: "main" }) +
  layout.button("/quick/start", "Quick drop-off", { customer: customer.id }) +
  layout.button("/pickup/start", "Pickup", { customer: customer.id }) +
  layout.button("/pickup/start", "Pay ahead", { customer: customer.id, action: "prepay" }) + "</div>" +
  "<h2>In the shop</h2>" +
  (rows ? "<table><thead><tr><th scope=\"col\">Invoice</th><th scope=\"col\">Pieces</th><th scope=\"col\">Due</th><th scope=\"col\" class=\"money\">Total</th>" +
          "<th scope=\"col\" class=\"money\">To pay</th><td></td></tr></thead><tbody>" + rows + "</tbody></table>"
        : "<p class=\"notice\">Nothing is in the shop.</p>"));
