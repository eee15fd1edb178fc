// The drawer of this counter, from its float to its count. A report says of a period what the ledger, the
// drawer and the tickets say. The periods of a counter follow each other without a gap: they part the ledger
// by the numbers of its rows, so that every payment stands in one report.
//
//   open (float) ---> takings, paid in, paid out ---> X report, any time ---> count ---> Z report, kept as it
//   was
var text = Server.include("shared/text.js");
var desk = Server.include("shared/desk.js");
var shop = Server.include("shared/shop.js");

exports.denominations = [
  [100, "$100"], [50, "$50"], [20, "$20"], [10, "$10"], [5, "$5"], [2, "$2"], [1, "$1"], [0.5, "50 c"],
  [0.25, "25 c"], [0.1, "10 c"], [0.05, "5 c"], [0.01, "1 c"]
];

function terminal() { return desk.place().terminal; }
function cents(value) { return text.cents(value || 0); }

function periodOf(field) {
  return {
    id: field("drawerPeriodId"),
    opened: field("openedDate"),
    closed: field("closedDate"),
    start: cents(field("floatAmount")),
    z: field("zNumber"),
    counted: field("countedAmount"),
    checks: field("countedChecks"),
    terminal: field("terminalId"),
    terminalName: field("terminalName") || "",
    openedBy: field("openedName") || "",
    closedBy: field("closedName") || "",
    from:
      { payment: field("firstPaymentId"), pickup: field("firstPickupId"), refund: field("firstRefundId") },
    to: { payment: field("lastPaymentId"), pickup: field("lastPickupId"), refund: field("lastRefundId") }
  };
}
var columns =
  "p.*, t.terminalName, o.employeename as openedName, c.employeename as closedName from DrawerPeriod p " +
  "left join terminal t on t.terminalid = p.terminalId " +
  "left join employee o on o.employeeid = p.openedBy left join employee c on c.employeeid = p.closedBy";

// The open period of this counter, or null.
exports.current = function() {
  return text.rows(
           Database.query(
             "select " + columns + " where p.closedDate is null and p.terminalId = " + terminal()),
           periodOf)[0] ||
    null;
};
exports.byId = function(id) {
  return text.rows(
           Database.query(
             "select " + columns + " where p.storeId = " + desk.place().store +
             " and p.drawerPeriodId = " + id),
           periodOf)[0] ||
    null;
};
// The closed periods of this shop, the newest first.
exports.closed = function(most) {
  return text.rows(
    Database.query(
      "select top " + most + " " + columns +
      " where p.closedDate is not null and p.storeId = " + desk.place().store + " order by p.zNumber desc"),
    periodOf);
};

function last(table, column) { return shop.value("select isnull(max(" + column + "), 0) from " + table); }
function marks() {
  return {
    payment: last("Payment", "paymentId"),
    pickup: last("TicketPickup", "ticketPickupId"),
    refund: last("Refund", "refundId")
  };
}

// Opens the drawer with a float. What came in since the last count belongs to this period.
exports.open = function(amount) {
  if (exports.current()) return { problem: "The drawer is open already." };
  var before = text.rows(
    Database.query(
      "select top 1 " + columns + " where p.closedDate is not null and p.terminalId = " + terminal() +
      " order by p.drawerPeriodId desc"),
    periodOf)[0];
  var start = before ? before.to : marks(), id = shop.next("DrawerPeriod", "drawerPeriodId");
  shop.book([
    "insert into DrawerPeriod (drawerPeriodId, storeId, terminalId, openedDate, openedBy, floatAmount, " +
      "firstPaymentId, firstPickupId, firstRefundId) values (" +
      [
        id, desk.place().store, terminal(), "getdate()", text.whole(desk.employee().id), amount.toFixed(2),
        start.payment, start.pickup, start.refund
      ].join(", ") +
      ")",
    "update DrawerEntry set drawerPeriodId = " + id +
      " where drawerPeriodId is null and terminalId = " + terminal()
  ]);
  return {};
};

// The statement that enters cash that came in (I), went out (O) or was given back on a check (X).
exports.entry = function(type, amount, reason) {
  var period = exports.current();
  return "insert into DrawerEntry (drawerPeriodId, terminalId, entryType, amount, reason, entryDate, " +
    "employeeId) values (" +
    [
      period ? period.id : "null", terminal(), text.quoted(type), amount.toFixed(2),
      shop.literal(reason, 128), "getdate()", text.whole(desk.employee().id)
    ].join(", ") +
    ")";
};

// After a payment with more change than cash: so much of a check was given back in cash.
exports.handedBack = function(amount) {
  if (cents(amount) > 0) shop.book([exports.entry("X", cents(amount), "change on a check")]);
};

exports.move = function(type, amount, reason) {
  if (!exports.current()) return { problem: "The drawer is not open." };
  shop.book([exports.entry(type, amount, reason)]);
  return {};
};

exports.entries = function(period) {
  return text.rows(
    Database.query(
      "select d.*, e.employeename as who from DrawerEntry d left join employee e on e.employeeid = " +
      "d.employeeId where d.drawerPeriodId = " + period.id + " order by d.drawerEntryId"),
    function(field) {
      return {
        type: field("entryType"),
        amount: cents(field("amount")),
        reason: field("reason") || "",
        when: field("entryDate"),
        who: field("who") || ""
      };
    });
};

// ---- the report: rows of {section, name, pieces, amount}

function within(table, key, period, end) {
  return " " + table + ".terminalId = " + period.terminal + " and " + table + "." + key + " > " +
    period.from[end] + (period.to[end] === null ? "" : " and " + table + "." + key + " <= " + period.to[end]);
}

function grouped(section, sql) {
  return text.rows(Database.query(sql), function(field) {
    return {
      section: section,
      name: String(field("name") || "unknown"),
      pieces: field("pieces") || 0,
      amount: cents(field("amount"))
    };
  });
}

// What was taken, by tender; by clerk; what was handed out, its taxes, and what was given back.
function takings(period) {
  var paid = within("p", "paymentId", period, "payment"),
      out = within("k", "ticketPickupId", period, "pickup"), back = within("f", "refundId", period, "refund");
  return [].concat(
    grouped(
      "tender",
      "select p.paymentType as name, count(*) as pieces, sum(p.paymentAmount) as amount " +
        "from Payment p where" + paid + " group by p.paymentType order by p.paymentType"),
    grouped(
      "clerk",
      "select e.employeename as name, count(*) as pieces, sum(p.paymentAmount) as amount from Payment p " +
        "left join employee e on e.employeeid = p.employeeId where" + paid +
        " group by e.employeename order by e.employeename"),
    grouped(
      "action",
      "select p.paymentAction as name, count(*) as pieces, sum(p.paymentAmount) as amount from Payment p " +
        "where" + paid + " group by p.paymentAction order by p.paymentAction"),
    grouped(
      "tax",
      "select l.lineItemName as name, count(distinct l.ticketNumber) as pieces, sum(l.lineItemTotal) as " +
        "amount from TicketPickup k inner join TicketLineItem l on l.ticketNumber = k.ticketNumber and " +
        "l.ticketLineType = 'TA' where" + out + " group by l.lineItemName order by l.lineItemName"),
    grouped(
      "tax",
      "select 'in money given back' as name, count(*) as pieces, -sum(f.taxAmount) as amount from Refund " +
        "f where" + back + " having count(*) > 0"),
    grouped(
      "out",
      "select 'Tickets handed out' as name, count(*) as pieces, isnull(sum(t.netTotal), 0) as amount " +
        "from TicketPickup k inner join Ticket t on t.ticketNumber = k.ticketNumber where" + out),
    grouped(
      "out",
      "select 'Given back' as name, count(*) as pieces, isnull(-sum(f.amount), 0) as amount from Refund " +
        "f where" + back));
}

function sum(rows, section, name) {
  return cents(rows.reduce(function(all, one) {
    return all + (one.section === section && (name === undefined || one.name === name) ? one.amount : 0);
  }, 0));
}

// The rows of a period as it stands; `count` has what was counted, {cash, checks, coins}, when it is closed.
exports.report = function(period, count) {
  var rows = takings(period), entries = exports.entries(period);
  function moved(type) {
    return entries.filter(function(one) { return one.type === type; });
  }
  function total(list) {
    return cents(list.reduce(function(all, one) { return all + one.amount; }, 0));
  }
  function line(section, name, amount, pieces) {
    rows.push({ section: section, name: name, pieces: pieces === undefined ? null : pieces, amount: amount });
  }
  var cash = sum(rows, "tender", "Cash"), checks = sum(rows, "tender", "Check"), given = moved("X");
  var expected = cents(period.start + cash + total(moved("I")) - total(moved("O")) - total(given)),
      expectedChecks = cents(checks + total(given));
  line("drawer", "Float", period.start);
  line("drawer", "Cash taken", cash);
  line("drawer", "Paid in", total(moved("I")), moved("I").length);
  line("drawer", "Paid out", -total(moved("O")), moved("O").length);
  if (given.length) line("drawer", "Given back on checks", -total(given), given.length);
  line("drawer", "Cash that should be there", expected);
  line("drawer", "Checks that should be there", expectedChecks);
  if (count) {
    line("drawer", "Cash counted", count.cash);
    line("drawer", "Checks counted", count.checks);
    line("drawer", "Over or short", cents(count.cash + count.checks - expected - expectedChecks));
    count.coins.forEach(function(one) { line("count", one[0], one[2], one[1]); });
  }
  moved("I").concat(moved("O")).forEach(function(one) {
    line("moved", (one.reason || "no reason").substr(0, 64), one.type === "I" ? one.amount : -one.amount);
  });
  return rows;
};

// What was counted, from a form: pieces by denomination, and the checks' sum; or what is wrong with it, as a
// text.
exports.count = function(form) {
  var coins = [], cash = 0, wrong = "";
  exports.denominations.forEach(function(one, at) {
    var given = String(form["coin" + at] || "").replace(/^\s+|\s+$/g, "");
    if (given && !/^\d{1,5}$/.test(given))
      wrong = "This is no number of " + one[1] + ": " + text.clean(given, 20);
    var pieces = text.whole(given || 0);
    if (pieces > 0) coins.push([one[1], pieces, cents(pieces * one[0])]);
    cash += pieces * one[0];
  });
  var checks = form.checks ? text.dollars(form.checks) : 0;
  if (checks === null) wrong = "This is no amount of checks: " + text.clean(form.checks, 20);
  return wrong || { coins: coins, cash: cents(cash), checks: checks };
};

// Closes the drawer: the report is written down as it is now, and is never worked out again.
exports.close = function(id, count) {
  var period = exports.current();
  if (!period || period.id !== id) return { problem: "This drawer is closed already." };
  period.to = marks();
  var rows = exports.report(period, count),
      z =
        (shop.value("select max(zNumber) from DrawerPeriod where storeId = " + desk.place().store) || 0) + 1;
  var expected = sum(rows, "drawer", "Cash that should be there");
  var all = rows.map(function(row, at) {
    return "insert into DrawerReport (drawerPeriodId, position, section, name, pieces, amount) values (" +
      [
        id, at + 1, text.quoted(row.section), text.quoted(row.name),
        row.pieces === null ? "null" : row.pieces, row.amount.toFixed(2)
      ].join(", ") +
      ")";
  });
  all.push(
    "update DrawerPeriod set closedDate = getdate(), closedBy = " + text.whole(desk.employee().id) +
    ", countedAmount = " + count.cash.toFixed(2) + ", countedChecks = " + count.checks.toFixed(2) +
    ", expectedAmount = " + expected.toFixed(2) + ", zNumber = " + z +
    ", lastPaymentId = " + period.to.payment + ", lastPickupId = " + period.to.pickup +
    ", lastRefundId = " + period.to.refund + " where drawerPeriodId = " + id);
  shop.book(all);
  return { id: id };
};

// The rows of a closed period, as they were written down.
exports.kept = function(period) {
  return text.rows(
    Database.query(
      "select section, name, pieces, amount from DrawerReport where drawerPeriodId = " + period.id +
      " order by position"),
    function(field) {
      return {
        section: field("section"),
        name: field("name"),
        pieces: field("pieces"),
        amount: cents(field("amount"))
      };
    });
};
