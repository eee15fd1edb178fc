// A bag is taken in: the pieces of each department are counted, nothing is itemised yet.
var desk = Server.include("shared/desk.js");
var text = Server.include("shared/text.js");
var layout = Server.include("shared/layout.js");

if (Request.method !== "POST") return Response.redirect("/");
var customerId = text.whole(Request.form.customer);
var list = Database.query("select isnull(defaultPriceListId, 1) as list from Customer where customerSequenceNumber = " + customerId);
if (list.EOF) return layout.notice("Quick drop-off", "There is no such customer.", "/", "Find a customer");

var quick = CreateObject("OndrelCorpComponents.quickInvoice");
quick.DBConnectionString = Database.connectionString;
quick.initInvoice();
quick.storeNumber = desk.store;
quick.custSeqNumber = customerId;
quick.priceListId = list.Fields("list").Value || 1;
quick.routeNumber = -1;
quick.setStoreDays(desk.store);
quick.loadCustomerPreferences(customerId, "");
Session.quick = quick;
Response.redirect("/quick");
