// Saves the bag as one ticket, or one for each group of departments.
var layout = Server.include("shared/layout.js");
var desk = Server.include("shared/desk.js");
var text = Server.include("shared/text.js");
var tickets = Server.include("shared/tickets.js");

if (Request.method !== "POST" || !desk.isMeant("quick", Request.form.work)) return Response.redirect(Session.quick ? "/quick" : "/");
var quick = Session.quick;
var employee = desk.employee();
if (!employee) return Response.redirect("/employee");

var known = text.rows(Database.query("select departmentid from department where disabled = 0 and pricelistid = " + quick.priceListId), function (field) { return field("departmentid"); });
var bags = Object.keys(Request.form).map(function (name) {
  var department = /^pieces-(\d+)$/.exec(name);
  return { department: department ? Number(department[1]) : 0, pieces: department ? Math.min(text.whole(Request.form[name]), 999) : 0 };
}).filter(function (bag) { return bag.pieces > 0 && known.indexOf(bag.department) >= 0; });
if (!bags.length) return layout.notice("Quick drop-off", "Nothing was counted.", "/quick", "Back");

desk.tablesFor("quick", function () { quick.setStoreDays(desk.place().store); });
// Taken out of the session first: after a failure nothing is counted or saved a second time.
delete Session.quick;
bags.forEach(function (bag) { quick.addLineItem(bag.pieces, bag.department); });
var note = text.clean(Request.form.notes, 255);
if (note) quick.attachNotes(1, note);

quick.calculateInvDueDate();
quick.adjustDueDatesForRoute(quick.custSeqNumber);
if (quick.isSplitInvoice()) quick.splitInvoice();
var place = desk.place();
quick.saveInvoice("add", employee.id, place.terminal, "0", employee.name, place.storeName, true);
var numbers = tickets.numbers(quick);
desk.workDone();
Response.redirect("/saved?tickets=" + numbers.join("-"));
