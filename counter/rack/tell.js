// Whose tickets are ready, and what has been said to them.
var layout = Server.include("shared/layout.js");
var html = Server.include("shared/html.js");
var desk = Server.include("shared/desk.js");
var text = Server.include("shared/text.js");
var shop = Server.include("shared/shop.js");
var racks = Server.include("shared/racks.js");
var h = html.tag;

if (!desk.staffed()) return;
var said = Session.rackSaid || {};
delete Session.rackSaid;
var most = 100;

function state(one) {
  if (one.sent) return "Told " + text.day(one.sent);
  if (one.toldDate) return "Told " + text.day(one.toldDate);
  if (!one.message) return "";
  if (!one.taken) return "In the queue";
  return one.problem && !racks.isAtWork(one.problem) ? "Refused: " + one.problem :
                                                       "Not known whether it was sent";
}
function button(label, values, one) {
  return html.raw(layout.button(
    "/rack/act", label, values, { once: true, kind: "quiet", said: label + ", ticket " + one.invoice }));
}

var all = text.rows(
  Database.query(
    "select top " + (most + 1) +
    " t.ticketNumber, t.invoiceNumber, t.customerSequenceNumber as customer, c.customername as name, " +
    "dbo.formatPhone(c.MainAreaCode, c.MainPhone) as phone, " +
    "isnull(dbo.pivotTicketRackLocationBrief(t.ticketNumber, ', '), '') as rack, m.messageId, " +
    "m.takenDate, m.sentDate, m.problem, (select max(g.logDate) from ShopLog g where g.ticketNumber = " +
    "t.ticketNumber and g.kind = 'told') as toldDate " +
    "from Ticket t inner join Customer c on c.customerSequenceNumber = t.customerSequenceNumber left " +
    "join CustomerMessage m on m.ticketNumber = t.ticketNumber and m.reason = 'ready' where t.storeId = " +
    desk.place().store +
    " and t.ticketStatus = 'AC' and exists (select 1 from rackassignment r where r.ticketnumber = " +
    "t.ticketNumber) order by t.dueDate, t.ticketNumber"),
  function(field) {
    return {
      number: field("ticketNumber"),
      invoice: field("invoiceNumber"),
      customer: field("customer"),
      name: field("name"),
      phone: field("phone"),
      rack: field("rack"),
      message: field("messageId"),
      taken: field("takenDate"),
      sent: field("sentDate"),
      problem: field("problem"),
      toldDate: field("toldDate")
    };
  });
var rows = all.slice(0, most).map(function(one) {
  var isTold = one.sent || one.toldDate;
  return h(
    "tr", null, h("th", { scope: "row" }, one.invoice),
    h("td", null, h("a", { "class": "inline", href: "/customer?id=" + one.customer }, one.name)),
    h("td", null, one.phone), h("td", null, one.rack), h("td", null, state(one)),
    h("td", { "class": "row-actions" },
      isTold ? "" : button("Told", { act: "told", ticket: one.number }, one),
      !isTold && one.taken ?
        button("Send again", { act: "again", ticket: one.number, message: one.message }, one) :
        ""));
});
layout.page(
  "Customers to tell",
  html.all(
    shop.problem(said.problem), said.words ? h("p", { "class": "done", role: "status" }, said.words) : "",
    racks.hasOutlet() ?
      "" :
      h("p", { "class": "notice" },
        "This shop sends no messages by itself (the host's setting messages names how): they stay in the " +
          "queue, and customers are called."),
    h("p", { "class": "notice", "data-send": racks.hasOutlet() ? "/rack/send" : false }, ""),
    rows.length ? shop.table(["Invoice", "Customer", "Phone", "Rack", "Said", ""], rows) :
                  h("p", { "class": "notice" },
                    "Nothing is on the rack. Tickets come here when they are hung at a place."),
    all.length > most ? h("p", { "class": "notice" }, "There are more: the oldest " + most + " are shown.") :
                        "",
    h("p", null, h("a", { "class": "button", href: "/rack" }, "Back to the rack"))),
  { styles: ["shop.css"], scripts: ["rack.js"] });
