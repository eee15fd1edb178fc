// Card sales at the till. The card program is asked at once and answers when the customer has done with the
// card; until then the browser looks whether it has. An approved sale is money that the customer has given:
// it stands in `cardpayment` from that moment, and stays there, to be used, when the till is left or the host
// ends before it is tendered.
//
//   ask ---> waiting ---> settle ---> approved: cardpayment ---> tendered ---> booked with the other tenders
//               |            '------> refused: says why
//               '---> giveUp: nobody waits any more
//
// Before an answer is read its sale stands in `cardpayment` without an amount: a sale whose reading was cut
// short is known by that and read again, from the file that the card program left.
//
// Where the card program's folder is, the host is told: --set cardFolder=C:/xc.
var desk = Server.include("shared/desk.js");
var text = Server.include("shared/text.js");

// An answer that has begun is read to its end within seconds.
var readingSeconds = 5;

exports.isThere = function() { return !!Server.setting("cardFolder"); };

function program() {
  var made = CreateObject("OndrelCorpComponents.creditCardProcessing");
  made.DBConnectionString = Database.connectionString;
  made.XChargeDirectory = Server.setting("cardFolder");
  made.XChargeTimeout = readingSeconds;
  return made;
}

// By this a request is known again after the session that made it: terminal and customer.
function receipt(customer) { return "T" + desk.place().terminal + "C" + customer; }

// A request without an answer, or whose answer was not read to its end.
var isOpen = "(x.dateAnswered is null or exists (select * from cardpayment c where c.transactionid = " +
  "x.TransactionGUID and c.amount = 0))";

function openSales(whose) {
  return text.rows(
    Database.query(
      "select x.TransactionGUID, x.amount, x.receipt from XChargeTransaction x where " + isOpen +
      " and x.receipt " + whose),
    function(field) {
      return {
        guid: field("TransactionGUID"),
        amount: field("amount"),
        customer: text.whole(String(field("receipt")).replace(/^.*C/, ""))
      };
    });
}

// What was swiped or keyed in, as a card; or what is wrong with it, as a text.
function cardOf(cards, c) {
  var entered = String(c.cardNumber || "").substr(0, 300).replace(/^\s+|\s+$/g, "");
  var card;
  if (entered.charAt(0) === "%") {
    card = cards.FieldsFromSwipe(entered);
    if (!card.accountnumber) return "The card could not be read. Swipe it again, or key in its number.";
    return card;
  }
  var brand = ByRef(""), why = ByRef("");
  if (!cards.VerifyCreditCard(entered, brand, why)) return String(why.value || "This is not a card number.");
  var until = /^\s*(\d{1,2})\s*\/\s*(?:20)?(\d{2})\s*$/.exec(String(c.cardExpiration || "").substr(0, 10));
  if (!until || Number(until[1]) < 1 || Number(until[1]) > 12)
    return "The card's expiration is a month and a year: 12/28.";
  var now = Server.now();
  if (Number(until[2]) * 12 + Number(until[1]) < (now.getFullYear() - 2000) * 12 + now.getMonth() + 1)
    return "This card has expired.";
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
exports.ask = function(customer, c, amount) {
  if (!exports.isThere()) return "This counter takes no cards.";
  if (exports.waiting(customer)) return "A card is being asked for already.";
  var cards = program();
  if (!isFree(cards))
    return "The card terminal still waits for the sale of another customer. Wait for it there, or do not " +
      "wait for it here.";
  var card = cardOf(cards, c);
  if (typeof card === "string") return card;
  var brand = ByRef(""), why = ByRef("");
  cards.VerifyCreditCard(card.accountnumber, brand, why);
  var place = desk.place();
  // A write before the card program hears of it: the host marks the request's number, so that it never asks
  // twice, and a database that takes no writes is found out while nothing is charged.
  Database.execute("update terminal set terminalid = terminalid where terminalid = " + place.terminal);
  cards.RequestSingleTransaction(
    place.terminal, card, text.whole(desk.employee().id), receipt(customer), amount);
  if (!exports.waiting(customer))
    return "The sale could not be written down. Look at the card terminal before you ask again.";
  Session.card = {
    guid: card.guid,
    brand: brand.value,
    number: "************" + card.accountnumber.substr(-4),
    expiration: twoDigits(card.expirationmonth) + twoDigits(card.expirationyear)
  };
  return "";
};

// The open request of this terminal and customer, or null.
exports.waiting = function(customer) { return openSales("= " + text.quoted(receipt(customer)))[0] || null; };

// The customer, if any, for whose sale this terminal waits.
exports.busyWith = function() {
  var sale = openSales("like " + text.quoted(receipt("%")))[0];
  return sale ? sale.customer : 0;
};

// A terminal makes one sale at a time: under a fixed file name one customer's answer would be given to the
// other. What has been answered meanwhile is settled for its own customer, who finds it at the next visit.
function isFree(cards) {
  openSales("like " + text.quoted(receipt("%"))).forEach(function(sale) {
    if (cards.IsAnswerReady(sale.guid)) read(cards, sale);
  });
  return !exports.busyWith();
}

// True when approved; the sale has its amount then. `code` takes what the card program says.
function read(cards, sale, code) {
  if (Database.query("select transactionid from cardpayment where transactionid = " + text.quoted(sale.guid))
        .EOF)
    Database.execute(
      "insert into cardpayment (transactionid, customersequencenumber, amount, amountapplied) values (" +
      text.quoted(sale.guid) + ", " + sale.customer + ", 0, 0)");
  var isApproved = cards.ReadSingleAnswer(sale.guid, code || ByRef(""));
  Database.execute(
    isApproved ? "update cardpayment set amount = " + sale.amount.toFixed(2) +
        " where transactionid = " + text.quoted(sale.guid) :
                 "delete from cardpayment where transactionid = " + text.quoted(sale.guid));
  return isApproved;
}

exports.isAnswered = function(customer) {
  var sale = exports.waiting(customer);
  return !!sale && program().IsAnswerReady(sale.guid);
};

// Reads the answer. The result is {amount, code, transaction, number, expiration, brand}, or {problem}.
exports.settle = function(customer) {
  var sale = exports.waiting(customer), code = ByRef("");
  if (!sale) return { problem: "No card is being asked for." };
  if (!read(program(), sale, code))
    return {
      problem:
        "The card was not accepted: " + (code.value || "the answer of the card terminal makes no sense")
    };
  var card = Session.card && Session.card.guid === sale.guid ? Session.card :
                                                               { brand: "", number: "", expiration: "" };
  return {
    amount: sale.amount,
    code: code.value,
    transaction: sale.guid,
    number: card.number,
    expiration: card.expiration,
    brand: card.brand
  };
};

// Nobody waits any more for what this terminal was asked. What the card program does from here on is not seen
// by the till.
exports.giveUp = function() {
  openSales("like " + text.quoted(receipt("%"))).forEach(function(sale) {
    Database.execute(
      "delete from cardpayment where amount = 0 and transactionid = " + text.quoted(sale.guid));
    program().UpdateTransactionAnswer(sale.guid, "GIVEN UP AT THE COUNTER");
  });
};

// What is left of an approved sale.
exports.restOf = function(transaction) {
  var found = Database.query(
    "select amount - isnull(amountapplied, 0) as rest from cardpayment where transactionid = " +
    text.quoted(transaction));
  return found.EOF ? 0 : found.Fields("rest").Value;
};

// Approved sales of the customer with money that no ticket has taken, without those in `tendered`.
exports.unused = function(customer, tendered) {
  return text
    .rows(
      Database.query(
        "select c.transactionid, c.amount - isnull(c.amountapplied, 0) as rest, isnull(x.answer, '') as " +
        "code from cardpayment c " +
        "left join XChargeTransaction x on x.TransactionGUID = c.transactionid where c.amount > " +
        "isnull(c.amountapplied, 0) and " +
        "c.customersequencenumber = " + customer + " order by c.transactionid"),
      function(
        field) { return { transaction: field("transactionid"), rest: field("rest"), code: field("code") }; })
    .filter(function(one) { return tendered.indexOf(one.transaction) < 0; });
};
