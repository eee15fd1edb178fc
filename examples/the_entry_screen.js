// The entry screen: fragments of mark-up that a page gets for a ticket and places as they are.
//
//   scripts/ondrel run --now "2026-11-24 10:30" examples/the_entry_screen.js

var invoice = CreateObject("OndrelCorpComponents.invoice");
invoice.DBConnectionString = Database.connectionString;
invoice.initInvoice();
invoice.isAdd = true;
invoice.addOrEdit = "add";
invoice.custSeqNumber = 1;
invoice.storeNumber = 1;
invoice.priceListId = 1;
invoice.setStoreDays(1);
invoice.LoadDefaults();

// An element a line, as deep as it stands.
function show(title, html) {
  var depth = 0;
  print("");
  print(title);
  html.replace(/(<div|<ul)/g, "\n$1").split("\n").forEach(function (line) {
    if (!line) return;
    print(new Array(depth + 2).join("  ") + line);
    depth += (line.match(/<(div|ul)/g) || []).length - (line.match(/<\/(div|ul)>/g) || []).length;
  });
}

var suit = invoice.addItem2(125, 1); // a linen suit, for which the price list wants a color and a pattern
show("The suit lacks two things:", invoice.htmlLineItems(suit));

invoice.addDescriptor(suit, "Navy", "CO", 1);
invoice.addDescriptor(suit, "Pinstripe", "PA", 1);
show("Now it is described:", invoice.htmlLineItems(suit));

invoice.invoiceDone2();
show("What it comes to:", invoice.htmlInvoiceTotals());

var page = ByRef("");
show("When it is due:", invoice.htmlDeptDueDate(1, page));
print("page " + page.value);

print("");
print("The same for a script:");
print(JSON.stringify(JSON.parse(invoice.toJSON()), null, 1));
