// Finishes and saves; answers "TICKET GARMENTS".
var invoice = Session.invoice;
invoice.invoiceDone2();
invoice.saveInvoice("add", 4, 3, "0", "Ann", "Fernhill", true);
Server.workDone();
Response.write(invoice.ticketNo, " ", Session.garments);
Session.invoice = null;
