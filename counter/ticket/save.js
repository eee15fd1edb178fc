// Saves the finished tickets. The request's number makes a second press do nothing more; what could not be
// saved stays where it is, to be saved again.
var tickets = Server.include("shared/tickets.js");
var finishing = Server.include("shared/finishing.js");
var saving = Server.include("shared/saving.js");
var layout = Server.include("shared/layout.js");
var desk = Server.include("shared/desk.js");

var invoice = Request.method === "POST" ? tickets.meant(Request.form.work) : null;
if (!invoice || !Session.finished) return Response.redirect(Session.invoice ? "/ticket" : "/");
if (!desk.employee()) return Response.redirect("/employee");

Server.alone();
var conflict = Session.saved ? "" : finishing.conflict(invoice);
if (conflict) {
  finishing.reopen();
  return layout.notice("Save", conflict, "/ticket", "Back to the ticket");
}
// Recorded: brought back after a restart, what failed has failed, and is not taken for saved.
var result = Server.recorded(function() { return saving.save(invoice); });
if (result.problem) print("saving failed: " + result.problem);
if (!result.isDone) {
  Session.saved = result.numbers.length ? result.saved : null;
  return layout.notice(
    "Not saved",
    result.numbers.length ?
      result.numbers.length + " of the tickets were saved, the others were not. Press Save again for those." :
      "The ticket could not be saved. Nothing of it is lost: press Save again.",
    "/finished", "Back to Save");
}
delete Session.invoice;
Session.finished = false;
Session.saved = null;
desk.workDone();
Response.redirect("/saved?tickets=" + result.numbers.join("-") + (result.problem ? "&but=1" : ""));
