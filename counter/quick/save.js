// Saves the bag as one ticket, or one for each group of departments.
var layout = Server.include("shared/layout.js");
var desk = Server.include("shared/desk.js");
var text = Server.include("shared/text.js");
var tickets = Server.include("shared/tickets.js");

var quick = Session.quick;
if (Request.method !== "POST" || !quick) return Response.redirect(quick ? "/quick" : "/");
var employee = desk.employee();
if (!employee) return Response.redirect("/employee");

var bags = Object.keys(Request.form).map(function (name) {
  var department = /^pieces-(\d+)$/.exec(name);
  return { department: department ? Number(department[1]) : 0, pieces: department ? Math.min(text.whole(Request.form[name]), 999) : 0 };
}).filter(function (bag) { return bag.pieces > 0; });
if (!bags.length) return layout.notice("Quick drop-off", "Nothing was counted.", "/quick", "Back");

// Taken out of the session first: after a failure nothing is counted or saved a second time.
delete Session.quick;
bags.forEach(function (bag) { quick.addLineItem(bag.pieces, bag.department); });
var note = String(Request.form.notes || "").substr(0, 255);
if (note) quick.attachNotes(1, note);

quick.calculateInvDueDate();
quick.adjustDueDatesForRoute(quick.custSeqNumber);
if (quick.isSplitInvoice()) quick.splitInvoice();
var place = desk.place();
quick.saveInvoice("add", employee.id, place.terminal, "0", employee.name, place.storeName, true);
var numbers = tickets.numbers(quick);
desk.workDone();
Response.redirect("/saved?tickets=" + numbers.join("-"));
