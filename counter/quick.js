// The quick drop-off screen: a count for each department.
var layout = Server.include("shared/layout.js");
var desk = Server.include("shared/desk.js");
var text = Server.include("shared/text.js");
var customers = Server.include("shared/customers.js");

if (!desk.staffed()) return;
var quick = Session.quick;
if (!quick) return layout.notice("Quick drop-off", "No bag is being taken in.", "/", "Find a customer");

var customer = customers.byId(quick.custSeqNumber);
var departments = text.rows(Database.query("select departmentid, name from department where disabled = 0 and pricelistid = " + quick.priceListId + " order by displaysequence"), function (field) {
  return { id: field("departmentid"), name: field("name") };
});
var fields = departments.map(function (one) {
  var id = "pieces-" + one.id;
  return "<div><label for=\"" + id + "\">" + text.encoded(one.name) + "</label><input id=\"" + id + "\" name=\"" + id + "\" type=\"number\" min=\"0\" max=\"999\" inputmode=\"numeric\" value=\"0\"></div>";
}).join("");

layout.page("Quick drop-off" + (customer ? " of " + customer.name : ""),
  "<form method=\"post\" action=\"/quick/save\">" + layout.token() + layout.once() + layout.hidden(layout.of("quick")) + "<div class=\"sheets\">" + fields + "</div>" +
  "<h2><label for=\"notes\">Note</label></h2><textarea id=\"notes\" name=\"notes\" maxlength=\"255\"></textarea>" +
  "<div class=\"finish\"><button class=\"main\">Take in</button></div></form>" + layout.button("/quick/drop", "Give up", layout.of("quick"), { kind: "quiet" }));
