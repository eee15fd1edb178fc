// The card at the till. GET looks whether the card program has answered and changes nothing; POST asks it for
// a sale.
var till = Server.include("shared/till.js");
var cards = Server.include("shared/cards.js");
var text = Server.include("shared/text.js");

var c = Request.json || {};
var session = till.meant(Request.method === "POST" ? c.work : Request.query.work);
if (!session) {
  Response.status = 409;
  return Response.json({ problem: "This visit at the till is over. Load the page again." });
}
if (Request.method !== "POST") return Response.json({ answered: cards.isAnswered(session.custSeqNumber) });

var amount = text.amount(c.amount);
var problem = "";
if (!till.isCardTaken()) problem = "This counter takes no cards.";
else if (!amount) problem = "This is not an amount.";
else if (amount > till.due(session))
  problem = "No change is given on a card: take " + text.money(till.due(session)) + " at most.";
else problem = cards.ask(session.custSeqNumber, c, amount);

var answer = Server.include("shared/till_screen.js").parts(session);
answer.problem = problem;
Response.json(answer);
