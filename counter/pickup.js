// The till.
var layout = Server.include("shared/layout.js");
var desk = Server.include("shared/desk.js");
var text = Server.include("shared/text.js");
var till = Server.include("shared/till.js");
var customers = Server.include("shared/customers.js");

if (!desk.staffed()) return;
var session = Session.pickup;
if (!session) return layout.notice("Pickup", "Nobody is at the till.", "/", "Find a customer");

var customer = customers.byId(session.custSeqNumber);
var parts = till.parts(session);
var options = till.tenders.map(function (one) {
  return "<option value=\"" + one[0] + "\" data-reference=\"" + one[1] + "\">" + one[0] + "</option>";
}).join("");

layout.page("Pickup" + (customer ? ", " + customer.name : ""),
  "<div class=\"desk\"><section id=\"tickets\" aria-label=\"Tickets\">" + parts.tickets + "</section>" +
  "<section class=\"paper\" aria-label=\"Payment\"><p id=\"problem\" class=\"problem\" role=\"alert\" hidden></p>" +
  "<div id=\"totals\" aria-live=\"polite\">" + parts.amounts + "</div>" +
  "<table aria-label=\"Tenders\"><tbody id=\"tenders\">" + parts.tenders + "</tbody></table>" +
  "<form id=\"tender\" autocomplete=\"off\"><label for=\"type\">Paid by</label><select id=\"type\">" + options + "</select>" +
  "<label for=\"amount\">Amount</label><input id=\"amount\" inputmode=\"decimal\" value=\"" + (parts.due ? parts.due.toFixed(2) : "") + "\">" +
  "<div id=\"reference-field\" hidden><label for=\"reference\">Number</label><input id=\"reference\"></div><button>Take</button></form>" +
  "<form method=\"post\" action=\"/pickup/pay\">" + layout.token() + layout.once() +
  "<details><summary>Collected by somebody else</summary><label for=\"claimant\">Name</label><input id=\"claimant\" name=\"claimant\">" +
  "<label for=\"relationship\">Who is it?</label><input id=\"relationship\" name=\"relationship\"><label for=\"identification\">Shown</label>" +
  "<input id=\"identification\" name=\"identification\"></details><div class=\"finish\"><button class=\"main\" id=\"pay\"" + (parts.due > 0 ? " disabled" : "") +
  ">Pay and hand out</button></div></form>" + layout.button("/pickup/drop", "Give up", {}, { kind: "quiet" }) + "</section></div>", { scripts: ["till.js"] });
