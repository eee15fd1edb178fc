// The counter's first page: who is in front of it?
var layout = Server.include("shared/layout.js");
var html = Server.include("shared/html.js");
var desk = Server.include("shared/desk.js");
var text = Server.include("shared/text.js");
var customers = Server.include("shared/customers.js");
var h = html.tag;

if (!desk.staffed()) return;

var wanted = (Request.query.q || "").substr(0, 60);
var found = wanted ? customers.search(wanted) : { tickets: [], customers: [] };

var isNobody = !!wanted && !found.tickets.length && !found.customers.length;

function person(one) {
  return h(
    "li", null,
    h("a", { "class": "customer", href: "/customer?id=" + one.id }, h("span", { "class": "name" }, one.name),
      h("span", null, one.phone), h("span", null, one.address)));
}
function ticket(one) {
  return h(
    "li", null,
    h("a", { "class": "customer", href: "/customer?id=" + one.customer.id },
      h("span", { "class": "name" }, "Ticket " + one.invoice), h("span", null, one.state),
      h("span", null, one.customer.name)));
}
function list(title, all, made) {
  return all.length ? html.all(h("h2", null, title), h("ul", { "class": "customers" }, all.map(made))) : "";
}

// The search box asks again while the clerk types, and takes the list alone.
var shown = html.all(
  list("Tickets", found.tickets, ticket), list("Customers", found.customers, person),
  found.customers.length >= customers.most ?
    h("p", { "class": "notice" }, "There are more. Key in more of the name.") :
    "",
  isNobody ?
    h("p", { "class": "notice" }, "Nobody found. Try fewer letters, or a part of the phone number.") :
    "",
  wanted ? h("p", null,
             h("a", {
               "class": found.tickets.length || found.customers.length ? "button quiet" : "button main",
               href: "/customers/new?q=" + encodeURIComponent(wanted),
               autofocus: isNobody && !Request.query.part
             },
               "New customer")) :
           "");
if (Request.query.part) {
  Response.write(String(shown));
  return;
}
// Enter opens the only one.
if (wanted && found.tickets.length + found.customers.length === 1) {
  var only = found.tickets[0] ? found.tickets[0].customer : found.customers[0];
  return Response.redirect("/customer?id=" + only.id);
}

var away = desk.awayWork(), last = Session.kept.collected;
layout.page(
  "Customers",
  html.all(
    away ? h("div", { id: "undo", "class": "row" },
             h("span", null,
               away[2] + " of " + (customers.byId(Session.putAway.customer) || { name: "a customer" }).name +
                 " given up."),
             html.raw(layout.button("/bring_back", "Bring it back", {}))) :
           "",
    last && last.change > 0 ? h("p", { "class": "change", role: "status" },
                                h("span", { "class": "name" }, "Change of the last customer"), " ",
                                h("strong", null, text.money(last.change))) :
                              "",
    h("form", { method: "get", action: "/", role: "search", "class": "search" },
      h("label", { "for": "q" }, "Name, phone or ticket number"),
      h("input",
        { id: "q", name: "q", type: "search", autocomplete: "off", autofocus: !isNobody, value: wanted }),
      h("button", { "class": "main" }, "Find")),
    h("div", { id: "found-customers", "aria-live": "polite" }, shown)));
