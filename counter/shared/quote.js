// What a ticket will cost and when it will be ready, as it would be finished now: {total, discounts, surcharges, taxes,
// tickets, dueDates}. It is worked out on a copy: the ticket stays as it was keyed in.
//
// discounts, surcharges, taxes   [{name, amount}]
// tickets                        [{departments, dueDate, total, pieces}] of the split
// dueDates                       [{department, departmentId, date, reason}]
var text = Server.include("shared/text.js");
var lines = Server.include("shared/lines.js");
var tickets = Server.include("shared/tickets.js");
var finishing = Server.include("shared/finishing.js");

// ---- the copy

var carried = ["priceListId", "custSeqNumber", "custVisitCount", "referralQualified", "isAdd", "addOrEdit", "routeNumber", "createdDate", "ticketNo", "invoiceNo", "invoiceType",
               "amountPaid", "vipQualified", "vipQualAmount", "groupSimilarItems", "currentLineNumber", "excludeTaxes", "excludeSurcharges"];

function copyOf(invoice) {
  var copy = tickets.made();
  copy.initInvoice();
  copy.storeNumber = invoice.storeNumber;
  carried.forEach(function (name) { copy[name] = invoice[name]; });
  copy.setStoreDays(invoice.storeNumber);
  copy.LoadDefaults();
  copy.preferences = invoice.preferences;
  copy.preferenceNames = invoice.preferenceNames;
  lines.put(copy.lineItems, lines.take(invoice.lineItems));
  if (invoice.isPrepayEnabled()) copy.applyPrepay(true);
  copy.calculateInvDueDate();
  return copy;
}

// ---- what is read off it

function named(parts, kinds) {
  var sums = {}, order = [];
  parts.forEach(function (part) {
    text.rows(part.lineItems.Clone(), function (field) {
      if (kinds.indexOf(field("itemType")) < 0) return;
      var name = field("itemName") || "";
      if (!(name in sums)) order.push(name);
      sums[name] = (sums[name] || 0) + text.cents(field("lineItemTotal"));
    });
  });
  return order.map(function (name) { return { name: name, amount: text.cents(sums[name]) }; }).filter(function (one) { return one.amount; });
}

function ticketOf(part) {
  var departments = [];
  text.rows(part.lineItems.Clone(), function (field) {
    var name = field("deptName");
    if (name && /^(IT|AC|DE)$/.test(field("itemType")) && departments.indexOf(name) < 0) departments.push(name);
  });
  return { departments: departments, dueDate: finishing.readyDay(part), total: part.getInvoiceAmountToPay(), pieces: part.getTotalItemCount() };
}

// The longest item of a department tells why it takes its time.
function reasonOf(invoice, department, moved) {
  if (moved[department]) return moved[department].why;
  if (finishing.chosenDay(department)) return "chosen";
  var longest = null;
  text.rows(invoice.lineItems.Clone(), function (field) {
    if (field("deptId") === department && field("itemType") === "IT" && (!longest || field("dueDate") > longest.date)) longest = { date: field("dueDate"), name: field("itemName"), days: field("daysToProcess") };
  });
  if (!longest) return "";
  return longest.name + " takes " + (longest.days === 1 ? "one working day" : longest.days + " working days");
}

function dueDates(invoice, finished, before, moved) {
  var found = {}, order = [];
  finished.forEach(function (part) {
    text.rows(part.lineItems.Clone(), function (field) {
      var id = field("deptId"), date = field("dueDate");
      if (!date || !/^(IT|AC|DE)$/.test(field("itemType"))) return;
      if (!found[id]) order.push(id);
      if (!found[id] || date > found[id].date) found[id] = { department: field("deptName"), departmentId: id, date: date };
    });
  });
  return order.map(function (id) {
    found[id].reason = reasonOf(before, id, moved);
    return found[id];
  });
}

exports.of = function (invoice) {
  if (!invoice.lineItems.Clone().RecordCount) return { total: 0, discounts: [], surcharges: [], taxes: [], tickets: [], dueDates: [] };
  var copy = copyOf(invoice);
  var outcome = finishing.apply(copy);
  var parts = finishing.parts(copy);
  Session.tables = "";
  var sheets = parts.map(ticketOf);
  return {
    total: text.cents(sheets.reduce(function (sum, one) { return sum + one.total; }, 0)),
    discounts: named(parts, ["VI", "CU", "PR", "RE"]),
    surcharges: named(parts, ["SU"]),
    taxes: named(parts, ["TA"]),
    tickets: sheets,
    dueDates: dueDates(invoice, parts, invoice, outcome.moved)
  };
};
