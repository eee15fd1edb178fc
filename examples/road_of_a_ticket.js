// The road of a ticket: one order across the counter, from the first garment to rows in the database and back.
// On the way it becomes four tickets: the plant cleans leather elsewhere, shirts run on a line of their own, and
// a ticket of dry cleaning takes ten pieces, of which a suit is two.
//
//   scripts/demo            runs it in a fresh sample store, on the morning of 24 November 2026

function newInvoice() {
  var made = CreateObject("OndrelCorpComponents.invoice");
  made.DBConnectionString = Database.connectionString;
  made.storeNumber = 1;
  made.priceListId = 1;
  return made;
}

function padded(value, width) {
  var text = String(value);
  while (text.length < width) text += " ";
  return text;
}

function money(value) {
  return (value < 0 ? "-$" : "$") + Math.abs(value).toFixed(2);
}

function day(date) {
  return ["Sun", "Mon", "Tue", "Wed", "Thu", "Fri", "Sat"][date.getDay()] + " " + (date.getMonth() + 1) + "/" + date.getDate();
}

// The lines of a ticket, each under the garment that it hangs on.
function show(ticket, parent, indent) {
  var lines = ticket.lineItems.Clone();
  lines.Filter = "parentLineNumber=" + parent;
  for (; !lines.EOF; lines.MoveNext()) {
    var type = lines.Fields("itemType").Value;
    var takenOff = type == "CU" || type == "VI" || type == "PR";
    print(indent + type + "  " + padded(lines.Fields("quantity").Value + " " + lines.Fields("itemName").Value, 26 - indent.length) +
          padded(lines.Fields("deptName").Value || "", 15) +
          money((takenOff ? -1 : 1) * lines.Fields("lineItemTotal").Value));
    show(ticket, lines.Fields("lineNumber").Value, indent + "  ");
  }
}

function chapter(title) {
  print("");
  print("---- " + title);
}

// ---- 1. The pile on the counter is written up, garment by garment.

var order = newInvoice();
order.isAdd = true;
order.addOrEdit = "add";
order.custSeqNumber = 10;
order.routeNumber = -1;
order.setStoreDays(1);
order.LoadDefaults();
order.loadCustomerPreferences(10, "");

var pants = order.addItem(101, 1, 1);
order.addUpcharge2(pants, "Stain Treatment", 1);
order.addColor(pants, "Navy", 1, true);
order.addItem(102, 1, 7);
order.addItem(103, 1, 2);
order.addItem(201, 1, 4);
order.addItem(301, 1, 1);
order.addItem(601, 1, 1);
order.getQualifyingCoupons();
order.addCoupon(1);

chapter("written up by the clerk; tax is worked out at every click, the coupon waits");
show(order, -1, "");

// ---- 2. Done: discounts are spread over the departments, then surcharges and taxes follow.

order.invoiceDone2();
var wholeOrder = order.getInvoiceAmountToPay();

chapter("finished: " + money(wholeOrder) + " to pay");
show(order, -1, "");

// ---- 3. Does it go on one ticket? The departments say.

chapter("to be split? " + (order.isSplitInvoice() ? "yes" : "no"));
var children = order.splitInvoice("add");
for (var key = 1; key <= children.Count; key++) {
  var child = children.Item(key);
  print("ticket " + key + ", " + money(child.getInvoiceAmountToPay()));
  show(child, -1, "  ");
}
print(order.isInvoiceEmpty() ? "nothing is left on the order itself" : "some lines stay on the order itself");

// ---- 4. Saved: each child is a ticket with numbers of its own.

Database.trace();
order.saveInvoice("add", 4, 3, "0", "Ann", "Fernhill", true);
var headers = Database.trace().filter(function (statement) { return /^InsertTicket/.test(statement); });

chapter("saved; the headers went out as");
headers.forEach(function (statement) { print("  " + statement.substr(0, 90) + " ..."); });

chapter("what the database holds now");
var rows = Database.query(
    "select t.ticketNumber, t.invoiceNumber, t.dueDate, t.netTotal, count(*) as lines from Ticket t inner join " +
    "TicketLineItem l on l.ticketNumber = t.ticketNumber where t.ticketNumber > 1099 group by t.ticketNumber, " +
    "t.invoiceNumber, t.dueDate, t.netTotal order by t.ticketNumber");
var total = 0;
for (; !rows.EOF; rows.MoveNext()) {
  total += rows.Fields("netTotal").Value;
  print("  ticket " + rows.Fields("ticketNumber").Value + ", invoice " + rows.Fields("invoiceNumber").Value + ": " +
        rows.Fields("lines").Value + " lines, due " + day(rows.Fields("dueDate").Value) + ", " + money(rows.Fields("netTotal").Value));
}
// Cents may move: every ticket rounds its own surcharge and tax.
print("  together " + money(total) + "; the order came to " + money(wholeOrder));

// ---- 5. And back: a clerk calls up the ticket of the pants, and a blouse joins them.

var number = children.Item(3).ticketNo;
var ticket = newInvoice();
ticket.getExistingDetails(number);
ticket.addOrEdit = "edit";
ticket.setStoreDays(1);
ticket.addItem(108, 1, 1);
ticket.invoiceDone2();
ticket.saveInvoice("edit", 4, 3, "0", "Ann", "Fernhill", true);

chapter("ticket " + number + " called up again, with a blouse more");
var again = newInvoice();
again.getExistingDetails(number);
show(again, -1, "");
print("to pay " + money(again.getInvoiceAmountToPay()));
