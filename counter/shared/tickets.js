// The ticket that a session is writing: Session.invoice, an object of the library.
var desk = Server.include("shared/desk.js");
var text = Server.include("shared/text.js");

exports.made = function() {
  var invoice = CreateObject("OndrelCorpComponents.invoice");
  invoice.DBConnectionString = Database.connectionString;
  invoice.storeNumber = desk.place().store;
  return invoice;
};

// The customer's own price list where this shop has it, else the shop's first, if any; the route, -1 for
// none; and the visits so far. Null for an unknown customer.
exports.termsOf = function(customerId) {
  var customer = Database.query(
    "select isnull(defaultPriceListId, 0) as list, isnull(routenumber, -1) as route, isnull(visitCount, " +
    "0) as visits from Customer where customerSequenceNumber = " + customerId);
  if (customer.EOF) return null;
  var own = customer.Fields("list").Value;
  var lists = text.rows(
    Database.query(
      "select distinct pricelistid from department where disabled = 0 and storeid = " + desk.place().store +
      " order by pricelistid"),
    function(field) { return field("pricelistid"); });
  return {
    list: lists.indexOf(own) >= 0 ? own : lists[0],
    route: customer.Fields("route").Value,
    visits: customer.Fields("visits").Value
  };
};

function take(invoice, action) {
  invoice.addOrEdit = action;
  invoice.setStoreDays(desk.place().store);
  invoice.LoadDefaults();
  Session.invoice = invoice;
  Session.finished = false;
  // What the clerk chooses on the way: days by department and of the whole ticket, coupons, the last step to
  // be undone.
  Session.days = {};
  Session.ticketDay = "";
  Session.coupons = {};
  Session.storedDiscounts = [];
  Session.counted = {};
  Session.shownDays = {};
  Session.undo = null;
  Session.saved = null;
  Session.changed = action === "edit" ? exports.stored(invoice).changed : "";
  desk.begin("invoice");
  Session.tables = "invoice" + desk.numberOf("invoice");
  invoice.groupSimilarItems = groups();
}

// Whether this shop counts the same garment once more on its line.
function groups() {
  var setup = Database.query("select groupSimilarItems from miscsetup where storeid = " + desk.place().store);
  return !setup.EOF && !!setup.Fields("groupSimilarItems").Value;
}

// A new ticket of a customer; the result is what stands in the way, or nothing.
exports.start = function(customerId) {
  var terms = exports.termsOf(customerId);
  if (!terms) return "There is no such customer.";
  if (!terms.list) return "This shop has no price list with departments yet.";
  var invoice = exports.made();
  invoice.initInvoice();
  invoice.isAdd = true;
  invoice.custSeqNumber = customerId;
  invoice.custVisitCount = terms.visits;
  invoice.referralQualified =
    !Database.query("select referredby from customerreferral where customersequencenumber = " + customerId)
       .EOF;
  invoice.priceListId = terms.list;
  invoice.routeNumber = terms.route;
  take(invoice, "add");
  invoice.loadCustomerPreferences(customerId, "");
  invoice.getQualifyingCoupons();
  return "";
};

// ---- what the price list knows and a ticket does not keep

// What is done to a garment once only: its seal would remember it as if it were for ever.
function markOneShots(invoice) {
  var extras = invoice.lineItems.Clone(), items = {};
  text.rows(invoice.lineItems.Clone(), function(field) { items[field("lineNumber")] = field("lineItemId"); });
  extras.Filter = "itemType='UP'";
  if (extras.EOF) return;
  var once = text.rows(
    Database.query(
      "select priceListItemId as item, descriptorName as name from ItemDescriptorPrice where " +
      "descriptorType = 'UP' and oneShot = 1"),
    function(field) { return field("item") + "|" + field("name"); });
  for (; !extras.EOF; extras.MoveNext()) {
    var name = items[extras.Fields("parentLineNumber").Value] + "|" + extras.Fields("itemName").Value;
    if (once.indexOf(name) >= 0) extras.Fields("oneShot").Value = true;
  }
}

// What a garment's item demands to be paid ahead, of a piece.
function markLeastAhead(invoice) {
  var percents = {}, garments = invoice.lineItems.Clone();
  text.rows(
    Database.query(
      "select p.priceListItemId as item, p.prepayPercent as least from PriceListItem p inner join " +
      "TicketLineItem l on l.lineItemID = p.priceListItemId and l.ticketLineType = 'IT' " +
      "where p.prepayPercent > 0 and l.ticketNumber = " + invoice.ticketNo),
    function(field) { percents[field("item")] = field("least"); });
  garments.Filter = "itemType='IT' and redo=0";
  for (; !garments.EOF; garments.MoveNext()) {
    var percent = percents[garments.Fields("lineItemId").Value];
    if (percent)
      garments.Fields("minimumPrepay").Value =
        text.cents(percent / 100 * garments.Fields("originalUnitPrice").Value);
  }
}

// A saved ticket with all its lines. What could not be read whole must not be saved over what is stored: that
// would take the rest of its lines away. An error then, and there is no invoice.
exports.loaded = function(ticketNumber) {
  var invoice = exports.made();
  invoice.getExistingDetails(ticketNumber);
  var stored = Database.query(
    "select count(*) from TicketLineItem where ticketLineType in ('IT', 'AC', 'DE') and ticketNumber = " +
    ticketNumber);
  var here = invoice.lineItems.Clone();
  here.Filter = "itemType='IT' or itemType='AC' or itemType='DE'";
  if (invoice.ticketNo !== ticketNumber || here.RecordCount !== stored.Fields(0).Value)
    throw new Error("ticket " + ticketNumber + " was not read whole");
  markOneShots(invoice);
  markLeastAhead(invoice);
  return invoice;
};

// A saved ticket that is still in this shop called up again.
exports.callUp = function(ticketNumber) {
  var known = Database.query(
    "select ticketNumber from Ticket where ticketNumber = " + ticketNumber +
    " and storeId = " + desk.place().store + " and ticketStatus <> 'FI' and ticketStatus <> 'VO'");
  if (known.EOF) return false;
  var invoice = exports.loaded(ticketNumber);
  if (!invoice.isEdittable) return false;
  take(invoice, "edit");
  Session.counted = countedIn(invoice);
  invoice.getQualifyingCoupons();
  return true;
};

// The pieces of a bag that nobody has itemised yet, by department: its line follows what is itemised from
// then on.
function countedIn(invoice) {
  var counted = {}, rows = invoice.lineItems.Clone();
  if (exports.lineOf(invoice, "itemType='IT'")) return counted;
  rows.Filter = "itemType='DE' and quantity>0";
  text.rows(
    rows,
    function(field) { counted[field("deptId")] = (counted[field("deptId")] || 0) + field("quantity"); });
  return counted;
}

// The ticket that the request is about, with the shop's tables as it needs them; null when another one is
// being written by now.
exports.meant = function(number) {
  if (!desk.isMeant("invoice", number)) return null;
  var invoice = Session.invoice;
  desk.tablesFor("invoice", function() {
    invoice.setStoreDays(desk.place().store);
    if (!invoice.isInvoiceEmpty()) invoice.calculateInvDueDate();
  });
  return invoice;
};

// A ticket with something on it that another one would push aside.
exports.isWriting =
  function() { return !!Session.invoice && (Session.finished || !Session.invoice.isInvoiceEmpty()); };

// A saved ticket as it stands in the store by now.
exports.stored = function(invoice) {
  var found = Database.query(
    "select ticketStatus, amountPaid, lastModifiedDate from Ticket where ticketNumber = " + invoice.ticketNo);
  return {
    isOut:
      found.EOF || found.Fields("ticketStatus").Value === "FI" || found.Fields("ticketStatus").Value === "VO",
    paid: found.EOF ? 0 : found.Fields("amountPaid").Value,
    changed: found.EOF ? "" : String(found.Fields("lastModifiedDate").Value) + linesOf(invoice.ticketNo)
  };
};

// The moment of a change alone does not tell: two may fall into one.
function linesOf(ticket) {
  return text
    .rows(
      Database.query(
        "select l.lineItemNumber, l.lineItemName, l.quantity, l.lineItemTotal, isnull(l.itemNotes, '') " +
        "as notes, isnull(l.promptResponse, '') as answer, l.dueDate, isnull(l.heatseal, '') as seal " +
        "from TicketLineItem l where l.ticketNumber = " + ticket + " order by l.lineItemNumber"),
      function(field) {
        return [
          "lineItemNumber", "lineItemName", "quantity", "lineItemTotal", "notes", "answer", "dueDate", "seal"
        ].map(field)
          .join("|");
      })
    .join("\n");
}

exports.saveAction = function(invoice) { return invoice.isAdd ? "add" : "edit"; };

// The numbers of what a save wrote: of the ticket itself, or of the tickets that it was split into.
exports.numbers = function(invoice) {
  return String(invoice.getTicketNosForPrinting())
    .split(",")
    .map(function(one) { return Number(one.replace(/[^\d]/g, "")); })
    .filter(function(one) { return one > 0; });
};

// ---- the lines of an invoice, by a condition on them

exports.fieldWhere = function(invoice, condition, column) {
  var lines = invoice.lineItems.Clone();
  lines.Filter = condition;
  return lines.EOF ? null : lines.Fields(column).Value;
};
exports.fieldOf = function(
  invoice, number, column) { return exports.fieldWhere(invoice, "lineNumber=" + number, column); };
// The first line that a condition finds, or 0.
exports.lineOf = function(
  invoice, condition) { return exports.fieldWhere(invoice, condition, "lineNumber") || 0; };

// What a piece would have cost, when it costs less: a redo that came in as such has no price of its own. 0
// for nothing.
exports.priceBefore = function(row) {
  if (!row.redo) return row.unitPrice < row.originalUnitPrice ? row.originalUnitPrice : 0;
  if (row.originalUnitPrice || !row.lineItemId) return row.originalUnitPrice || 0;
  var listed = Database.query(
    "select isnull(price, 0) as price from PriceListItem where priceListItemId = " + row.lineItemId);
  return listed.EOF ? 0 : listed.Fields("price").Value;
};

// The heads of saved tickets.
exports.heads = function(numbers) {
  if (!numbers.length) return [];
  return text.rows(
    Database.query(
      "select ticketNumber, invoiceNumber, invoiceType, dueDate, netTotal, amountPaid, " +
      "customerSequenceNumber from Ticket where ticketNumber in (" + numbers.join(",") +
      ") order by ticketNumber"),
    function(field) {
      return {
        number: field("ticketNumber"),
        invoice: field("invoiceNumber"),
        due: field("dueDate"),
        total: field("netTotal"),
        paid: field("amountPaid"),
        customer: field("customerSequenceNumber"),
        isBag: field("invoiceType") === "Q" && !field("netTotal")
      };
    });
};
