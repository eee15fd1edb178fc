// The ticket on the entry screen: its lines by department, each with the day it is ready, and what it comes
// to.
var html = Server.include("shared/html.js");
var text = Server.include("shared/text.js");
var tickets = Server.include("shared/tickets.js");
var coupons = Server.include("shared/coupons.js");
var finishing = Server.include("shared/finishing.js");
var h = html.tag;

var columns = [
  "lineNumber", "parentLineNumber", "deptId", "deptName", "itemType", "itemName", "lineItemId", "quantity",
  "unitPrice", "originalUnitPrice", "lineItemTotal", "upchargeTotal", "colorTotal", "patternTotal", "notes",
  "promptResponse", "heatSeal", "redo", "priceLater"
];

// The rows of the ticket, read once for all that is drawn of them.
function rowsOf(invoice) {
  return text.rows(invoice.lineItems.Clone(), function(field) {
    var row = {};
    columns.forEach(function(name) { row[name] = field(name); });
    return row;
  });
}

// ---- a line

// How often: on every piece once, more often, or on some of the pieces only.
function timesOf(child, pieces) {
  if (child.quantity && child.quantity % pieces !== 0)
    return child.itemType === "UP" ? child.quantity + " of " + pieces : "";
  return child.quantity > pieces ? child.quantity / pieces + " each" : "";
}
function descriptor(child, pieces) {
  var times = timesOf(child, pieces);
  return h("li", null, child.itemName, times ? " (" + times + ")" : "");
}

function priceOf(row) {
  return (row.lineItemTotal || 0) + (row.upchargeTotal || 0) + (row.colorTotal || 0) +
    (row.patternTotal || 0);
}

function frame(row, more, quantity, name, price, rest) {
  return h(
    "div", { "class": "lineitem it-" + row.itemType.toLowerCase() + more, lineid: row.lineNumber },
    h("div", { "class": "quantity" }, quantity), h("div", { "class": "name" }, name),
    h("div", { "class": "price" }, price), rest);
}

function said(kind, words) { return words ? h("span", { "class": kind }, words) : ""; }

// A bag as it was counted, also while it is itemised.
function bagLine(row, more) {
  var counted = Session.counted[row.deptId];
  return frame(
    row, more, counted || row.quantity, (counted ? "Counted: " : "Bag: ") + (row.itemName || row.deptName),
    "", h("div", { "class": "small" }, said("notes", row.notes)));
}

function lineOf(invoice, row, children, chosen) {
  var more = row.lineNumber === chosen ? " selected" : "", pieces = Math.max(row.quantity || 0, 1);
  if (row.itemType === "DE") return bagLine(row, more);
  var needs = row.itemType === "IT" ? finishing.missing(invoice, row.lineNumber) : [],
      before = tickets.priceBefore(row);
  var name = [
    row.itemName, row.redo ? h("strong", { "class": "badge" }, "REDO") : "",
    said("needs", needs.length ? " " + needs.join(", ") + "?" : "")
  ];
  var price = row.priceLater && !priceOf(row) ? "price later" : text.money(priceOf(row));
  return frame(
    row, more + (needs.length ? " lacking" : ""), row.quantity, name,
    [price, said("was", before ? "was " + text.money(before) : "")], [
      h("div", { "class": "small" }, said("heatseal", row.heatSeal), said("notes", row.notes),
        said("answer", row.promptResponse)),
      children.length ? h("ul", { "class": "descriptors" },
                          children.map(function(child) { return descriptor(child, pieces); })) :
                        ""
    ]);
}

// ---- the lines by department

function isShown(row) {
  if (row.parentLineNumber >= 0 || row.deptId === null) return false;
  return row.itemType === "DE" ? row.quantity > 0 || !!Session.counted[row.deptId] :
                                 row.itemType === "IT" || row.itemType === "AC";
}

function dayButton(name, day) {
  if (!day) return "";
  return h(
    "button", {
      "class": "day quiet",
      "data-due": day.departmentId,
      "aria-label": name + ", ready " + text.day(day.date) + ", change"
    },
    text.day(day.date));
}

// Departments in the order in which they came, in each the newest line first.
exports.lines = function(invoice, chosen, quote) {
  var rows = rowsOf(invoice), shown = rows.filter(isShown), order = [];
  shown.forEach(function(row) {
    if (order.indexOf(row.deptId) < 0) order.push(row.deptId);
  });
  return String(html.all(order.map(function(id) {
           var own = shown.filter(function(row) { return row.deptId === id; }).reverse();
           var day = quote.dueDates.filter(function(one) { return one.departmentId === id; })[0],
               name = own[0].deptName;
           return h(
             "section", { "class": "department", deptid: id },
             h("div", { "class": "headline" }, h("h2", null, name), dayButton(name, day)),
             day && day.reason ? h("p", { "class": "reason" }, day.reason) : "", own.map(function(row) {
               return lineOf(
                 invoice, row,
                 rows.filter(function(child) { return child.parentLineNumber === row.lineNumber; }), chosen);
             }));
         }))) ||
    "<p class=\"notice\">Nothing is on the ticket yet.</p>";
};

// ---- sums, offers and what is said of them

function sum(name, amount) {
  return h(
    "div", { "class": "total" }, h("div", { "class": "value" }, text.money(amount)),
    h("div", { "class": "name" }, name));
}

// Discounts, fees and taxes by name.
exports.sums = function(quote) {
  var minus = quote.discounts.map(function(one) { return sum(one.name, -one.amount); });
  var plus = quote.surcharges.concat(quote.taxes).map(function(one) { return sum(one.name, one.amount); });
  return String(html.all(minus, plus));
};

// What is always on the screen: the total, and the day on which all of it is ready. A bag that is only
// counted has no price.
exports.bar = function(invoice, quote) {
  var latest =
    quote.dueDates.reduce(function(day, one) { return !day || one.date > day ? one.date : day; }, null);
  var pieces = quote.tickets.reduce(function(all, one) { return all + one.pieces; }, 0);
  var isBag =
    Object.keys(Session.counted).length > 0 && !tickets.lineOf(invoice, "itemType='IT' or itemType='AC'");
  var facts = [
    pieces ? text.pieces(pieces) : "", latest ? "ready " + text.day(latest) : "",
    quote.tickets.length > 1 ? quote.tickets.length + " tickets" : ""
  ];
  return String(html.all(
    h("div", { "class": "grand", id: "total" }, h("span", { "class": "name" }, "Total"), " ",
      h("strong", { "class": "value" }, isBag ? "not yet known" : text.money(quote.total))),
    h("div", { "class": "facts" }, facts.filter(function(one) { return one; }).join(" \u00b7 "))));
};

// The coupons that the customer has given, each once.
exports.offers = function() {
  return String(html.all(Object.keys(Session.coupons || {}).map(function(id) {
    var one = Session.coupons[id];
    return h(
      "p", { "class": "row" }, h("span", null, one.name),
      h("button", { "class": "quiet", "data-coupon": id, "aria-label": "Take " + one.name + " off" },
        "Take off"));
  })));
};

// What has changed and was not asked for: days that moved since the click before, coupons and discounts that
// are gone.
exports.notices = function(quote) {
  var all = coupons.notices(), before = Session.shownDays || {};
  Session.shownDays = {};
  quote.dueDates.forEach(function(one) {
    var day = text.day(one.date);
    var was = before[one.departmentId],
        isMoved = was && was !== day && !finishing.chosenDay(one.departmentId);
    if (isMoved)
      all.push(
        one.department + ": " + day + " in place of " + was + (one.reason ? ", " + one.reason : "") + ".");
    Session.shownDays[one.departmentId] = day;
  });
  all = all.concat(coupons.changes(quote.discounts));
  return String(html.all(all.map(function(one) { return h("p", null, one); })));
};

// The coupons that fit, those on the ticket pressed.
exports.coupons = function(invoice) {
  invoice.getQualifyingCoupons();
  return String(html.all(text.rows(invoice.getDisplayCouponRst().Clone(), function(field) {
           var id = field("discountid"), isOn = !!(Session.coupons || {})[id];
           return h(
             "button", { "class": "coupon", "data-coupon": id, "aria-pressed": isOn ? "true" : "false" },
             field("discountname"));
         }))) || "<p class=\"notice\">No coupon fits.</p>";
};
