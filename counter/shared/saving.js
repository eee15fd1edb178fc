// Saving finished tickets, so that a failure loses nothing and nothing is saved twice.
//
// A ticket is known to be saved when its lines stand in the store as they are here. After an error the parts
// that are not saved are offered again, each by itself; a part that is saved, its error having come behind
// the commit, is done.
//
// | saved so far                  | what is saved again                                         |
// |-------------------------------|-------------------------------------------------------------|
// | nothing                       | the whole order, as at the first time                       |
// | some tickets of a split order | each of the others by itself                                |
// | all                           | nothing: the order is done, with a word on what may be missing |
var desk = Server.include("shared/desk.js");
var text = Server.include("shared/text.js");
var tickets = Server.include("shared/tickets.js");
var finishing = Server.include("shared/finishing.js");

// The lines of a ticket as far as a clerk writes them: names of the store and of the object.
var compared = [
  ["lineItemNumber", "lineNumber"], ["ticketLineType", "itemType"], ["lineItemName", "itemName"],
  ["quantity", "quantity"], ["itemNotes", "notes"], ["promptResponse", "promptResponse"],
  ["heatseal", "heatSeal"], ["dueDate", "dueDate"]
];

// As it reads on both sides: no day is stored as the first of 1900.
function comparable(value) {
  if (value instanceof Date) return value.getFullYear() > 1900 ? text.day(value) : "";
  return String(value === null || value === undefined ? "" : value).replace(/\s+$/, "");
}

function written(rows, side, total) {
  return text
    .rows(
      rows,
      function(field) {
        return {
          key: compared.map(function(one) { return comparable(field(one[side])); }).join("|"),
          total: field(total)
        };
      })
    .sort(function(a, b) { return a.key < b.key ? -1 :
                             a.key > b.key      ? 1 :
                                                  0; });
}

function isSaved(part) {
  if (!(part.ticketNo > 0)) return false;
  var stored = written(
    Database.query(
      "select " + compared.map(function(one) { return "l." + one[0]; }).join(", ") +
      ", l.lineItemTotal from TicketLineItem l inner join Ticket t on t.ticketNumber = l.ticketNumber " +
      "where l.ticketNumber = " + part.ticketNo + " and t.customerSequenceNumber = " + part.custSeqNumber),
    0, "lineItemTotal");
  var here = written(part.lineItems.Clone(), 1, "lineItemTotal");
  return stored.length === here.length &&
    stored.every(function(
      one, at) { return one.key === here[at].key && Math.abs(one.total - here[at].total) < 0.011; });
}

// Which way each part is saved: of an edited order the ticket itself is written over, and new ones stand
// beside it.
function actionOf(invoice, parts, at) {
  if (invoice.isAdd) return "add";
  var own = invoice.isInvoiceEmpty() ? 0 : parts.length - 1;
  return at === own ? "edit" : "add";
}

function save(part, action, employee, place) {
  part.saveInvoice(action, employee.id, place.terminal, "0", employee.name, place.storeName, true);
}

// A save writes the preferences into the object as SQL; before it is saved again they are what they were.
function describeAgain(invoice, parts) {
  parts.concat(invoice).forEach(function(part) {
    part.starchPref = Session.finishing.starch;
    part.finishPref = Session.finishing.finish;
  });
}

// Saves what is not saved yet. The result is {numbers, isDone, problem}: the tickets that stand in the store,
// whether that is all of the order, and what went wrong, for the log. Plain values, so that it can be
// recorded.
exports.save = function(invoice) {
  var employee = desk.employee(), place = desk.place(), parts = finishing.parts(invoice),
      saved = Session.saved || {};
  var problem = "";
  try {
    describeAgain(invoice, parts);
    if (!Object.keys(saved).length) save(invoice, tickets.saveAction(invoice), employee, place);
    else
      parts.forEach(function(part, at) {
        if (saved[at]) return;
        if (invoice.splitTheInvoice && part === invoice) part.splitTheInvoice = false;
        save(part, actionOf(invoice, parts, at), employee, place);
      });
    invoice.insertTagsForTicket(false);
  } catch (error) {
    problem = String(error.description || error.message || error);
  }
  parts.forEach(function(part, at) {
    if (!problem || saved[at] || isSaved(part)) saved[at] = part.ticketNo;
  });
  var numbers = Object.keys(saved).map(function(at) { return saved[at]; });
  return {
    saved: saved,
    numbers: numbers.filter(function(one) { return one > 0; }),
    isDone: numbers.length === parts.length,
    problem: problem
  };
};
