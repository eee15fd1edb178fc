// A garment more. The first bears the mark by which the ticket is looked for afterwards.
var line = Session.invoice.addItem(Number(Request.form.item), 1, 1);
if (Request.form.mark) Session.invoice.attachNotes(line, Request.form.mark);
if (Request.form.upcharge) Session.invoice.addUpcharge2(line, Request.form.upcharge, 1);
Session.garments += 1;
Response.write(Session.invoice.lineItems.RecordCount);
