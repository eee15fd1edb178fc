// A Z report as it was written down.
var layout = Server.include("shared/layout.js");
var html = Server.include("shared/html.js");
var desk = Server.include("shared/desk.js");
var text = Server.include("shared/text.js");
var drawer = Server.include("shared/drawer.js");
var paper = Server.include("shared/drawer_paper.js");
var h = html.tag;

if (!desk.staffed()) return;
var period = drawer.byId(text.whole(Request.query.period));
if (!period || !period.closed)
  return layout.notice("Z report", "There is no such report.", "/day", "Back to the day");
layout.page(
  "Z report " + period.z,
  html.all(
    paper.paper(period, drawer.kept(period), "Z report " + period.z),
    h("div", { "class": "choices" },
      h("button", { "class": "main", "data-print": true, autofocus: true }, "Print"),
      h("a", { "class": "button", href: "/day" }, "Back to the day"))),
  { styles: ["shop.css", "print.css"] });
