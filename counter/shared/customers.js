// Finding customers, and their tickets.
var text = Server.include("shared/text.js");
var desk = Server.include("shared/desk.js");

var columns = "c.customerSequenceNumber, c.customername, c.firstName, c.lastName, dbo.formatPhone(c.MainAreaCode, c.MainPhone) as phone, c.billingAddress1, c.billingCity";

function customer(field) {
  return {
    id: field("customerSequenceNumber"),
    name: field("customername") || ((field("firstName") || "") + " " + (field("lastName") || "")),
    phone: field("phone"),
    address: [field("billingAddress1"), field("billingCity")].filter(function (part) { return part; }).join(", ")
  };
}

// As many are shown; who looks for another keys in more.
exports.most = 30;

function found(condition) {
  return text.rows(Database.query("select top " + exports.most + " " + columns + " from Customer c where " + condition +
                                  " order by c.lastName, c.firstName"), customer);
}

// A pattern of LIKE that means the letters as they were keyed in.
function pattern(words) {
  return words.replace(/[\[%_]/g, "");
}

// A phone number or the end of it, with or without signs, area and country.
function phoneCondition(digits) {
  var local = digits.length > 10 && digits.charAt(0) === "1" ? digits.substr(1) : digits;
  return "replace(isnull(c.MainAreaCode, '') + isnull(c.MainPhone, ''), '-', '') like " + text.quoted("%" + local + "%");
}

// Part of a name ("fen", "marta fen", "ohanlon"), of a phone number with or without signs, or a ticket's or invoice's
// number. A number is tried as a ticket first.
exports.find = function (wanted) {
  var words = String(wanted).replace(/^[\s#]+|\s+$/g, "");
  var digits = words.replace(/[\s().+-]/g, "");
  if (/^\d+$/.test(digits) && digits.length >= 3) {
    var byTicket = found("c.customerSequenceNumber in (select t.customerSequenceNumber from Ticket t where t.invoiceNumber = " + text.quoted(digits) +
                         (digits.length < 10 ? " or t.ticketNumber = " + digits : "") + ")");
    return byTicket.concat(found(phoneCondition(digits)));
  }
  var parts = pattern(words).replace(/'/g, "").split(/[\s,]+/).filter(function (part) { return part; });
  if (!parts.length) return [];
  return found(parts.map(function (part) {
    return "replace(isnull(c.lastName, '') + ' ' + isnull(c.firstName, '') + ' ' + isnull(c.customername, ''), '''', '') like " + text.quoted("%" + part + "%");
  }).join(" and "));
};

exports.byId = function (id) {
  return found("c.customerSequenceNumber = " + text.whole(id))[0] || null;
};

// The tickets that are still in this shop, the next due first. A bag has been counted and not itemised.
exports.openTickets = function (id) {
  var now = Server.now(), today = new Date(now.getFullYear(), now.getMonth(), now.getDate());
  return text.rows(Database.query(
    "select t.ticketNumber, t.invoiceNumber, t.invoiceType, t.dueDate, t.netTotal, t.amountPaid, " +
    "(select sum(case l.saleOnly when 1 then l.quantity else l.quantity * isnull(l.packagedQuantity, 1) end) from TicketLineItem l " +
    "where l.ticketNumber = t.ticketNumber and l.ticketLineType in ('IT', 'AC')) as garments, " +
    "(select count(*) from rackassignment r where r.ticketnumber = t.ticketNumber) as racks, " +
    "(select sum(l.quantity) from TicketLineItem l where l.ticketNumber = t.ticketNumber and l.ticketLineType = 'DE') as counted " +
    "from Ticket t where t.customerSequenceNumber = " + text.whole(id) + " and t.storeId = " + desk.place().store +
    " and t.ticketStatus <> 'FI' and t.ticketStatus <> 'VO' order by t.dueDate, t.ticketNumber"), function (field) {
    var garments = field("garments") || 0, counted = field("counted") || 0;
    return {
      number: field("ticketNumber"), invoice: field("invoiceNumber"), due: field("dueDate"), pieces: garments + counted, total: field("netTotal"), paid: field("amountPaid"),
      isQuick: field("invoiceType") === "Q", isBag: counted > 0 && garments === 0,
      state: field("racks") > 0 ? "ready" : field("dueDate") && field("dueDate") < today ? "late" : ""
    };
  });
};
