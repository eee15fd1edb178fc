// A customer's data, to be changed.
var layout = Server.include("shared/layout.js");
var html = Server.include("shared/html.js");
var desk = Server.include("shared/desk.js");
var person = Server.include("shared/person.js");
var form = Server.include("shared/person_form.js");
var h = html.tag;

if (!desk.staffed()) return;
var one = person.stored(Request.query.id);
if (!one) return layout.notice("Customer", "There is no such customer.", "/", "Find a customer");
if (one.mergedInto) return Response.redirect("/customers/edit?id=" + one.mergedInto);
layout.page(
  "Change " + (person.fullName(one) || "a customer"),
  html.all(
    form.form(one, { isOpen: true }),
    h("p", null,
      h("a", { "class": "button quiet", href: "/customers/merge?id=" + one.id },
        "This customer is entered twice"))),
  { styles: ["shop.css"] });
