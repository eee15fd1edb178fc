// Back from the finished tickets to the entry screen, as if nothing had been finished.
if (Request.method === "POST" && Session.invoice && Session.finished) {
  Session.invoice.cancelDoneOperation();
  Session.finished = false;
}
Response.redirect("/ticket");
