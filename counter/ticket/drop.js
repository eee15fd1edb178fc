// The ticket in progress is given up; until something else begins it can be brought back.
var desk = Server.include("shared/desk.js");

if (Request.method === "POST" && desk.isMeant("invoice", Request.form.work)) {
  Server.include("shared/finishing.js").reopen();
  desk.putAway("invoice", !Session.invoice.isInvoiceEmpty());
}
Response.redirect("/");
