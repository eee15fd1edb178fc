// What the shop's books say over a span of days. Each report is a list of columns and of rows; what stands in
// several reports is worked out in the same way in all of them:
//
// | word         | meaning                                                                                |
// |--------------|----------------------------------------------------------------------------------------|
// | written      | what tickets of these days come to by now, with discounts, surcharges and taxes; void   |
// |              | ones are left out                                                                       |
// | taken        | the ledger's rows of these days in money: not "On Account", not gift cards              |
// | later        | the rest of the ledger: bought on account or with a gift card, less what was paid for it |
// | pieces       | garments, also those in a pack; a bag that is not itemised by its count                 |
// | out          | tickets that were handed out on these days                                              |
// | ready        | when a ticket came onto the rack first, or went out without; in time where it hangs and |
// |              | nobody wrote down since when                                                            |
// | late         | ready on a later day than promised, or still not ready then                             |
var text = Server.include("shared/text.js");
var desk = Server.include("shared/desk.js");

function here(alias) { return alias + ".storeId = " + desk.place().store; }
function within(column, span) {
  return column + " >= " + span.from.literal + " and " + column + " < " + span.end.literal;
}
function written(span) {
  return here("t") + " and t.ticketStatus <> 'VO' and " + within("t.createdDate", span);
}
function dayOf(column) { return "convert(varchar(8), " + column + ", 112)"; }

var goods = "('IT', 'UP', 'CO', 'PA', 'AC')", offers = "('CU', 'PR', 'VI', 'RE')",
    later = "('On Account', 'GiftCard')";
// Pieces of a line; a bag's count is left out as soon as the ticket is itemised.
var pieces = "case when l.ticketLineType = 'IT' then l.quantity * isnull(l.packagedQuantity, 1) " +
  "when l.ticketLineType = 'DE' and t.invoiceType = 'Q' then l.quantity else 0 end";
var fromLines = " from Ticket t inner join TicketLineItem l on l.ticketNumber = t.ticketNumber where ";

// The rows of a query as a table by their first column, `key`; each row has the others by name.
function keyed(all, sql, names) {
  text.rows(Database.query(sql), function(field) {
    var key = String(field("id") === null ? "" : field("id")), row = all[key] = all[key] || { key: key };
    if (names.indexOf("name") < 0 && !row.name) row.name = key;
    names.forEach(function(name) { row[name] = field(name); });
  });
  return all;
}
function sorted(all, compare) {
  return Object.keys(all).map(function(key) { return all[key]; }).sort(compare);
}
function byKey(a, b) { return a.key < b.key ? -1 : 1; }
function by(name) {
  return function(a, b) { return (b[name] || 0) - (a[name] || 0) || (a.name < b.name ? -1 : 1); };
}
function one(sql) { return Database.query(sql).Fields(0).Value || 0; }

function days(span) {
  var all = {}, day = dayOf("t.createdDate"), paid = dayOf("p.paymentDate");
  keyed(
    all,
    "select " + day + " as id, count(*) as tickets, sum(t.netTotal) as written from Ticket t where " +
      written(span) + " group by " + day,
    ["tickets", "written"]);
  keyed(
    all,
    "select " + day + " as id, sum(" + pieces + ") as pieces" + fromLines + written(span) + " group by " +
      day,
    ["pieces"]);
  keyed(
    all,
    "select " + paid + " as id, sum(case when p.paymentType in " + later +
      " then 0 else p.paymentAmount end) as taken, sum(case when p.paymentType in " + later +
      " then p.paymentAmount else 0 end) as later from Payment p where " + here("p") + " and " +
      within("p.paymentDate", span) + " group by " + paid,
    ["taken", "later"]);
  return sorted(all, byKey);
}

// The departments' goods, and what makes of them the sum that was written.
function departments(span) {
  var all = {};
  keyed(
    all,
    "select l.departmentName as id, sum(" + pieces + ") as pieces, sum(case when l.ticketLineType in " +
      goods + " then l.lineItemTotal else 0 end) as amount" + fromLines + written(span) +
      " and l.ticketLineType in ('IT', 'UP', 'CO', 'PA', 'AC', 'DE') group by l.departmentName",
    ["pieces", "amount"]);
  var rows = sorted(all, by("amount")), sum = 0;
  function sumOf(kinds) {
    return text.cents(
      one("select sum(l.lineItemTotal)" + fromLines + written(span) + " and l.ticketLineType in " + kinds));
  }
  rows.forEach(function(row) {
    row.name = row.name || "No department";
    row.isCharted = true;
  });
  [["Discounts", -sumOf(offers)], ["Surcharges", sumOf("('SU')")], ["Taxes", sumOf("('TA')")]].forEach(
    function(more) {
      if (more[1]) rows.push({ name: more[0], amount: more[1] });
    });
  rows.forEach(function(row) { sum += row.amount || 0; });
  var rest = text.cents(one("select sum(t.netTotal) from Ticket t where " + written(span)) - sum);
  if (rest) rows.push({ name: "Paid ahead and rounding", amount: rest });
  return rows;
}

// A garment with what was done to it.
function items(span) {
  var all = {};
  function own(line, more) {
    return "select isnull(" + line + ".departmentName, '') + '|' + isnull(" + line +
      ".lineItemName, '') as id, " + line + ".departmentName as department, " + line +
      ".lineItemName as name, ";
  }
  var group = " group by l.departmentName, l.lineItemName";
  keyed(
    all,
    own("l") + "sum(l.quantity) as count, sum(" + pieces + ") as pieces, sum(l.lineItemTotal) as plain" +
      fromLines + written(span) + " and l.ticketLineType in ('IT', 'AC')" + group,
    ["name", "department", "count", "pieces", "plain"]);
  keyed(
    all,
    own("l") +
      "sum(c.lineItemTotal) as extras from Ticket t inner join TicketLineItem l on l.ticketNumber = " +
      "t.ticketNumber inner join TicketLineItem c on c.ticketNumber = l.ticketNumber and c.parentLineNumber = " +
      "l.lineItemNumber where " + written(span) +
      " and l.ticketLineType = 'IT' and c.ticketLineType in ('UP', 'CO', 'PA')" + group,
    ["name", "department", "extras"]);
  return sorted(all, by("name"))
    .map(function(row) {
      row.amount = text.cents((row.plain || 0) + (row.extras || 0));
      return row;
    })
    .sort(by("amount"));
}

function clerks(span) {
  var all = {};
  function who(table, column) { return " left join employee e on e.employeeid = " + table + "." + column; }
  keyed(
    all,
    "select isnull(t.createdByEmployeeId, 0) as id, e.employeename as name, count(*) as tickets, " +
      "sum(t.netTotal) as written from Ticket t" + who("t", "createdByEmployeeId") + " where " +
      written(span) + " group by isnull(t.createdByEmployeeId, 0), e.employeename",
    ["name", "tickets", "written"]);
  keyed(
    all,
    "select isnull(p.employeeId, 0) as id, e.employeename as name, sum(p.paymentAmount) as taken from Payment p" +
      who("p", "employeeId") + " where " + here("p") + " and p.paymentType not in " + later + " and " +
      within("p.paymentDate", span) + " group by isnull(p.employeeId, 0), e.employeename",
    ["name", "taken"]);
  keyed(
    all,
    "select isnull(f.employeeId, 0) as id, e.employeename as name, sum(f.amount) as back from Refund f" +
      who("f", "employeeId") + " where " + here("f") + " and " + within("f.refundDate", span) +
      " group by isnull(f.employeeId, 0), e.employeename",
    ["name", "back"]);
  keyed(
    all,
    "select isnull(k.employeeId, 0) as id, e.employeename as name, count(*) as out from TicketPickup k" +
      who("k", "employeeId") + " where " + here("k") + " and " + within("k.pickupDate", span) +
      " group by isnull(k.employeeId, 0), e.employeename",
    ["name", "out"]);
  return sorted(all, by("written"));
}

// Pieces that came, pieces that went, and what was in the shop at the end of each day.
function traffic(span) {
  var all = {}, came = dayOf("t.createdDate"), went = dayOf("t.dateout");
  var isOut = here("t") + " and t.ticketStatus = 'FI' and t.dateout is not null";
  function sum(condition) { return one("select sum(" + pieces + ")" + fromLines + condition); }
  keyed(
    all,
    "select " + came + " as id, sum(" + pieces + ") as came" + fromLines + written(span) + " group by " +
      came,
    ["came"]);
  keyed(
    all,
    "select " + went + " as id, sum(" + pieces + ") as went" + fromLines + isOut + " and " +
      within("t.dateout", span) + " group by " + went,
    ["went"]);
  var inside = sum(here("t") + " and t.ticketStatus <> 'VO' and t.createdDate < " + span.from.literal) -
    sum(isOut + " and t.dateout < " + span.from.literal);
  return sorted(all, byKey).map(function(row) {
    inside += (row.came || 0) - (row.went || 0);
    row.inside = inside;
    return row;
  });
}

// How long tickets took, and whether they were ready on the day that was promised.
function lateness(span) {
  var ready = "isnull((select min(s.logDate) from ShopLog s where s.kind = 'rack' and s.ticketNumber = " +
    "t.ticketNumber), isnull(t.dateout, case when exists (select 1 from rackassignment k where k.ticketnumber = " +
    "t.ticketNumber) then t.dueDate end))";
  var each =
    "select (select min(l.departmentName) from TicketLineItem l where l.ticketNumber = t.ticketNumber " +
    "and l.ticketLineType in ('IT', 'DE')) as name, t.createdDate as written, t.dueDate as due, " + ready +
    " as ready from Ticket t where " + written(span);
  var late = "datediff(day, r.due, isnull(r.ready, getdate()))";
  return text.rows(
    Database.query(
      "select r.name, count(*) as tickets, sum(case when r.ready is null then 0 else 1 end) as ready, " +
      "sum(case when " + late + " > 0 then 1 else 0 end) as late, " +
      "max(case when " + late + " > 0 then " + late + " else 0 end) as worst, " +
      "sum(case when r.ready is null then 0 else datediff(day, r.written, r.ready) end) as took from (" +
      each + ") r group by r.name order by r.name"),
    function(field) {
      var ready = field("ready"), tickets = field("tickets");
      return {
        name: field("name") || "No department",
        tickets: tickets,
        ready: ready,
        late: field("late"),
        share: tickets ? field("late") / tickets : null,
        average: ready ? field("took") / ready : null,
        worst: field("worst")
      };
    });
}

var offerKinds = { CU: "Coupon", PR: "Promotion", VI: "VIP", RE: "Referral", LY: "Loyalty" };
function discounts(span) {
  var all = text.rows(
    Database.query(
      "select l.ticketLineType as kind, l.lineItemName as name, count(distinct l.ticketNumber) as tickets, " +
      "sum(l.lineItemTotal) as amount" + fromLines + written(span) + " and l.ticketLineType in " + offers +
      " group by l.ticketLineType, l.lineItemName"),
    function(field) {
      return {
        kind: offerKinds[field("kind")],
        name: field("name") || offerKinds[field("kind")],
        tickets: field("tickets"),
        amount: text.cents(field("amount"))
      };
    });
  function entered(kind, name, columns) {
    var found =
      Database.query("select " + columns + fromLines + written(span) + " and l.ticketLineType = 'IT'" + name);
    if (found.Fields(0).Value)
      all.push({
        kind: kind,
        name: kind,
        tickets: found.Fields(0).Value,
        amount: text.cents(found.Fields(1).Value)
      });
  }
  // What a garment would have cost at its own price.
  var given = "count(distinct l.ticketNumber), sum((l.originalUnitPrice - l.unitPrice) * l.quantity)";
  entered(
    "Price lowered", " and l.redo = 0 and l.priceLater = 0 and l.unitPrice < l.originalUnitPrice", given);
  entered("Redo", " and l.redo = 1 and l.unitPrice < l.originalUnitPrice", given);
  return all.sort(by("amount"));
}

// By the tickets that were written; what was given back since takes its part along.
function taxes(span) {
  var all = text.rows(
    Database.query(
      "select l.lineItemName as name, count(distinct l.ticketNumber) as tickets, sum(l.lineItemTotal) as amount" +
      fromLines + written(span) +
      " and l.ticketLineType = 'TA' group by l.lineItemName order by l.lineItemName"),
    function(field) {
      return { name: field("name"), tickets: field("tickets"), amount: text.cents(field("amount")) };
    });
  var back = Database.query(
    "select count(distinct f.ticketNumber), sum(f.taxAmount) from Refund f where f.isVoid = 0 and " +
    here("f") + " and " + within("f.refundDate", span));
  if (back.Fields(1).Value)
    all.push({
      name: "In money given back",
      tickets: back.Fields(0).Value,
      amount: -text.cents(back.Fields(1).Value)
    });
  return all;
}

// Columns are [name, title, kind]; the first of a report is its rows' name, `chart` the column that is drawn.
// clang-format off
exports.all = [
  { id: "days", title: "By day", rows: days, chart: "written", isByDay: true, columns: [
    ["name", "Day", "day"], ["tickets", "Tickets", "count"], ["pieces", "Pieces", "count"],
    ["written", "Written", "money"], ["taken", "Taken", "money"], ["later", "On account, gift cards", "money"]] },
  { id: "departments", title: "Departments", rows: departments, chart: "amount", columns: [
    ["name", "Department", "text"], ["pieces", "Pieces", "count"], ["amount", "Amount", "money"]] },
  { id: "items", title: "Items", rows: items, chart: "amount", columns: [
    ["name", "Item", "text"], ["department", "Department", "text"], ["count", "Sold", "count"],
    ["pieces", "Pieces", "count"], ["amount", "With extras", "money"]] },
  { id: "clerks", title: "Clerks", rows: clerks, chart: "written", columns: [
    ["name", "Clerk", "text"], ["tickets", "Tickets", "count"], ["written", "Written", "money"],
    ["out", "Handed out", "count"], ["taken", "Taken", "money"], ["back", "Given back", "money"]] },
  { id: "pieces", title: "Pieces in and out", rows: traffic, chart: "inside", isByDay: true, columns: [
    ["name", "Day", "day"], ["came", "In", "count"], ["went", "Out", "count"],
    ["inside", "In the shop", "level"]] },
  { id: "lateness", title: "Turn-around", rows: lateness, chart: "average", columns: [
    ["name", "Department", "text"], ["tickets", "Tickets", "count"], ["ready", "Ready", "count"],
    ["late", "Late", "count"], ["share", "Late of all", "share"], ["average", "Days, on average", "days"],
    ["worst", "Latest by days", "level"]] },
  { id: "discounts", title: "Discounts", rows: discounts, chart: "amount", columns: [
    ["name", "Discount", "text"], ["kind", "Kind", "text"], ["tickets", "Tickets", "visits"],
    ["amount", "Given", "money"]] },
  { id: "taxes", title: "Taxes", rows: taxes, chart: "amount", columns: [
    ["name", "Tax", "text"], ["tickets", "Tickets", "visits"], ["amount", "Amount", "money"]] }
];
// clang-format on

exports.named = function(
  id) { return exports.all.filter(function(each) { return each.id === id; })[0] || exports.all[0]; };

// The sums below the columns that add up; null for the others.
exports.sums = function(report, rows) {
  return report.columns.map(function(column) {
    if (column[2] !== "money" && column[2] !== "count") return null;
    var sum = rows.reduce(function(all, row) { return all + (row[column[0]] || 0); }, 0);
    return column[2] === "money" ? text.cents(sum) : sum;
  });
};

// ---- spans of days

function two(number) { return (number < 10 ? "0" : "") + number; }
function dayAt(year, month, day) {
  var date = new Date(year, month, day),
      parts = [date.getFullYear(), two(date.getMonth() + 1), two(date.getDate())];
  return { date: date, iso: parts.join("-"), literal: "'" + parts.join("") + "'" };
}
function read(value) {
  var parts = /^(\d{4})-(\d{2})-(\d{2})$/.exec(value || "");
  if (!parts) return null;
  var day = dayAt(Number(parts[1]), Number(parts[2]) - 1, Number(parts[3]));
  return day.iso === parts[0] ? day : null;
}

// {from, to, end}, days as {date, iso, literal}; `end` is the day after. This month where nothing is said.
exports.span = function(from, to) {
  var now = Server.now(), today = dayAt(now.getFullYear(), now.getMonth(), now.getDate());
  var first = read(from) || dayAt(now.getFullYear(), now.getMonth(), 1), last = read(to) || today;
  if (last.date < first.date) last = first;
  return {
    from: first,
    to: last,
    end: dayAt(last.date.getFullYear(), last.date.getMonth(), last.date.getDate() + 1)
  };
};

// Spans that are often looked at: [name, from, to].
exports.spans = function() {
  var now = Server.now(), y = now.getFullYear(), m = now.getMonth(), d = now.getDate();
  return [
    ["Today", dayAt(y, m, d), dayAt(y, m, d)], ["Yesterday", dayAt(y, m, d - 1), dayAt(y, m, d - 1)],
    ["Seven days", dayAt(y, m, d - 6), dayAt(y, m, d)], ["This month", dayAt(y, m, 1), dayAt(y, m, d)],
    ["Last month", dayAt(y, m - 1, 1), dayAt(y, m, 0)], ["This year", dayAt(y, 0, 1), dayAt(y, m, d)]
  ];
};

// A day as the queries name it, "20261124", as a date.
exports.date = function(
  key) { return new Date(Number(key.substr(0, 4)), Number(key.substr(4, 2)) - 1, Number(key.substr(6, 2))); };

// ---- as a file

function cell(value, kind) {
  if (value === null || value === undefined) return "";
  if (kind === "money") return value.toFixed(2);
  if (kind === "share" || kind === "days") return value.toFixed(3);
  if (kind === "day") return value.replace(/(\d{4})(\d\d)(\d\d)/, "$1-$2-$3");
  if (kind !== "text") return String(value);
  // A name is never a formula to the program that opens the file.
  var words = (/^[=+\-@\t\r]/.test(value) ? "'" : "") + value;
  return /[",;\r\n]/.test(words) ? '"' + words.replace(/"/g, '""') + '"' : words;
}
exports.csv = function(report, rows) {
  var lines =
    [report.columns.map(function(column) { return cell(column[1], "text"); })].concat(rows.map(function(
      row) { return report.columns.map(function(column) { return cell(row[column[0]], column[2]); }); }));
  return lines.map(function(line) { return line.join(",") + "\r\n"; }).join("");
};
