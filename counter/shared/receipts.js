// Tickets on paper.
var text = Server.include("shared/text.js");
var tickets = Server.include("shared/tickets.js");

function row(name, amount) {
  return "<tr><td>" + text.encoded(name) + "</td><td class=\"money\">" + text.money(amount) + "</td></tr>";
}

// The lines of an invoice with its sums, as one table. What lies between the lines and the total besides surcharges
// and taxes are the discounts of all kinds.
exports.lines = function (invoice) {
  var listed = 0;
  var body = text.rows(invoice.getLineItemsGroupDetails(), function (field) {
    var pieces = field("quantity");
    listed += field("total");
    var small = [field("colorPatternDesc"), field("upchargeDesc")].filter(function (one) { return one; }).map(function (one) {
      return "<tr><td class=\"small\" colspan=\"2\">" + text.encoded(one) + "</td></tr>";
    }).join("");
    return row((pieces > 0 ? pieces + " " : "") + field("itemDesc"), field("total")) + small;
  }).join("");
  var counted = invoice.lineItems.Clone();
  counted.Filter = "itemType='DE' and quantity>0";
  body += text.rows(counted, function (field) {
    return "<tr><td>" + field("quantity") + " " + text.encoded(field("itemName") || field("deptName")) + " " + text.encoded(field("notes")) + "</td><td></td></tr>";
  }).join("");
  var surcharges = invoice.liColTotal("lineItemTotal", "itemType='SU'");
  var taxes = invoice.liColTotal("lineItemTotal", "itemType='TA'");
  var total = invoice.getInvoiceAmountToPay();
  var discounts = Math.round((total - surcharges - taxes - listed) * 100) / 100;
  return "<table><tbody>" + body + "</tbody><tfoot>" + (discounts ? row("Discounts", discounts) : "") + row("Surcharges", surcharges) +
         row("Taxes", taxes) + row("Total", total) + "</tfoot></table>";
};

// The tickets that a page was asked for, "1100" or "1100-1101".
exports.asked = function () {
  return text.numbers(Request.query.tickets || Request.query.ticket);
};

exports.header = function (number) {
  var found = Database.query("select t.ticketNumber, t.invoiceNumber, t.dueDate, t.pickupTime, t.ticketStatus, t.netTotal, t.amountPaid, isnull(t.employeeName, '') as employeeName, e.employeename as writtenBy, s.name as storeName, t.dateout, c.customername, " +
                             "c.firstName, c.lastName, dbo.formatPhone(c.MainAreaCode, c.MainPhone) as phone from Ticket t " +
                             "left join TicketCustomer c on c.ticketNumber = t.ticketNumber left join Store s on s.storeId = t.storeId " +
                             "left join employee e on e.employeeid = t.createdByEmployeeId where t.ticketNumber = " + number);
  if (found.EOF) return null;
  return text.rows(found, function (field) {
    return {
      number: number, invoice: field("invoiceNumber"), due: field("dueDate"), time: field("pickupTime"), total: field("netTotal"), paid: field("amountPaid"),
      employee: field("employeeName") || field("writtenBy"), store: field("storeName"), out: field("dateout"), isVoid: field("ticketStatus") === "VO", phone: field("phone"),
      customer: field("customername") || ((field("firstName") || "") + " " + (field("lastName") || ""))
    };
  })[0];
};

// What was paid on a ticket, by the kind of tender.
exports.tenders = function (number) {
  return text.rows(Database.query("select paymentType, sum(paymentAmount) as amount from Payment where ticketNumber = " + number + " group by paymentType order by paymentType"), function (field) {
    return text.encoded(field("paymentType")) + " " + text.money(field("amount"));
  }).join(", ");
};

exports.loaded = function (number) {
  var invoice = tickets.made();
  invoice.getInvoiceDetailsForPrinting(number);
  return invoice;
};
