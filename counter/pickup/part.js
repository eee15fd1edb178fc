// Some pieces of a ticket are handed out, the others stay.
var layout = Server.include("shared/layout.js");
var html = Server.include("shared/html.js");
var desk = Server.include("shared/desk.js");
var text = Server.include("shared/text.js");
var shop = Server.include("shared/shop.js");
var pieces = Server.include("shared/some_pieces.js");
var history = Server.include("shared/ticket_history.js");
var h = html.tag;

if (!desk.staffed()) return;
var form = Request.method === "POST" ? Request.form : null;
var ticket = history.ticket(form ? form.ticket : Request.query.ticket);
if (!ticket)
  return layout.notice("Some pieces", "There is no such ticket in this shop.", "/history", "Find a ticket");
var address = "/pickup/part?ticket=" + ticket.number, lines = pieces.lines(ticket);

function shown(problem) {
  var here = lines.filter(function(one) { return !one.isOut; }),
      out = lines.filter(function(one) { return one.isOut; });
  function name(one) { return one.pieces + " " + one.name + (one.seal ? ", " + one.seal : ""); }
  layout.page(
    "Some pieces of ticket " + ticket.invoice,
    html.all(
      shop.problem(problem),
      h("p", { "class": "notice" },
        ticket.name + ", " + text.money(ticket.total - ticket.paid) + " to pay. " +
          (ticket.rack ? "It hangs at " + ticket.rack + "." : "It is not on the rack.")),
      here.length > 1 ?
        shop.form(
          "/pickup/part", { ticket: ticket.number },
          html.all(
            h("fieldset", null, h("legend", null, "What goes out"), here.map(function(one) {
              return shop.check("line" + one.line, name(one) + ", " + text.money(one.worth), false);
            })),
            h("div", { "class": "finish" }, h("button", { "class": "main" }, "Hand out"),
              h("a", { "class": "button", href: "/customer?id=" + ticket.customer }, "Not now")))) :
        h("p", { "class": "notice" },
          here.length ? "Only " + name(here[0]) + " is still here: collect the ticket at the till." :
                        "Nothing of this ticket is here."),
      out.length ? html.all(h("h2", null, "Gone out already"), out.map(function(one) {
        return h(
          "div", { "class": "row" }, h("span", null, name(one)),
          html.raw(layout.button(
            "/pickup/part", "It is back", { ticket: ticket.number, back: one.line },
            { kind: "quiet", once: true, said: name(one) + " is back" })));
      })) :
                   ""),
    { styles: ["shop.css"] });
}
if (!form) return shown("");

if (form.back) {
  var back = shop.change(function() { return pieces.takeBack(ticket.number, text.whole(form.back)); });
  return back.problem ? shown(back.problem) : Response.redirect(address);
}
var chosen = lines.map(function(one) { return one.line; })
               .filter(function(line) { return form["line" + line] === "1"; });
var trouble = pieces.trouble(ticket, lines, chosen), unpaid = pieces.unpaid(ticket, lines, chosen);
if (trouble) return shown(trouble);
if (unpaid > 0 && !form.sure) {
  var again = { ticket: ticket.number };
  chosen.forEach(function(line) { again["line" + line] = 1; });
  return layout.asked(
    "Before they go out",
    [text.money(unpaid) + " of what goes out is not paid; it stays on the ticket. Hand it out?"],
    "/pickup/part", again, address, "Back to the pieces");
}
var result = shop.change(function() { return pieces.handOut(ticket.number, chosen); });
if (result.problem) return layout.notice("Some pieces", result.problem, address, "Look again");
Response.redirect("/history/ticket?ticket=" + ticket.number);
