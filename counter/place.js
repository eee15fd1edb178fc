// Which counter this is.
var layout = Server.include("shared/layout.js");
var html = Server.include("shared/html.js");
var desk = Server.include("shared/desk.js");
var text = Server.include("shared/text.js");
var h = html.tag;

if (desk.openWorks().length)
  return layout.unfinished("Something is still open at this counter", desk.openWorks());
var places = desk.places();
if (Request.method === "POST") {
  var chosen = places.filter(function(one) { return one.terminal === text.whole(Request.form.terminal); })[0];
  if (!chosen) return Response.redirect("/place");
  Session.kept.place = chosen;
  delete Session.kept.employee;
  return Response.redirect(Request.clerk ? "/" : "/employee");
}
if (!places.length) return Response.redirect("/setup/first");
layout.page(
  "Which counter is this?", h("div", { "class": "choices" }, places.map(function(one) {
    return html.raw(layout.button("/place", one.storeName + ", " + one.name, { terminal: one.terminal }));
  })));
