// A clerk's morning: everything that happens to the lines of one ticket between "good morning" and "see you
// Saturday", and what the log says about it afterwards.
//
//   scripts/ondrel run --now "2026-11-24 10:30" examples/a_clerks_morning.js

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

function money(value) {
  return (value < 0 ? "-$" : "$") + Math.abs(value).toFixed(2);
}

function day(date) {
  return date ? ["Sun", "Mon", "Tue", "Wed", "Thu", "Fri", "Sat"][date.getDay()] + " " + (date.getMonth() + 1) + "/" + date.getDate() : "";
}

function padded(value, width) {
  var text = String(value);
  while (text.length < width) text += " ";
  return text;
}

// The garments with what hangs on them; the tax that every click works out anew is left out here.
function show(said) {
  print("");
  print('"' + said + '"');
  var garments = invoice.lineItems.Clone();
  var children = invoice.lineItems.Clone();
  garments.Filter = "itemType='IT' or itemType='AC'";
  for (; !garments.EOF; garments.MoveNext()) {
    print("  " + padded(garments.Fields("quantity").Value + " " + garments.Fields("itemName").Value, 26) +
          padded(money(garments.Fields("lineItemTotal").Value), 10) + day(garments.Fields("dueDate").Value) +
          (garments.Fields("notes").Value ? "  (" + garments.Fields("notes").Value + ")" : ""));
    children.Filter = "parentLineNumber=" + garments.Fields("lineNumber").Value;
    for (; !children.EOF; children.MoveNext())
      print("    " + padded(children.Fields("quantity").Value + " " + children.Fields("itemName").Value, 24) +
            money(children.Fields("lineItemTotal").Value));
  }
}

var shirts = invoice.addItem(201, 1, 4);
var suit = invoice.addItem(103, 1, 1);
var dress = invoice.addItem(106, 1, 1);
show("Four shirts, a suit and a dress, please.");

invoice.addUpcharge2(shirts, "Heavy Starch", 1);
invoice.addColor(dress, "White", 1, true);
invoice.addPattern(dress, "Sequined", 1, true);
invoice.addDescriptor(suit, "Arbelline", "BR", 1);
show("The shirts with starch. The dress is the white one with the sequins. And the suit is an Arbelline.");

invoice.changeQuantity(3, shirts);
show("Oh, one of the shirts is mine to keep.");

invoice.setLineToRedo(suit);
invoice.attachNotes(suit, "spot on the left sleeve again");
show("The suit was here last week, and the spot came back.");

invoice.setDeptIdDueDate(1, "12/4/2026");
show("Friday of next week is early enough for the dress and the suit.");

invoice.overRidePrice(12, dress);
show("You have a voucher for the dress? Twelve it is.");

invoice.addChargeLineNew(1, 1, 6.5, "Sew on two buttons", 1, 5, 1);
show("And could you sew on two buttons?");

print("");
print("promised " + day(invoice.InvDueDate) + ", " + money(invoice.getInvoiceAmountToPayBeforeTaxSurcharge()) + " before tax");
print("");
print("What the log keeps of it:");
var log = invoice.ticketLogItems;
for (log.MoveFirst(); !log.EOF; log.MoveNext())
  print("  " + log.Fields("itemLogType").Value + "  " + padded(log.Fields("quantity").Value, 4) +
        padded(log.Fields("deptName").Value, 14) + padded(log.Fields("itemName").Value, 20) + money(log.Fields("amount").Value));
