// What the shop did over a span of days: as a table, as a chart, as a file.
var layout = Server.include("shared/layout.js");
var html = Server.include("shared/html.js");
var desk = Server.include("shared/desk.js");
var text = Server.include("shared/text.js");
var shop = Server.include("shared/shop.js");
var chart = Server.include("shared/chart.js");
var reports = Server.include("shared/reports.js");
var h = html.tag;

if (!desk.staffed() || !shop.allowed("reports")) return;
var report = reports.named(Request.query.show), span = reports.span(Request.query.from, Request.query.to);
var rows = report.rows(span), most = 200;

if (Request.query.download) {
  Response.header("Content-Type", "text/csv; charset=utf-8");
  Response.header(
    "Content-Disposition",
    "attachment; filename=\"" + report.id + "_" + span.from.iso + "_" + span.to.iso + ".csv\"");
  Response.write(reports.csv(report, rows));
  return;
}

function address(id, from, to) { return "/reports?show=" + id + "&from=" + from + "&to=" + to; }
function shown(value, kind) {
  if (value === null || value === undefined) return "";
  if (kind === "money") return text.money(value);
  if (kind === "day") return text.day(reports.date(value));
  if (kind === "share") return (value * 100).toFixed(0) + " %";
  return kind === "days" ? value.toFixed(1) : value;
}
function isText(kind) { return kind === "text" || kind === "day"; }
function line(values) {
  return h("tr", null, report.columns.map(function(column, at) {
    var value = shown(values[at], column[2]);
    return at === 0 ? h("th", { scope: "row" }, value) :
                      h("td", { "class": isText(column[2]) ? false : "money" }, value);
  }));
}
var sums = reports.sums(report, rows);
var isAdded = rows.length > 1 && sums.some(function(one) { return one !== null; });
var total = h("tr", { "class": "grand" }, report.columns.map(function(column, at) {
  return at === 0 ? h("th", { scope: "row" }, "Together") :
                    h("td", { "class": "money" }, shown(sums[at], column[2]));
}));

// Names beyond the tenth would be small bars; days are all drawn.
function picture() {
  var column = report.columns.filter(function(one) { return one[0] === report.chart; })[0];
  var drawn = rows.filter(function(row) { return report.id !== "departments" || row.isCharted; });
  var bars = (report.isByDay ? drawn : drawn.slice(0, 10)).map(function(row) {
    var day = report.isByDay ? reports.date(row.key) : null;
    return {
      name: day ? (day.getMonth() + 1) + "/" + day.getDate() : String(row.name || "nobody"),
      value: row[report.chart] || 0,
      words: String(shown(row[report.chart] || 0, column[2]))
    };
  });
  var said = report.title + ", " + column[1].toLowerCase() + ": as in the table";
  return bars.length ? (report.isByDay ? chart.columns : chart.bars)(bars, said) : "";
}

layout.page(
  "Reports",
  html.all(
    h("nav", { "class": "tabs", "aria-label": "Reports" }, reports.all.map(function(one) {
      return h(
        "a", {
          "class": "button",
          href: address(one.id, span.from.iso, span.to.iso),
          "aria-current": one === report ? "page" : false
        },
        one.title);
    })),
    h("form", { method: "get", action: "/reports", "class": "filter span" },
      h("input", { type: "hidden", name: "show", value: report.id }),
      shop.field("from", "From", span.from.iso, { type: "date" }),
      shop.field("to", "To", span.to.iso, { type: "date" }), h("button", { "class": "main" }, "Show")),
    h("div", { "class": "row" }, reports.spans().map(function(one) {
      return h("a", { "class": "button quiet", href: address(report.id, one[1].iso, one[2].iso) }, one[0]);
    })),
    rows.length ?
      html.all(
        picture(),
        shop.table(
          report.columns.map(function(one) {
            return [one[1], isText(one[2]) ? "" : "money"];
          }),
          rows.slice(0, most)
            .map(function(
              row) { return line(report.columns.map(function(column) { return row[column[0]]; })); })
            .concat(isAdded ? total : ""),
          report.title),
        rows.length > most ? h("p", { "class": "notice" }, "There are more: the file has all.") : "",
        h("div", { "class": "row" },
          h("a", { "class": "button", href: address(report.id, span.from.iso, span.to.iso) + "&download=1" },
            "As a file (CSV)"))) :
      h("p", { "class": "notice" }, "Nothing happened on these days.")),
  { styles: ["shop.css"] });
