// The bag is not taken in after all.
var desk = Server.include("shared/desk.js");

if (Request.method === "POST" && desk.isMeant("quick", Request.form.work)) {
  delete Session.quick;
  desk.workDone();
}
Response.redirect("/");
