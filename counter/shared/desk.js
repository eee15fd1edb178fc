// Who works at which counter. A shop with clerks' PINs knows it from the sign-in; a counter of its own asks
// once, and the answer is kept.
var text = Server.include("shared/text.js");

exports.store = 1;
exports.terminal = 3;

exports.employees = function () {
  return text.rows(Database.query("select employeeid, employeename from employee where active = 1 and storeId = " + exports.store +
                                  " order by employeename"), function (field) {
    return { id: field("employeeid"), name: field("employeename") };
  });
};

exports.employee = function () {
  return Request.clerk || Session.kept.employee || null;
};

// What was written is saved or given up: a restart of the host brings nothing of it back, unless a ticket,
// a pickup or a bag is still open beside it.
exports.workDone = function () {
  if (!Session.invoice && !Session.pickup && !Session.quick) Server.workDone();
};

exports.storeName = function () {
  var found = Database.query("select name from Store where storeId = " + exports.store);
  return found.EOF ? "" : found.Fields("name").Value;
};

// True when somebody is at the counter; otherwise the browser is sent to where that is said.
exports.staffed = function () {
  if (exports.employee()) return true;
  Response.redirect("/employee");
  return false;
};
