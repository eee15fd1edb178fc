// The ticket that a session is writing: Session.invoice, an object of the library.
var desk = Server.include("shared/desk.js");
var text = Server.include("shared/text.js");

exports.made = function () {
  var invoice = CreateObject("OndrelCorpComponents.invoice");
  invoice.DBConnectionString = Database.connectionString;
  invoice.storeNumber = desk.store;
  return invoice;
};

// A new ticket of a customer, by the customer's price list or the store's first.
exports.start = function (customerId) {
  var list = Database.query("select isnull(defaultPriceListId, 1) as list from Customer where customerSequenceNumber = " + customerId);
  if (list.EOF) return false;
  var invoice = exports.made();
  invoice.initInvoice();
  invoice.isAdd = true;
  invoice.addOrEdit = "add";
  invoice.custSeqNumber = customerId;
  invoice.priceListId = list.Fields("list").Value || 1;
  invoice.routeNumber = -1;
  invoice.setStoreDays(desk.store);
  invoice.LoadDefaults();
  invoice.loadCustomerPreferences(customerId, "");
  invoice.getQualifyingCoupons();
  Session.invoice = invoice;
  Session.finished = false;
  return true;
};

// A saved ticket called up again.
exports.callUp = function (ticketNumber) {
  var known = Database.query("select ticketNumber from Ticket where ticketNumber = " + ticketNumber);
  if (known.EOF) return false;
  var invoice = exports.made();
  invoice.getExistingDetails(ticketNumber);
  invoice.addOrEdit = "edit";
  invoice.setStoreDays(desk.store);
  invoice.LoadDefaults();
  invoice.getQualifyingCoupons();
  Session.invoice = invoice;
  Session.finished = false;
  return true;
};

// A finished ticket that is worked on again is as if nothing had been finished.
exports.reopen = function () {
  if (Session.invoice && Session.finished) Session.invoice.cancelDoneOperation();
  Session.finished = false;
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
