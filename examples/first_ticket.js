// The first ticket of the day: what a page does when a customer puts a pile of clothes on the counter.
//
//   scripts/demo            runs it in a fresh sample store, on the morning of 24 November 2026

var invoice = CreateObject("OndrelCorpComponents.invoice");

// Who, where, and by which price list.
invoice.DBConnectionString = Database.connectionString;
invoice.initInvoice();
invoice.isAdd = true;
invoice.addOrEdit = "add";
invoice.custSeqNumber = 1;
invoice.storeNumber = 1;
invoice.priceListId = 1;
invoice.setStoreDays(1);
invoice.LoadDefaults();

// Merged: five shirts and two more of the same make one line of seven.
invoice.addItem(201, 1, 5);
invoice.addItem(201, 1, 2);

// Separate: two pairs of pants, a line each, since one of them may come back with a spot.
invoice.addItem(101, -1, 2);

// One line whatever else is there: a suit, which is two pieces to hang.
invoice.addItem(103, false, 1);

// By the bag: the laundry.
invoice.addItem(301, 1, 1);

// Re-done: last week's jacket came back with its spot; it is cleaned again for nothing.
invoice.addRedoItem(102, 1);

function padded(value, width) {
  var text = String(value);
  while (text.length < width) text += " ";
  return text;
}

function money(value) {
  return "$" + value.toFixed(2);
}

function day(date) {
  var days = ["Sun", "Mon", "Tue", "Wed", "Thu", "Fri", "Sat"];
  return days[date.getDay()] + " " + (date.getMonth() + 1) + "/" + date.getDate() + "/" + date.getFullYear();
}

print("written " + day(invoice.createdDate) + ", promised " + day(invoice.InvDueDate));
print("");
print(padded("line", 6) + padded("department", 15) + padded("item", 18) + padded("pieces", 8) + padded("price", 9) +
      padded("total", 9) + "promised");

var lines = invoice.lineItems;
lines.Filter = "itemType='IT'";
lines.Sort = "deptId, lineNumber";
for (lines.MoveFirst(); !lines.EOF; lines.MoveNext()) {
  var total = lines.Fields("lineItemTotal").Value;
  print(padded(lines.Fields("lineNumber").Value, 6) + padded(lines.Fields("deptName").Value, 15) +
        padded(lines.Fields("itemName").Value, 18) + padded(lines.Fields("quantity").Value, 8) +
        padded(money(lines.Fields("unitPrice").Value), 9) +
        padded(lines.Fields("redo").Value ? "re-done" : money(total), 9) + day(lines.Fields("dueDate").Value));
}
lines.Sort = "";
print("");
print(invoice.liColTotal("quantity", "itemType='IT'") + " garments, " +
      money(invoice.liColTotal("lineItemTotal", "itemType='IT'")));

print("");
print("The database was asked:");
Database.trace().forEach(function (statement) { print("  " + statement); });
