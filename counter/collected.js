// Paid, and handed out unless it was paid ahead.
var layout = Server.include("shared/layout.js");
var html = Server.include("shared/html.js");
var text = Server.include("shared/text.js");
var h = html.tag;

var last = Session.kept.collected;
if (!last) return Response.redirect("/");
layout.page(
  "Thank you",
  html.all(
    h("p", { "class": "change", role: "status" }, h("span", { "class": "name" }, "Change"), " ",
      h("strong", null, text.money(last.change))),
    last.drawer ? h("p", null, "The cash drawer opens.") : "",
    last.isAhead ? h("p", null, "The tickets stay in the shop until they are collected.") : "",
    h("div", { "class": "row" },
      h("a", { "class": "button main", href: "/", autofocus: true }, "Next customer"),
      h("a", { "class": "button", href: "/receipt?tickets=" + last.tickets.join("-") }, "Receipt"))));
