// Paid, and handed out unless it was paid ahead.
var layout = Server.include("shared/layout.js");
var text = Server.include("shared/text.js");

var last = Session.kept.collected;
if (!last) return Response.redirect("/");
layout.page("Thank you",
  "<p class=\"change\" role=\"status\">Change: <strong>" + text.money(last.change) + "</strong></p>" +
  (last.drawer ? "<p>The cash drawer opens.</p>" : "") + (last.isAhead ? "<p>The tickets stay in the shop until they are collected.</p>" : "") +
  "<div class=\"finish\"><a class=\"button main\" href=\"/receipt?tickets=" + last.tickets.join("-") + "\">Receipt</a><a class=\"button\" href=\"/\">Next customer</a></div>");
