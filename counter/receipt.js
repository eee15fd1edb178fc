// Receipts on a strip of 80 mm, one after the other.
var layout = Server.include("shared/layout.js");
var text = Server.include("shared/text.js");
var receipts = Server.include("shared/receipts.js");

var strips = receipts.asked().map(function (number) {
  var header = receipts.header(number);
  if (!header) return "";
  return "<section class=\"strip\"><h2>" + text.encoded(header.store) + "</h2>" + (Request.query.copy ? "<p class=\"number\">Copy</p>" : "") + (header.isVoid ? "<p class=\"number\">Void</p>" : "") + "<p class=\"number\">" + text.encoded(header.invoice) + "</p><p>" +
         text.encoded(header.customer) + "<br>" + text.encoded(header.phone) + "</p>" + receipts.lines(receipts.loaded(number)) +
         "<p>Paid " + text.money(header.paid) + (header.paid ? " (" + receipts.tenders(number) + ")" : "") + ", to pay " + text.money(header.total - header.paid) + "</p><p>" +
         (header.out ? "Collected " + text.day(header.out) : "Ready " + text.day(header.due) + " " + text.encoded(header.time)) + "</p><p>Served by " + text.encoded(header.employee) + "</p></section>";
}).join("");
if (!strips) return layout.notice("Receipt", "There is no such ticket.", "/", "Find a customer");
layout.page("Receipt", strips + "<div class=\"choices\"><button class=\"main\" data-print>Print</button><a class=\"button\" href=\"/\">Next customer</a></div>", { styles: ["print.css"] });
