// Which counter this is, and who works at it. The counter is chosen once in a session. A shop with clerks' PINs
// knows the clerk from the sign-in; any other asks once. Both answers are kept.
var text = Server.include("shared/text.js");

// The counters of all shops, each with its terminal.
exports.places = function () {
  return text.rows(Database.query("select t.terminalid, t.terminalName, s.storeId, s.name from terminal t inner join Store s on s.storeId = t.storeId " +
                                  "order by s.storeId, t.terminalid"), function (field) {
    return { store: field("storeId"), storeName: field("name"), terminal: field("terminalid"), name: field("terminalName") };
  });
};

exports.place = function () {
  return Session.kept.place || null;
};

exports.employees = function () {
  return text.rows(Database.query("select employeeid, employeename from employee where active = 1 and storeId = " + exports.place().store +
                                  " order by employeename"), function (field) {
    return { id: field("employeeid"), name: field("employeename") };
  });
};

exports.employee = function () {
  return Request.clerk || Session.kept.employee || null;
};

// What can be open at a counter: where it is kept, its page and its name.
exports.works = [
  ["invoice", "/ticket", "Ticket"],
  ["quick",   "/quick",  "Bag"],
  ["pickup",  "/pickup", "Till"]
];

exports.openWorks = function () {
  return exports.works.filter(function (one) { return Session[one[0]]; });
};

// Each ticket, bag or visit at the till has a number, which its pages send along: one that is still open in another
// tab, or that the browser brings back, changes nothing of what came after it.
exports.begin = function (work) {
  Session.kept.begun = (Session.kept.begun || 0) + 1;
  Session.numbers = Session.numbers || {};
  Session.numbers[work] = Session.kept.begun;
};
exports.numberOf = function (work) {
  return Session[work] && Session.numbers ? Session.numbers[work] : 0;
};
exports.isMeant = function (work, number) {
  return !!Session[work] && !Server.doubtful() && (number === undefined || text.whole(number) === exports.numberOf(work));
};

// Calendar and departments of the shop are one for all objects of a session: whoever has not loaded them last does.
exports.tablesFor = function (work, load) {
  var mine = work + exports.numberOf(work);
  if (Session.tables === mine) return;
  load();
  Session.tables = mine;
};

// What was written is saved or given up: a restart of the host brings nothing of it back, unless a ticket,
// a pickup or a bag is still open beside it.
exports.workDone = function () {
  if (!exports.openWorks().length) Server.workDone();
};

// True when counter and clerk are known, and what was saved last; otherwise the browser is sent to where that is said.
exports.staffed = function () {
  if (Server.doubtful() && exports.openWorks().length) Response.redirect("/doubt");
  else if (!exports.place()) Response.redirect("/place");
  else if (!exports.employee()) Response.redirect("/employee");
  else return true;
  return false;
};
