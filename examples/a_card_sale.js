// A card sale: a customer pays for her ticket with a card that is swiped, then one that is refused is keyed in.
// The card program is another process, so start its stand-in first, on a folder that this run calls C:\xc:
//
//   scripts/build card_simulator
//   mkdir -p /tmp/drives/c/xc
//   build/card_simulator /tmp/drives/c/xc &
//   ONDREL_DRIVES=/tmp/drives scripts/ondrel run examples/a_card_sale.js
//
// The cents of the amount tell the stand-in what to say: .01 is refused, .02 is never answered.

var cards = CreateObject("OndrelCorpComponents.creditCardProcessing");
cards.DBConnectionString = Database.connectionString;
cards.XChargeDirectory = "C:/xc";
cards.XChargeTimeout = 5;

function show(title, sql) {
  print(title);
  for (var rows = Database.query(sql); !rows.EOF; rows.MoveNext()) {
    var values = [];
    for (var k = 0; k < rows.Fields.Count; k++) values.push(rows.Fields(k).Name + " " + rows.Fields(k).Value);
    print("  " + values.join(", "));
  }
}

// ---- Ticket 1008 is ready, 11.00. The customer swipes, and it goes out.

var swiped = cards.FieldsFromSwipe("%B4111111111111111^WINTERS/ADA^2812101?;4111111111111111=2812101?");
print(swiped.firstname + " " + swiped.lastname + ", card until " + swiped.expirationmonth + "/" + swiped.expirationyear);

var code = ByRef("");
var approved = cards.ProcessFullTransaction(1, 2, 4, 1, "1008", swiped, 11, "", 1, code);
print((approved ? "approved, code " : "not approved: ") + code.value);
if (!approved) {
  print("The stand-in should have approved. Is it running on that folder?");
  quit(0);
}

show("the ticket", "select ticketNumber, ticketStatus, amountPaid from Ticket where ticketNumber = 1008");
show("the ledger", "select paymentType, paymentAmount, checkOrCardNumber, approvalCode from Payment where ticketNumber = 1008");

// ---- The next one reads his number aloud, with a digit wrong at first.

var brand = ByRef(""), reason = ByRef("");
["5555 5555 5555 4445", "5555 5555 5555 4444"].forEach(function (number) {
  var isValid = cards.VerifyCreditCard(number, brand, reason);
  print(number + ": " + (isValid ? brand.value : reason.value));
});

var keyed = CreateObject("OndrelCorpComponents.creditCardFields");
keyed.accountnumber = "5555555555554444";
keyed.expirationyear = 28;
keyed.expirationmonth = 12;
approved = cards.ProcessFullTransaction(1, 2, 4, 16, "1010", keyed, 10.01, "", 2, code);
print((approved ? "approved, code " : "not approved: ") + code.value);

show("what was asked of the card program",
     "select terminalid, customerSequenceNumber, amount, answer from XChargeTransaction order by amount desc");
