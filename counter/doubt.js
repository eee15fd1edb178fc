// The host ended while something was saved or booked here, and what was being written has been brought back.
// Only the clerk can see whether it is done already; what the shop's books say is shown.
var layout = Server.include("shared/layout.js");
var html = Server.include("shared/html.js");
var desk = Server.include("shared/desk.js");
var text = Server.include("shared/text.js");
var till = Server.include("shared/till.js");
var customers = Server.include("shared/customers.js");
var h = html.tag;

// What a visit at the till has in the ledger, and the change that goes with it.
function visit() {
  var session = Session.pickup, booked = till.booked(session), tendered = till.tendered(session);
  return {
    isBooked: till.isBooked(session),
    amount: booked.amount,
    change: text.cents(Math.max(tendered - booked.amount, 0)),
    tendered: tendered
  };
}

// What was answered is done again when the work is brought back once more, and nothing is in doubt then.
if (Request.method === "POST") {
  var done = String(Request.form.done || ""), where = "/";
  if (done === "pickup" && Session.pickup) {
    Session.kept.collected = {
      customer: Session.pickup.custSeqNumber,
      tickets: till.numbers(),
      change: Server.recorded(visit).change,
      drawer: true,
      isAhead: Session.pickup.isPrepay()
    };
    where = "/collected";
  }
  if (desk.works.some(function(work) { return work[0] === done; })) delete Session[done];
  // Tenders that are not booked are taken again.
  if (Session.pickup) {
    Session.tillLedger = Server.recorded(till.ledgerEnd);
    till.start(Session.pickup.custSeqNumber, [], Session.pickup.userAction);
  }
  Server.settleDoubt();
  desk.workDone();
  return Response.redirect(where);
}

if (!Server.doubtful() || !desk.openWorks().length) return Response.redirect("/");

function ticketTable(id) {
  var heads = [["Invoice", ""], ["Pieces", ""], ["Ready", ""], ["Total", "money"], ["To pay", "money"]];
  return h(
    "table", null,
    h("thead", null,
      h("tr", null,
        heads.map(function(one) { return h("th", { scope: "col", "class": one[1] || false }, one[0]); }))),
    h("tbody", null, customers.openTickets(id).map(function(ticket) {
      return h(
        "tr", null, h("th", { scope: "row" }, ticket.invoice), h("td", null, ticket.pieces),
        h("td", null, text.day(ticket.due)), h("td", { "class": "money" }, text.money(ticket.total)),
        h("td", { "class": "money" }, text.money(ticket.total - ticket.paid)));
    })));
}

// What it is about: the lines of the ticket, the money of the visit.
var about = {
  invoice: function() {
    return h(
      "p", null,
      "Being saved: " +
        text
          .rows(
            Session.invoice.lineItems.Clone(),
            function(field) {
              return field("itemType") === "IT" || field("itemType") === "AC" ?
                field("quantity") + " " + field("itemName") :
                "";
            })
          .filter(function(one) { return one; })
          .join(", ") +
        ".");
  },
  quick: function() { return ""; },
  pickup: function() {
    var money = visit();
    return html.all(
      h("p", null, text.money(money.tendered) + " was tendered. ",
        money.isBooked ?
          h("strong", null, "The ledger has " + text.money(money.amount) + " of it: it is done.") :
          "The ledger has nothing of it."),
      money.isBooked ? h("p", { "class": "change" }, h("span", { "class": "name" }, "Change"),
                         h("strong", null, text.money(money.change))) :
                       "");
  }
};

layout.page(
  "Was it saved?",
  html.all(
    h("p", { "class": "problem", role: "alert" },
      "The counter was interrupted while it was saving. Look whether it is done before you go on."),
    desk.openWorks().map(function(work) {
      var customer = customers.byId(Session[work[0]].custSeqNumber);
      return h(
        "section", { "class": "paper" }, h("h2", null, work[2] + (customer ? " of " + customer.name : "")),
        about[work[0]](), h("p", null, "In the shop now:"), customer ? ticketTable(customer.id) : "",
        html.raw(layout.button("/doubt", "It is done: put it away", { done: work[0] })));
    }),
    h("p", { "class": "notice" },
      "Tenders at the till are taken again. A card that was asked for is found there."),
    h("div", { "class": "choices" }, html.raw(layout.button("/doubt", "It is not done: go on", {})))));
