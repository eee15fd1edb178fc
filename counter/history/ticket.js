// One ticket: what is on it, where it is, what happened to it, and what can be done.
var layout = Server.include("shared/layout.js");
var html = Server.include("shared/html.js");
var desk = Server.include("shared/desk.js");
var text = Server.include("shared/text.js");
var shop = Server.include("shared/shop.js");
var history = Server.include("shared/ticket_history.js");
var h = html.tag;

if (!desk.staffed()) return;
var ticket = history.ticket(Request.query.ticket);
if (!ticket)
  return layout.notice("Ticket", "There is no such ticket in this shop.", "/history", "Find a ticket");

function button(path, label, values, options) {
  return html.raw(layout.button(path, label, values, options));
}
var isHere = ticket.status === "AC" || ticket.status === "OD";
var facts = [
  ticket.state + (ticket.out ? " " + text.day(ticket.out) : ""),
  ticket.rack && isHere ? "at " + ticket.rack :
    isHere              ? "not on the rack" :
                          "",
  isHere ? "promised for " + text.day(ticket.due) : "",
  text.money(ticket.total) + ", paid " + text.money(ticket.paid) +
    (ticket.refunded ? ", given back " + text.money(ticket.refunded) : "")
];
function isOffer(kind) { return ["CU", "LY", "PR", "VI", "RE"].indexOf(kind) >= 0; }
var lines = history.lines(ticket.number).map(function(one) {
  var small = [one.isRedo ? "redo" : "", one.seal, one.notes, one.isOut ? "handed out" : ""]
                .filter(function(each) { return each; })
                .join(", ");
  return h(
    "tr", null,
    h("td", null, one.kind === "IT" || one.kind === "DE" || one.kind === "AC" ? one.quantity : ""),
    h("td", null, one.name, small ? h("span", { "class": "small" }, " " + small) : ""),
    h("td", { "class": "money" }, text.money(isOffer(one.kind) ? -one.total : one.total)));
});
var log = history.log(ticket).map(function(one) {
  return h(
    "tr", null, h("td", null, history.moment(one.when)), h("td", null, one.what), h("td", null, one.who),
    h("td", { "class": "money" }, one.amount === null ? "" : text.money(one.amount)));
});
layout.page(
  "Ticket " + ticket.invoice,
  html.all(
    h("div", { "class": "head" }, h("h1", null, "Ticket " + ticket.invoice),
      h("ul", { "class": "facts" },
        h("li", null, h("a", { "class": "inline", href: "/customer?id=" + ticket.customer }, ticket.name)),
        facts.filter(function(one) { return one; }).map(function(one) { return h("li", null, one); }))),
    h("div", { "class": "row" },
      isHere ? button("/ticket/edit", ticket.isQuick ? "Itemise" : "Edit", { ticket: ticket.number }) : "",
      isHere && !ticket.isQuick ? h("a", { "class": "button", href: "/rack?ticket=" + ticket.number },
                                    ticket.rack ? "Move it" : "Hang it on the rack") :
                                  "",
      isHere ? button("/pickup/start", "Pickup", { customer: ticket.customer, tickets: ticket.number }) : "",
      isHere && !ticket.isQuick ?
        h("a", { "class": "button", href: "/pickup/part?ticket=" + ticket.number }, "Some pieces") :
        "",
      h("a", { "class": "button", href: "/receipt?copy=1&ticket=" + ticket.number }, "Receipt again"),
      h("a", { "class": "button", href: "/tags?tickets=" + ticket.number }, "Tags"),
      ticket.status !== "VO" || ticket.paid > 0 ?
        h("a", { "class": "button quiet", href: "/history/back?ticket=" + ticket.number },
          ticket.paid > 0 ? "Void or give money back" : "Void") :
        ""),
    h("h2", null, "On the ticket"), shop.table(["Pieces", "What", ["Amount", "money"]], lines),
    h("h2", null, "What happened"), shop.table(["When", "What", "Who", ["Amount", "money"]], log)),
  { isHeaded: true, styles: ["shop.css"] });
