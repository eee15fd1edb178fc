// The drawer of this counter: open it in the morning, look at it, count and close it in the evening.
var layout = Server.include("shared/layout.js");
var html = Server.include("shared/html.js");
var desk = Server.include("shared/desk.js");
var text = Server.include("shared/text.js");
var shop = Server.include("shared/shop.js");
var drawer = Server.include("shared/drawer.js");
var paper = Server.include("shared/drawer_paper.js");
var h = html.tag;

if (!desk.staffed()) return;
var period = drawer.current(), said = Session.daySaid || {};
delete Session.daySaid;

function amount(label, options) {
  return shop.field("amount", label, "", Object.keys(options || {}).reduce(function(all, key) {
    all[key] = options[key];
    return all;
  }, { inputmode: "decimal", required: true, maxlength: 12 }));
}

function opening() {
  return html.all(
    h("p", { "class": "notice" },
      "The drawer of " + desk.place().name + " is closed. Count what is in it now and open it."),
    shop.form(
      "/day/act", { act: "open" },
      html.all(
        h("fieldset", null, h("legend", null, "Open the drawer"), amount("Float", { autofocus: true })),
        h("div", { "class": "finish" }, h("button", { "class": "main" }, "Open")))));
}

function moving(type, label, words) {
  return h(
    "details", null, h("summary", null, label),
    shop.form(
      "/day/act", { act: "move", type: type, period: period.id },
      html.all(
        h("fieldset", null, h("div", null, h("label", { "for": "amount-" + type }, "Amount"), h("input", {
                                id: "amount-" + type,
                                name: "amount",
                                inputmode: "decimal",
                                required: true,
                                maxlength: 12,
                                autocomplete: "off"
                              })),
          h("div", null, h("label", { "for": "reason-" + type }, words),
            h("input",
              { id: "reason-" + type, name: "reason", required: true, maxlength: 64, autocomplete: "off" })),
          h("button", null, label)))));
}

function running() {
  return html.all(
    h("div", { "class": "row" },
      h("a", { "class": "button main", href: "/day/count", autofocus: true }, "Count and close"),
      h("button", { "data-print": true }, "Print the X report")),
    moving("I", "Pay in", "Where from?"), moving("O", "Pay out", "What for?"),
    paper.paper(period, drawer.report(period), "X report"));
}

var closed = drawer.closed(10).map(function(one) {
  return h(
    "tr", null,
    h("th", { scope: "row" }, h("a", { "class": "inline", href: "/day/z?period=" + one.id }, "Z " + one.z)),
    h("td", null, one.terminalName), h("td", null, text.day(one.closed)), h("td", null, one.closedBy),
    h("td", { "class": "money" }, text.money(one.counted)));
});
layout.page(
  "Day",
  html.all(
    shop.problem(said.problem), said.words ? h("p", { "class": "done", role: "status" }, said.words) : "",
    period ? running() : opening(),
    closed.length ? html.all(
                      h("h2", null, "Closed days"),
                      shop.table(["Report", "Counter", "Closed", "By", ["Counted", "money"]], closed)) :
                    ""),
  { styles: ["shop.css", "print.css"] });
