// A ticket is voided, or money is given back on it: with a reason, by who may.
var layout = Server.include("shared/layout.js");
var html = Server.include("shared/html.js");
var desk = Server.include("shared/desk.js");
var text = Server.include("shared/text.js");
var shop = Server.include("shared/shop.js");
var refunds = Server.include("shared/refunds.js");
var history = Server.include("shared/ticket_history.js");
var h = html.tag;

if (!desk.staffed()) return;
var isPost = Request.method === "POST",
    ticket = history.ticket(isPost ? Request.form.ticket : Request.query.ticket);
if (!ticket)
  return layout.notice("Ticket", "There is no such ticket in this shop.", "/history", "Find a ticket");
var address = "/history/ticket?ticket=" + ticket.number;

function shown(problem) {
  var mayRefund = shop.may("refund"), mayVoid = shop.may("void"), ways = refunds.ways(ticket);
  function reason(id) {
    return h("div", null, h("label", { "for": id }, "Reason"), h("input", {
               id: id,
               name: "reason",
               required: true,
               maxlength: 120,
               autocomplete: "off",
               value: isPost ? text.clean(Request.form.reason, 120) : ""
             }));
  }
  var giving = mayRefund && ways.length ?
    shop.form(
      "/history/back", { ticket: ticket.number, act: "give" },
      html.all(
        h("fieldset", null, h("legend", null, "Give money back"),
          shop.select("way", "How", 0, ways.map(function(one, at) {
            return [
              at, one.type + (one.reference ? " " + one.reference : "") + ", up to " + text.money(one.most)
            ];
          })),
          shop.field("amount", "Amount", "", { inputmode: "decimal", required: true, maxlength: 12 }),
          reason("give-reason"), h("button", null, "Give back")))) :
    "";
  var isPaid = ticket.paid > 0;
  var voiding = ticket.status !== "VO" && mayVoid && (mayRefund || !isPaid) ?
    shop.form(
      "/history/back", { ticket: ticket.number, act: "void" },
      html.all(
        h("fieldset", null, h("legend", null, "Void the ticket"), reason("void-reason"),
          isPaid ? shop.select(
                     "how", text.money(ticket.paid) + " go back", 0,
                     [[0, "to the cards they came from, the rest in cash"], [1, "in cash"]]) :
                   "",
          h("button", null, "Void")))) :
    "";
  layout.page(
    "Void or give back, ticket " + ticket.invoice,
    html.all(
      shop.problem(problem),
      h("p", { "class": "notice" },
        ticket.name + ": " + text.money(ticket.total) + ", paid " + text.money(ticket.paid) + ", " +
          ticket.state + "."),
      giving, voiding,
      giving || voiding ?
        h("p", { "class": "notice" },
          "A card is paid back at its terminal: do that as well. The ticket and all that was booked on " +
            "it stay in the books.") :
        h("p", { "class": "problem" },
          ticket.status === "VO" ?
            "This ticket is void, and nothing is left to give back." :
            desk.employee().name + " may not do this. Ask somebody who may to sign in."),
      h("p", null, h("a", { "class": "button", href: address }, "Back to the ticket"))),
    { styles: ["shop.css"] });
}
if (!isPost) return shown("");

var form = Request.form, reason = text.clean(form.reason, 120).replace(/^\s+|\s+$/g, "");
if (!reason) return shown("Say why.");
if (
  form.act === "void" ? !shop.allowed("void") || (ticket.paid > 0 && !shop.allowed("refund")) :
                        !shop.allowed("refund"))
  return;
var result = shop.change(function() {
  return form.act === "void" ?
    refunds.voidTicket(ticket.number, form.how === "1", reason) :
    refunds.give(ticket.number, text.whole(form.way), text.amount(form.amount), reason);
});
if (result.problem) return shown(result.problem);
Response.redirect(address);
