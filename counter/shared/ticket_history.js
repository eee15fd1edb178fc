// A ticket with all that happened to it, whatever became of it.
var text = Server.include("shared/text.js");
var desk = Server.include("shared/desk.js");
var shop = Server.include("shared/shop.js");

exports.states = {
  AC: "in the shop",
  OD: "out for delivery",
  FI: "collected",
  VO: "void"
};

exports.ticket = function(number) {
  return text.rows(
           Database.query(
             "select t.*, isnull(c.customername, '') as name, e.employeename as writtenBy, " +
             "isnull(dbo.pivotTicketRackLocationBrief(t.ticketNumber, ', '), '') as rack, " +
             "(select isnull(sum(f.amount), 0) from Refund f where f.ticketNumber = t.ticketNumber) as " +
             "refunded from Ticket t left join Customer c on c.customerSequenceNumber = " +
             "t.customerSequenceNumber " +
             "left join employee e on e.employeeid = t.createdByEmployeeId where t.ticketNumber = " +
             text.whole(number) + " and t.storeId = " + desk.place().store),
           function(field) {
             return {
               number: field("ticketNumber"),
               invoice: field("invoiceNumber"),
               status: field("ticketStatus"),
               state: exports.states[field("ticketStatus")] || String(field("ticketStatus")),
               isQuick: field("invoiceType") === "Q",
               customer: field("customerSequenceNumber"),
               name: field("name"),
               created: field("createdDate"),
               due: field("dueDate"),
               out: field("dateout"),
               total: field("netTotal"),
               paid: field("amountPaid"),
               tax: field("taxTotal"),
               refunded: field("refunded"),
               rack: field("rack"),
               by: field("writtenBy") || field("employeeName") || ""
             };
           })[0] ||
    null;
};

exports.lines = function(number) {
  return text.rows(
    Database.query(
      "select quantity, lineItemName, departmentName, ticketLineType as kind, lineItemTotal, heatseal, " +
      "itemNotes, pickedup, redo from TicketLineItem where ticketNumber = " + number +
      " order by displaySequence, lineItemNumber"),
    function(field) {
      return {
        quantity: field("quantity"),
        name: field("lineItemName") || field("departmentName") || "",
        kind: field("kind"),
        total: field("lineItemTotal"),
        seal: field("heatseal") || "",
        notes: field("itemNotes") || "",
        isOut: !!field("pickedup"),
        isRedo: !!field("redo")
      };
    });
};

var logTypes = {
  R: "handed out",
  M: "edited",
  A: "added",
  D: "taken off",
  C: "pieces changed",
  O: "price changed"
};
var kinds = {
  rack: "hung",
  off: "taken off the rack",
  "void": "void",
  refund: "money given back",
  copy: "receipt printed again",
  credit: "credit on account",
  told: "customer told",
  out: "pieces handed out",
  "in": "pieces brought back"
};

function events(sql, made) { return text.rows(Database.query(sql), made); }

// What happened, the first first: {when, what, who, amount}.
exports.log = function(ticket) {
  var number = ticket.number;
  var all = [{ when: ticket.created, what: "written", who: ticket.by, amount: null }];
  all = all.concat(
    events(
      "select logdate, logtype, employeename from ticketlog where ticketnumber = " + number,
      function(field) {
        return {
          when: field("logdate"),
          what: logTypes[field("logtype")] || String(field("logtype")),
          who: field("employeename") || "",
          amount: null
        };
      }),
    events(
      "select logDate, logType, quantity, itemName, deptName, amount " +
        "from TicketLogItem where ticketNumber = " + number,
      function(field) {
        return {
          when: field("logDate"),
          what: [
            logTypes[field("logType")] || field("logType"), ": ", field("quantity"), " ",
            field("itemName") || field("deptName") || ""
          ].join(""),
          who: "",
          amount: field("amount")
        };
      }),
    events(
      "select p.paymentDate, p.paymentType, p.paymentAmount, e.employeename as who from Payment p left " +
        "join employee e on e.employeeid = p.employeeId where p.ticketNumber = " + number,
      function(field) {
        return {
          when: field("paymentDate"),
          what: (field("paymentAmount") < 0 ? "given back, " : "paid, ") + field("paymentType"),
          who: field("who") || "",
          amount: field("paymentAmount")
        };
      }),
    events(
      "select pickupDate, e.employeename as who from TicketPickup p left join employee e on e.employeeid " +
        "= p.employeeId where p.ticketNumber = " + number,
      function(field) {
        return { when: field("pickupDate"), what: "collected", who: field("who") || "", amount: null };
      }),
    events(
      "select logDate, kind, detail, employeeName, amount from ShopLog where kind <> 'refund' and " +
        "ticketNumber = " + number,
      function(field) {
        return {
          when: field("logDate"),
          what: (kinds[field("kind")] || field("kind")) + (field("detail") ? ": " + field("detail") : ""),
          who: field("employeeName") || "",
          amount: field("amount")
        };
      }),
    events(
      "select queuedDate, channel, address, sentDate from CustomerMessage where ticketNumber = " + number,
      function(field) {
        return {
          when: field("sentDate") || field("queuedDate"),
          what: "message by " + field("channel") + " to " + field("address") +
            (field("sentDate") ? ", sent" : ", not sent yet"),
          who: "",
          amount: null
        };
      }));
  return all.map(function(one, at) {
              return [one.when ? one.when.getTime() : 0, at, one];
            })
    .sort(function(a, b) { return a[0] - b[0] || a[1] - b[1]; })
    .map(function(one) { return one[2]; });
};

exports.moment = function(date) {
  function two(number) { return (number < 10 ? "0" : "") + number; }
  return date ? text.day(date) + " " + two(date.getHours()) + ":" + two(date.getMinutes()) : "";
};

// ---- looking for tickets

exports.most = 60;

// Tickets by number, tag, heat seal or a part of the customer's name; on a day when one is said. The newest
// first.
exports.find = function(words, day) {
  var wanted = String(words || "").replace(/^[\s#]+|\s+$/g, "").substr(0, 40),
      conditions = ["t.storeId = " + desk.place().store];
  if (day) conditions.push("t.createdDate >= " + day[0] + " and t.createdDate < " + day[1]);
  if (wanted) {
    var literal = text.quoted(wanted), either = [];
    if (/^\d{1,9}$/.test(wanted)) either.push("t.ticketNumber = " + Number(wanted));
    either.push(
      "t.invoiceNumber = " + literal,
      "exists (select 1 from TicketTag g where g.ticketNumber = t.ticketNumber and g.tagNumber = " + literal +
        ")",
      "exists (select 1 from TicketLineItem l where l.ticketNumber = t.ticketNumber and l.heatseal = " +
        literal + ")");
    if (/[^\d]/.test(wanted) && wanted.length > 1)
      either.push(
        "t.customerSequenceNumber in (select c.customerSequenceNumber from Customer c where " +
        "c.customername like " + text.quoted("%" + wanted.replace(/[\[%_]/g, "") + "%") + ")");
    conditions.push("(" + either.join(" or ") + ")");
  }
  return text.rows(
    Database.query(
      "select top " + (exports.most + 1) +
      " t.ticketNumber, t.invoiceNumber, t.ticketStatus, t.createdDate, t.dateout, t.netTotal, " +
      "t.amountPaid, isnull(c.customername, '') as name from Ticket t " +
      "left join Customer c on c.customerSequenceNumber = t.customerSequenceNumber where " +
      conditions.join(" and ") + " order by t.createdDate desc, t.ticketNumber desc"),
    function(field) {
      return {
        number: field("ticketNumber"),
        invoice: field("invoiceNumber"),
        state: exports.states[field("ticketStatus")] || "",
        created: field("createdDate"),
        out: field("dateout"),
        total: field("netTotal"),
        paid: field("amountPaid"),
        name: field("name")
      };
    });
};
