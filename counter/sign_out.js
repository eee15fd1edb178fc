// The end of a clerk's turn, when nothing is open any more.
var desk = Server.include("shared/desk.js");

if (Request.method === "POST" && desk.openWorks().length)
  return Server.include("shared/layout.js")
    .unfinished("Something is still open at this counter", desk.openWorks());
if (Request.method === "POST") Server.signOut();
Response.redirect("/");
