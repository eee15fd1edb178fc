// Saves the finished tickets. The request's number makes a second press do nothing more.
var tickets = Server.include("shared/tickets.js");
var desk = Server.include("shared/desk.js");

var invoice = Session.invoice;
if (Request.method !== "POST" || !invoice || !Session.finished) return Response.redirect(invoice ? "/ticket" : "/");
var employee = desk.employee();
if (!employee) return Response.redirect("/employee");

invoice.saveInvoice(tickets.saveAction(invoice), employee.id, desk.terminal, "0", employee.name, desk.storeName(), true);
invoice.insertTagsForTicket(false);
var numbers = tickets.numbers(invoice);
delete Session.invoice;
desk.workDone();
Session.finished = false;
Response.redirect("/saved?tickets=" + numbers.join("-"));
