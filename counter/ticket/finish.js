// Finishes the ticket, unless something is missing; the next page shows what came of it.
var tickets = Server.include("shared/tickets.js");
var finishing = Server.include("shared/finishing.js");
var layout = Server.include("shared/layout.js");

var invoice = Request.method === "POST" ? tickets.meant(Request.form.work) : null;
if (!invoice) return Response.redirect("/ticket");
Session.finishTrouble = "";
var questions = Session.finished ? [] : finishing.questions(invoice);
if (questions.length && Request.form.sure !== questions.join(" "))
  return layout.asked(
    "Before it is finished", questions, "/ticket/finish", layout.of("invoice"), "/ticket",
    "Back to the ticket");
if (!Session.finished && !finishing.obstacles(invoice).length) {
  // A ticket that cannot be finished is still there to be changed.
  try {
    finishing.finish(invoice);
  } catch (error) {
    print("finishing failed: " + (error.description || error.message));
    Session.finishTrouble = "The ticket could not be finished: " + (error.description || error.message) +
      ". It is as it was, change it or try again.";
  }
}
Response.redirect("/finished");
