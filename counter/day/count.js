// The drawer is counted, looked at and closed.
var layout = Server.include("shared/layout.js");
var html = Server.include("shared/html.js");
var desk = Server.include("shared/desk.js");
var text = Server.include("shared/text.js");
var shop = Server.include("shared/shop.js");
var drawer = Server.include("shared/drawer.js");
var h = html.tag;

if (!desk.staffed() || !shop.allowed("close")) return;
var period = drawer.current();
if (!period && Request.method !== "POST") return Response.redirect("/day");

// A clerk counts without knowing what should be there.
function asked(problem) {
  layout.page(
    "Count the drawer",
    html.all(
      shop.problem(problem),
      h("p", { "class": "notice" }, "Key in how many there are of each; leave out what there is none of."),
      shop.form(
        "/day/count", { period: period ? period.id : 0 },
        html.all(
          h("fieldset", { "class": "coins" }, h("legend", null, "Bills and coins"),
            drawer.denominations.map(function(one, at) {
              return shop.field(
                "coin" + at, one[1], Request.form["coin" + at] || "",
                { inputmode: "numeric", maxlength: 5, autofocus: at === 0 });
            })),
          h("fieldset", null, h("legend", null, "Checks"),
            shop.field(
              "checks", "Sum of the checks", Request.form.checks || "",
              { inputmode: "decimal", maxlength: 12 })),
          h("div", { "class": "finish" }, h("button", { "class": "main" }, "Compare"),
            h("a", { "class": "button", href: "/day" }, "Not now"))))),
    { styles: ["shop.css"] });
}
if (Request.method !== "POST") return asked("");

var count = drawer.count(Request.form), id = text.whole(Request.form.period);
if (typeof count === "string") return asked(count);
if (Request.form.sure === "1") {
  var result = shop.change(function() { return drawer.close(id, count); });
  return result.problem ? layout.notice("Close the drawer", result.problem, "/day", "Back to the day") :
                          Response.redirect("/day/z?period=" + result.id);
}
if (!period || period.id !== id)
  return layout.notice("Close the drawer", "This drawer is closed already.", "/day", "Back to the day");

var lines = drawer.report(period, count).filter(function(one) { return one.section === "drawer"; }),
    off = lines[lines.length - 1].amount;
var given = { period: id, sure: 1, checks: Request.form.checks || "" };
drawer.denominations.forEach(function(one, at) { given["coin" + at] = Request.form["coin" + at] || ""; });
layout.page(
  "Close the drawer?",
  html.all(
    h("p", { "class": off ? "problem" : "done", role: off ? "alert" : "status" },
      off ? "The drawer is " + text.money(Math.abs(off)) + (off < 0 ? " short." : " over.") :
            "The drawer is right to the cent."),
    shop.table(
      ["", ["Amount", "money"]], lines.map(function(one) {
        return h(
          "tr", null, h("th", { scope: "row" }, one.name),
          h("td", { "class": "money" }, text.money(one.amount)));
      }),
      "Drawer"),
    h("p", { "class": "notice" }, "Once closed, the Z report stays as it is."),
    h("div", { "class": "finish" },
      html.raw(layout.button("/day/count", "Close it", given, { kind: "main", once: true })),
      h("a", { "class": "button", href: "/day/count" }, "Count again"))),
  { styles: ["shop.css"] });
