// One click on the entry screen: does it, and answers what has changed.
var clicks = Server.include("shared/clicks.js");
var fragments = Server.include("shared/fragments.js");

if (Request.method !== "POST" || !Session.invoice) {
  Response.status = 409;
  return Response.json({ problem: "No ticket is being written." });
}
Server.include("shared/tickets.js").reopen();
var click = Request.json || {};
var invoice = Session.invoice;
var line = 0, problem = "";
try {
  line = clicks.run(invoice, String(click.click), click);
} catch (error) {
  // What the clerk can mend is said on the screen; what is broken goes to the log.
  if (error.number) throw error;
  problem = error.message;
}
var answer = fragments.paper(invoice, line);
answer.problem = problem;
answer.question = click.click === "item" && !problem ? fragments.question(invoice, line) : "";
Response.json(answer);
