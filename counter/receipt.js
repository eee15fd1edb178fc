// Receipts on a strip of 80 mm, one after the other, each as long as what it says.
var layout = Server.include("shared/layout.js");
var html = Server.include("shared/html.js");
var text = Server.include("shared/text.js");
var barcode = Server.include("shared/barcode.js");
var receipts = Server.include("shared/receipts.js");
var history = Server.include("shared/ticket_history.js");
var h = html.tag;

function money(name, amount) {
  return h("tr", null, h("td", null, name), h("td", { "class": "money" }, text.money(amount)));
}

function paid(ticket) {
  if (ticket.isBag && !ticket.total && !ticket.paid) return "";
  return h(
    "table", null,
    h("tbody", { "class": "sums" },
      receipts.tenders(ticket.number).map(function(one) { return money(one.name, one.amount); }),
      h("tr", { "class": "grand" }, h("td", null, "To pay"),
        h("td", { "class": "money" }, text.money(ticket.total - ticket.paid)))));
}

var strips =
  receipts.asked().map(receipts.header).filter(function(one) { return one; }).map(function(ticket) {
    return h(
      "section", { "class": "strip", "aria-label": "Receipt " + ticket.invoice }, h("h2", null, ticket.store),
      h("p", { "class": "center" }, ticket.address, h("br"), ticket.storePhone),
      Request.query.copy ? h("p", { "class": "number" }, "Copy") : "",
      ticket.isVoid ? h("p", { "class": "number" }, "Void") : "",
      h("p", { "class": "number" }, ticket.invoice),
      h("p", { "class": "center" }, ticket.customer, h("br"), ticket.phone),
      h("p", null, "Written ", history.moment(ticket.written), ticket.employee ? ", " + ticket.employee : ""),
      h("p", { "class": "day" },
        ticket.out   ? "Collected " + text.day(ticket.out) :
          ticket.due ? "Ready " + text.day(ticket.due) + (ticket.time ? " " + ticket.time : "") :
                       ""),
      html.raw(receipts.lines(receipts.loaded(ticket.number))), paid(ticket), barcode.of(ticket.invoice, 30));
  });
if (!strips.length) return layout.notice("Receipt", "There is no such ticket.", "/", "Find a customer");
layout.page(
  "Receipt",
  html.all(
    h("div", { "class": "choices" },
      h("button", { "class": "main", "data-print": true, autofocus: true }, "Print"),
      h("a", { "class": "button", href: "/" }, "Next customer")),
    strips),
  { styles: ["print.css"], scripts: ["print.js"] });
