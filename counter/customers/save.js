// Enters a customer or changes one, once. Somebody who is likely known is asked about first.
var layout = Server.include("shared/layout.js");
var html = Server.include("shared/html.js");
var desk = Server.include("shared/desk.js");
var shop = Server.include("shared/shop.js");
var person = Server.include("shared/person.js");
var customers = Server.include("shared/customers.js");
var form = Server.include("shared/person_form.js");
var h = html.tag;

if (Request.method !== "POST") return Response.redirect("/");
if (!desk.staffed()) return;
var given = person.given(Request.form);

function again(options) {
  layout.page(
    given.id ? "Change " + person.fullName(given) : "New customer", form.form(given, options),
    { styles: ["shop.css"] });
}
var trouble = person.trouble(given);
if (trouble) return again({ problem: trouble, isOpen: true });

// The same answer counts for the same name and phone alone.
var sure = [given.firstName, given.lastName, given.phone].join("|");
var result = shop.change(function() {
  var doubles = !given.id && Request.form.sure !== sure ? person.doubles(given) : [];
  return doubles.length ? { doubles: doubles } : person.save(given);
});
if (result.problem) {
  given.changes = result.changes;
  return again({ problem: result.problem, isOpen: true });
}
if (result.doubles) {
  return again({
    sure: sure,
    doubles:
      h("section", { "class": "paper", "aria-label": "Known already" }, h("h2", null, "Is it one of these?"),
        h("ul", { "class": "customers" }, result.doubles.map(function(id) {
          var one = customers.byId(id);
          return h(
            "li", null,
            h("a", { "class": "customer", href: "/customer?id=" + id },
              h("span", { "class": "name" }, one.name), h("span", null, one.phone),
              h("span", null, one.address)));
        })),
        h("p", { "class": "notice" }, "If it is somebody else, save once more."))
  });
}
if (Request.form.then !== "ticket" || Session.invoice || Session.quick || Session.pickup)
  return Response.redirect("/customer?id=" + result.id);
Server.include("shared/tickets.js").start(result.id);
Response.redirect("/ticket");
