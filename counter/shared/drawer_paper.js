// A drawer's report on paper.
var html = Server.include("shared/html.js");
var text = Server.include("shared/text.js");
var history = Server.include("shared/ticket_history.js");
var h = html.tag;

var sections = [
  ["drawer", "Drawer"], ["count", "Counted"], ["moved", "Paid in and out"], ["tender", "By tender"],
  ["clerk", "By clerk"], ["action", "By kind"], ["tax", "Taxes of what went out"], ["out", "Tickets"]
];
exports.sections = sections;

exports.paper = function(period, rows, title) {
  return h(
    "section", { "class": "strip", "aria-label": title }, h("h2", null, title),
    h("p", null, period.terminalName),
    h("p", null, "Opened " + history.moment(period.opened) + " by " + period.openedBy),
    period.closed ? h("p", null, "Closed " + history.moment(period.closed) + " by " + period.closedBy) : "",
    sections.map(function(section) {
      var own = rows.filter(function(one) { return one.section === section[0]; });
      return own.length ?
        [
          h("h3", null, section[1]),
          h("table", { "aria-label": section[1] }, h("tbody", null, own.map(function(one) {
              return h(
                "tr", null, h("td", null, one.name),
                h("td", { "class": "money" }, one.pieces === null ? "" : one.pieces),
                h("td", { "class": "money" }, text.money(one.amount)));
            })))
        ] :
        "";
    }));
};
