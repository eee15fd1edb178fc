// The board: what is late, what is for today, what comes. It looks again by itself, so that all counters see
// the same.
var layout = Server.include("shared/layout.js");
var html = Server.include("shared/html.js");
var desk = Server.include("shared/desk.js");
var text = Server.include("shared/text.js");
var shop = Server.include("shared/shop.js");
var list = Server.include("shared/work_list.js");
var h = html.tag;

if (!desk.staffed()) return;
var counts = list.counts(), sections = list.sections(), department = text.whole(Request.query.department);
var wanted = sections.filter(function(one) { return one[0] === Request.query.show; })[0] ||
  sections.filter(function(one) { return counts[one[0]] > 0; })[0] || sections[1];
var tickets = list.tickets(wanted[2], department);

function address(section, of) { return "/board?show=" + section + (of ? "&department=" + of : ""); }
var tabs = h("nav", { "class": "tabs", "aria-label": "Board" }, sections.map(function(one) {
  return h(
    "a",
    { "class": "button", href: address(one[0], department), "aria-current": one === wanted ? "page" : false },
    one[1],
    counts[one[0]] === undefined ?
      "" :
      h("strong", { "class": one[0] === "late" && counts.late ? "needs" : false }, counts[one[0]]));
}));
var filter =
  h("form", { method: "get", action: "/board", "class": "filter" },
    h("input", { type: "hidden", name: "show", value: wanted[0] }),
    shop.select(
      "department", "Department", department || 0, [[0, "all"]].concat(list.departments()),
      { "data-submits": true }),
    h("button", null, "Show"));
var rows = tickets.slice(0, list.most).map(function(one) {
  return h(
    "tr", null,
    h("th", { scope: "row" },
      h("a", { "class": "inline", href: "/history/ticket?ticket=" + one.number }, one.invoice)),
    h("td", null, one.name), h("td", null, text.day(one.due), one.time ? " " + one.time : ""),
    h("td", null, one.pieces, one.gone ? " of " + (one.pieces + one.gone) : ""),
    h("td", null, one.departments), h("td", null, one.rack));
});
var shown = html.all(
  tabs,
  rows.length ?
    shop.table(["Invoice", "Customer", "Promised", "Pieces", "Departments", "Rack"], rows, wanted[1]) :
    h("p", { "class": "notice" }, wanted[3]),
  tickets.length > list.most ?
    h("p", { "class": "notice" }, "There are more: those that are due first are shown.") :
    "");

if (Request.query.part) {
  Response.write(String(shown));
  return;
}
layout.page(
  "Board",
  html.all(
    filter, h("div", { id: "board", "data-again": address(wanted[0], department) + "&part=1" }, shown)),
  { styles: ["shop.css"], scripts: ["board.js"] });
