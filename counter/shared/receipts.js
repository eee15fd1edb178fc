// Tickets on paper: what a receipt says, read from an invoice's lines and from the ticket's head.
var html = Server.include("shared/html.js");
var text = Server.include("shared/text.js");
var tickets = Server.include("shared/tickets.js");
var h = html.tag;

// ---- an invoice's lines with its sums

var columns = [
  "lineNumber", "parentLineNumber", "deptName", "itemType", "itemName", "quantity", "unitPrice",
  "originalUnitPrice", "lineItemTotal", "notes", "promptResponse", "heatSeal", "redo", "priceLater",
  "lineItemId"
];

function rowsOf(invoice) {
  return text.rows(invoice.lineItems.Clone(), function(field) {
    var row = {};
    columns.forEach(function(name) { row[name] = field(name); });
    return row;
  });
}

function line(name, amount, kind) {
  return h("tr", { "class": kind || false }, h("td", null, name), h("td", { "class": "money" }, amount));
}
function small(words) { return words ? h("tr", null, h("td", { "class": "small", colspan: 2 }, words)) : ""; }

// Extras in words: "Navy", "2 Stain Treatment". What costs something says how much.
function extra(child) {
  var count = child.itemType === "UP" && child.quantity > 1 ? child.quantity + " " : "";
  return count + child.itemName + (child.lineItemTotal ? " " + text.money(child.lineItemTotal) : "");
}

function article(row, children) {
  if (row.itemType === "DE")
    return [
      line(row.quantity + " " + (row.itemName || row.deptName), ""), small(row.notes),
      small("counted, the price follows")
    ];
  var price = children.reduce(
    function(sum, child) { return sum + (child.lineItemTotal || 0); }, row.lineItemTotal || 0);
  var before = tickets.priceBefore(row), was = before ? "was " + text.money(before) : "";
  return [
    line(
      html.all(row.quantity, " ", row.itemName, row.redo ? " REDO" : ""),
      row.priceLater && !price ? "price later" : text.money(price)),
    small(was), small(children.map(extra).join(", ")), small(row.notes), small(row.promptResponse),
    small(row.heatSeal ? "Seal " + row.heatSeal : "")
  ];
}

// The sums of lines of some kinds, by name, in the order in which they come.
function named(rows, kinds) {
  var sums = {};
  rows.filter(function(row) { return kinds.test(row.itemType); })
    .forEach(function(row) { sums[row.itemName] = (sums[row.itemName] || 0) + row.lineItemTotal; });
  return Object.keys(sums)
    .map(function(name) { return { name: name, amount: text.cents(sums[name]) }; })
    .filter(function(one) { return one.amount; });
}
function lines(all, sign) {
  return all.map(function(one) { return line(one.name, text.money(sign * one.amount)); });
}

// The lines of an invoice with its sums, as one table: garments and charges, then discounts, fees and taxes
// by name.
exports.lines = function(invoice) {
  var rows = rowsOf(invoice);
  function isArticle(row) {
    return row.itemType === "IT" || row.itemType === "AC" || row.itemType === "DE" && row.quantity > 0;
  }
  var body = rows.filter(isArticle).map(function(row) {
    return article(row, rows.filter(function(child) { return child.parentLineNumber === row.lineNumber; }));
  });
  var isCounted = rows.some(function(row) { return row.itemType === "DE" && row.quantity > 0; }) &&
    !rows.some(function(row) { return row.itemType === "IT"; });
  var pieces = invoice.getTotalItemCount();
  return String(
    h("table", null, h("tbody", null, body),
      h("tbody", { "class": "sums" }, pieces ? line(text.pieces(pieces), "") : "",
        lines(named(rows, /^(VI|CU|PR|RE)$/), -1), lines(named(rows, /^SU$/), 1),
        lines(named(rows, /^TA$/), 1)),
      h("tbody", { "class": "sums" },
        line("Total", isCounted ? "not yet known" : text.money(invoice.getInvoiceAmountToPay()), "grand"))));
};

// ---- the head of a ticket

// The tickets that a page was asked for, "1100" or "1100-1101".
exports.asked = function() { return text.numbers(Request.query.tickets || Request.query.ticket); };

var head = "select t.invoiceNumber, t.invoiceType, t.createdDate, t.dueDate, t.pickupTime, t.ticketStatus, " +
  "t.netTotal, t.amountPaid, t.dateout, " +
  "isnull(t.employeeName, '') as employeeName, e.employeename as writtenBy, c.customername, c.firstName, " +
  "c.lastName, dbo.formatPhone(c.MainAreaCode, c.MainPhone) as phone, " +
  "s.name as store, s.address, s.city, s.state, s.zipCode, s.phone as storePhone from Ticket t left join " +
  "TicketCustomer c on c.ticketNumber = t.ticketNumber " +
  "left join Store s on s.storeId = t.storeId left join employee e on e.employeeid = " +
  "t.createdByEmployeeId where t.ticketNumber = ";

function joined(parts, sign) {
  return parts.filter(function(one) { return one; }).join(sign);
}

exports.header = function(number) {
  return text.rows(Database.query(head + number), function(field) {
    return {
      number: number,
      invoice: field("invoiceNumber"),
      written: field("createdDate"),
      due: field("dueDate"),
      time: field("pickupTime"),
      out: field("dateout"),
      total: field("netTotal"),
      paid: field("amountPaid"),
      isVoid: field("ticketStatus") === "VO",
      isBag: field("invoiceType") === "Q",
      employee: field("employeeName") || field("writtenBy"),
      phone: field("phone"),
      customer: field("customername") || joined([field("firstName"), field("lastName")], " "),
      store: field("store"),
      storePhone: field("storePhone"),
      address: joined(
        [field("address"), joined([field("city"), joined([field("state"), field("zipCode")], " ")], ", ")],
        ", ")
    };
  })[0] || null;
};

// What was paid on a ticket, by the kind of tender.
exports.tenders = function(number) {
  return text.rows(
    Database.query(
      "select paymentType, sum(paymentAmount) as amount from Payment where ticketNumber = " + number +
      " group by paymentType order by paymentType"),
    function(field) { return { name: field("paymentType"), amount: field("amount") }; });
};

// As it is printed. What was done again for nothing is not read with the rest.
exports.loaded = function(number) {
  var invoice = tickets.made(), again = {};
  invoice.getInvoiceDetailsForPrinting(number);
  text.rows(
    Database.query("select lineItemNumber from TicketLineItem where redo = 1 and ticketNumber = " + number),
    function(field) { again[field("lineItemNumber")] = true; });
  for (var rows = invoice.lineItems.Clone(); !rows.EOF; rows.MoveNext())
    if (again[rows.Fields("lineNumber").Value]) rows.Fields("redo").Value = true;
  return invoice;
};

// ---- pieces and their tags

// Every piece of a ticket that is cleaned: {name, color, seal, tag, at, of}. Tags are drawn for the pieces
// without a seal, in the order of the lines.
exports.pieces = function(number) {
  var tags = text.rows(
    Database.query(
      "select tagNumber, isnull(tagColor, '') as tagColor from TicketTag where ticketNumber = " + number +
      " order by len(tagNumber), tagNumber"),
    function(field) { return { number: field("tagNumber"), color: field("tagColor") }; });
  var colors = {};
  text.rows(
    Database.query(
      "select parentLineNumber, lineItemName from TicketLineItem where ticketLineType in ('CO', 'PA') " +
      "and ticketNumber = " + number + " order by displaySequence"),
    function(field) {
      var line = field("parentLineNumber");
      colors[line] = (colors[line] ? colors[line] + ", " : "") + field("lineItemName");
    });
  var all = [];
  text.rows(
    Database.query(
      "select lineItemNumber, lineItemName, quantity * isnull(packagedQuantity, 1) as pieces, " +
      "isnull(heatseal, '') as seal from TicketLineItem " +
      "where ticketLineType = 'IT' and isnull(saleOnly, 0) = 0 and ticketNumber = " + number +
      " order by displaySequence, lineItemNumber"),
    function(field) {
      for (var piece = 0; piece < field("pieces"); piece++)
        all.push({
          name: field("lineItemName"),
          color: colors[field("lineItemNumber")] || "",
          seal: field("seal"),
          tag: field("seal") ? null : tags.shift() || null
        });
    });
  all.forEach(function(one, at) {
    one.at = at + 1;
    one.of = all.length;
  });
  return all.concat(
    tags.map(function(tag) { return { name: "", color: "", seal: "", tag: tag, at: 0, of: 0 }; }));
};
