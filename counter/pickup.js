// The till.
var layout = Server.include("shared/layout.js");
var desk = Server.include("shared/desk.js");
var text = Server.include("shared/text.js");
var till = Server.include("shared/till.js");
var customers = Server.include("shared/customers.js");

if (!desk.staffed()) return;
var session = till.meant();
if (!session) return layout.notice("Pickup", "Nobody is at the till.", "/", "Find a customer");
till.refresh(session);

var customer = customers.byId(session.custSeqNumber);
var isAhead = session.isPrepay();
var parts = till.parts(session);
var options = till.tendersHere(session).concat(till.isCardTaken() ? [["Credit Card", ""]] : []).map(function (one) {
  return "<option value=\"" + one[0] + "\" data-reference=\"" + one[1] + "\">" + one[0] + "</option>";
}).join("");

function field(id, label, more) {
  return "<div><label for=\"" + id + "\">" + label + "</label><input id=\"" + id + "\"" + (more || "") + "></div>";
}

var card = "<div id=\"card-fields\" hidden>" + field("card-number", "Card number, or swipe") + field("card-expiration", "Month and year", " placeholder=\"12/28\"") +
           field("card-zip", "ZIP code") + field("card-code", "Code on the card", " inputmode=\"numeric\"") + "</div>";
var claim = "<details><summary>Collected by somebody else</summary>" + field("claimant", "Name", " name=\"claimant\" maxlength=\"60\"") +
            field("relationship", "Who is it?", " name=\"relationship\" maxlength=\"30\"") + field("identification-type", "Document", " name=\"identificationType\" maxlength=\"30\"") +
            field("identification", "Its number", " name=\"identification\" maxlength=\"30\"") + field("claim-phone", "Phone", " name=\"phone\" maxlength=\"20\"") +
            field("claim-note", "Note", " name=\"note\" maxlength=\"255\"") + "</details>";

layout.page((isAhead ? "Pay ahead" : "Pickup") + (customer ? ", " + customer.name : ""),
  "<div class=\"desk\" data-work=\"" + desk.numberOf("pickup") + "\"><section id=\"tickets\" aria-label=\"Tickets\">" + parts.tickets + "</section>" +
  "<section class=\"paper\" aria-label=\"Payment\"><p id=\"problem\" class=\"problem\" role=\"alert\" hidden></p>" +
  "<div id=\"totals\">" + parts.amounts + "</div>" +
  "<table aria-label=\"Tenders\"><tbody id=\"tenders\">" + parts.tenders + "</tbody></table><div id=\"sales\">" + parts.sales + "</div>" +
  "<form id=\"tender\" autocomplete=\"off\"><label for=\"type\">Paid by</label><select id=\"type\">" + options + "</select>" +
  "<label for=\"amount\">Amount</label><input id=\"amount\" inputmode=\"decimal\" autofocus value=\"" + (parts.due ? parts.due.toFixed(2) : "") + "\">" +
  "<div id=\"reference-field\" hidden><label for=\"reference\">Number</label><input id=\"reference\"></div>" + card + "<button>Take</button></form>" +
  "<details><summary>Coupons</summary><div id=\"coupons\" class=\"choices\"></div></details>" +
  "<form method=\"post\" action=\"/pickup/pay\">" + layout.token() + layout.once() + layout.hidden(layout.of("pickup")) + (isAhead ? "" : claim) +
  "<div class=\"finish\"><button class=\"main\" id=\"pay\"" + (parts.canPay ? "" : " disabled") + ">" + (isAhead ? "Pay" : "Pay and hand out") + "</button></div></form>" +
  layout.button("/pickup/drop", "Give up", layout.of("pickup"), { kind: "quiet" }) + "</section></div>", { scripts: ["till.js"] });
