// Every ticket ever.
var layout = Server.include("shared/layout.js");
var html = Server.include("shared/html.js");
var desk = Server.include("shared/desk.js");
var text = Server.include("shared/text.js");
var shop = Server.include("shared/shop.js");
var history = Server.include("shared/ticket_history.js");
var h = html.tag;

if (!desk.staffed()) return;
var words = text.clean(Request.query.q, 40),
    parts = /^(\d{4})-(\d{2})-(\d{2})$/.exec(Request.query.day || "");
function literal(date) {
  function two(number) { return (number < 10 ? "0" : "") + number; }
  return "'" + date.getFullYear() + two(date.getMonth() + 1) + two(date.getDate()) + "'";
}
var day = parts ?
  [0, 1].map(function(
    more) { return literal(new Date(Number(parts[1]), Number(parts[2]) - 1, Number(parts[3]) + more)); }) :
  null;
var all = history.find(words, day);
var rows = all.slice(0, history.most).map(function(one) {
  return h(
    "tr", null,
    h("th", { scope: "row" },
      h("a", { "class": "inline", href: "/history/ticket?ticket=" + one.number }, one.invoice || one.number)),
    h("td", null, one.name), h("td", null, text.day(one.created)),
    h("td", null, one.state, one.out ? " " + text.day(one.out) : ""),
    h("td", { "class": "money" }, text.money(one.total)),
    h("td", { "class": "money" }, text.money(one.paid)));
});
layout.page(
  "Tickets",
  html.all(
    h("form", { method: "get", action: "/history", role: "search", "class": "filter" },
      shop.field(
        "q", "Number, tag, heat seal or customer", words, { type: "search", autofocus: true, maxlength: 40 }),
      shop.field("day", "Written on", parts ? Request.query.day : "", { type: "date" }),
      h("button", { "class": "main" }, "Find")),
    rows.length ?
      shop.table(["Invoice", "Customer", "Written", "State", ["Total", "money"], ["Paid", "money"]], rows) :
      h("p", { "class": "notice" },
        "No ticket is called so. A number has to be whole; of a name a part is enough."),
    all.length > history.most ?
      h("p", { "class": "notice" }, "There are more: the newest are shown. Say a day, or more of the name.") :
      ""),
  { styles: ["shop.css"] });
