// The way back from what a slip of the hand takes away: the lines as they were before. It lasts until the
// next such step or the end of the ticket.
var lines = Server.include("shared/lines.js");

exports.keep = function(invoice, what) {
  var log = lines.take(invoice.ticketLogItems);
  Session.undo = {
    what: what,
    lines: lines.take(invoice.lineItems),
    log: log,
    coupons: JSON.stringify(Session.coupons)
  };
};

exports.back = function(invoice) {
  if (!Session.undo) throw new Error("There is nothing to undo.");
  var kept = Session.undo;
  Session.undo = null;
  lines.put(invoice.lineItems, kept.lines);
  lines.put(invoice.ticketLogItems, kept.log);
  Session.coupons = JSON.parse(kept.coupons);
  invoice.calculateInvDueDate();
};
