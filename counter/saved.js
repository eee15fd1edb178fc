// What was saved, and what can be printed of it.
var layout = Server.include("shared/layout.js");
var html = Server.include("shared/html.js");
var text = Server.include("shared/text.js");
var tickets = Server.include("shared/tickets.js");
var h = html.tag;

var numbers = text.numbers(Request.query.tickets), all = numbers.join("-");
var rows = tickets.heads(numbers);
if (!rows.length) return layout.notice("Saved", "There is no such ticket.", "/", "Find a customer");

layout.page(
  "Saved",
  html.all(
    Request.query.but ?
      h("p", { "class": "problem", role: "alert" },
        "The tickets are saved, but the connection was lost behind that: look at stock counts and tags.") :
      "",
    h("table", null,
      h("thead", null,
        h("tr", null, ["Invoice", "Ready"].map(function(one) { return h("th", { scope: "col" }, one); }),
          h("th", { scope: "col", "class": "money" }, "Total"))),
      h("tbody", null, rows.map(function(row) {
        return h(
          "tr", null, h("th", { scope: "row" }, row.invoice), h("td", null, text.day(row.due)),
          h("td", { "class": "money" }, row.isBag ? "not yet known" : text.money(row.total)));
      }))),
    h("div", { "class": "finish" },
      h("a", { "class": "button main", href: "/receipt?tickets=" + all, autofocus: true }, "Receipt"),
      h("a", { "class": "button", href: "/tags?tickets=" + all }, "Tags"),
      html.raw(layout.button(
        "/pickup/start", "Pay ahead", { customer: rows[0].customer, action: "prepay", tickets: all })),
      h("a", { "class": "button", href: "/customer?id=" + rows[0].customer }, "Customer"),
      h("a", { "class": "button", href: "/" }, "Next customer"))));
