// The rows of one kind of the shop's data.
var layout = Server.include("shared/layout.js");
var html = Server.include("shared/html.js");
var desk = Server.include("shared/desk.js");
var text = Server.include("shared/text.js");
var shop = Server.include("shared/shop.js");
var setup = Server.include("shared/setup.js");
var kinds = Server.include("shared/setup_kinds.js");
var h = html.tag;

if (!desk.staffed() || !shop.allowed("setup")) return;
var what = String(Request.query.what), kind = setup.kind(what), of = text.whole(Request.query.of);
if (!kind || (what === "extras" && !of)) return Response.redirect("/setup");

var listed = kind.fields.filter(function(one) { return (one[3] || {}).isListed; });
var named = {};
listed.forEach(function(one) {
  if (one[2] === "choice") named[one[0]] = setup.choices(one);
});
function words(field, value) {
  if (field[2] === "check") return value ? "yes" : "";
  if (field[2] === "money" && value) return text.money(Number(value));
  if (field[2] === "percent" && value) return value + " %";
  if (!named[field[0]]) return value;
  var chosen = named[field[0]].filter(function(one) { return String(one[0]) === value; })[0];
  return chosen ? chosen[1] : value;
}
var more = of ? "&of=" + of : "";
var rows = setup.rows(kind, of).map(function(one) {
  var address = "/setup/edit?what=" + what + more + "&row=" + encodeURIComponent(one.name);
  var child = kind.children;
  return h(
    "tr", null, listed.map(function(field, at) {
      var shown = words(field, one.values[field[0]]);
      return at ? h("td", { "class": field[2] === "money" ? "money" : false }, shown) :
                  h("th", { scope: "row" }, h("a", { "class": "inline", href: address }, shown || "no name"));
    }),
    child ? h("td", null,
              h("a", {
                "class": "button quiet",
                href: "/setup/list?what=" + child[0] + "&of=" + one.name,
                "aria-label": child[1] + " of " + one.values[kind.fields[0][0]]
              },
                child[1])) :
            "");
});
var heads = listed.map(function(field) {
                    return [field[1], field[2] === "money" ? "money" : ""];
                  })
              .concat(kind.children ? [""] : []);
var parent = kind.of && of ?
  (what === "items" ?
     kinds.departments().filter(function(one) { return one[0] === of; })[0] || ["", ""] :
     ["", shop.value("select itemName from PriceListItem where priceListItemId = " + of)])[1] :
  "";
layout.page(
  kind.title + (parent ? " of " + parent : ""),
  html.all(
    h("div", { "class": "row" },
      h("a", { "class": "button main", href: "/setup/edit?what=" + what + more, autofocus: true },
        "New " + kind.one),
      h("a", { "class": "button", href: "/setup" }, "All of the shop")),
    rows.length ? shop.table(heads, rows, kind.title) :
                  h("p", { "class": "notice" }, "Nothing is entered yet.")),
  { styles: ["shop.css"] });
