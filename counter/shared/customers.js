// Finding customers, and their tickets.
var text = Server.include("shared/text.js");

var columns = "c.customerSequenceNumber, c.customername, c.firstName, c.lastName, c.MainAreaCode, c.MainPhone, c.billingAddress1, c.billingCity";

function customer(field) {
  return {
    id: field("customerSequenceNumber"),
    name: field("customername") || ((field("firstName") || "") + " " + (field("lastName") || "")),
    phone: field("MainPhone") ? "(" + (field("MainAreaCode") || "") + ") " + field("MainPhone") : "",
    address: [field("billingAddress1"), field("billingCity")].filter(function (part) { return part; }).join(", ")
  };
}

function found(condition) {
  return text.rows(Database.query("select top 30 " + columns + " from Customer c where " + condition +
                                  " order by c.lastName, c.firstName"), customer);
}

// A pattern of LIKE that means the letters as they were keyed in.
function pattern(words) {
  return words.replace(/[\[%_]/g, "");
}

// Part of a name ("fen", "marta fen"), of a phone number with or without signs, or a ticket's or invoice's
// number. A number is tried as a ticket first.
exports.find = function (wanted) {
  var words = String(wanted).replace(/^\s+|\s+$/g, "");
  var digits = words.replace(/[\s().-]/g, "");
  if (/^\d+$/.test(digits) && digits.length >= 3) {
    var byTicket = found("c.customerSequenceNumber in (select t.customerSequenceNumber from Ticket t where t.invoiceNumber = " + text.quoted(digits) +
                         (digits.length < 10 ? " or t.ticketNumber = " + digits : "") + ")");
    var phone = digits.length > 7 ? digits.substr(digits.length - 7) : digits;
    var dashed = phone.length > 3 ? phone.substr(0, 3) + "-" + phone.substr(3) : phone;
    return byTicket.concat(found("c.MainPhone like " + text.quoted("%" + phone + "%") + " or c.MainPhone like " + text.quoted("%" + dashed + "%")));
  }
  var parts = pattern(words).split(/[\s,]+/).filter(function (part) { return part; });
  if (!parts.length) return [];
  return found(parts.map(function (part) {
    var like = " like " + text.quoted("%" + part + "%");
    return "(c.lastName" + like + " or c.firstName" + like + " or c.customername" + like + ")";
  }).join(" and "));
};

exports.byId = function (id) {
  return found("c.customerSequenceNumber = " + text.whole(id))[0] || null;
};

// The tickets that are still in the shop, the next due first.
exports.openTickets = function (id) {
  var today = Server.now();
  return text.rows(Database.query(
    "select t.ticketNumber, t.invoiceNumber, t.invoiceType, t.ticketStatus, t.dueDate, t.netTotal, t.amountPaid, " +
    "(select sum(l.quantity) from TicketLineItem l where l.ticketNumber = t.ticketNumber and l.ticketLineType in ('IT','DE')) as pieces " +
    "from Ticket t where t.customerSequenceNumber = " + text.whole(id) + " and t.ticketStatus <> 'FI' and t.ticketStatus <> 'VO' " +
    "order by t.dueDate, t.ticketNumber"), function (field) {
    return {
      number: field("ticketNumber"), invoice: field("invoiceNumber"), due: field("dueDate"),
      pieces: field("pieces") || 0, total: field("netTotal"), paid: field("amountPaid"),
      quick: field("invoiceType") === "Q", late: field("dueDate") && field("dueDate") < today, status: field("ticketStatus")
    };
  });
};
