// From the ticket on the screen to the tickets that are saved, and back.
var desk = Server.include("shared/desk.js");
var text = Server.include("shared/text.js");
var lines = Server.include("shared/lines.js");
var tickets = Server.include("shared/tickets.js");

function has(invoice, condition) {
  var found = invoice.lineItems.Clone();
  found.Filter = condition;
  return found.RecordCount > 0;
}

// The invoice with its parts, in the order in which they are saved.
exports.parts = function(invoice) {
  var parts = [];
  var children = invoice.invoicesDictionary;
  if (children)
    for (var key = 1; key <= children.Count; key++) parts.push(children.Item(key));
  if (!parts.length || !invoice.isInvoiceEmpty()) parts.push(invoice);
  return parts;
};

// clang-format off
var requirements = [
  ["color",    "isColorRequiredForLine",    "isColorSetForItem"],
  ["pattern",  "isPatternRequiredForLine",  "isPatternSetForItem"],
  ["upcharge", "isUpchargeRequiredForLine", "isUpchargeSetForItem"]
];
// clang-format on

// What the price list still demands of a garment.
exports.missing = function(invoice, line) {
  return requirements.filter(function(one) { return invoice[one[1]](line) && !invoice[one[2]](line); })
    .map(function(one) { return one[0]; });
};

// What stands in the way of finishing, in words; nothing when the ticket is whole.
exports.obstacles = function(invoice) {
  if (!invoice.lineItems.Clone().RecordCount && !invoice.isQuickInvoice())
    return ["Nothing is on the ticket."];
  var garments = invoice.lineItems.Clone(), all = [];
  garments.Filter = "itemType='IT'";
  text.rows(garments, function(field) { return { number: field("lineNumber"), name: field("itemName") }; })
    .forEach(function(line) {
      exports.missing(invoice, line.number)
        .forEach(function(one) { all.push(line.name + " needs a " + one + "."); });
    });
  if (invoice.isOverMaxDepartmentItems())
    all.push("A department has more pieces than it takes on one ticket.");
  return all;
};

// What the clerk is asked first: a bag of which another number of pieces was counted than has been itemised.
exports.questions = function(invoice) {
  return Object.keys(Session.counted)
    .map(function(department) {
      var counted = Session.counted[department],
          itemised = invoice.getDepartmentPieceCount(Number(department));
      if (counted === itemised) return "";
      return tickets.fieldWhere(invoice, "itemType='DE' and deptId=" + department, "deptName") + ": " +
        counted + " counted, " + itemised + " itemised.";
    })
    .filter(function(one) { return one; });
};

// ---- what the way through a split loses

// By price-list item, kind and name.
var carried = ["VIPQualified", "requiresHeatSeal", "minimumPrepay", "peNotes", "oneShot"];
function keyOf(field) { return [field("itemType"), field("lineItemId"), field("itemName")].join("|"); }

function carriedOf(invoice) {
  var marks = {};
  text.rows(invoice.lineItems.Clone(), function(field) { marks[keyOf(field)] = carried.map(field); });
  return marks;
}

function carry(invoice, marks) {
  var rows = invoice.lineItems.Clone();
  function field(name) { return rows.Fields(name).Value; }
  for (; !rows.EOF; rows.MoveNext()) {
    var values = marks[keyOf(field)];
    if (values) carried.forEach(function(column, at) { rows.Fields(column).Value = values[at]; });
  }
}

// Of a new order, each ticket earns who has sent the customer a credit for its own garments: all of it may
// lie in the parts.
var described = ["referralQualified", "createdByEmployeeId", "createdDate", "terminalID"];
function describeParts(invoice, marks) {
  exports.parts(invoice).forEach(function(part) {
    carry(part, marks);
    if (invoice.isAdd && part !== invoice) described.forEach(function(name) { part[name] = invoice[name]; });
  });
}

// The day of each department.
function daysOf(invoice) {
  var days = {};
  text.rows(invoice.lineItems.Clone(), function(field) {
    var day = field("dueDate"), department = field("deptId");
    if (day && field("itemType") === "IT" && !(days[department] > day)) days[department] = day;
  });
  return days;
}

// ---- finishing

function preference(invoice, name) {
  var keys = invoice.preferenceNames.Keys();
  for (var at = 0; at < keys.length; at++)
    if (invoice.preferenceNames.Item(keys[at]) === name) return invoice.preferences.Item(keys[at]);
  return "";
}

// What the ticket says of itself beside its lines. What is only sold is no order: it has no day.
function describe(invoice) {
  invoice.starchPref = preference(invoice, "Starch");
  invoice.finishPref = preference(invoice, "Finish");
  invoice.terminalID = desk.place().terminal;
  if (!invoice.isAdd) return;
  invoice.createdByEmployeeId = desk.employee().id;
  invoice.counterSaleOnly = has(invoice, "itemType='IT'") && !has(invoice, "itemType='IT' and saleOnly=0") &&
    !has(invoice, "itemType='AC'");
}

// ---- the days that the clerk has chosen

// Of a department: the day chosen for it, else the one chosen for the whole ticket, else nothing.
exports.chosenDay = function(
  department) { return Session.days && Session.days[department] || Session.ticketDay || ""; };

// Each department with the days of its lines and its latest garment.
function departmentsOf(invoice) {
  var found = {};
  text.rows(invoice.lineItems.Clone(), function(field) {
    var id = field("deptId"), date = field("dueDate"), kind = field("itemType");
    if (!date || !/^(IT|AC|DE)$/.test(kind)) return;
    var one = found[id] = found[id] || { id: id, days: [], garment: null };
    one.days.push(text.slashed(date));
    if (kind !== "AC" && !(one.garment && one.garment.date >= date))
      one.garment = { date: date, took: field("daysToProcess") };
  });
  return Object.keys(found).map(function(id) { return found[id]; });
}

function chargesWith(invoice, department) {
  var charges = invoice.lineItems.Clone();
  charges.Filter = "itemType='AC' and deptId=" + department.id;
  for (; !charges.EOF; charges.MoveNext()) {
    if (!(charges.Fields("dueDate").Value > department.garment.date)) continue;
    charges.Fields("dueDate").Value = department.garment.date;
    charges.Fields("daysToProcess").Value = department.garment.took;
  }
  invoice.calculateInvDueDate();
}

// Lines that have come since take the day that was chosen. Nobody waits for a charge: it is ready with the
// garments.
exports.keepDays = function(invoice) {
  departmentsOf(invoice).forEach(function(one) {
    var day = exports.chosenDay(one.id);
    if (!day) return one.garment ? chargesWith(invoice, one) : null;
    if (one.days.some(function(other) { return other !== day; })) invoice.setDeptIdDueDate(one.id, day);
  });
};

// | step               | why it stands where it stands                                                   |
// |--------------------|---------------------------------------------------------------------------------|
// | pricing            | before the days move: who is delivered early has asked for no rush              |
// | route and workload | a new ticket only, and only what has no day that the clerk chose                |
// | what a split loses | noted, and given to the parts                                                   |
// | split              | not of a bag, split when it was taken in: what comes out of it stays on its ticket |
//
// The result says what was and has moved: {leastAhead, paid, days, moved, starch, finish}; `moved` has, by
// department, {name, from, to, why}.
exports.apply = function(invoice) {
  describe(invoice);
  invoice.invoiceDone2();
  var outcome = {
    leastAhead: invoice.getMinimumPrepay(),
    paid: invoice.amountPaid,
    days: daysOf(invoice),
    moved: {},
    starch: invoice.starchPref,
    finish: invoice.finishPref
  };
  if (invoice.isAdd && !Session.ticketDay && !invoice.counterSaleOnly) adjustDays(invoice, outcome);
  if (!invoice.isQuickInvoice() && invoice.isSplitInvoice()) {
    var marks = carriedOf(invoice);
    invoice.splitInvoice(tickets.saveAction(invoice));
    describeParts(invoice, marks);
  }
  return outcome;
};

// Both operations move whole departments; those with a chosen day are moved back.
function adjustDays(invoice, outcome) {
  function step(move, why) {
    var before = daysOf(invoice);
    move();
    Object.keys(Session.days || {}).forEach(function(department) {
      if (before[department]) invoice.setDeptIdDueDate(Number(department), text.slashed(before[department]));
    });
    var after = daysOf(invoice);
    Object.keys(after).forEach(function(department) {
      if (text.day(after[department]) === text.day(before[department])) return;
      outcome.moved[department] = {
        name: tickets.fieldWhere(invoice, "deptId=" + department, "deptName"),
        from: outcome.days[department],
        to: after[department],
        why: why(before[department])
      };
    });
  }
  step(
    function() { invoice.adjustDueDatesForRoute(invoice.custSeqNumber); },
    function() { return "the route's next day"; });
  step(
    function() { invoice.adjustDueDatesForWorkload(); },
    function(full) { return text.day(full) + " is full"; });
}

// ---- and back

// A ticket as it was keyed in. What was paid on it goes to the parts of a split and does not come back from
// there by itself; a charge that was shared out comes back in pieces, with numbers that other lines have.
function kept(invoice) {
  return {
    lines: lines.take(invoice.lineItems),
    log: lines.take(invoice.ticketLogItems),
    number: invoice.currentLineNumber,
    paid: invoice.amountPaid
  };
}

function restore(invoice, before) {
  invoice.lineItems.Filter = 0;
  invoice.cancelDoneOperation();
  lines.put(invoice.lineItems, before.lines);
  lines.put(invoice.ticketLogItems, before.log);
  invoice.currentLineNumber = before.number;
  invoice.amountPaid = before.paid;
  invoice.counterSaleOnly = false;
  invoice.calculateInvDueDate();
  invoice.recalculatePrepay();
}

// A ticket that cannot be finished is as it was, and the error goes on.
exports.finish = function(invoice) {
  if (!invoice.isAdd) invoice.amountPaid = tickets.stored(invoice).paid;
  var before = kept(invoice);
  try {
    Session.finishing = exports.apply(invoice);
  } catch (error) {
    restore(invoice, before);
    throw error;
  }
  Session.finishing.before = before;
  Session.finished = true;
};

// A finished ticket that is worked on again is as if nothing had been finished.
exports.reopen = function() {
  if (!Session.invoice || !Session.finished) return;
  restore(Session.invoice, Session.finishing.before);
  Session.finished = false;
};

// What happened to a saved ticket while it was written on, in words; nothing when it is as it was.
exports.conflict = function(invoice) {
  if (invoice.isAdd) return "";
  var now = tickets.stored(invoice);
  if (now.isOut) return "This ticket has been handed out meanwhile.";
  if (now.changed !== Session.changed)
    return "This ticket has been changed meanwhile. Give it up and call it up again.";
  return now.paid !== Session.finishing.paid ?
    "Something was paid on this ticket meanwhile: finish it again." :
    "";
};

exports.isMissingSeals = function(invoice) {
  return exports.parts(invoice).some(function(
    part) { return has(part, "itemType='IT' and heatSeal='' and requiresHeatSeal=1 and saleOnly=0"); });
};

// The day on which all of a ticket is ready: the latest of its lines. Null when nothing is cleaned.
exports.readyDay = function(invoice) {
  var days = text.rows(invoice.lineItems.Clone(), function(field) { return field("dueDate"); })
               .filter(function(day) { return day; });
  return invoice.counterSaleOnly || !days.length ?
    null :
    days.reduce(function(latest, day) { return day > latest ? day : latest; });
};
