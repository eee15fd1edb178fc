// Saves the finished tickets. The request's number makes a second press do nothing more.
var tickets = Server.include("shared/tickets.js");
var finishing = Server.include("shared/finishing.js");
var layout = Server.include("shared/layout.js");
var desk = Server.include("shared/desk.js");

var invoice = Request.method === "POST" ? tickets.meant(Request.form.work) : null;
if (!invoice || !Session.finished) return Response.redirect(Session.invoice ? "/ticket" : "/");
var employee = desk.employee();
if (!employee) return Response.redirect("/employee");

Server.alone();
var conflict = finishing.conflict(invoice);
if (conflict) {
  finishing.reopen();
  return layout.notice("Save", conflict, "/ticket", "Back to the ticket");
}
// Taken out of the session first: after a failure nobody saves it a second time by accident.
delete Session.invoice;
Session.finished = false;
var place = desk.place();
invoice.saveInvoice(tickets.saveAction(invoice), employee.id, place.terminal, "0", employee.name, place.storeName, true);
invoice.insertTagsForTicket(false);
// A bag that has been itemised is not among those that the library prints.
var numbers = invoice.isQuickInvoice() ? [invoice.ticketNo] : tickets.numbers(invoice);
desk.workDone();
Response.redirect("/saved?tickets=" + numbers.join("-"));
