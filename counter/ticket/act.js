// One click on the entry screen: does it, and answers what has changed.
var clicks = Server.include("shared/clicks.js");
var presses = Server.include("shared/presses.js");
var fragments = Server.include("shared/fragments.js");
var tickets = Server.include("shared/tickets.js");
var text = Server.include("shared/text.js");

var click = Request.json || {};
var invoice = Request.method === "POST" ? tickets.meant(click.work) : null;
if (!invoice) return presses.over("This ticket is no longer being written. Load the page again.");
if (Session.saved)
  return presses.over("A part of this order is saved already: save the rest before you change anything.");
Server.include("shared/finishing.js").reopen();
var result = 0, problem = "";
try {
  result = presses.once(click, function() { return clicks.run(invoice, String(click.click), click); });
} catch (error) {
  // What the clerk can mend is said on the screen; what is broken goes to the log.
  if (error.number) throw error;
  problem = error.message;
}
var asks = result && (result.ask || result.choose) ? result : {};
var line = problem || asks.ask || asks.choose || result === "" ? text.whole(click.line) : Number(result) || 0;
var answer = fragments.paper(invoice, line);
answer.problem = problem;
answer.ask = asks.ask || "";
answer.choose = asks.choose ? asks : null;
answer.question =
  click.click === "item" && line > 0 && !problem && !answer.ask ? fragments.question(invoice, line) : "";
// The list that the clerk sees next comes along.
var group = line > 0 ? String(click.group || "it") : "it";
answer.group = group;
answer.panel = fragments.panel(
  invoice, group, click.list ? text.whole(click.list) : "", line,
  group === "br" ? text.clean(click.filter, 40).replace(/["&]/g, "") : "");
answer.groups = fragments.groups(invoice, line, group);
Response.json(answer);
