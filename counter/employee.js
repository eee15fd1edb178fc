// Who is at the counter.
var layout = Server.include("shared/layout.js");
var html = Server.include("shared/html.js");
var desk = Server.include("shared/desk.js");
var text = Server.include("shared/text.js");
var h = html.tag;

if (!desk.place()) return Response.redirect("/place");
if (Request.method === "POST") {
  var chosen =
    desk.employees().filter(function(one) { return one.id === text.whole(Request.form.employee); })[0];
  if (chosen) Session.kept.employee = chosen;
  return Response.redirect(chosen ? "/" : "/employee");
}
var place =
  h("p", { "class": "notice" }, desk.place().storeName + ", " + desk.place().name + " ",
    h("a", { "class": "button quiet", href: "/place" }, "Another counter"));
if (Request.clerk)
  return layout.page(
    "Signed in",
    html.all(h("p", null, Request.clerk.name), place, html.raw(layout.button("/sign_out", "Sign out", {}))));
var people = desk.employees().map(function(
  one) { return html.raw(layout.button("/employee", one.name, { employee: one.id })); });
layout.page(
  "Who is at the counter?",
  html.all(
    people.length ?
      h("div", { "class": "choices" }, people) :
      h("p", { "class": "problem" },
        "Nobody is entered who works at this shop. Enter an employee of it, then load the page again."),
    place));
