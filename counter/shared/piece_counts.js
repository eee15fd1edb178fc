// Another number of pieces on a line. The library scales what hangs on a garment by whole numbers a piece; a
// stain on one of three pants is less than one a piece, and would go. So what does not come out even is
// counted here:
//
// | on the line               | fewer pieces                        | more pieces                      |
// |---------------------------|-------------------------------------|----------------------------------|
// | the same on every piece   | goes along                          | the clerk says: on the new too?  |
// | not on every piece        | stays, up to what the pieces can bear | stays                          |
var text = Server.include("shared/text.js");
var tickets = Server.include("shared/tickets.js");

var sums = { UP: "upchargeTotal", CO: "colorTotal", PA: "patternTotal" };

function children(invoice, line) {
  var rows = invoice.lineItems.Clone();
  rows.Filter = "parentLineNumber=" + line;
  return text
    .rows(
      rows,
      function(field) {
        return {
          number: field("lineNumber"),
          kind: String(field("itemType")).toUpperCase(),
          name: field("itemName"),
          count: field("quantity") || 0,
          price: field("unitPrice")
        };
      })
    .filter(function(one) { return one.kind in sums; });
}

function isEven(child, pieces) { return child.count > 0 && child.count % pieces === 0; }

// What the clerk is asked when pieces are added: whether a priced extra that every piece has is on the new
// ones too.
exports.question = function(invoice, line, pieces) {
  var before = invoice.getLineQuantity(line);
  if (pieces <= before || before < 1) return "";
  var names = children(invoice, line)
                .filter(function(one) { return one.price > 0 && isEven(one, before); })
                .map(function(one) { return one.name; });
  return names.length ?
    names.join(" and ") + " on the new " + (pieces - before === 1 ? "piece" : "pieces") + " too?" :
    "";
};

function wanted(child, before, after, onEach) {
  if (isEven(child, before) && (after < before || onEach || !(child.price > 0)))
    return child.count / before * after;
  return Math.min(child.count, after * Math.ceil(child.count / before));
}

// The row of a child as it has to be, its garment's sum with it.
function correct(invoice, line, child, count) {
  var row = invoice.lineItems.Clone();
  row.Filter = "lineNumber=" + child.number;
  if (row.EOF || row.Fields("quantity").Value === count) return;
  var had = row.Fields("lineItemTotal").Value, has = text.cents(count * child.price);
  invoice.ticketLogItems.AddNew(
    ["itemLogType", "quantity", "deptName", "itemName", "amount"],
    ["C", count - row.Fields("quantity").Value, row.Fields("deptName").Value, child.name, has - had]);
  row.Fields("quantity").Value = count;
  row.Fields("lineItemTotal").Value = has;
  row.Fields("taxableAmt").Value = has;
  row.Filter = "lineNumber=" + line;
  var sum = row.Fields(sums[child.kind]);
  sum.Value = (sum.Value || 0) + has - had;
}

exports.change = function(invoice, line, pieces, onEach) {
  var before = invoice.getLineQuantity(line), hanging = before > 0 ? children(invoice, line) : [];
  invoice.changeQuantity(pieces, line);
  hanging.forEach(function(child) { correct(invoice, line, child, wanted(child, before, pieces, onEach)); });
  if (!hanging.length) return;
  invoice.adjustCoupon();
  invoice.recalculatePrepay();
};
