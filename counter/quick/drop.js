// The bag is not taken in after all.
if (Request.method === "POST") {
  delete Session.quick;
  Server.include("shared/desk.js").workDone();
}
Response.redirect("/");
