// A customer with the tickets that are in the shop.
var layout = Server.include("shared/layout.js");
var html = Server.include("shared/html.js");
var desk = Server.include("shared/desk.js");
var text = Server.include("shared/text.js");
var shop = Server.include("shared/shop.js");
var people = Server.include("shared/people.js");
var customers = Server.include("shared/customers.js");
var h = html.tag;

if (!desk.staffed()) return;
var customer = customers.byId(Request.query.id);
var merged = customer ?
  shop.value("select mergedInto from Customer where customerSequenceNumber = " + customer.id) :
  null;
if (merged) return Response.redirect("/customer?id=" + merged);
if (!customer) return layout.notice("Customer", "There is no such customer.", "/", "Find a customer");

function button(path, label, values, options) {
  return html.raw(layout.button(path, label, values, options));
}
var tickets = customers.openTickets(customer.id);
var isReady = tickets.some(function(ticket) { return ticket.state === "ready"; });
var rows = tickets.map(function(ticket) {
  return h(
    "tr", { "class": ticket.state || false }, h("th", { scope: "row" }, ticket.invoice),
    h("td", null, ticket.pieces, ticket.gone ? " of " + (ticket.pieces + ticket.gone) : ""),
    h("td", null, text.day(ticket.due), " ", ticket.state ? h("strong", null, ticket.state) : ""),
    h("td", null, ticket.rack),
    h("td", { "class": "money" }, ticket.isBag ? "not yet known" : text.money(ticket.total)),
    h("td", { "class": "money" }, ticket.isBag ? "" : text.money(ticket.total - ticket.paid)),
    h("td", { "class": "row-actions" },
      button(
        "/ticket/edit", ticket.isQuick ? "Itemise" : "Edit", { ticket: ticket.number },
        { kind: "quiet", said: (ticket.isQuick ? "Itemise " : "Edit ") + ticket.invoice }),
      ticket.pieces > 1 && !ticket.isBag ? h("a", {
        "class": "button quiet",
        href: "/pickup/part?ticket=" + ticket.number,
        "aria-label": "Hand out some pieces of " + ticket.invoice
      },
                                             "Some pieces") :
                                           "",
      h("a", {
        "class": "button quiet",
        href: "/receipt?copy=1&ticket=" + ticket.number,
        "aria-label": "Receipt of " + ticket.invoice
      },
        "Receipt")));
});
var columns =
  [["Invoice", ""], ["Pieces", ""], ["Ready", ""], ["Rack", ""], ["Total", "money"], ["To pay", "money"]];

layout.page(
  customer.name,
  html.all(
    people.head(customer.id), customer.address ? h("p", { "class": "notice" }, customer.address) : "",
    h("div", { "class": "choices" },
      button("/ticket/start", "New ticket", { customer: customer.id }, { kind: isReady ? "" : "main" }),
      button("/quick/start", "Quick drop-off", { customer: customer.id }),
      button("/pickup/start", "Pickup", { customer: customer.id }, { kind: isReady ? "main" : "" }),
      button("/pickup/start", "Pay ahead", { customer: customer.id, action: "prepay" }),
      h("a", { "class": "button", href: "/customers/edit?id=" + customer.id }, "Change")),
    h("h2", null, "In the shop"),
    rows.length ? h("table", null,
                    h("thead", null,
                      h("tr", null,
                        columns.map(function(
                          one) { return h("th", { scope: "col", "class": one[1] || false }, one[0]); }),
                        h("td", null))),
                    h("tbody", null, rows)) :
                  h("p", { "class": "notice" }, "Nothing is in the shop.")),
  { isHeaded: true });
