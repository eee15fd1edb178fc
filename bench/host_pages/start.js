// A new ticket for a customer.
var invoice = Session.invoice = CreateObject("OndrelCorpComponents.invoice");
invoice.DBConnectionString = Database.connectionString;
invoice.storeNumber = 1;
invoice.priceListId = 1;
invoice.isAdd = true;
invoice.addOrEdit = "add";
invoice.custSeqNumber = Number(Request.form.customer);
invoice.routeNumber = -1;
invoice.setStoreDays(1);
invoice.LoadDefaults();
Session.garments = 0;
