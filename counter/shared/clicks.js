// What a click on the entry screen does to the ticket. A row is a click's name and what it calls; `c` holds what
// the browser sent: line, id, name, group, quantity, value, department, upcharge. The result, if any, is the line
// that is selected from then on.
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
// The library takes a seal as a scanner reads it, so nothing else is let through.
function scanned(invoice, seal) {
  if (!/^[A-Za-z0-9-]+$/.test(seal)) throw new Error("This is not a heat seal.");
  var known = invoice.addItemByHeatSeal(seal);
  if (known > 0) return known;
  var why = ByRef("");
  if (!invoice.isHeatSealValid(seal, why)) throw new Error(why.value);
  invoice.pushNewHeatSeal(seal);
}

// A department whose pieces the clerk counts takes no more than its limit on a ticket.
function checkRoom(invoice, counted) {
  var most = invoice.getDepartmentMaxPieces(counted[1]);
  if (invoice.isManualMaxPiecesEnabled(counted[1]) && most >= 0 && counted[0] > most)
    throw new Error("This department takes " + most + " pieces on one ticket.");
}

function checkRoomForItem(invoice, c) {
  text.rows(Database.query("select departmentId, isnull(qtyInInventory, 1) as pack from PriceListItem where priceListItemId = " + id(c)), function (field) {
    checkRoom(invoice, invoice.checkAllowableItemCountPerDept("", pieces(c), field("pack"), field("departmentId"), "getItemDetails"));
  });
}

// The same garment once more counts on its line; one with a seal has a line of its own.
function item(invoice, c) {
  checkRoomForItem(invoice, c);
  var seal = invoice.getNewHeatSealCount() > 0 ? invoice.getSelectedHeatSeal() : "";
  var added = c.redo ? invoice.addRedoItem(id(c), pieces(c)) : invoice.addItem(id(c), seal ? 0 : 1, pieces(c));
  if (added > 0 && seal) {
    invoice.addHeatSeal(added, seal);
    invoice.removeNewHeatSeal(seal);
  }
  return added;
}

function quantity(invoice, c) {
  checkRoom(invoice, invoice.checkAllowableItemCountPerDept(String(line(c)), pieces(c), 1, 0, ""));
  invoice.changeQuantity(pieces(c), line(c));
  return line(c);
}

// A coupon that shows as applied is taken off; another comes on where the first one admits it.
function coupon(invoice, c) {
  var lines = invoice.lineItems.Clone();
  lines.Filter = "itemType='CU' and lineItemId=" + id(c);
  if (!lines.EOF) {
    text.rows(lines, function (field) { return field("lineNumber"); }).forEach(function (number) { invoice.removeCoupon(number); });
    invoice.lineItems.Filter = 0;
    return;
  }
  if (!invoice.isFirstCoupon() && !invoice.validateCouponAdd()) throw new Error("The coupon on the ticket does not stand beside others.");
  if (!invoice.addCoupon(id(c))) throw new Error("This coupon takes nothing off this ticket.");
}

function chosenDay(act) {
  return function (invoice, c) {
    act(invoice, c);
    Session.isDatePicked = true;
  };
}

exports.table = {
  item:          item,
  upcharge:      function (t, c) { return c.on ? (t.removePriceListItem(line(c), id(c)), line(c)) : (t.addUpcharge2(line(c), words(c.name, 64), pieces(c)), line(c)); },
  color:         function (t, c) { return toggled(t, c, function () { t.addColor(line(c), words(c.name, 64), pieces(c), true); }); },
  pattern:       function (t, c) { return toggled(t, c, function () { t.addPattern(line(c), words(c.name, 64), pieces(c), true); }); },
  brand:         function (t, c) { return toggled(t, c, function () { t.addDescriptor(line(c), words(c.name, 64), "BR", 1); }); },
  quantity:      quantity,
  price:         function (t, c) { t.overRidePrice(sum(c.value), line(c)); return line(c); },
  upchargePrice: function (t, c) { t.overRidePrice(sum(c.value), text.whole(c.upcharge)); return line(c); },
  notes:         function (t, c) { t.attachNotes(line(c), words(c.value, 255)); return line(c); },
  answer:        function (t, c) { t.attachPromptReponse(line(c), words(c.value, 255)); return line(c); },
  redo:          function (t, c) { t.setLineToRedo(line(c)); return line(c); },
  remove:        function (t, c) { t.deleteItem(line(c)); },
  charge:        function (t, c) { t.addChargeLineNew(t.storeNumber, t.priceListId, sum(c.value), words(c.name, 64), pieces(c), text.whole(c.department), 1); },
  deptDue:       chosenDay(function (t, c) { t.setDeptIdDueDate(text.whole(c.department), day(c.value)); }),
  ticketDue:     chosenDay(function (t, c) { t.setInvoiceDueDate(day(c.value)); }),
  preference:    function (t, c) { t.setCustomerPreferenceByName(words(c.name, 64), words(c.value, 64)); },
  coupon:        coupon,
  seal:          function (t, c) { return scanned(t, words(c.value, 40)); },
  sealOff:       function (t, c) { t.removeNewHeatSeal(words(c.value, 40)); }
};

// Colors, patterns and upcharges are named by the library's fragments in small letters; the store knows them by
// their own names, whatever the case.
exports.run = function (invoice, name, c) {
  if (!Object.prototype.hasOwnProperty.call(exports.table, name)) throw new Error("There is no such click.");
  return exports.table[name](invoice, c);
};
