// What a click on the entry screen does to the ticket. A row is a click's name and what it calls; `c` holds what
// the browser sent: line, id, name, group, quantity, value, department, upcharge. The result, if any, is the line
// that is selected from then on.
var text = Server.include("shared/text.js");

function pieces(c) {
  if (c.quantity === undefined) return 1;
  var count = text.whole(c.quantity);
  if (count < 1 || count > 999) throw new Error("This is not a number of pieces: " + words(c.quantity, 20));
  return count;
}
function line(c) { return text.whole(c.line); }
function id(c) { return text.whole(c.id); }
// What was typed, without the signs of mark-up: some fragments carry notes and names as they stand.
function words(value, size) { return text.clean(value, size); }
function price(value) {
  var dollars = text.dollars(value);
  if (dollars === null) throw new Error("This is not a price: " + words(value, 20));
  return dollars;
}

function day(value) {
  var parts = /^(\d{4})-(\d{2})-(\d{2})$/.exec(String(value));
  if (!parts || new Date(Number(parts[1]), Number(parts[2]) - 1, Number(parts[3])).getDate() !== Number(parts[3])) throw new Error("This is not a date: " + words(value, 20));
  return Number(parts[2]) + "/" + Number(parts[3]) + "/" + parts[1];
}

// The operations that leave the taxes as they were are followed by the sums, so that the total is right after a click.
function summed(act) {
  return function (invoice, c) {
    var chosen = act(invoice, c);
    invoice.recalculatePrepay();
    return chosen;
  };
}

// A color or pattern by the price of the garment's price list where it has one, else as it stands for all garments.
var priced = { CO: "addColor", PA: "addPattern" };
function isPriced(invoice, c, kind) {
  return !Database.query("select descriptorName from ItemDescriptorPrice where priceListItemId = " + (fieldOf(invoice, line(c), "lineItemId") || 0) +
                         " and descriptorType = '" + kind + "' and descriptorName = " + text.quoted(words(c.name, 64))).EOF;
}

// A brand may be new to the shop. The taxes are looked up by the name of a color or pattern as it stands, so it is one
// of the shop's own, and one that can stand there.
function checkName(kind, name) {
  if (kind === "BR") return;
  var isUnknown = Database.query("select descriptorid from descriptor where name = " + text.quoted(name)).EOF;
  if (isUnknown || name.indexOf("'") >= 0) throw new Error("This is not a name that can be put on a garment: " + name);
}

// A descriptor of a kind is put on, or taken off when it is pressed again.
function descriptor(kind) {
  return summed(function (invoice, c) {
    if (fieldOf(invoice, line(c), "itemType") !== "IT") throw new Error("Choose a garment first.");
    checkName(kind, words(c.name, 64));
    if (c.on) invoice.removeDescriptor(line(c), words(c.name, 64), kind);
    else if (priced[kind] && isPriced(invoice, c, kind)) invoice[priced[kind]](line(c), words(c.name, 64), invoice.getLineQuantity(line(c)), true);
    else invoice.addDescriptor(line(c), words(c.name, 64), kind, 1);
    return line(c);
  });
}

function fieldWhere(invoice, condition, column) {
  var lines = invoice.lineItems.Clone();
  lines.Filter = condition;
  return lines.EOF ? null : lines.Fields(column).Value;
}
function fieldOf(invoice, number, column) { return fieldWhere(invoice, "lineNumber=" + number, column); }
// The first line that a condition finds, or 0.
function lineOf(invoice, condition) { return fieldWhere(invoice, condition, "lineNumber") || 0; }

// A scanned seal finds its garment on the ticket, brings back the one that it was pressed into, or waits for the garment
// that is described next. The library takes a seal as a scanner reads it, so nothing else is let through.
function scanned(invoice, c) {
  var seal = words(c.value, 40);
  if (!/^[A-Za-z0-9-]+$/.test(seal)) throw new Error("This is not a heat seal.");
  var here = lineOf(invoice, "heatSeal='" + seal + "'");
  if (here > 0) return here;
  var why = ByRef("");
  if (!invoice.isHeatSealValid(seal, why)) throw new Error(why.value);
  var known = invoice.addItemByHeatSeal(seal);
  if (known < 1) return invoice.pushNewHeatSeal(seal), line(c);
  try {
    checkRoom(invoice, [invoice.getDepartmentPieceCount(fieldOf(invoice, known, "deptId")), fieldOf(invoice, known, "deptId")]);
  } catch (error) {
    invoice.deleteItem(known);
    throw error;
  }
  return known;
}

// The first of the waiting seals goes on a garment that is there already; without one the garment's own comes off.
function sealHere(invoice, c) {
  var waiting = invoice.getNewHeatSealCount() > 0 ? invoice.getSelectedHeatSeal() : "";
  if (fieldOf(invoice, line(c), "itemType") !== "IT") throw new Error("Choose a garment first.");
  if (waiting && invoice.getLineQuantity(line(c)) > 1) throw new Error("A seal is for one piece.");
  if (waiting) invoice.addHeatSeal(line(c), waiting);
  else invoice.setLineHeatSeal(line(c), "");
  return line(c);
}

// Seals are described in their order: those before the chosen one go behind it.
function chosenSeal(invoice, c) {
  var seal = words(c.value, 40);
  for (var left = invoice.getNewHeatSealCount(); left > 0 && invoice.getSelectedHeatSeal() !== seal; left--) {
    var first = invoice.getSelectedHeatSeal();
    invoice.removeNewHeatSeal(first);
    invoice.pushNewHeatSeal(first);
  }
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

// The same garment once more counts on its line; one with a seal is one piece on a line of its own.
function item(invoice, c) {
  checkRoomForItem(invoice, c);
  var seal = invoice.getNewHeatSealCount() > 0 ? invoice.getSelectedHeatSeal() : "";
  var count = seal ? 1 : pieces(c);
  var isAlone = seal || lineOf(invoice, "itemType='IT' and lineItemId=" + id(c) + " and heatSeal<>''") > 0;
  var added = c.redo ? invoice.addRedoItem(id(c), count) : invoice.addItem(id(c), !isAlone && invoice.groupSimilarItems ? 1 : 0, count);
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
  var applied = "itemType='CU' and lineItemId=" + id(c), isOff = false;
  for (var number; (number = lineOf(invoice, applied)) > 0; isOff = true) {
    invoice.removeCoupon(number);
    invoice.lineItems.Filter = 0;
  }
  if (isOff) return;
  if (!invoice.isFirstCoupon()) {
    var own = Database.query("select validWithOtherOffer from Discount where discountID = " + id(c));
    if (!invoice.validateCouponAdd() || (!own.EOF && !own.Fields("validWithOtherOffer").Value)) throw new Error("One of the offers does not stand beside others.");
  }
  if (!invoice.addCoupon(id(c))) throw new Error("This coupon takes nothing off this ticket.");
}

// The books take a preference as it stands: one of its options, or plain words where it has none.
function preference(invoice, c) {
  var value = words(c.value, 64), known = Database.query("select isnull(options, '') as options from customerpreferencetype where name = " + text.quoted(words(c.name, 64)));
  if (known.EOF) throw new Error("There is no such preference.");
  var options = known.Fields("options").Value;
  if (options ? options.split("|").indexOf(value) < 0 : !/^[\w .,:\/-]*$/.test(value)) throw new Error("Only letters, digits and . , : / - are taken here.");
  invoice.setCustomerPreferenceByName(words(c.name, 64), value);
}

function remove(invoice, c) {
  if (fieldOf(invoice, line(c), "itemType") !== "CU") return invoice.deleteItem(line(c)), 0;
  invoice.removeCoupon(line(c));
  invoice.lineItems.Filter = 0;
}

function charge(invoice, c) {
  var department = text.whole(c.department);
  checkRoom(invoice, invoice.checkAllowableItemCountPerDept("", pieces(c), 1, department, "getItemDetails"));
  if (!words(c.name, 64)) throw new Error("What is charged?");
  if (Database.query("select departmentid from department where disabled = 0 and departmentid = " + department + " and pricelistid = " + invoice.priceListId).EOF)
    throw new Error("There is no such department.");
  invoice.addChargeLineNew(invoice.storeNumber, invoice.priceListId, price(c.value), words(c.name, 64), pieces(c), department, 1);
}

function chosenDay(act) {
  return function (invoice, c) {
    act(invoice, c);
    Session.isDatePicked = true;
  };
}

exports.table = {
  item:          item,
  upcharge:      summed(function (t, c) { return c.on ? t.removePriceListItem(line(c), "up" + id(c)) : t.addUpcharge2(line(c), words(c.name, 64), pieces(c)), line(c); }),
  color:         descriptor("CO"),
  pattern:       descriptor("PA"),
  brand:         descriptor("BR"),
  quantity:      quantity,
  price:         summed(function (t, c) { t.overRidePrice(price(c.value), line(c)); return line(c); }),
  upchargePrice: summed(function (t, c) { t.overRidePrice(price(c.value), text.whole(c.upcharge)); return line(c); }),
  notes:         function (t, c) { t.attachNotes(line(c), words(c.value, 255)); return line(c); },
  answer:        function (t, c) { t.attachPromptReponse(line(c), words(c.value, 255)); return line(c); },
  redo:          summed(function (t, c) { t.setLineToRedo(line(c)); return line(c); }),
  remove:        summed(remove),
  charge:        summed(charge),
  deptDue:       chosenDay(function (t, c) { t.setDeptIdDueDate(text.whole(c.department), day(c.value)); }),
  ticketDue:     chosenDay(function (t, c) { t.setInvoiceDueDate(day(c.value)); t.setAllDepartmentDueDates(day(c.value)); }),
  preference:    preference,
  coupon:        summed(coupon),
  seal:          scanned,
  sealHere:      sealHere,
  sealNext:      chosenSeal,
  sealOff:       function (t, c) { t.removeNewHeatSeal(words(c.value, 40)); }
};

exports.run = function (invoice, name, c) {
  if (!Object.prototype.hasOwnProperty.call(exports.table, name)) throw new Error("There is no such click.");
  return exports.table[name](invoice, c);
};
