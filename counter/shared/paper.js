// The ticket on the entry screen: its lines by department, each with the day it is ready, and what it comes to.
var html = Server.include("shared/html.js");
var text = Server.include("shared/text.js");
var tickets = Server.include("shared/tickets.js");
var coupons = Server.include("shared/coupons.js");
var finishing = Server.include("shared/finishing.js");
var h = html.tag;

// The rows of the ticket, read once for all that is drawn of them.
function rowsOf(invoice) {
  var names = ["lineNumber", "parentLineNumber", "deptId", "deptName", "itemType", "itemName", "quantity", "unitPrice", "originalUnitPrice", "lineItemTotal", "upchargeTotal", "colorTotal", "patternTotal",
               "notes", "promptResponse", "heatSeal", "redo", "priceLater", "lineItemId"];
  return text.rows(invoice.lineItems.Clone(), function (field) {
    var row = {};
    names.forEach(function (name) { row[name] = field(name); });
    return row;
  });
}

var requirements = [["color", "isColorRequiredForLine", "isColorSetForItem"], ["pattern", "isPatternRequiredForLine", "isPatternSetForItem"], ["upcharge", "isUpchargeRequiredForLine", "isUpchargeSetForItem"]];

// What the price list still demands of a garment.
exports.missing = function (invoice, line) {
  return requirements.filter(function (one) { return invoice[one[1]](line) && !invoice[one[2]](line); }).map(function (one) { return one[0]; });
};

function descriptor(child, pieces) {
  var isPart = child.quantity && child.quantity % pieces !== 0, times = isPart ? child.quantity + " of " + pieces : child.quantity > pieces ? child.quantity / pieces + " each" : "";
  return h("li", null, child.itemName, times && child.itemType === "UP" || times && !isPart ? " (" + times + ")" : "");
}

function priceOf(row) {
  return (row.lineItemTotal || 0) + (row.upchargeTotal || 0) + (row.colorTotal || 0) + (row.patternTotal || 0);
}

function lineOf(invoice, row, children, chosen) {
  var pieces = Math.max(row.quantity || 0, 1), isGarment = row.itemType === "IT", isBag = row.itemType === "DE";
  var needs = isGarment ? exports.missing(invoice, row.lineNumber) : [];
  var before = tickets.priceBefore(row), was = before ? "was " + text.money(before) : "";
  var price = isBag ? "" : row.priceLater && !priceOf(row) ? "price later" : text.money(priceOf(row));
  return h("div", { "class": "lineitem it-" + row.itemType.toLowerCase() + (row.lineNumber === chosen ? " selected" : "") + (needs.length ? " lacking" : ""), lineid: row.lineNumber },
    h("div", { "class": "quantity" }, row.quantity), h("div", { "class": "name" }, (isBag ? "Counted: " : "") + (row.itemName || row.deptName), row.redo ? h("strong", { "class": "badge" }, "REDO") : "",
      needs.length ? h("span", { "class": "needs" }, " " + needs.join(", ") + "?") : ""),
    h("div", { "class": "price" }, price, was ? h("span", { "class": "was" }, was) : ""),
    h("div", { "class": "small" }, row.heatSeal ? h("span", { "class": "heatseal" }, row.heatSeal) : "", row.notes ? h("span", { "class": "notes" }, row.notes) : "", row.promptResponse ? h("span", { "class": "answer" }, row.promptResponse) : ""),
    children.length ? h("ul", { "class": "descriptors" }, children.map(function (child) { return descriptor(child, pieces); })) : "");
}

var shown = /^(IT|AC|DE)$/;

// Departments in the order in which they came, in each the newest line first.
exports.lines = function (invoice, chosen, quote) {
  var rows = rowsOf(invoice), order = [];
  rows.forEach(function (row) { if (shown.test(row.itemType) && row.parentLineNumber < 0 && row.deptId !== null && order.indexOf(row.deptId) < 0) order.push(row.deptId); });
  return String(html.all(order.map(function (id) {
    var own = rows.filter(function (row) { return row.deptId === id && row.parentLineNumber < 0 && shown.test(row.itemType) && (row.itemType !== "DE" || row.quantity > 0); }).reverse();
    if (!own.length) return "";
    var day = quote.dueDates.filter(function (one) { return one.departmentId === id; })[0], name = own[0].deptName;
    return h("section", { "class": "department", deptid: id },
      h("div", { "class": "headline" }, h("h2", null, name), day ? h("button", { "class": "day quiet", "data-due": id, "aria-label": name + ", ready " + text.day(day.date) + ", change" }, text.day(day.date)) : ""),
      day && day.reason ? h("p", { "class": "reason" }, day.reason) : "",
      own.map(function (row) { return lineOf(invoice, row, rows.filter(function (child) { return child.parentLineNumber === row.lineNumber; }), chosen); }));
  }))) || "<p class=\"notice\">Nothing is on the ticket yet.</p>";
};

function sum(name, amount) { return h("div", { "class": "total" }, h("div", { "class": "value" }, text.money(amount)), h("div", { "class": "name" }, name)); }

// Discounts, fees and taxes by name.
exports.sums = function (quote) {
  var minus = quote.discounts.map(function (one) { return sum(one.name, -one.amount); });
  var plus = quote.surcharges.concat(quote.taxes).map(function (one) { return sum(one.name, one.amount); });
  return String(html.all(minus, plus));
};

// What is always on the screen: the total, and the day on which all of it is ready.
exports.bar = function (quote) {
  var latest = quote.dueDates.reduce(function (day, one) { return !day || one.date > day ? one.date : day; }, null);
  var pieces = quote.tickets.reduce(function (all, one) { return all + one.pieces; }, 0);
  return String(html.all(h("div", { "class": "grand", id: "total" }, h("span", { "class": "name" }, "Total"), " ", h("strong", { "class": "value" }, text.money(quote.total))),
    h("div", { "class": "facts" }, [pieces ? text.pieces(pieces) : "", latest ? "ready " + text.day(latest) : "", quote.tickets.length > 1 ? quote.tickets.length + " tickets" : ""].filter(function (one) { return one; }).join(" \u00b7 "))));
};

// The coupons that the customer has given, each once.
exports.offers = function () {
  return String(html.all(Object.keys(Session.coupons || {}).map(function (id) {
    var one = Session.coupons[id];
    return h("p", { "class": "row" }, h("span", null, one.name), h("button", { "class": "quiet", "data-coupon": id, "aria-label": "Take " + one.name + " off" }, "Take off"));
  })));
};

// What has changed and was not asked for: days that moved since the click before, coupons and discounts that are gone.
exports.notices = function (quote) {
  var all = coupons.notices(), before = Session.shownDays || {};
  Session.shownDays = {};
  quote.dueDates.forEach(function (one) {
    var day = text.day(one.date);
    if (before[one.departmentId] && before[one.departmentId] !== day && !finishing.chosenDay(one.departmentId)) all.push(one.department + ": " + day + " in place of " + before[one.departmentId] + (one.reason ? ", " + one.reason : "") + ".");
    Session.shownDays[one.departmentId] = day;
  });
  all = all.concat(coupons.changes(quote.discounts));
  return String(html.all(all.map(function (one) { return h("p", null, one); })));
};

// The coupons that fit, those on the ticket pressed.
exports.coupons = function (invoice) {
  invoice.getQualifyingCoupons();
  return String(html.all(text.rows(invoice.getDisplayCouponRst().Clone(), function (field) {
    var id = field("discountid"), isOn = !!(Session.coupons || {})[id];
    return h("button", { "class": "coupon", "data-coupon": id, "aria-pressed": isOn ? "true" : "false" }, field("discountname"));
  }))) || "<p class=\"notice\">No coupon fits.</p>";
};
