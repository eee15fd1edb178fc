// A month to choose a day from: closed days, days on which a department is full, days that cost a rush fee.
var html = Server.include("shared/html.js");
var text = Server.include("shared/text.js");
var desk = Server.include("shared/desk.js");
var h = html.tag;
var names = [
  "January", "February", "March", "April", "May", "June", "July", "August", "September", "October",
  "November", "December"
];

function two(number) { return (number < 10 ? "0" : "") + number; }
function iso(date) { return date.getFullYear() + "-" + two(date.getMonth() + 1) + "-" + two(date.getDate()); }

// What is known of a shop's days: which weekdays are closed (Monday is 1), and the holidays.
function closedDays(store) {
  var weekdays = {}, holidays = {};
  text.rows(
    Database.query("select dayOfWeek from StoreHour where storeOpen = 0 and storeId = " + store),
    function(field) { weekdays[field("dayOfWeek")] = true; });
  text.rows(
    Database.query(
      "select firstDay, duration, isnull(description, '') as name from StoreHoliday where storeid = " +
      store),
    function(field) {
      var first = field("firstDay");
      for (var at = 0; at < field("duration"); at++)
        holidays[iso(new Date(first.getFullYear(), first.getMonth(), first.getDate() + at))] =
          field("name") || "Holiday";
    });
  return function(date) { return holidays[iso(date)] || (weekdays[date.getDay() || 7] ? "Closed" : ""); };
}

function fullDays(store, department) {
  if (!department) return {};
  var full = {};
  text.rows(
    Database.query(
      "select s.Date as day from dailystatistics s inner join Department d on d.name = s.DepartmentName " +
      "inner join departmentquota q on q.DepartmentName = s.DepartmentName, miscsetup m " +
      "where d.departmentID = " + department + " and m.storeid = " + store +
      " and s.PiecesDue > m.RollOverDueDateAbove * q.PiecesDue / 100"),
    function(field) { full[iso(field("day"))] = true; });
  return full;
}

// The last day that is a rush: the day that the longest tier of the shop stands for, by the library's own
// count of days.
function lastRushDay(invoice, store, department) {
  var tier =
    Database.query("select isnull(max(daystoprocess), -1) as days from rushupcharge where storeid = " + store)
      .Fields(0)
      .Value;
  var days = [], cells = String(invoice.htmlDeptDueDate(department || "", ByRef(0)));
  cells.replace(/date="(\d{4}-\d\d-\d\d)"/g, function(all, day) { days.push(day); });
  return tier >= 0 && days.length ? days[Math.min(tier, days.length - 1)] : "";
}

function cell(date, month, known) {
  var day = iso(date), closed = known.closed(date), isPast = day < known.today;
  var note = isPast ? "" : closed || (known.full[day] ? "full" : "") || (day <= known.rush ? "rush" : "");
  return h(
    "td", null,
    date.getMonth() !== month ?
      "" :
      h("button", {
        "class": [
          closed ? "closed" : "", known.full[day] ? "full" : "", day === known.chosen ? "chosen" : ""
        ].join(" "),
        "data-day": day,
        "data-department": known.department || "",
        disabled: isPast || !!closed,
        "aria-pressed": day === known.chosen ? "true" : "false",
        "aria-label": date.getDate() + (note ? " " + note : "") + ", " + text.day(date)
      },
        date.getDate(), " ", h("span", { "class": "note" }, note)));
}

// `page` counts months from the one of `chosen`.
exports.of = function(invoice, department, chosen, page) {
  var store = desk.place().store, now = Server.now(), start = chosen || now;
  var first = new Date(start.getFullYear(), start.getMonth() + page, 1), month = first.getMonth();
  var known = {
    closed: closedDays(store),
    full: fullDays(store, department),
    rush: lastRushDay(invoice, store, department),
    chosen: chosen ? iso(chosen) : "",
    today: iso(now),
    department: department
  };
  var weeks = [], date = new Date(first.getFullYear(), month, 1 - (first.getDay() + 6) % 7);
  for (; date <= first || date.getMonth() === month;
       date = new Date(date.getFullYear(), date.getMonth(), date.getDate() + 7)) {
    var days = [];
    for (var at = 0; at < 7; at++)
      days.push(cell(new Date(date.getFullYear(), date.getMonth(), date.getDate() + at), month, known));
    weeks.push(h("tr", null, days));
  }
  function turn(label, to, sign) {
    return h(
      "button",
      { "class": "quiet", "data-month": to, "data-department": department || "", "aria-label": label }, sign);
  }
  return String(html.all(
    h("div", { "class": "headline" }, turn("The month before", page - 1, "\u2039"),
      h("h3", null, names[month] + " " + first.getFullYear()), turn("The month after", page + 1, "\u203a")),
    h("table", { "class": "month" },
      h("thead", null, h("tr", null, ["Mon", "Tue", "Wed", "Thu", "Fri", "Sat", "Sun"].map(function(one) {
          return h("th", { scope: "col" }, one);
        }))),
      h("tbody", null, weeks))));
};
