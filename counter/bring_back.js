// What was given up last is brought back.
var desk = Server.include("shared/desk.js");

var work = Request.method === "POST" ? desk.bringBack() : null;
Response.redirect(work ? work[1] : "/");
