// Saves the bag. What is wrong, odd or could not be saved is said on the form, which keeps what was keyed in.
var desk = Server.include("shared/desk.js");
var quicks = Server.include("shared/quick.js");
var tickets = Server.include("shared/tickets.js");

if (Request.method !== "POST" || !desk.isMeant("quick", Request.form.work))
  return Response.redirect(Session.quick ? "/quick" : "/");
if (!desk.employee()) return Response.redirect("/employee");

var customer = Session.quick.custSeqNumber, terms = tickets.termsOf(customer);
var given = Session.quickGiven = quicks.given(Request.form, quicks.departments(Session.quick.priceListId));
if (given.problem) return Response.redirect("/quick");
if (given.question && Request.form.sure !== given.question) return Response.redirect("/quick");
given.question = "";

// Recorded: brought back after a restart, what failed has failed.
Session.tables = "";
var result = Server.recorded(function() { return quicks.save(customer, terms, given); });
if (result.problem) print("saving failed: " + result.problem);
given.bags = given.bags.filter(function(bag) { return result.saved.indexOf(bag.department) < 0; });
if (given.bags.length) {
  given.problem = result.numbers.length ?
    "A part of the bag is saved, the rest is not: press Take in again for what stands here." :
    "The bag could not be saved. Nothing of it is lost: press Take in again.";
  Session.quickSaved = (Session.quickSaved || []).concat(result.numbers);
  return Response.redirect("/quick");
}
var numbers = (Session.quickSaved || []).concat(result.numbers);
delete Session.quick;
delete Session.quickGiven;
delete Session.quickSaved;
desk.workDone();
Response.redirect("/saved?tickets=" + numbers.join("-") + (result.problem ? "&but=1" : ""));
