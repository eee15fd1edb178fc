// A customer's own data: what a form says, whether it can stand, and how it is written.
var text = Server.include("shared/text.js");
var desk = Server.include("shared/desk.js");
var shop = Server.include("shared/shop.js");

exports.days = ["Mon", "Tue", "Wed", "Thu", "Fri", "Sat", "Sun"];

// Column, name on the form, most letters.
// clang-format off
var words = [
  ["firstName",       "First name",    64],
  ["lastName",        "Last name",     64],
  ["employer",        "Company",       64],
  ["email",           "E-mail",       128],
  ["billingAddress1", "Street",        64],
  ["billingAddress2", "Flat, floor",   64],
  ["billingCity",     "City",          64],
  ["billingState",    "State",          2],
  ["billingZipCode",  "ZIP code",      10],
  ["notes",           "Notes",        255]
];
// clang-format on
var marks = ["vipEligible", "taxExempt", "surchargeExempt", "permanentaccount"];
exports.words = words;

function trimmed(value, size) { return text.clean(value, size).replace(/^\s+|\s+$/g, ""); }

// A phone number in two parts; null when it is none. Seven digits have no area of their own.
exports.phone = function(value) {
  var digits = String(value || "").replace(/[\s().+-]/g, "");
  if (digits.length === 11 && digits.charAt(0) === "1") digits = digits.substr(1);
  if (!digits) return { area: "", local: "" };
  if (!/^(\d{7}|\d{10})$/.test(digits)) return null;
  return { area: digits.length === 10 ? digits.substr(0, 3) : "", local: digits.substr(-7) };
};

exports.lists = function() {
  return text.rows(
    Database.query(
      "select distinct p.PriceListId, isnull(p.name, '') as name from PriceList p inner join Department " +
      "d on d.pricelistid = p.PriceListId where p.disable = 0 and d.storeid = " + desk.place().store +
      " order by p.PriceListId"),
    function(field) {
      return [field("PriceListId"), field("name") || "List " + field("PriceListId")];
    });
};
exports.routes = function() {
  return text.rows(
    Database.query("select routeNumber, isnull(routeName, '') as name from route order by routeNumber"),
    function(field) {
      return [field("routeNumber"), field("name") || "Route " + field("routeNumber")];
    });
};
exports.preferenceTypes = function() {
  return text.rows(
    Database.query(
      "select customerpreferencetypeid as id, name, isnull(options, '') as options, isnull([default], " +
      "'') as usual from customerpreferencetype order by displayorder"),
    function(field) {
      return {
        id: field("id"),
        name: field("name"),
        options: field("options") ? field("options").split("|") : [],
        usual: field("usual")
      };
    });
};

// A stored customer as the form shows it; null when there is none.
exports.stored = function(id) {
  var found = Database.query("select * from Customer where customerSequenceNumber = " + text.whole(id));
  if (found.EOF) return null;
  function field(name) {
    var value = found.Fields(name).Value;
    return value === null ? "" : value;
  }
  var person = {
    id: text.whole(id),
    changes: field("changeCount"),
    mergedInto: field("mergedInto"),
    phone: field("MainAreaCode") + field("MainPhone"),
    otherPhone: field("AltAreaCode") + field("AltPhone"),
    list: field("defaultPriceListId"),
    route: field("routenumber"),
    notifyBy: field("notifyBy"),
    company: field("customername"),
    deliveries: {},
    preferences: {}
  };
  words.forEach(function(one) { person[one[0]] = field(one[0]); });
  marks.forEach(function(one) { person[one] = !!field(one); });
  // A name that was entered as a whole is a company's or an older customer's.
  if (!person.firstName && !person.lastName) person.lastName = person.company;
  var delivery = Database.query(
    "select * from customerdelivery where active = 1 and customersequencenumber = " + person.id);
  if (!delivery.EOF) {
    person.route = delivery.Fields("routeid").Value;
    exports.days.forEach(function(day) { person.deliveries[day] = delivery.Fields("deliver" + day).Value; });
  }
  text.rows(
    Database.query(
      "select customerpreferencetypeid as id, value from customerpreference where ticketnumber is null " +
      "and customersequencenumber = " + person.id),
    function(field) { person.preferences[field("id")] = field("value"); });
  return person;
};

// What the form says.
exports.given = function(form) {
  var person = {
    id: text.whole(form.id),
    changes: text.whole(form.changes),
    phone: trimmed(form.phone, 20),
    otherPhone: trimmed(form.otherPhone, 20),
    list: text.whole(form.list),
    route: text.whole(form.route),
    notifyBy: trimmed(form.notifyBy, 10),
    deliveries: {},
    preferences: {}
  };
  words.forEach(function(one) { person[one[0]] = trimmed(form[one[0]], one[2]); });
  marks.forEach(function(one) { person[one] = form[one] === "1"; });
  exports.days.forEach(function(
    day) { person.deliveries[day] = Math.min(Math.max(text.whole(form["deliver" + day]), 0), 3); });
  exports.preferenceTypes().forEach(function(
    one) { person.preferences[one.id] = trimmed(form["preference" + one.id], 64); });
  return person;
};

exports.fullName = function(
  person) { return (person.firstName + " " + person.lastName).replace(/^\s+|\s+$/g, ""); };

// What keeps it from being saved, or nothing.
exports.trouble = function(person) {
  if (!exports.fullName(person)) return "A name is missing.";
  if (!exports.phone(person.phone) || !exports.phone(person.otherPhone))
    return "A phone number has seven digits, or ten with its area.";
  if (person.email && !/^[^\s@]+@[^\s@]+\.[^\s@]+$/.test(person.email))
    return "This is no e-mail address: " + person.email;
  if (person.notifyBy === "email" && !person.email) return "To tell by e-mail, an address is needed.";
  if (person.notifyBy === "text" && !person.phone) return "To tell by text, a phone number is needed.";
  if (person.list && !exports.lists().some(function(one) { return one[0] === person.list; }))
    return "This shop has no such price list.";
  if (person.route && !exports.routes().some(function(one) { return one[0] === person.route; }))
    return "There is no such route.";
  return "";
};

// Others who are likely the same: the same phone, or the same name.
exports.doubles = function(person) {
  var phone = exports.phone(person.phone), conditions = [];
  if (phone && phone.local)
    conditions.push(
      "(replace(isnull(MainPhone, ''), '-', '') = " + text.quoted(phone.local) +
      (phone.area ? " and isnull(MainAreaCode, '') in ('', " + text.quoted(phone.area) + ")" : "") + ")");
  conditions.push(
    "(isnull(lastName, '') = " + text.quoted(person.lastName) +
    " and isnull(firstName, '') = " + text.quoted(person.firstName) + ")");
  return text.rows(
    Database.query(
      "select top 5 customerSequenceNumber as id from Customer where mergedInto is null and " +
      "customerSequenceNumber <> " + person.id + " and (" + conditions.join(" or ") +
      ") order by customerSequenceNumber"),
    function(field) { return field("id"); });
};

function values(person) {
  var main = exports.phone(person.phone), other = exports.phone(person.otherPhone), all = {};
  words.forEach(function(one) { all[one[0]] = shop.literal(person[one[0]], one[2]); });
  marks.forEach(function(one) { all[one] = person[one] ? 1 : 0; });
  all.customername = text.quoted(exports.fullName(person).substr(0, 128));
  all.MainAreaCode = text.quoted(main.area);
  all.MainPhone = text.quoted(main.local);
  all.AltAreaCode = text.quoted(other.area);
  all.AltPhone = text.quoted(other.local);
  all.defaultPriceListId = person.list || "null";
  all.notifyBy =
    text.quoted(person.notifyBy === "text" || person.notifyBy === "email" ? person.notifyBy : "");
  return all;
}

// Customers are on a route by their days where the shop's routes have the days of each customer (version 2),
// else by the route's number alone.
function routing(person, id) {
  var version = shop.value("select routeVersion from miscsetup where storeid = " + desk.place().store);
  var all = [
    "update customerdelivery set active = 0 where customersequencenumber = " + id,
    "update Customer set routenumber = " + (person.route && version !== 2 ? person.route : "null") +
      " where customerSequenceNumber = " + id
  ];
  if (!person.route) return all;
  var known = shop.value("select id from customerdelivery where customersequencenumber = " + id);
  var columns = exports.days.map(function(day) { return "deliver" + day; }),
      counts = exports.days.map(function(day) { return person.deliveries[day]; });
  if (known)
    all.push(
      "update customerdelivery set active = 1, routeid = " + person.route +
      columns.map(function(one, at) { return ", " + one + " = " + counts[at]; }).join("") +
      " where id = " + known);
  else
    all.push(
      "insert into customerdelivery (id, customersequencenumber, routeid, active, " + columns.join(", ") +
      ") values (" + [shop.next("customerdelivery", "id"), id, person.route, 1].concat(counts).join(", ") +
      ")");
  return all;
}

function preferring(person, id) {
  var all = ["delete from customerpreference where ticketnumber is null and customersequencenumber = " + id];
  exports.preferenceTypes().forEach(function(one) {
    var value = person.preferences[one.id];
    if (value && (!one.options.length || one.options.indexOf(value) >= 0))
      all.push(
        "insert into customerpreference (customerpreferencetypeid, customersequencenumber, ticketnumber, " +
        "value) values (" + one.id + ", " + id + ", null, " + text.quoted(value) + ")");
  });
  return all;
}

// Enters a customer, or changes one. The result is {id}, or {problem} when somebody else has changed this one
// since.
exports.save = function(person) {
  var id = person.id, all = values(person), names = Object.keys(all), first;
  if (!id) {
    id = shop.next("Customer", "customerSequenceNumber");
    first = "insert into Customer (customerSequenceNumber, customerID, createdDate, " + names.join(", ") +
      ") values (" + id + ", " + text.quoted("C" + ("000" + id).slice(-Math.max(4, String(id).length))) +
      ", getdate(), " + names.map(function(one) { return all[one]; }).join(", ") + ")";
  } else {
    var stands = shop.value("select changeCount from Customer where customerSequenceNumber = " + id);
    if (stands !== person.changes)
      return {
        problem:
          "Somebody has changed this customer meanwhile. What you keyed in is still here: compare it " +
          "with the customer's page, then save again.",
        changes: stands
      };
    first = "update Customer set changeCount = changeCount + 1, " +
      names.map(function(one) { return one + " = " + all[one]; }).join(", ") +
      " where customerSequenceNumber = " + id;
  }
  shop.book([first].concat(
    routing(person, id), preferring(person, id),
    shop.logged("customer", { customer: id, detail: person.id ? "changed" : "entered" })));
  return { id: id };
};

// ---- two that are one

// Table and column of what belongs to a customer and goes over.
var owned = [
  ["Ticket", "customerSequenceNumber"], ["Payment", "customerSequenceNumber"],
  ["MiscCharge", "customerSequenceNumber"], ["TicketPickup", "customerSequenceNumber"],
  ["cardpayment", "customersequencenumber"], ["xcaccount", "customersequencenumber"],
  ["XChargeTransaction", "customerSequenceNumber"], ["PaymentBatch", "CustomerSequenceNumber"],
  ["deliverywillcall", "customersequencenumber"], ["CustomerMessage", "customerSequenceNumber"],
  ["Refund", "customerSequenceNumber"], ["loyaltyCustomerOffers", "customerSequenceNumber"]
];

// Everything of `from` becomes `into`'s; the entry stays and says where it went.
exports.merge = function(into, from) {
  if (into.id === from.id) return { problem: "This is the same customer." };
  if (from.mergedInto || into.mergedInto) return { problem: "One of the two has been merged already." };
  var all = owned.map(function(one) {
    return "update " + one[0] + " set " + one[1] + " = " + into.id + " where " + one[1] + " = " + from.id;
  });
  all.push(
    "update customerpreference set customersequencenumber = " + into.id +
    " where ticketnumber is not null and customersequencenumber = " + from.id);
  all.push("update customerreferral set referredby = " + into.id + " where referredby = " + from.id);
  all.push("update customerdelivery set active = 0 where customersequencenumber = " + from.id);
  all.push(
    "update Customer set visitCount = visitCount + isnull((select sum(f.visitCount) from Customer f " +
    "where f.customerSequenceNumber = " + from.id + "), 0), changeCount = changeCount + 1" +
    (from.permanentaccount ? ", permanentaccount = 1" : "") + " where customerSequenceNumber = " + into.id);
  all.push(
    "update Customer set mergedInto = " + into.id +
    ", changeCount = changeCount + 1 where customerSequenceNumber = " + from.id);
  all.push(shop.logged(
    "merge", { customer: into.id, detail: "took over " + exports.fullName(from) + " (" + from.id + ")" }));
  all.push(shop.logged(
    "merge", { customer: from.id, detail: "went over to " + exports.fullName(into) + " (" + into.id + ")" }));
  shop.book(all);
  return { id: into.id };
};
