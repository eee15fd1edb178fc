// The ticket that a session is writing: Session.invoice, an object of the library.
var desk = Server.include("shared/desk.js");
var text = Server.include("shared/text.js");

exports.made = function () {
  var invoice = CreateObject("OndrelCorpComponents.invoice");
  invoice.DBConnectionString = Database.connectionString;
  invoice.storeNumber = desk.place().store;
  return invoice;
};

// The customer's own price list where this shop has it, else the shop's first; and the route, -1 for none. Null for
// an unknown customer.
exports.termsOf = function (customerId) {
  var customer = Database.query("select isnull(defaultPriceListId, 0) as list, isnull(routenumber, -1) as route from Customer where customerSequenceNumber = " + customerId);
  if (customer.EOF) return null;
  var own = customer.Fields("list").Value;
  var lists = text.rows(Database.query("select distinct pricelistid from department where disabled = 0 and storeid = " + desk.place().store + " order by pricelistid"), function (field) {
    return field("pricelistid");
  });
  return { list: lists.indexOf(own) >= 0 ? own : lists[0], route: customer.Fields("route").Value };
};

function take(invoice, action) {
  invoice.addOrEdit = action;
  invoice.setStoreDays(desk.place().store);
  invoice.LoadDefaults();
  Session.invoice = invoice;
  Session.finished = false;
  Session.isDatePicked = action === "edit";
}

// A new ticket of a customer.
exports.start = function (customerId) {
  var terms = exports.termsOf(customerId);
  if (!terms) return false;
  var invoice = exports.made();
  invoice.initInvoice();
  invoice.isAdd = true;
  invoice.custSeqNumber = customerId;
  invoice.priceListId = terms.list;
  invoice.routeNumber = terms.route;
  take(invoice, "add");
  invoice.loadCustomerPreferences(customerId, "");
  invoice.getQualifyingCoupons();
  return true;
};

// A saved ticket called up again.
exports.callUp = function (ticketNumber) {
  var known = Database.query("select ticketNumber from Ticket where ticketNumber = " + ticketNumber);
  if (known.EOF) return false;
  var invoice = exports.made();
  invoice.getExistingDetails(ticketNumber);
  take(invoice, "edit");
  invoice.getQualifyingCoupons();
  return true;
};

// A ticket with something on it that another one would push aside.
exports.isWriting = function () {
  return !!Session.invoice && !Session.invoice.isInvoiceEmpty();
};

// A finished ticket that is worked on again is as if nothing had been finished. What was paid on it went to the parts
// of a split and does not come back from there by itself.
exports.reopen = function () {
  if (Session.invoice && Session.finished) {
    Session.invoice.cancelDoneOperation();
    Session.invoice.amountPaid = Session.paidBefore;
  }
  Session.finished = false;
};

// What stands in the way of finishing, in words; nothing when the ticket is whole.
var required = [
  ["color",    "isColorRequiredForLine",    "isColorSetForItem"],
  ["pattern",  "isPatternRequiredForLine",  "isPatternSetForItem"],
  ["upcharge", "isUpchargeRequiredForLine", "isUpchargeSetForItem"]
];
exports.obstacles = function (invoice) {
  var lines = invoice.lineItems.Clone(), all = [];
  lines.Filter = "itemType='IT'";
  text.rows(lines, function (field) { return { number: field("lineNumber"), name: field("itemName") }; }).forEach(function (line) {
    required.forEach(function (one) {
      if (invoice[one[1]](ByRef(line.number)) && !invoice[one[2]](line.number)) all.push(line.name + " needs a " + one[0] + ".");
    });
  });
  if (invoice.isOverMaxDepartmentItems()) all.push("A department has more pieces than it takes on one ticket.");
  return all;
};

// Promises a new ticket by route and workload, unless the clerk chose a day; then discounts, surcharges and taxes, what
// is to be paid ahead, and the split. A bag was split when it was taken in: what comes out of it stays on its ticket.
exports.finish = function (invoice) {
  if (invoice.isAdd && !Session.isDatePicked) {
    invoice.adjustDueDatesForRoute(ByRef(invoice.custSeqNumber));
    invoice.adjustDueDatesForWorkload();
  }
  invoice.invoiceDone2();
  Session.leastAhead = invoice.getMinimumPrepay();
  Session.paidBefore = invoice.amountPaid;
  if (!invoice.isQuickInvoice() && invoice.isSplitInvoice()) invoice.splitInvoice(exports.saveAction(invoice));
  Session.finished = true;
};

exports.saveAction = function (invoice) {
  return invoice.isAdd ? "add" : "edit";
};

// The numbers of what a save wrote: of the ticket itself, or of the tickets that it was split into.
exports.numbers = function (invoice) {
  return String(invoice.getTicketNosForPrinting()).split(",").map(function (one) {
    return Number(one.replace(/[^\d]/g, ""));
  }).filter(function (one) { return one > 0; });
};

// The invoice with its parts, in the order in which they are saved.
exports.parts = function (invoice) {
  var parts = [];
  var children = invoice.invoicesDictionary;
  if (children) for (var key = 1; key <= children.Count; key++) parts.push(children.Item(key));
  if (!parts.length || !invoice.isInvoiceEmpty()) parts.push(invoice);
  return parts;
};
