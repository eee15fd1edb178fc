// A bag that is taken in: the pieces of each department are counted, nothing is itemised yet. Session.quick
// says whose it is; what is saved is an object of its own, so that after a failure nothing is counted or
// saved a second time.
var text = Server.include("shared/text.js");
var desk = Server.include("shared/desk.js");
var tickets = Server.include("shared/tickets.js");

exports.noteSize = 255;
var mostPieces = 999, manyPieces = 99;

exports.made = function(customerId, terms) {
  var quick = CreateObject("OndrelCorpComponents.quickInvoice");
  quick.DBConnectionString = Database.connectionString;
  quick.initInvoice();
  quick.storeNumber = desk.place().store;
  quick.custSeqNumber = customerId;
  quick.priceListId = terms.list;
  quick.routeNumber = terms.route;
  quick.setStoreDays(desk.place().store);
  quick.loadCustomerPreferences(customerId, "");
  return quick;
};

exports.departments = function(priceList) {
  return text.rows(
    Database.query(
      "select departmentid, name from department where disabled = 0 and pricelistid = " + priceList +
      " order by displaysequence"),
    function(field) { return { id: field("departmentid"), name: field("name") }; });
};

// What the form says: {bags, note, problem, question}; a bag has {department, pieces}.
exports.given = function(form, departments) {
  var given = { bags: [], note: text.clean(form.notes, 2000), problem: "", question: "" };
  var many = [];
  departments.forEach(function(one) {
    var typed = String(form["pieces-" + one.id] || "").replace(/^\s+|\s+$/g, ""), pieces = text.whole(typed);
    if (!typed || typed === "0") return;
    if (pieces < 1 || pieces > mostPieces)
      given.problem =
        one.name + ": pieces are a whole number up to " + mostPieces + ", not " + typed.substr(0, 20) + ".";
    if (pieces > manyPieces) many.push(pieces + " pieces of " + one.name);
    given.bags.push({ department: one.id, pieces: pieces });
  });
  if (!given.problem && !given.bags.length) given.problem = "Nothing was counted.";
  if (!given.problem && given.note.length > exports.noteSize)
    given.problem =
      "The note is too long: " + given.note.length + " letters, and " + exports.noteSize + " are taken.";
  if (many.length) given.question = many.join(", ") + "?";
  return given;
};

function departmentsOf(part) {
  return text.rows(part.lineItems.Clone(), function(field) { return field("deptId"); })
    .filter(function(one) { return one > 0; });
}

function isSaved(part) {
  return part.ticketNo > 0 &&
    !Database
       .query(
         "select ticketNumber from Ticket where ticketNumber = " + part.ticketNo +
         " and customerSequenceNumber = " + part.custSeqNumber)
       .EOF;
}

function partsOf(quick) {
  var children = quick.invoicesDictionary, parts = [];
  if (children)
    for (var key = 1; key <= children.Count; key++) parts.push(children.Item(key));
  return parts.concat(quick).filter(function(part) { return departmentsOf(part).length > 0; });
}

// Saves one ticket, or one for each group of departments. The result is {numbers, saved, problem}: the
// tickets that stand in the store, the departments on them, and what went wrong. Plain values, so that it can
// be recorded.
exports.save = function(customerId, terms, given) {
  var quick = exports.made(customerId, terms), employee = desk.employee(), place = desk.place(), problem = "";
  given.bags.forEach(function(bag) { quick.addLineItem(bag.pieces, bag.department); });
  if (given.note) quick.attachNotes(1, given.note);
  try {
    quick.calculateInvDueDate();
    quick.adjustDueDatesForRoute(customerId);
    if (quick.isSplitInvoice()) quick.splitInvoice();
    quick.saveInvoice("add", employee.id, place.terminal, "0", employee.name, place.storeName, true);
  } catch (error) {
    problem = String(error.description || error.message || error);
  }
  var done = partsOf(quick).filter(function(part) { return !problem || isSaved(part); });
  return {
    numbers: done.map(function(part) { return part.ticketNo; }),
    saved: done.reduce(function(all, part) { return all.concat(departmentsOf(part)); }, []),
    problem: problem
  };
};
