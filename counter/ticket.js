// The entry screen.
var layout = Server.include("shared/layout.js");
var desk = Server.include("shared/desk.js");
var text = Server.include("shared/text.js");
var fragments = Server.include("shared/fragments.js");
var customers = Server.include("shared/customers.js");

if (!desk.staffed()) return;
var tickets = Server.include("shared/tickets.js");
var invoice = tickets.meant();
if (!invoice) return layout.notice("Ticket", "No ticket is being written.", "/", "Find a customer");
if (Session.finished) return Response.redirect("/finish");

var department = text.whole(Request.query.department) || invoice.getFirstDeptId() || "";
var paper = fragments.paper(invoice, 0);
var customer = customers.byId(invoice.custSeqNumber);
var title = (customer ? customer.name : "Ticket") + (invoice.isAdd ? "" : ", invoice " + invoice.invoiceNo);

layout.page(title,
  "<div class=\"desk\" data-department=\"" + text.encoded(department) + "\" data-work=\"" + desk.numberOf("invoice") + "\"><section aria-label=\"Price list\">" +
  "<div class=\"departments\">" + invoice.htmlDepartments(department) + "</div>" +
  "<div class=\"counts\"><div><label for=\"count\">Pieces</label><input id=\"count\" type=\"number\" min=\"1\" max=\"999\" inputmode=\"numeric\" value=\"1\"></div>" +
  "<label class=\"check\"><input id=\"as-redo\" type=\"checkbox\"> Redo</label></div>" +
  "<div id=\"groups\"></div><div id=\"filter\" hidden><label for=\"brand\">Brand begins with</label><input id=\"brand\" autocomplete=\"off\"></div>" +
  "<div id=\"panel\">" + fragments.panel(invoice, "it", department, 0, "") + "</div></section>" +
  "<section class=\"paper\" aria-label=\"Ticket\"><p id=\"problem\" class=\"problem\" role=\"alert\" hidden></p>" +
  "<div id=\"seals\">" + paper.seals + "</div><button id=\"seal-off\" class=\"quiet\"" + (paper.seals ? "" : " hidden") + ">Put the first seal away</button><div id=\"lines\">" + paper.lines + "</div>" +
  "<div class=\"functions\" id=\"line-tools\" hidden><button data-tool=\"fewer\" aria-label=\"One piece less\">&minus;</button>" +
  "<button data-tool=\"more\" aria-label=\"One piece more\">+</button><button data-tool=\"notes\">Notes</button><button data-tool=\"price\">Price</button>" +
  "<button data-tool=\"redo\">Redo</button><button data-tool=\"seal\">Heat seal</button><button data-tool=\"remove\">Remove</button></div>" +
  "<form id=\"entry\" hidden><label for=\"entered\"></label><input id=\"entered\" autocomplete=\"off\"><button>OK</button><button type=\"button\" data-cancel>Cancel</button></form>" +
  "<div id=\"due\"></div>" +
  "<div id=\"totals\">" + paper.totals + "</div><div id=\"offers\">" + paper.offers + "</div>" +
  "<details><summary>Due date</summary><div id=\"ticket-due\"></div></details>" +
  "<details><summary>Coupons</summary><div id=\"coupons\">" + paper.coupons + "</div></details>" +
  "<details><summary>Charge</summary><div id=\"charge\">" + invoice.htmlAddChargeDetail() + "</div></details>" +
  "<details><summary>Preferences</summary><div id=\"preferences\">" + paper.preferences + "</div><div id=\"preference-list\">" + invoice.htmlPreferenceList() + "</div></details>" +
  "<details><summary>Similar tickets</summary><div id=\"similar\"></div><div id=\"preview\"></div></details>" +
  "<div class=\"finish\">" + layout.button("/ticket/finish", "Finish", layout.of("invoice"), { kind: "main" }) + layout.button("/ticket/drop", "Give up", layout.of("invoice"), { kind: "quiet" }) + "</div></section></div>",
  { scripts: ["ticket.js"] });
