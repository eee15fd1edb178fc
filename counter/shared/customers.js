// Finding customers, and their tickets.
var text = Server.include("shared/text.js");
var desk = Server.include("shared/desk.js");

var columns =
  "c.customerSequenceNumber, c.customername, c.firstName, c.lastName, dbo.formatPhone(c.MainAreaCode, " +
  "c.MainPhone) as phone, c.billingAddress1, c.billingCity";

function customer(field) {
  return {
    id: field("customerSequenceNumber"),
    name: field("customername") || ((field("firstName") || "") + " " + (field("lastName") || "")),
    phone: field("phone"),
    address:
      [field("billingAddress1"), field("billingCity")].filter(function(part) { return part; }).join(", ")
  };
}

// As many are shown; who looks for another keys in more.
exports.most = 30;

function found(condition) {
  return text.rows(
    Database.query(
      "select top " + exports.most + " " + columns + " from Customer c where c.mergedInto is null and " +
      condition + " order by c.lastName, c.firstName"),
    customer);
}

// A pattern of LIKE that means the letters as they were keyed in.
function pattern(words) { return words.replace(/[\[%_]/g, ""); }

// A phone number or the end of it, with or without signs, area and country.
function phoneCondition(digits) {
  var local = digits.length > 10 && digits.charAt(0) === "1" ? digits.substr(1) : digits;
  return "replace(isnull(c.MainAreaCode, '') + isnull(c.MainPhone, ''), '-', '') like " +
    text.quoted("%" + local + "%");
}

// A letter as a name may have it: with an accent or without.
var accents = { a: "aàáâãäå", c: "cç", e: "eèéêë", i: "iìíîï", n: "nñ", o: "oòóôõöø", u: "uùúûü", y: "yýÿ" };
function spelt(part) {
  return part.toLowerCase()
    .split("")
    .map(function(letter) {
      var plain = Object.keys(accents).filter(function(one) { return accents[one].indexOf(letter) >= 0; })[0];
      return plain ? "[" + accents[plain] + accents[plain].toUpperCase() + "]" : letter;
    })
    .join("");
}

// Part of a name ("fen", "marta fen", "ohanlon", "zoe"), of a phone number with or without signs, or a
// ticket's or invoice's number: {tickets, customers}.
exports.search = function(wanted) {
  var words = String(wanted).replace(/^[\s#]+|\s+$/g, "");
  var digits = words.replace(/[\s().+-]/g, "");
  if (/^\d+$/.test(digits) && digits.length >= 3)
    return { tickets: ticketsCalled(digits), customers: found(phoneCondition(digits)) };
  var parts = pattern(words).replace(/'/g, "").split(/[\s,]+/).filter(function(part) { return part; });
  if (!parts.length) return { tickets: [], customers: [] };
  return {
    tickets: [],
    customers: found(parts
                       .map(function(part) {
                         return "replace(isnull(c.lastName, '') + ' ' + isnull(c.firstName, '') + ' ' + " +
                           "isnull(c.customername, ''), '\'\'', '') like " +
                           text.quoted("%" + spelt(part) + "%");
                       })
                       .join(" and "))
  };
};

var states = { FI: "collected", VO: "void", OD: "out for delivery" };
function ticketsCalled(digits) {
  return text
    .rows(
      Database.query(
        "select top " + exports.most +
        " invoiceNumber, ticketStatus, customerSequenceNumber from Ticket where invoiceNumber = " +
        text.quoted(digits) + (digits.length < 10 ? " or ticketNumber = " + digits : "") +
        " order by ticketNumber desc"),
      function(field) {
        return {
          invoice: field("invoiceNumber"),
          state: states[field("ticketStatus")] || "in the shop",
          customer: exports.byId(field("customerSequenceNumber"))
        };
      })
    .filter(function(one) { return one.customer; });
}

exports.byId = function(id) {
  return text.rows(
           Database.query(
             "select " + columns + " from Customer c where c.customerSequenceNumber = " + text.whole(id)),
           customer)[0] ||
    null;
};

// The tickets that are still in this shop, the next due first. A bag has been counted and not itemised.
exports.openTickets = function(id) {
  var now = Server.now(), today = new Date(now.getFullYear(), now.getMonth(), now.getDate());
  return text.rows(
    Database.query(
      "select t.ticketNumber, t.invoiceNumber, t.invoiceType, t.dueDate, t.netTotal, t.amountPaid, " +
      "(select sum(case l.saleOnly when 1 then l.quantity else l.quantity * isnull(l.packagedQuantity, " +
      "1) end) from TicketLineItem l " +
      "where l.ticketNumber = t.ticketNumber and l.ticketLineType in ('IT', 'AC')) as garments, " +
      "isnull(dbo.pivotTicketRackLocationBrief(t.ticketNumber, ', '), '') as rack, " +
      "(select count(*) from rackassignment r where r.ticketnumber = t.ticketNumber) as racks, " +
      "(select sum(l.quantity) from TicketLineItem l where l.ticketNumber = t.ticketNumber and " +
      "l.ticketLineType = 'DE') as counted, " +
      "(select sum(case o.saleOnly when 1 then o.quantity else o.quantity * isnull(o.packagedQuantity, 1) " +
      "end) from TicketLineItem o where o.ticketNumber = t.ticketNumber and o.pickedup = 1 and " +
      "o.ticketLineType in ('IT', 'AC')) as gone " +
      "from Ticket t where t.customerSequenceNumber = " + text.whole(id) +
      " and t.storeId = " + desk.place().store +
      " and t.ticketStatus <> 'FI' and t.ticketStatus <> 'VO' order by t.dueDate, t.ticketNumber"),
    function(field) {
      var garments = field("garments") || 0, counted = field("counted") || 0, gone = field("gone") || 0;
      return {
        number: field("ticketNumber"),
        invoice: field("invoiceNumber"),
        due: field("dueDate"),
        pieces: garments + counted - gone,
        gone: gone,
        total: field("netTotal"),
        paid: field("amountPaid"),
        rack: field("rack"),
        isQuick: field("invoiceType") === "Q",
        isBag: counted > 0 && garments === 0,
        state: field("racks") > 0                      ? "ready" :
          field("dueDate") && field("dueDate") < today ? "late" :
                                                         ""
      };
    });
};
