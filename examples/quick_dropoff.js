// Three bags in a hurry: pieces by department now, garments and prices when there is time.
//
//   scripts/ondrel run --now "2026-11-24 10:30" examples/quick_dropoff.js

function day(date) {
  var days = ["Sun", "Mon", "Tue", "Wed", "Thu", "Fri", "Sat"];
  return days[date.getDay()] + " " + (date.getMonth() + 1) + "/" + date.getDate();
}

function show(lines, text) {
  var row = lines.Clone();
  for (; !row.EOF; row.MoveNext()) print("  " + text(row.Fields));
}

function bag(fields) {
  return fields("quantity").Value + " x " + fields("deptName").Value + ", promised " + day(fields("dueDate").Value);
}

// At the counter: how many pieces of what.
var quick = CreateObject("OndrelCorpComponents.quickInvoice");
quick.DBConnectionString = Database.connectionString;
quick.custSeqNumber = 7;
quick.priceListId = 1;
quick.setStoreDays(1);
quick.loadCustomerPreferences(7, "");
quick.addLineItem(3, 1);  // dry cleaning
quick.addLineItem(2, 2);  // shirts,
quick.addLineItem(2, 2);  // and two more in another bag
quick.addLineItem(1, 3);  // laundry
quick.calculateInvDueDate();
print(quick.getTotalItemCount() + " pieces left, promised " + day(quick.InvDueDate));
show(quick.lineItems, bag);

// Dry cleaning goes to the plant by itself; shirts and laundry travel together.
print("");
print("may become " + quick.getNoOfInvoices() + " tickets, split by group into " + quick.splitInvoice().Count);
quick.saveInvoice("add", 1, 1, "0", "Dora Quill", "Fernhill Cleaners", true);
print("tickets " + quick.getTicketNosForPrinting().split(",").slice(1).join(" and "));

// In the afternoon: the first bag is opened.
var numbers = quick.getTicketNosForPrinting().split(",");
var invoice = CreateObject("OndrelCorpComponents.invoice");
invoice.getExistingDetails(numbers[1]);
invoice.addOrEdit = "edit";
invoice.setStoreDays(1);
print("");
print("ticket " + numbers[1] + " of type " + invoice.invoiceType + " holds");
show(invoice.lineItems, bag);
invoice.addItem2(201, 4);
invoice.addItem2(301, 1);
print("four shirts and a bag of washing later");
show(invoice.lineItems, function (fields) {
  return fields("itemType").Value + " " + fields("quantity").Value + " x " +
         (fields("itemName").Value || fields("deptName").Value) + " $" + fields("lineItemTotal").Value.toFixed(2);
});
invoice.invoiceDone2();
invoice.saveInvoice("edit", 1, 1, "0", "Dora Quill", "Fernhill Cleaners", true);
print("saved as type " + invoice.invoiceType + ", $" + invoice.getInvoiceAmountToPay().toFixed(2) + " to pay");

// Whose jacket with a stain is this? A list to search with is composed in the same way.
var search = CreateObject("OndrelCorpComponents.garmentSearch");
search.DBConnectionString = Database.connectionString;
var jacket = search.addItem(102, 1);
search.addUpcharge(jacket, 44, 1);  // a stain
print("");
print("a search for");
show(search.lineItems, function (fields) {
  return fields("itemType").Value + " " + fields("lineItemId").Value + " " + fields("itemName").Value;
});
