// Where tickets hang. A ticket with a place is ready; with its last place gone it is not.
var text = Server.include("shared/text.js");
var desk = Server.include("shared/desk.js");
var shop = Server.include("shared/shop.js");

// A place as it is scanned or keyed in; "" for what cannot be one. So long a number is a ticket that is not
// known.
exports.placeOf = function(value) {
  var place = String(value || "").toUpperCase().replace(/^\s+|\s+$/g, "");
  return /^[A-Z0-9][A-Z0-9 .\/-]{0,19}$/.test(place) && !/^\d{4,}$/.test(place) ? place : "";
};

// The shop's places; a shop that has named none takes any.
exports.places = function() {
  return text.rows(
    Database.query(
      "select place, isSlot from RackPlace where storeId = " + desk.place().store + " order by place"),
    function(field) { return { place: field("place"), isSlot: !!field("isSlot") }; });
};

// A ticket with what stands in the way of its hanging; null when there is none of that number in this shop.
exports.ticket = function(number) {
  var found = Database.query(
    "select t.ticketNumber, t.invoiceNumber, t.invoiceType, isnull(t.ticketStatus, '') as status, " +
    "t.dueDate, t.customerSequenceNumber as customer, isnull(c.customername, '') as name, " +
    "isnull(c.notifyBy, '') as notifyBy, " +
    "isnull(c.email, '') as email, isnull(c.MainAreaCode, '') + isnull(c.MainPhone, '') as phone, " +
    "isnull(dbo.pivotTicketRackLocationBrief(t.ticketNumber, ', '), '') as rack from Ticket t " +
    "left join Customer c on c.customerSequenceNumber = t.customerSequenceNumber where t.storeId = " +
    desk.place().store + " and t.ticketNumber = " + text.whole(number));
  return text.rows(found, function(field) {
    return {
      number: field("ticketNumber"),
      invoice: field("invoiceNumber"),
      isQuick: field("invoiceType") === "Q",
      status: field("status"),
      due: field("dueDate"),
      customer: field("customer"),
      name: field("name"),
      notifyBy: field("notifyBy"),
      email: field("email"),
      phone: field("phone"),
      rack: field("rack")
    };
  })[0] || null;
};

// Why a ticket cannot be put on the rack, or nothing.
exports.trouble = function(ticket) {
  if (!ticket) return "There is no such ticket in this shop.";
  if (ticket.status === "FI") return "Ticket " + ticket.invoice + " has been collected.";
  if (ticket.status === "VO") return "Ticket " + ticket.invoice + " is void.";
  if (ticket.status === "OD") return "Ticket " + ticket.invoice + " is out for delivery.";
  if (
    ticket.isQuick &&
    !shop.value(
      "select count(*) from TicketLineItem where ticketLineType = 'IT' and ticketNumber = " + ticket.number))
    return "The bag of ticket " + ticket.invoice + " is not itemised yet.";
  return "";
};

// The codes that the pieces of a ticket carry: tags and heat seals, each with its garment if it is known.
exports.codes = function(number) {
  var seals = text.rows(
    Database.query(
      "select heatseal as code, lineItemName as name from TicketLineItem where ticketLineType = 'IT' and " +
      "isnull(heatseal, '') <> '' and pickedup = 0 and ticketNumber = " + number),
    function(field) { return { code: field("code"), name: field("name") }; });
  return seals.concat(text.rows(
    Database.query(
      "select tagNumber as code, isnull(tagColor, '') as name from TicketTag where isnull(tagNumber, '') " +
      "<> '' and ticketNumber = " + number + " order by tagNumber"),
    function(field) { return { code: field("code"), name: "Tag " + field("name") }; }));
};

// Which of them have not been seen at assembly; empty also when none has, for then nobody assembles by
// scanning.
exports.missing = function(number) {
  var seen = text.rows(
    Database.query("select code from PieceScan where ticketNumber = " + number),
    function(field) { return field("code"); });
  if (!seen.length) return [];
  return exports.codes(number).filter(function(one) { return seen.indexOf(one.code) < 0; });
};

// What a scan means, tried in this order: a place that the shop has named, a ticket's or invoice's number, a
// piece of a ticket that is here, a place. The newest ticket of a number counts.
exports.read = function(value) {
  var code = String(value || "").replace(/^[\s#]+|\s+$/g, "").substr(0, 40), place = exports.placeOf(code),
      store = desk.place().store;
  if (!code) return {};
  if (place && exports.places().some(function(one) { return one.place === place; })) return { place: place };
  if (/^\d{1,20}$/.test(code)) {
    var ticket = shop.value(
      "select top 1 ticketNumber from Ticket where storeId = " + store + " and (invoiceNumber = " +
      text.quoted(code) + (code.length < 10 ? " or ticketNumber = " + Number(code) : "") +
      ") order by case when invoiceNumber = " + text.quoted(code) + " then 0 else 1 end, ticketNumber desc");
    if (ticket) return { ticket: ticket };
  }
  var piece = shop.value(
                "select top 1 t.ticketNumber from TicketLineItem l inner join Ticket t on t.ticketNumber = " +
                "l.ticketNumber where l.heatseal = " + text.quoted(code) + " and t.storeId = " + store +
                " and t.ticketStatus in ('AC', 'OD') order by t.ticketNumber desc") ||
    shop.value(
      "select top 1 t.ticketNumber from TicketTag g inner join Ticket t on t.ticketNumber = " +
      "g.ticketNumber where g.tagNumber = " + text.quoted(code) + " and t.storeId = " + store +
      " and t.ticketStatus in ('AC', 'OD') order by t.ticketNumber desc");
  if (piece) return { ticket: piece, piece: code };
  return place && !exports.places().length ? { place: place } : {};
};

// The other ticket in a slot, which holds one; 0 without.
function holder(place, number) {
  var isSlot = exports.places().some(function(one) { return one.place === place && one.isSlot; });
  return isSlot ?
    shop.value(
      "select top 1 t.invoiceNumber from rackassignment r inner join Ticket t on t.ticketNumber = " +
      "r.ticketnumber where r.racklocation = " + text.quoted(place) + " and t.storeId = " +
      desk.place().store + " and t.ticketStatus in ('AC', 'OD') and t.ticketNumber <> " + number) ||
      0 :
    0;
}

// Hangs a ticket at a place, also there or there alone. The result is {} or {problem}.
exports.put = function(number, value, isAlso) {
  var ticket = exports.ticket(number), place = exports.placeOf(value), places = exports.places();
  var trouble = exports.trouble(ticket);
  if (trouble) return { problem: trouble };
  if (!place) return { problem: "This is not a place of the rack: " + text.clean(value, 20) };
  if (places.length && !places.some(function(one) { return one.place === place; }))
    return { problem: "The shop has no place " + place + "." };
  var other = holder(place, number);
  if (other) return { problem: "Slot " + place + " holds ticket " + other + "." };
  var all =
    ["delete from rackassignment where ticketnumber = " + number +
     (isAlso ? " and racklocation = " + text.quoted(place) : "")];
  all.push(
    "insert into rackassignment (ticketnumber, racklocation) values (" + number + ", " + text.quoted(place) +
    ")");
  all.push(shop.logged("rack", {
    ticket: number,
    customer: ticket.customer,
    detail: (isAlso && ticket.rack ? "also at " :
               ticket.rack         ? ticket.rack + " to " :
                                     "") +
      place
  }));
  shop.book(all.concat(telling(ticket)));
  return {};
};

exports.takeOff = function(number) {
  var ticket = exports.ticket(number);
  if (!ticket) return { problem: "There is no such ticket in this shop." };
  if (!ticket.rack) return { problem: "Ticket " + ticket.invoice + " is not on the rack." };
  // What has not been said yet is not said; what has been is.
  shop.book([
    "delete from rackassignment where ticketnumber = " + number,
    "delete from CustomerMessage where takenDate is null and reason = 'ready' and ticketNumber = " + number,
    shop.logged("off", { ticket: number, customer: ticket.customer, detail: "from " + ticket.rack })
  ]);
  return {};
};

// A piece was seen at assembly.
exports.see = function(number, code) {
  var isKnown = exports.codes(number).some(function(one) { return one.code === code; });
  if (
    isKnown &&
    shop.value(
      "select count(*) from PieceScan where ticketNumber = " + number +
      " and code = " + text.quoted(code)) === 0)
    shop.book(
      ["insert into PieceScan (ticketNumber, code, scanDate) values (" + number + ", " + text.quoted(code) +
       ", getdate())"]);
  return {};
};

// ---- what customers are told

// A ticket's first place is what its customer is told about, once.
function telling(ticket) {
  var address = ticket.notifyBy === "email" ? ticket.email : ticket.notifyBy === "text" ? ticket.phone : "";
  if (
    !address ||
    shop.value(
      "select count(*) from CustomerMessage where reason = 'ready' and ticketNumber = " + ticket.number) > 0)
    return [];
  var place = desk.place(), body = place.storeName + ": your order " + ticket.invoice + " is ready.";
  return [
    "insert into CustomerMessage (storeId, customerSequenceNumber, ticketNumber, reason, channel, " +
    "address, body, queuedDate) values (" +
    [
      place.store, ticket.customer, ticket.number, "'ready'", text.quoted(ticket.notifyBy),
      text.quoted(address), text.quoted(body), "getdate()"
    ].join(", ") +
    ")"
  ];
}

function oneLine(value) { return String(value).replace(/[\r\n]+/g, " "); }
function bytes(value) { return unescape(encodeURIComponent(value)); }

exports.hasOutlet = function() { return !!Server.setting("messages"); };

// What a message is marked with while it is handed on.
exports.isAtWork = function(problem) { return /^at work /.test(problem || ""); };

// Hands the next message of the queue on. It is marked before: one that was cut short is never sent again by
// itself. The result is {sent, left} or {problem}; nothing sent means that nothing waits.
exports.sendNext = function() {
  var store = desk.place().store,
      waiting = " from CustomerMessage where takenDate is null and storeId = " + store;
  if (!exports.hasOutlet()) return { sent: 0, left: shop.value("select count(*)" + waiting) };
  var next = text.rows(
    Database.query("select top 1 messageId, channel, address, body" + waiting + " order by messageId"),
    function(field) {
      return {
        id: field("messageId"),
        channel: field("channel"),
        address: field("address"),
        body: field("body")
      };
    })[0];
  if (!next) return { sent: 0, left: 0 };
  // Another counter may have come first: only one of the two finds its own mark. Nothing is locked while the
  // outlet works.
  var mark = "at work " + Math.random().toString(36).substr(2, 12);
  Database.execute(
    "update CustomerMessage set takenDate = getdate(), problem = " + text.quoted(mark) +
    " where takenDate is null and messageId = " + next.id);
  if (shop.value("select problem from CustomerMessage where messageId = " + next.id) !== mark)
    return { sent: 0, left: 0 };
  try {
    Server.deliver(
      "messages",
      bytes("Channel: " + next.channel + "\nTo: " + oneLine(next.address) + "\n\n" + next.body + "\n"));
  } catch (error) {
    Database.execute(
      "update CustomerMessage set problem = " + shop.literal(error.description || error.message, 255) +
      " where messageId = " + next.id);
    return {
      sent: 0,
      problem: String(error.description || error.message),
      left: shop.value("select count(*)" + waiting)
    };
  }
  Database.execute(
    "update CustomerMessage set sentDate = getdate(), problem = null where messageId = " + next.id);
  return { sent: 1, left: shop.value("select count(*)" + waiting) };
};

// Back into the queue, when the clerk says so: one that was refused, or of which nobody knows.
exports.again = function(id) {
  Database.execute(
    "update CustomerMessage set takenDate = null, problem = null where sentDate is null and messageId = " +
    id);
  return {};
};

// Said by word of mouth, or known to be sent.
exports.told = function(ticket) {
  var one = exports.ticket(ticket);
  if (!one) return { problem: "There is no such ticket in this shop." };
  shop.book([
    "update CustomerMessage set takenDate = isnull(takenDate, getdate()), sentDate = getdate(), problem " +
      "= null where sentDate is null and reason = 'ready' and ticketNumber = " + one.number,
    shop.logged("told", { ticket: one.number, customer: one.customer })
  ]);
  return {};
};
