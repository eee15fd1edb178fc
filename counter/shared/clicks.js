// What a click on the entry screen does to the ticket. A row is a click's name and what it calls; `c` holds
// what the browser sent: line, id, name, group, quantity, value, department, upcharge, sure. The result, if
// any, is the line that is selected from then on, or {ask}: a question, whose answer sends the click again
// with `sure`.
var text = Server.include("shared/text.js");
var shop = Server.include("shared/shop.js");
var tickets = Server.include("shared/tickets.js");
var pieceCounts = Server.include("shared/piece_counts.js");
var undo = Server.include("shared/undo.js");
var coupons = Server.include("shared/coupons.js");
var finishing = Server.include("shared/finishing.js");

function pieces(c) {
  if (c.quantity === undefined) return 1;
  var count = text.whole(c.quantity);
  if (count < 1 || count > 999) throw new Error("This is not a number of pieces: " + words(c.quantity, 20));
  return count;
}
// More than this is asked about; a note of a garment must fit on the receipt behind the garment's name.
var manyPieces = 99, noteSize = 180;
function line(c) { return text.whole(c.line); }
function id(c) { return text.whole(c.id); }
// What was typed, without the signs of mark-up: some fragments carry notes and names as they stand.
function words(value, size) { return text.clean(value, size); }
// What is kept is kept whole or not at all.
function whole(value, size) {
  var typed = text.clean(value, 2000);
  if (typed.length > size)
    throw new Error("This is too long: " + typed.length + " letters, and " + size + " are taken.");
  return typed;
}
function price(value) {
  var dollars = text.dollars(value);
  if (dollars === null) throw new Error("This is not a price: " + words(value, 20));
  return dollars;
}

function day(value) {
  var parts = /^(\d{4})-(\d{2})-(\d{2})$/.exec(String(value));
  if (
    !parts ||
    new Date(Number(parts[1]), Number(parts[2]) - 1, Number(parts[3])).getDate() !== Number(parts[3]))
    throw new Error("This is not a date: " + words(value, 20));
  return Number(parts[2]) + "/" + Number(parts[3]) + "/" + parts[1];
}

// The operations that leave the taxes as they were are followed by the sums, so that the total is right after
// a click.
function summed(act) {
  return function(invoice, c) {
    var chosen = act(invoice, c);
    invoice.recalculatePrepay();
    return chosen;
  };
}

// A color or pattern by the price of the garment's price list where it has one, else as it stands for all
// garments.
var priced = { CO: "addColor", PA: "addPattern" };
function isPriced(invoice, c, kind) {
  return !Database
            .query(
              "select descriptorName from ItemDescriptorPrice where priceListItemId = " +
              (fieldOf(invoice, line(c), "lineItemId") || 0) + " and descriptorType = '" + kind +
              "' and descriptorName = " + text.quoted(words(c.name, 64)))
            .EOF;
}

// A brand may be new to the shop. The taxes are looked up by the name of a color or pattern as it stands, so
// it is one of the shop's own, and one that can stand there.
function checkName(kind, name) {
  if (kind === "BR") return;
  var isUnknown = Database.query("select descriptorid from descriptor where name = " + text.quoted(name)).EOF;
  if (isUnknown || name.indexOf("'") >= 0)
    throw new Error("This is not a name that can be put on a garment: " + name);
}

// A descriptor of a kind is put on, or taken off when it is pressed again.
function descriptor(kind) {
  return summed(function(invoice, c) {
    if (fieldOf(invoice, line(c), "itemType") !== "IT") throw new Error("Choose a garment first.");
    checkName(kind, whole(c.name, 64));
    if (c.on) invoice.removeDescriptor(line(c), words(c.name, 64), kind);
    else if (priced[kind] && isPriced(invoice, c, kind))
      invoice[priced[kind]](line(c), words(c.name, 64), invoice.getLineQuantity(line(c)), true);
    else invoice.addDescriptor(line(c), words(c.name, 64), kind, 1);
    return line(c);
  });
}

var fieldOf = tickets.fieldOf, lineOf = tickets.lineOf;

// A scanned seal finds its garment on the ticket, brings back the one that it was pressed into, or waits for
// the garment that is described next. The library takes a seal as a scanner reads it, so nothing else is let
// through.
function scanned(invoice, c) {
  var seal = whole(c.value, 20);
  if (!/^[A-Za-z0-9-]+$/.test(seal)) throw new Error("This is not a heat seal.");
  var here = lineOf(invoice, "heatSeal='" + seal + "'");
  if (here > 0) return here;
  var why = ByRef("");
  if (!invoice.isHeatSealValid(seal, why)) throw new Error(why.value);
  var known = invoice.addItemByHeatSeal(seal);
  if (known < 1) return invoice.pushNewHeatSeal(seal), line(c);
  try {
    checkRoom(invoice, [
      invoice.getDepartmentPieceCount(fieldOf(invoice, known, "deptId")), fieldOf(invoice, known, "deptId")
    ]);
  } catch (error) {
    invoice.deleteItem(known);
    throw error;
  }
  return known;
}

// The first of the waiting seals goes on a garment that is there already; without one the garment's own comes
// off.
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
  text.rows(
    Database.query(
      "select departmentId, isnull(qtyInInventory, 1) as pack from PriceListItem where priceListItemId = " +
      id(c)),
    function(field) {
      checkRoom(
        invoice,
        invoice.checkAllowableItemCountPerDept(
          "", pieces(c), field("pack"), field("departmentId"), "getItemDetails"));
    });
}

// A garment of the same item of which nothing more has been said: one more of it counts on its line.
function plainLine(invoice, item) {
  var lines = invoice.lineItems.Clone(), children = invoice.lineItems.Clone(), found = 0;
  lines.Filter = "itemType='IT' and redo=0 and lineItemId=" + item;
  text.rows(lines, function(field) {
    children.Filter = "parentLineNumber=" + field("lineNumber");
    var isPlain = !field("heatSeal") && !field("notes") && !field("promptResponse") &&
      field("unitPrice") === field("originalUnitPrice") && children.EOF;
    if (isPlain) found = field("lineNumber");
  });
  return found;
}

function item(invoice, c) {
  if (pieces(c) > manyPieces && !c.sure) return { ask: pieces(c) + " pieces?" };
  checkRoomForItem(invoice, c);
  var seal = invoice.getNewHeatSealCount() > 0 ? invoice.getSelectedHeatSeal() : "";
  var count = seal ? 1 : pieces(c);
  if (c.redo) return sealed(invoice, invoice.addRedoItem(id(c), count), seal);
  var like = !seal && !c.different && invoice.groupSimilarItems ? plainLine(invoice, id(c)) : 0;
  if (!like) return sealed(invoice, invoice.addItem(id(c), 0, count), seal);
  invoice.changeQuantity(invoice.getLineQuantity(like) + count, like);
  return like;
}

function sealed(invoice, added, seal) {
  if (added > 0 && seal) {
    invoice.addHeatSeal(added, seal);
    invoice.removeNewHeatSeal(seal);
  }
  return added;
}

// One more garment of the chosen line's item, on a line of its own.
function different(invoice, c) {
  var item_ = fieldOf(invoice, line(c), "lineItemId");
  if (fieldOf(invoice, line(c), "itemType") !== "IT") throw new Error("Choose a garment first.");
  return item(invoice, { id: item_, quantity: 1, different: true });
}

// `each` says whether what hangs on every piece hangs on the new ones too.
function quantity(invoice, c) {
  if (pieces(c) > manyPieces && !c.sure) return { ask: pieces(c) + " pieces?" };
  checkRoom(invoice, invoice.checkAllowableItemCountPerDept(String(line(c)), pieces(c), 1, 0, ""));
  var question = pieceCounts.question(invoice, line(c), pieces(c));
  if (question && c.each === undefined)
    return { choose: question, values: [["Yes", { each: true }], ["No", { each: false }]] };
  pieceCounts.change(invoice, line(c), pieces(c), c.each !== false);
  return line(c);
}

// A word that was typed for the chosen garment: an upcharge of its item, a color, a pattern or a brand, by
// the beginning of its name; else the item that the page found for it.
function describe(invoice, c) {
  var typed = text.quoted(words(c.value, 40).replace(/[\[%_]/g, "") + "%"),
      item_ = line(c) ? fieldOf(invoice, line(c), "lineItemId") || 0 : 0;
  var found = Database.query(
    "select itemDescriptorPriceId as id, descriptorName as name from ItemDescriptorPrice where disabled " +
    "= 0 and descriptorType = 'UP' and priceListItemId = " + item_ + " and descriptorName like " + typed +
    " order by displaysequence");
  if (item_ && !found.EOF)
    return exports.table.upcharge(
      invoice, { line: c.line, id: found.Fields("id").Value, name: found.Fields("name").Value });
  var kinds = Database.query(
    "select g.type, d.name from descriptor d inner join descriptorgroup g on g.descriptorgroupid = " +
    "d.descriptorgroupid where d.name like " + typed +
    " order by case g.type when 'CO' then 1 when 'PA' then 2 else 3 end, d.displayorder");
  if (item_ && !kinds.EOF)
    return descriptor(String(kinds.Fields("type").Value).toUpperCase())(
      invoice, { line: c.line, name: kinds.Fields("name").Value });
  if (text.whole(c.item)) return item(invoice, { id: c.item, quantity: 1 });
  throw new Error("Nothing is called " + words(c.value, 40) + (item_ ? "." : ", or choose a garment first."));
}

// The books take a preference as it stands: one of its options, or plain words where it has none.
function preference(invoice, c) {
  var value = whole(c.value, 64),
      known = Database.query(
        "select isnull(options, '') as options from customerpreferencetype where name = " +
        text.quoted(words(c.name, 64)));
  if (known.EOF) throw new Error("There is no such preference.");
  var options = known.Fields("options").Value;
  if (options ? options.split("|").indexOf(value) < 0 : !/^[\w .,:\/-]*$/.test(value))
    throw new Error("Only letters, digits and . , : / - are taken here.");
  invoice.setCustomerPreferenceByName(words(c.name, 64), value);
}

function remove(invoice, c) {
  var kind = fieldOf(invoice, line(c), "itemType"), name = fieldOf(invoice, line(c), "itemName");
  if (!kind) return 0;
  undo.keep(invoice, name + " removed");
  if (kind === "CU") return coupons.takeOff(invoice, fieldOf(invoice, line(c), "lineItemId")), 0;
  return invoice.deleteItem(line(c)), 0;
}

function redo(invoice, c) {
  undo.keep(invoice, fieldOf(invoice, line(c), "itemName") + " made a redo");
  invoice.setLineToRedo(line(c));
  return line(c);
}

function upcharge(invoice, c) {
  if (c.on) invoice.removePriceListItem(line(c), "up" + id(c));
  else invoice.addUpcharge2(line(c), words(c.name, 64), pieces(c));
  return line(c);
}

function upchargePrice(invoice, c) {
  invoice.overRidePrice(price(c.value), text.whole(c.upcharge));
  return line(c);
}

function charge(invoice, c) {
  var department = text.whole(c.department);
  checkRoom(invoice, invoice.checkAllowableItemCountPerDept("", pieces(c), 1, department, "getItemDetails"));
  if (!whole(c.name, 64)) throw new Error("What is charged?");
  if (Database
        .query(
          "select departmentid from department where disabled = 0 and departmentid = " + department +
          " and pricelistid = " + invoice.priceListId)
        .EOF)
    throw new Error("There is no such department.");
  invoice.addChargeLineNew(
    invoice.storeNumber, invoice.priceListId, price(c.value), words(c.name, 64), pieces(c), department, 1);
}

function deptDue(invoice, c) {
  Session.days[text.whole(c.department)] = day(c.value);
  invoice.setDeptIdDueDate(text.whole(c.department), day(c.value));
}

function ticketDue(invoice, c) {
  Session.ticketDay = day(c.value);
  Session.days = {};
  invoice.setInvoiceDueDate(day(c.value));
  invoice.setAllDepartmentDueDates(day(c.value));
}

// Clicks that ask for a right of the clerk.
var rights = { price: "price", upchargePrice: "price", redo: "redo" };

// clang-format off
exports.table = {
  item:          item,
  upcharge:      summed(upcharge),
  color:         descriptor("CO"),
  pattern:       descriptor("PA"),
  brand:         descriptor("BR"),
  different:     different,
  describe:      describe,
  quantity:      quantity,
  price:         summed(function(t, c) { t.overRidePrice(price(c.value), line(c)); return line(c); }),
  upchargePrice: summed(upchargePrice),
  notes:         function(t, c) { t.attachNotes(line(c), whole(c.value, noteSize)); return line(c); },
  answer:        function(t, c) { t.attachPromptReponse(line(c), whole(c.value, noteSize)); return line(c); },
  redo:          summed(redo),
  remove:        summed(remove),
  charge:        summed(charge),
  deptDue:       deptDue,
  ticketDue:     ticketDue,
  preference:    preference,
  coupon:        summed(function(t, c) { coupons.press(t, id(c)); }),
  undo:          summed(function(t) { undo.back(t); }),
  seal:          scanned,
  sealHere:      sealHere,
  sealNext:      chosenSeal,
  sealOff:       function(t, c) { t.removeNewHeatSeal(words(c.value, 40)); }
};
// clang-format on

// Days and coupons that were chosen hold after every click; what cannot hold is said.
exports.run = function(invoice, name, c) {
  if (!Object.prototype.hasOwnProperty.call(exports.table, name)) throw new Error("There is no such click.");
  var right = rights[name];
  if (right && !shop.may(right))
    throw new Error("You may not " + shop.wordsOf(right) + ". Ask somebody who may to sign in.");
  var result = exports.table[name](invoice, c);
  if (result && result.ask || result && result.choose) return result;
  finishing.keepDays(invoice);
  coupons.keep(invoice);
  return result;
};
