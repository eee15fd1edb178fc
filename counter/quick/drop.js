// The bag is not taken in after all; until something else begins it can be brought back.
var desk = Server.include("shared/desk.js");

if (Request.method === "POST" && desk.isMeant("quick", Request.form.work)) desk.putAway("quick", true);
Response.redirect("/");
