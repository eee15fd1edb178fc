// The shop's own data: what is there, and in which order a new shop enters it.
var layout = Server.include("shared/layout.js");
var html = Server.include("shared/html.js");
var desk = Server.include("shared/desk.js");
var shop = Server.include("shared/shop.js");
var setup = Server.include("shared/setup.js");
var kinds = Server.include("shared/setup_kinds.js");
var h = html.tag;

if (!desk.staffed() || !shop.allowed("setup")) return;
var missing = [];
function row(step) {
  var kind = kinds.all[step[0]], count = setup.count(kind), isMissing = step[2] && !count;
  if (isMissing) missing.push(step[0]);
  var address = "/setup/list?what=" + step[0];
  return h(
    "tr", null, h("th", { scope: "row" }, h("a", { "class": "inline", href: address }, kind.title)),
    h("td", null, isMissing ? h("strong", { "class": "needs" }, "missing") : count), h("td", null, step[1]));
}
var groups = kinds.steps.map(function(group) {
  return html.all(
    h("h2", null, group[0]), shop.table(["What", "Entered", "For"], group[1].map(row), group[0]));
});
var next = missing.length ? kinds.all[missing[0]].title.toLowerCase() : "";
layout.page(
  "Set up the shop",
  html.all(
    next ? h("p", { "class": "notice" }, "Go through the list from above; " + next + " come next.") :
           h("p", { "class": "done" }, "All that a ticket needs is there."),
    h("div", { "class": "row" },
      next ? h("a", { "class": "button main", href: "/setup/edit?what=" + missing[0], autofocus: true },
               "Enter " + next) :
             h("a", { "class": "button main", href: "/" }, "To the customers"),
      h("a", { "class": "button", href: "/setup/prices" }, "Price list from a file")),
    groups,
    h("p", { "class": "notice" }, "All of it as one file, for another machine or a second shop: ",
      h("kbd", null, "ondrel db export"), ", ", h("kbd", null, "ondrel db import"), ".")),
  { styles: ["shop.css"] });
