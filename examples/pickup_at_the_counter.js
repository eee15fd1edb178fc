// Pickup at the counter: what a page does when customers come for their clothes, or pay before they are ready.
//
//   scripts/demo            runs it in a fresh sample store, on the morning of 24 November 2026

var store = 1, terminal = 3, employee = 4, employeeName = "Pat O'Dell", storeName = "Fernhill Cleaners";

function newSession(customer, action) {
  var made = CreateObject("OndrelCorpComponents.pickup");
  made.DBConnectionString = Database.connectionString;
  made.storeid = store;
  made.custSeqNumber = customer;
  made.userAction = action;
  made.initStorePaymentTypeInfo();
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

function right(value, width) {
  var text = money(value);
  while (text.length < width) text = " " + text;
  return text;
}

function chapter(title) {
  print("");
  print("---- " + title);
}

function showAmounts(session) {
  print("  total " + money(session.getTotal()) + ", prepay discount " + money(session.getPrepayDiscount()) + ", paid " +
        money(session.getAmountPaid()) + ", due " + money(session.getAmountDue()) + ", change " + money(session.getChangeDue()));
}

function showLedger(tickets) {
  var rows = Database.query("select ticketNumber, paymentType, paymentAmount from Payment where ticketNumber in (" + tickets +
                            ") order by paymentId");
  for (; !rows.EOF; rows.MoveNext())
    print("  ticket " + rows.Fields("ticketNumber").Value + "  " + padded(rows.Fields("paymentType").Value, 12) +
          money(rows.Fields("paymentAmount").Value));
}

// ---- 1. Zoë O'Hanlon's sister collects three tickets, without the receipt but with a coupon of 20 percent.

var zoe = newSession(15, "pickup");
[1013, 1014, 1015].forEach(function (ticket) { zoe.addInvoiceToPickup(ticket); });

chapter("three tickets on the rack, " + zoe.getTotalItemCount() + " pieces");
showAmounts(zoe);

zoe.addCoupon(3, false, employee, terminal, employeeName, storeName);
zoe.reloadInvoices();
chapter("a coupon at the counter: every ticket that takes it is priced and saved again");
showAmounts(zoe);

zoe.claimReceipt = CreateObject("OndrelCorpComponents.claimReceiptFields");
zoe.claimReceipt.name = "Orla O'Hanlon";
zoe.claimReceipt.relationship = "sister";
zoe.claimReceipt.identificationType = "license";

zoe.addPayment(50, "GiftCard", "9001");
zoe.addPayment(25, "Cash");
chapter("a gift card and some cash; the drawer " + (zoe.openCashDrawer ? "opens" : "stays shut"));
showAmounts(zoe);

Database.trace();
zoe.applyPayments(employee, terminal);
chapter("applied, in two transactions");
Database.trace().forEach(function (statement) { print("  " + statement.substr(0, 100)); });
zoe.recordPickupAction(employee);

chapter("what the ledger says");
showLedger(zoe.getTicketNosForPrinting());

// ---- 2. Marta Fenwick wrote up a ticket an hour ago and pays for it ahead: that earns a discount.

var ahead = newSession(1, "prepay");
ahead.addInvoiceToPrepay(1007);
chapter("paid ahead, within two hours");
showAmounts(ahead);
ahead.addPayment(30, "Check", "1207");
ahead.applyPayments(employee, terminal, "'1007'");

// ---- 3. Back for her suit, she pays the rest by card; the approval comes from the card program.

var marta = newSession(1, "pickup");
marta.addInvoiceToPickup(1007);
chapter("and collected");
showAmounts(marta);
marta.addPayment(marta.getAmountDue(), "Credit Card", marta.maskCardNumber("4111111111111111"), "2812", "Visa", 0, "A10442", "XC-1001");
marta.applyPayments(employee, terminal);
marta.recordPickupAction(employee);
showLedger("1007");

// ---- 4. The receipt.

function printReceipt(ticketNumber) {
  var header = Database.query("select t.invoiceNumber, t.ticketStatus, t.dateout, t.netTotal, t.amountPaid, c.customername from Ticket t " +
                              "inner join TicketCustomer c on c.ticketNumber = t.ticketNumber where t.ticketNumber = " + ticketNumber);
  var ticket = CreateObject("OndrelCorpComponents.invoice");
  ticket.storeNumber = store;
  ticket.getInvoiceDetailsForPrinting(ticketNumber);

  print("");
  print("  " + storeName);
  print("  invoice " + header.Fields("invoiceNumber").Value + "   " + header.Fields("customername").Value);
  print("  " + new Array(49).join("-"));
  var groups = ticket.getLineItemsGroupDetails();
  for (; !groups.EOF; groups.MoveNext()) {
    var pieces = groups.Fields("quantity").Value;
    print("  " + padded((pieces > 0 ? pieces + " " : "") + groups.Fields("itemDesc").Value, 38) + right(groups.Fields("total").Value, 10));
    [groups.Fields("colorPatternDesc").Value, groups.Fields("upchargeDesc").Value].forEach(function (words) {
      if (words) print("      " + words);
    });
  }
  print("  " + new Array(49).join("-"));
  [["surcharges", ticket.liColTotal("lineItemTotal", "itemType='SU'")],
   ["taxes", ticket.liColTotal("lineItemTotal", "itemType='TA'")],
   ["total", header.Fields("netTotal").Value],
   ["paid", header.Fields("amountPaid").Value]].forEach(function (row) { print("  " + padded(row[0], 38) + right(row[1], 10)); });
  var out = header.Fields("dateout").Value;
  print("  " + (header.Fields("ticketStatus").Value == "FI" ? "collected " + (out.getMonth() + 1) + "/" + out.getDate() + "/" + out.getFullYear() : "in the shop") +
        ", thank you");
}

printReceipt(marta.getTicketNosForPrinting());
