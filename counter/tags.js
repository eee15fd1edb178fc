// The tags that go on the garments, one for each piece.
var layout = Server.include("shared/layout.js");
var text = Server.include("shared/text.js");
var receipts = Server.include("shared/receipts.js");

var numbers = receipts.asked();
var tags = numbers.length ? text.rows(Database.query("select g.ticketNumber, g.tagNumber, g.tagColor, t.invoiceNumber, t.dueDate from TicketTag g inner join Ticket t on t.ticketNumber = g.ticketNumber " +
                                                     "where g.ticketNumber in (" + numbers.join(",") + ") order by g.ticketNumber, g.tagNumber"), function (field) {
  return "<div class=\"tag\"><p class=\"number\">" + text.encoded(field("tagNumber")) + "</p><p>" + [field("invoiceNumber"), field("tagColor"), text.day(field("dueDate"))].filter(function (one) {
    return one;
  }).map(text.encoded).join(" &middot; ") + "</p></div>";
}) : [];
if (!tags.length) return layout.notice("Tags", "These tickets have no tags: every piece has a heat seal, or nothing was itemised.", "/", "Find a customer");
layout.page("Tags", "<section class=\"strip\">" + tags.join("") + "</section><div class=\"choices\"><button class=\"main\" data-print>Print</button></div>", { styles: ["print.css"] });
