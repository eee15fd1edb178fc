// Paid and handed out.
var layout = Server.include("shared/layout.js");
var text = Server.include("shared/text.js");

var numbers = String(Request.query.tickets || "").split("-").map(text.whole).filter(function (one) { return one > 0; }).slice(0, 40);
var change = Number(Request.query.change) || 0;
layout.page("Thank you",
  "<p class=\"change\" role=\"status\">Change: <strong>" + text.money(change) + "</strong></p><div class=\"finish\"><a class=\"button main\" href=\"/receipt?tickets=" +
  numbers.join("-") + "\">Receipt</a><a class=\"button\" href=\"/\">Next customer</a></div>");
