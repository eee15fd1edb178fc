// What was paid on tickets beyond what they cost by now: paid ahead, then edited down. It is no change of
// this visit's money, so it is booked before the visit goes on, by one of three ways:
//
// | way     | ledger                                                        | drawer |
// |---------|---------------------------------------------------------------|--------|
// | tickets | off the ticket and onto the others of the visit, same tender  | stays  |
// | account | off the ticket as "On Account": the customer owes so much less | stays  |
// | refund  | off the ticket as "Cash"                                      | gives  |
//
// What a ticket says was paid stays the sum of its rows in the ledger.
var text = Server.include("shared/text.js");
var desk = Server.include("shared/desk.js");

function hasAccount(customer) {
  return !Database
            .query(
              "select customerSequenceNumber from Customer where (temporaryaccount = 1 or " +
              "permanentaccount = 1) and customerSequenceNumber = " + customer)
            .EOF;
}
exports.hasAccount = hasAccount;

// The ways that are open: only who has no account gets money back.
exports.ways = function(customer, balances) {
  var ways = balances.some(function(one) { return one.owed > 0; }) ? ["tickets"] : [];
  return ways.concat(hasAccount(customer) ? "account" : "refund");
};

// Who may give money back: those that --set refundClerks=1,4 names; everybody where the shop names nobody.
exports.mayRefund = function() {
  var named = Server.setting("refundClerks");
  return !named || String(named).split(",").map(text.whole).indexOf(text.whole(desk.employee().id)) >= 0;
};

function row(customer, ticket, type, amount) {
  var place = desk.place();
  return "insert into Payment (paymentDate, paymentAction, storeId, terminalId, employeeId, " +
    "customerSequenceNumber, ticketNumber, paymentType, paymentAmount) values (getdate(), 'Credit', " +
    [
      place.store, place.terminal, text.whole(desk.employee().id), customer, ticket, text.quoted(type),
      amount.toFixed(2)
    ].join(", ") +
    ")";
}
function paid(ticket, amount) {
  return "update Ticket set amountPaid = amountPaid + (" + amount.toFixed(2) +
    ") where ticketNumber = " + ticket;
}

// The tender that paid most of a ticket.
function tenderOf(ticket) {
  var most = Database.query(
    "select top 1 paymentType from Payment where ticketNumber = " + ticket +
    " group by paymentType order by sum(paymentAmount) desc");
  return most.EOF ? "Cash" : most.Fields("paymentType").Value;
}

// The statements of a way, for tickets of {number, owed, credit}.
function statements(customer, balances, way) {
  var all = [];
  function book(ticket, type, amount) { all.push(row(customer, ticket, type, amount), paid(ticket, amount)); }
  var needs = balances.filter(function(one) { return one.owed > 0; })
                .map(function(one) { return { number: one.number, left: one.owed }; });
  balances.filter(function(one) { return one.credit > 0; }).forEach(function(source) {
    if (way !== "tickets")
      return book(source.number, way === "account" ? "On Account" : "Cash", -source.credit);
    var left = source.credit, type = tenderOf(source.number);
    needs.forEach(function(need) {
      var part = text.cents(Math.min(left, need.left));
      if (part <= 0) return;
      book(source.number, type, -part);
      book(need.number, type, part);
      left -= part;
      need.left -= part;
    });
  });
  return all;
}

// Books it: all of it or nothing.
exports.book = function(customer, balances, way) {
  var all = statements(customer, balances, way);
  Database.begin();
  all.forEach(function(one) { Database.execute(one); });
  Database.commit();
};
