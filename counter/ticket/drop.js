// The ticket in progress is given up.
var desk = Server.include("shared/desk.js");

if (Request.method === "POST" && desk.isMeant("invoice", Request.form.work)) {
  delete Session.invoice;
  Session.finished = false;
  desk.workDone();
}
Response.redirect("/");
