// Who is at the counter.
var layout = Server.include("shared/layout.js");
var html = Server.include("shared/html.js");
var desk = Server.include("shared/desk.js");
var text = Server.include("shared/text.js");
var shop = Server.include("shared/shop.js");
var h = html.tag;

if (!desk.place()) return Response.redirect("/place");
function asked(one, problem) {
  layout.page(
    "PIN of " + one.name,
    html.all(
      shop.problem(problem),
      shop.form(
        "/employee", { employee: one.id },
        html.all(
          h("label", { "for": "pin" }, "PIN"), h("input", {
            id: "pin",
            name: "pin",
            type: "password",
            inputmode: "numeric",
            maxlength: 8,
            autocomplete: "off",
            autofocus: true,
            required: true
          }),
          h("div", { "class": "finish" }, h("button", { "class": "main" }, "Sign in"),
            h("a", { "class": "button", href: "/employee" }, "Somebody else"))))));
}

// A clerk with a PIN says it. Five wrong ones in a minute, from whatever browser, and nobody is asked any
// more.
function proven(one) {
  var hash = shop.value("select pinHash from employee where employeeid = " + one.id);
  if (!hash) return true;
  if (!Request.form.pin) return asked(one, "");
  var wrong = shop.value(
    "select count(*) from ShopLog where kind = 'pin' and employeeId = " + one.id +
    " and logDate > dateadd(mi, -1, getdate())");
  if (wrong >= 5) return asked(one, "Too many tries. Wait a minute, then try again.");
  if (Server.isPin(String(Request.form.pin), hash)) return true;
  Database.execute(
    "insert into ShopLog (logDate, storeId, terminalId, employeeId, kind) values (getdate(), " +
    desk.place().store + ", " + desk.place().terminal + ", " + one.id + ", 'pin')");
  asked(one, "This is not the PIN.");
}

if (Request.method === "POST") {
  var chosen =
    desk.employees().filter(function(one) { return one.id === text.whole(Request.form.employee); })[0];
  if (!chosen) return Response.redirect("/employee");
  if (!Request.clerk && !proven(chosen)) return;
  Session.kept.employee = chosen;
  return Response.redirect("/");
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
