// The counter's first page: who is in front of it?
var layout = Server.include("shared/layout.js");
var desk = Server.include("shared/desk.js");
var text = Server.include("shared/text.js");
var customers = Server.include("shared/customers.js");

if (!desk.staffed()) return;

var wanted = (Request.query.q || "").substr(0, 60);
var results = wanted ? customers.find(wanted) : [];
var list = results.map(function (one) {
  return "<li><a class=\"customer\" href=\"/customer?id=" + one.id + "\"><span class=\"name\">" + text.encoded(one.name) + "</span><span>" +
         text.encoded(one.phone) + "</span><span>" + text.encoded(one.address) + "</span></a></li>";
}).join("");

// The search box asks again while the clerk types, and takes the list alone.
var shown = results.length ? "<ul class=\"customers\">" + list + "</ul>" + (results.length >= customers.most ? "<p class=\"notice\">There are more. Key in more of the name.</p>" : "")
                           : wanted ? "<p class=\"notice\">Nobody found. Try fewer letters, or a part of the phone number.</p>" : "";
if (Request.query.part) {
  Response.write(shown);
  return;
}
layout.page("Customers",
  "<form method=\"get\" action=\"/\" role=\"search\" class=\"search\"><label for=\"q\">Name, phone or ticket number</label>" +
  "<input id=\"q\" name=\"q\" type=\"search\" autocomplete=\"off\" autofocus value=\"" + text.encoded(wanted) + "\">" +
  "<button>Find</button></form><div id=\"found\" aria-live=\"polite\">" + shown + "</div>");
