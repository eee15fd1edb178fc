// Which counter this is, and who works at it. The counter is chosen once in a session. A shop with clerks'
// PINs knows the clerk from the sign-in; any other asks once. Both answers are kept.
var text = Server.include("shared/text.js");

// The counters of all shops, each with its terminal.
exports.places = function() {
  return text.rows(
    Database.query(
      "select t.terminalid, t.terminalName, s.storeId, s.name from terminal t inner join Store s on " +
      "s.storeId = t.storeId " +
      "order by s.storeId, t.terminalid"),
    function(field) {
      return {
        store: field("storeId"),
        storeName: field("name"),
        terminal: field("terminalid"),
        name: field("terminalName")
      };
    });
};

exports.place = function() { return Session.kept.place || null; };

exports.employees = function() {
  return text.rows(
    Database.query(
      "select employeeid, employeename from employee where active = 1 and storeId = " +
      exports.place().store + " order by employeename"),
    function(field) { return { id: field("employeeid"), name: field("employeename") }; });
};

exports.employee = function() { return Request.clerk || Session.kept.employee || null; };

// What can be open at a counter: where it is kept, its page and its name.
// clang-format off
exports.works = [
  ["invoice", "/ticket", "Ticket"],
  ["quick",   "/quick",  "Bag"],
  ["pickup",  "/pickup", "Till"]
];
// clang-format on

exports.openWorks = function() { return exports.works.filter(function(one) { return Session[one[0]]; }); };

// Each ticket, bag or visit at the till has a number, which its pages send along: one that is still open in
// another tab, or that the browser brings back, changes nothing of what came after it.
exports.begin = function(work) {
  delete Session.putAway;
  delete Session.kept.collected;
  Session.kept.begun = (Session.kept.begun || 0) + 1;
  Session.numbers = Session.numbers || {};
  Session.numbers[work] = Session.kept.begun;
};
exports.numberOf = function(work) { return Session[work] && Session.numbers ? Session.numbers[work] : 0; };
exports.isMeant = function(work, number) {
  return !!Session[work] && !Server.doubtful() &&
    (number === undefined || text.whole(number) === exports.numberOf(work));
};

// Calendar and departments of the shop are one for all objects of a session: whoever has not loaded them last
// does.
exports.tablesFor = function(work, load) {
  var mine = work + exports.numberOf(work);
  if (Session.tables === mine) return;
  load();
  Session.tables = mine;
};

// What was written is saved or given up: a restart of the host brings nothing of it back, unless a ticket,
// a pickup or a bag is still open beside it.
exports.workDone = function() {
  delete Session.putAway;
  if (!exports.openWorks().length) Server.workDone();
};

// ---- what was given up, and the way back to it, which lasts until the next work begins

// It stays part of the work that a restart brings back, unless nothing was in it: then there is nothing to
// bring back.
exports.putAway = function(work, isWorth) {
  if (isWorth)
    Session.putAway = {
      work: work,
      object: Session[work],
      number: exports.numberOf(work),
      customer: Session[work].custSeqNumber
    };
  delete Session[work];
  if (work === "invoice") Session.finished = false;
  if (!isWorth) exports.workDone();
};

// Null when there is nothing to bring back, or when the like of it is open by now.
exports.awayWork = function() {
  var away = Session.putAway;
  return away && !Session[away.work] ?
    exports.works.filter(function(one) { return one[0] === away.work; })[0] :
    null;
};

exports.bringBack = function() {
  var work = exports.awayWork();
  if (!work) return null;
  Session[work[0]] = Session.putAway.object;
  Session.numbers[work[0]] = Session.putAway.number;
  Session.tables = "";
  delete Session.putAway;
  return work;
};

// True when counter and clerk are known, and what was saved last; otherwise the browser is sent to where that
// is said.
exports.staffed = function() {
  if (Server.doubtful() && exports.openWorks().length) Response.redirect("/doubt");
  else if (!exports.place()) Response.redirect("/place");
  else if (!exports.employee()) Response.redirect("/employee");
  else return true;
  return false;
};

// How this shop's scanner types: --set scannerPrefix=~, scannerSuffix=Tab, scannerMinimum=5. Without a prefix
// a scan is known by its speed, which the page learns.
exports.scanner = function() {
  return {
    prefix: String(Server.setting("scannerPrefix") || ""),
    suffix: String(Server.setting("scannerSuffix") || "Enter"),
    minimum: text.whole(Server.setting("scannerMinimum")) || 5
  };
};
