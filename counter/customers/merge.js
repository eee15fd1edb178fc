// A customer who was entered twice becomes one.
var layout = Server.include("shared/layout.js");
var html = Server.include("shared/html.js");
var desk = Server.include("shared/desk.js");
var text = Server.include("shared/text.js");
var shop = Server.include("shared/shop.js");
var person = Server.include("shared/person.js");
var customers = Server.include("shared/customers.js");
var h = html.tag;

if (!desk.staffed() || !shop.allowed("setup")) return;
var into = person.stored(Request.method === "POST" ? Request.form.id : Request.query.id);
if (!into) return layout.notice("Customer", "There is no such customer.", "/", "Find a customer");

if (Request.method === "POST") {
  var from = person.stored(Request.form.from);
  var result = from ?
    shop.change(function() { return person.merge(person.stored(into.id), person.stored(from.id)); }) :
    { problem: "There is no such customer." };
  if (result.problem) return layout.notice("Merge", result.problem, "/customers/merge?id=" + into.id, "Back");
  return Response.redirect("/customer?id=" + result.id);
}

function count(id) {
  return text.whole(shop.value("select count(*) from Ticket where customerSequenceNumber = " + id));
}
function row(one) {
  var tickets = count(one.id);
  return h(
    "tr", null, h("th", { scope: "row" }, one.name), h("td", null, one.phone), h("td", null, one.address),
    h("td", null, tickets + (tickets === 1 ? " ticket" : " tickets")),
    h("td", { "class": "row-actions" },
      html.raw(layout.button(
        "/customers/merge", "Take over", { id: into.id, from: one.id },
        { once: true, said: "Take over " + one.name + ", number " + one.id }))));
}
var wanted = text.clean(Request.query.q, 60),
    others = wanted ? customers.search(wanted).customers : person.doubles(into).map(customers.byId);
others = others.filter(function(one) { return one.id !== into.id; });
layout.page(
  "Who is the same as " + person.fullName(into) + "?",
  html.all(
    h("p", { "class": "notice" },
      person.fullName(into) +
        " keeps name, address and preferences, and gets tickets, payments and credit of the other, who " +
        "is not found any more. This cannot be taken back."),
    h("form", { method: "get", action: "/customers/merge", "class": "search", role: "search" },
      h("input", { type: "hidden", name: "id", value: into.id }),
      h("label", { "for": "q2" }, "Name or phone of the other"),
      h("input", { id: "q2", name: "q", type: "search", value: wanted, autofocus: true }),
      h("button", null, "Find")),
    others.length ?
      shop.table(["Name", "Phone", "Address", "Tickets", ""], others.map(row)) :
      h("p", { "class": "notice" },
        wanted ? "Nobody found." : "Nobody has the same name or phone. Look for the other by name.")),
  { styles: ["shop.css"] });
