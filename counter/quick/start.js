// A bag is taken in: the pieces of each department are counted, nothing is itemised yet.
var desk = Server.include("shared/desk.js");
var text = Server.include("shared/text.js");
var layout = Server.include("shared/layout.js");
var tickets = Server.include("shared/tickets.js");

if (Request.method !== "POST") return Response.redirect("/");
if (!desk.staffed()) return;
var customerId = text.whole(Request.form.customer);
var terms = tickets.termsOf(customerId);
if (!terms) return layout.notice("Quick drop-off", "There is no such customer.", "/", "Find a customer");

var quick = CreateObject("OndrelCorpComponents.quickInvoice");
quick.DBConnectionString = Database.connectionString;
quick.initInvoice();
quick.storeNumber = desk.place().store;
quick.custSeqNumber = customerId;
quick.priceListId = terms.list;
quick.routeNumber = terms.route;
quick.setStoreDays(desk.place().store);
quick.loadCustomerPreferences(customerId, "");
Session.quick = quick;
Response.redirect("/quick");
