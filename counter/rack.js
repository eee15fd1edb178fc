// The rack: a ticket is scanned, a place is scanned, and it is ready.
var layout = Server.include("shared/layout.js");
var html = Server.include("shared/html.js");
var desk = Server.include("shared/desk.js");
var text = Server.include("shared/text.js");
var shop = Server.include("shared/shop.js");
var racks = Server.include("shared/racks.js");
var h = html.tag;

if (!desk.staffed()) return;
var scan = (Request.query.scan || "").substr(0, 40),
    meant = scan       ? racks.read(scan) :
  Request.query.ticket ? { ticket: text.whole(Request.query.ticket) } :
                         {};
var ticket = meant.ticket ? racks.ticket(meant.ticket) : null;
var said = Session.rackSaid || {};
delete Session.rackSaid;
var problem = said.problem ||
  (scan && !meant.ticket ? meant.place ? "Scan the ticket first, then the place " + meant.place + "." :
                                         "Nothing here is called " + scan + "." :
                           "") ||
  (ticket ? racks.trouble(ticket) : "");
var canHang = ticket && !racks.trouble(ticket);

function queueLine() {
  var waits = shop.value(
    "select count(*) from CustomerMessage where takenDate is null and storeId = " + desk.place().store);
  return h(
    "p", null, h("a", { "class": "button", href: "/rack/tell" }, "Customers to tell"), " ",
    waits && racks.hasOutlet() ? h("span", { "class": "notice", "data-send": "/rack/send" },
                                   waits + (waits === 1 ? " message waits" : " messages wait")) :
                                 "");
}

function placing() {
  var missing = racks.missing(ticket.number), codes = racks.codes(ticket.number), piece = meant.piece;
  return h(
    "section", { "class": "paper", "aria-label": "Ticket" },
    h("div", { "class": "headline" }, h("h2", null, "Ticket " + ticket.invoice + ", " + ticket.name),
      h("span", null, ticket.rack ? "hangs at " + ticket.rack : "not on the rack")),
    h("p", { "class": "notice" },
      "Ready " + text.day(ticket.due) +
        (codes.length ? ", " + text.pieces(codes.length) + " with a tag or seal" : "")),
    missing.length ?
      h("p", { "class": "problem" },
        "Not seen yet: " +
          missing.slice(0, 12).map(function(one) { return one.code + " (" + one.name + ")"; }).join(", ") +
          (missing.length > 12 ? " and " + (missing.length - 12) + " more" : "")) :
      "",
    piece ? html.raw(layout.button(
              "/rack/act", "Piece " + piece + " is here", { act: "see", ticket: ticket.number, code: piece },
              { kind: "main", once: true })) :
            "",
    canHang ?
      shop.form(
        "/rack/act", { act: "put", ticket: ticket.number },
        html.all(
          shop.field("place", "Place or slot", "", { autofocus: !piece, maxlength: 20, required: true }),
          ticket.rack ? shop.check("also", "Keep " + ticket.rack + " as well", false) : "",
          h("div", { "class": "finish" }, h("button", { "class": piece ? false : "main" }, "Hang it here"),
            h("a", { "class": "button quiet", href: "/rack" }, "Another ticket")))) :
      "",
    ticket.rack ?
      html.raw(layout.button(
        "/rack/act", "Take it off", { act: "off", ticket: ticket.number }, { once: true, kind: "quiet" })) :
      "");
}

layout.page(
  "Rack",
  html.all(
    shop.problem(problem), said.words ? h("p", { "class": "done", role: "status" }, said.words) : "",
    ticket && (canHang || ticket.rack) ?
      placing() :
      h("form", { method: "get", action: "/rack", "class": "search" },
        h("label", { "for": "scan" }, "Scan a ticket, tag or heat seal"),
        h("input", { id: "scan", name: "scan", autocomplete: "off", autofocus: true, maxlength: 40 }),
        h("button", { "class": "main" }, "Find")),
    ticket ?
      "" :
      h("p", { "class": "notice" },
        "First the ticket, then the place: then it is ready, and the customer is told. Scan a ticket " +
          "that hangs already to move it or take it off."),
    queueLine()),
  { styles: ["shop.css"], scripts: ["rack.js"] });
