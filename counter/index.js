// The first page of the counter: says that the host is at work, and what the store's price list holds.
var layout = Server.include("shared/layout.js");

var departments = Database.query("select distinct name from Department order by name");
var names = [];
for (; !departments.EOF; departments.MoveNext()) names.push(Server.HTMLEncode(departments("name")));

layout.page("Counter", "<p>The counter is open.</p><ul><li>" + names.join("</li><li>") + "</li></ul>");
