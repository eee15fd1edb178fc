// What a click on the entry screen does to the ticket. A row is a click's name and what it calls; `c` holds what
// the browser sent: line, id, name, group, quantity, value, department. The result, if any, is the line that is
// selected from then on.
var text = Server.include("shared/text.js");

function pieces(c) { return Math.min(Math.max(text.whole(c.quantity) || 1, 0), 999); }
function line(c) { return text.whole(c.line); }
function id(c) { return text.whole(c.id); }
function words(value, size) { return String(value === undefined || value === null ? "" : value).substr(0, size); }
function sum(value) {
  var number = Number(String(value).replace(/[$,\s]/g, ""));
  if (isNaN(number) || Math.abs(number) > 99999) throw new Error("This is not a price: " + words(value, 20));
  return Math.round(number * 100) / 100;
}

function day(value) {
  var parts = /^(\d{4})-(\d{2})-(\d{2})$/.exec(String(value));
  if (!parts) throw new Error("This is not a date: " + words(value, 20));
  return Number(parts[2]) + "/" + Number(parts[3]) + "/" + parts[1];
}

// A descriptor pressed again is taken off.
function toggled(invoice, c, add) {
  if (c.on) invoice.removeDescriptor(line(c), words(c.name, 64), words(c.group, 2).toUpperCase());
  else add();
  return line(c);
}

// A scanned seal brings back the garment that it was pressed into, or waits for the garment that is described next.
function scanned(invoice, seal) {
  var known = invoice.addItemByHeatSeal(seal);
  if (known > 0) return known;
  var why = ByRef("");
  if (!invoice.isHeatSealValid(seal, why)) throw new Error(why.value);
  invoice.pushNewHeatSeal(seal);
}

// The same garment once more counts on its line; one with a seal has a line of its own.
function item(invoice, c) {
  var seal = invoice.getNewHeatSealCount() > 0 ? invoice.getSelectedHeatSeal() : "";
  var added = invoice.addItem(id(c), seal ? 0 : 1, pieces(c));
  if (added > 0 && seal) {
    invoice.addHeatSeal(added, seal);
    invoice.removeNewHeatSeal(seal);
  }
  return added;
}

exports.table = {
  item:        item,
  redoItem:    function (t, c) { return t.addRedoItem(id(c), pieces(c)); },
  upcharge:    function (t, c) { return c.on ? (t.removePriceListItem(line(c), id(c)), line(c)) : (t.addUpcharge2(line(c), words(c.name, 64), pieces(c)), line(c)); },
  color:       function (t, c) { return toggled(t, c, function () { t.addColor(line(c), words(c.name, 64), pieces(c), true); }); },
  pattern:     function (t, c) { return toggled(t, c, function () { t.addPattern(line(c), words(c.name, 64), pieces(c), true); }); },
  brand:       function (t, c) { return toggled(t, c, function () { t.addDescriptor(line(c), words(c.name, 64), "BR", 1); }); },
  quantity:    function (t, c) { t.changeQuantity(pieces(c), line(c)); return line(c); },
  price:       function (t, c) { t.overRidePrice(sum(c.value), line(c)); return line(c); },
  notes:       function (t, c) { t.attachNotes(line(c), words(c.value, 255)); return line(c); },
  rename:      function (t, c) { t.renameLineItem(line(c), words(c.value, 64)); return line(c); },
  redo:        function (t, c) { t.setLineToRedo(line(c)); return line(c); },
  remove:      function (t, c) { t.deleteItem(line(c)); },
  charge:      function (t, c) { t.addChargeLineNew(t.storeNumber, t.priceListId, sum(c.value), words(c.name, 64), pieces(c), text.whole(c.department), 1); },
  lineDue:     function (t, c) { t.setLineDueDate(line(c), day(c.value)); return line(c); },
  deptDue:     function (t, c) { t.setDeptIdDueDate(text.whole(c.department), day(c.value)); },
  ticketDue:   function (t, c) { t.setInvoiceDueDate(day(c.value)); },
  preference:  function (t, c) { t.setCustomerPreferenceByName(words(c.name, 64), words(c.value, 64)); },
  coupon:      function (t, c) { t.addCoupon(id(c)); },
  seal:        function (t, c) { return scanned(t, words(c.value, 40)); },
  sealOff:     function (t, c) { t.removeNewHeatSeal(words(c.value, 40)); }
};

// Colors, patterns and upcharges are named by the library's fragments in small letters; the store knows them by
// their own names, whatever the case.
exports.run = function (invoice, name, c) {
  if (!Object.prototype.hasOwnProperty.call(exports.table, name)) throw new Error("There is no such click.");
  return exports.table[name](invoice, c);
};
