// Card sales at the till. The card program is asked at once and answers when the customer has done with the card; until
// then the browser looks whether it has. An approved sale is money that the customer has given: it stands in
// `cardpayment` from that moment, and stays there, to be used, when the till is left or the host ends before it is
// tendered.
//
//   ask ---> waiting ---> settle ---> approved: cardpayment ---> tendered ---> booked with the other tenders
//               |            '------> refused: says why
//               '---> giveUp: nobody waits any more
//
// Where the card program's folder is, the host is told: --set cardFolder=C:/xc.
var desk = Server.include("shared/desk.js");
var text = Server.include("shared/text.js");

// An answer that has begun is read to its end within seconds.
var readingSeconds = 5;

exports.isThere = function () {
  return !!Server.setting("cardFolder");
};

function program() {
  var made = CreateObject("OndrelCorpComponents.creditCardProcessing");
  made.DBConnectionString = Database.connectionString;
  made.XChargeDirectory = Server.setting("cardFolder");
  made.XChargeTimeout = readingSeconds;
  return made;
}

// By this a request is known again after the session that made it: terminal and customer.
function receipt(customer) {
  return "T" + desk.place().terminal + "C" + customer;
}

// What was swiped or keyed in, as a card; or what is wrong with it, as a text.
function cardOf(cards, c) {
  var entered = String(c.cardNumber || "").replace(/^\s+|\s+$/g, "");
  var card;
  if (entered.charAt(0) === "%") {
    card = cards.FieldsFromSwipe(entered);
    if (!card.accountnumber) return "The card could not be read. Swipe it again, or key in its number.";
    return card;
  }
  var brand = ByRef(""), why = ByRef("");
  if (!cards.VerifyCreditCard(entered, brand, why)) return String(why.value || "This is not a card number.");
  var until = /^\s*(\d{1,2})\s*\/\s*(?:20)?(\d{2})\s*$/.exec(String(c.cardExpiration || ""));
  if (!until || Number(until[1]) < 1 || Number(until[1]) > 12) return "The card's expiration is a month and a year: 12/28.";
  card = CreateObject("OndrelCorpComponents.creditCardFields");
  card.accountnumber = entered.replace(/[\s-]/g, "");
  card.expirationmonth = Number(until[1]);
  card.expirationyear = Number(until[2]);
  card.zip = String(c.cardZip || "").substr(0, 10);
  card.cvv2 = String(c.cardCode || "").substr(0, 4);
  return card;
}

function twoDigits(number) { return (number < 10 ? "0" : "") + number; }

// Asks the card program for a sale. The result is a text when that cannot be done.
exports.ask = function (customer, c, amount) {
  if (!exports.isThere()) return "This counter takes no cards.";
  if (exports.waiting(customer)) return "A card is being asked for already.";
  var cards = program();
  var card = cardOf(cards, c);
  if (typeof card === "string") return card;
  var brand = ByRef(""), why = ByRef("");
  cards.VerifyCreditCard(card.accountnumber, brand, why);
  var place = desk.place();
  cards.RequestSingleTransaction(place.terminal, card, desk.employee().id, receipt(customer), amount);
  Session.card = { guid: card.guid, brand: brand.value, number: "************" + card.accountnumber.substr(-4),
                   expiration: twoDigits(card.expirationmonth) + twoDigits(card.expirationyear) };
  return "";
};

// The request of this terminal and customer that has no answer yet, or null.
exports.waiting = function (customer) {
  var found = Database.query("select TransactionGUID, amount from XChargeTransaction where dateAnswered is null and receipt = " + text.quoted(receipt(customer)));
  return found.EOF ? null : { guid: found.Fields("TransactionGUID").Value, amount: found.Fields("amount").Value };
};

exports.isAnswered = function (customer) {
  var sale = exports.waiting(customer);
  return !!sale && program().IsAnswerReady(sale.guid);
};

// Reads the answer. The result is {amount, code, transaction, number, expiration, brand}, or {problem}.
exports.settle = function (customer) {
  var sale = exports.waiting(customer);
  if (!sale) return { problem: "No card is being asked for." };
  var code = ByRef("");
  if (!program().ReadSingleAnswer(sale.guid, code)) return { problem: "The card was not accepted: " + code.value };
  Database.execute("insert into cardpayment (transactionid, customersequencenumber, amount, amountapplied) values (" + text.quoted(sale.guid) + ", " + customer + ", " +
                   sale.amount.toFixed(2) + ", 0)");
  var card = Session.card && Session.card.guid === sale.guid ? Session.card : { brand: "", number: "", expiration: "" };
  return { amount: sale.amount, code: code.value, transaction: sale.guid, number: card.number, expiration: card.expiration, brand: card.brand };
};

// Nobody waits any more. What the card program does with the request from here on is not seen by the till.
exports.giveUp = function (customer) {
  var sale = exports.waiting(customer);
  if (sale) program().UpdateTransactionAnswer(sale.guid, "GIVEN UP AT THE COUNTER");
};

// Approved sales of the customer with money that no ticket has taken, without those in `tendered`.
exports.unused = function (customer, tendered) {
  return text.rows(Database.query("select c.transactionid, c.amount - isnull(c.amountapplied, 0) as rest, isnull(x.answer, '') as code from cardpayment c " +
                                  "left join XChargeTransaction x on x.TransactionGUID = c.transactionid where c.amount > isnull(c.amountapplied, 0) and " +
                                  "c.customersequencenumber = " + customer + " order by c.transactionid"), function (field) {
    return { transaction: field("transactionid"), rest: field("rest"), code: field("code") };
  }).filter(function (one) { return tendered.indexOf(one.transaction) < 0; });
};
