// One click on the entry screen: does it, and answers what has changed.
var clicks = Server.include("shared/clicks.js");
var fragments = Server.include("shared/fragments.js");
var tickets = Server.include("shared/tickets.js");

var click = Request.json || {};
var invoice = Request.method === "POST" ? tickets.meant(click.work) : null;
if (!invoice) {
  Response.status = 409;
  return Response.json({ problem: "This ticket is no longer being written. Load the page again." });
}
Server.include("shared/finishing.js").reopen();
var line = 0, problem = "";
try {
  line = clicks.run(invoice, String(click.click), click);
} catch (error) {
  // What the clerk can mend is said on the screen; what is broken goes to the log.
  if (error.number) throw error;
  problem = error.message;
  line = Number(click.line) || 0;
}
var answer = fragments.paper(invoice, line);
answer.problem = problem;
answer.question = click.click === "item" && !problem ? fragments.question(invoice, line) : "";
Response.json(answer);
