// Who is at the counter.
var layout = Server.include("shared/layout.js");
var desk = Server.include("shared/desk.js");
var text = Server.include("shared/text.js");

if (!desk.place()) return Response.redirect("/place");
if (Request.method === "POST") {
  var chosen = desk.employees().filter(function (one) { return one.id === text.whole(Request.form.employee); })[0];
  if (chosen) Session.kept.employee = chosen;
  return Response.redirect(chosen ? "/" : "/employee");
}
var counter = "<p class=\"notice\">" + text.encoded(desk.place().storeName + ", " + desk.place().name) + " <a class=\"button quiet\" href=\"/place\">Another counter</a></p>";
if (Request.clerk) {
  layout.page("Signed in", "<p>" + text.encoded(Request.clerk.name) + "</p>" + counter + layout.button("/sign_out", "Sign out", {}));
  return;
}
layout.page("Who is at the counter?", "<div class=\"choices\">" + desk.employees().map(function (one) {
  return layout.button("/employee", one.name, { employee: one.id });
}).join("") + "</div>" + counter);
