// What a shop sets up, one entry a kind of row. `table` and `keys` say where it stands: the first key that
// `number` names is counted up, the others are given by the shop, the row it belongs to (`of`) or a field. A
// kind that tickets remember is never taken away: it has a field that puts it aside.
//
// A field is [column, label, type, more]. Types are words, money, percent, whole, check, choice, day, rights,
// pin and links (rows of another table, chosen from a list). `more` may have size, needed, initial, choices,
// isListed, note.
var text = Server.include("shared/text.js");
var desk = Server.include("shared/desk.js");
var shop = Server.include("shared/shop.js");

function store() { return desk.place().store; }
function pairs(sql) {
  return text.rows(Database.query(sql), function(field) {
    return [field("id"), String(field("name") || field("id"))];
  });
}

function lists() { return pairs("select PriceListId as id, name from PriceList order by PriceListId"); }
function departments() {
  return pairs(
    "select departmentID as id, name from Department where storeid = " + store() +
    " order by displaySequence, departmentID");
}
function departmentNames() {
  return departments().map(function(one) { return [one[1], one[1]]; });
}
function taxes() {
  return pairs(
    "select taxCode as id, description as name from Tax where storeID = " + store() + " order by taxCode");
}
function surcharges() {
  return pairs(
    "select surchargeCode as id, min(name) as name from Surcharge group by surchargeCode order by surchargeCode");
}
function groups() {
  return pairs("select descriptorgroupid as id, name from descriptorgroup order by displayorder");
}
exports.departments = departments;

// Taxes or surcharges that the department of an item has: a new item begins with them.
function ofDepartment(table, column) {
  return function(of) {
    return text.rows(
      Database.query("select " + column + " as id from " + table + " where departmentid = " + of),
      function(field) { return field("id"); });
  };
}
function ofItem(table, column) {
  return function(of) {
    return text.rows(
      Database.query("select " + column + " as id from " + table + " where priceListItemID = " + of),
      function(field) { return field("id"); });
  };
}
function shopDays() {
  return shop.value("select isnull(defaultProcessingDays, 0) from Store where storeId = " + store());
}
// An item has days of its own: without any it would be ready at once.
function departmentDays(of) {
  return of ?
    shop.value(
      "select isnull(daysToProcess, " + shopDays() + ") from Department where departmentID = " + of) :
    shopDays();
}
exports.shopDays = shopDays;
function all(choices) {
  return function() { return choices().map(function(one) { return one[0]; }); };
}

var days = [
  [1, "Monday"], [2, "Tuesday"], [3, "Wednesday"], [4, "Thursday"], [5, "Friday"], [6, "Saturday"],
  [7, "Sunday"]
];
var tenders = ["Cash", "Check", "Credit Card", "GiftCard", "On Account", "Coupon"].map(function(one) {
  return [one, one];
});
function of (name, value) {
  var key = {};
  key[name] = value;
  return key;
}
function inStore(column) {
  return function() { return of(column, store()); };
}
function extraKey(row) {
  return {
    priceListItemID: row.priceListItemId,
    descriptorName: text.quoted(row.descriptorName),
    descriptorType: text.quoted(row.descriptorType)
  };
}
function inListOf(item) {
  return shop.value(
           "select d.pricelistid from PriceListItem i inner join Department d on d.departmentID = i.departmentId where i.priceListItemId = " +
           item) ||
    0;
}

// clang-format off
exports.all = {
  shop: { title: "Shop", one: "shop", table: "Store",
    keys: ["storeId"], number: "storeId", fixed: function() { return {}; }, fields: [
    ["name", "Name", "words", { size: 64, needed: true, isListed: true }],
    ["address", "Address", "words", { size: 128 }],
    ["city", "City", "words", { size: 64, isListed: true }],
    ["state", "State", "words", { size: 2 }],
    ["zipCode", "Zip code", "words", { size: 10 }],
    ["phone", "Phone", "words", { size: 20 }],
    ["defaultpickuptime", "Ready at", "words", { size: 20, note: "as it is printed: 5:00 PM" }],
    ["defaultProcessingDays", "Days of work", "whole", { initial: 3, most: 60 }]] },
  options: { title: "Options", one: "options", table: "miscsetup",
    keys: ["storeid"], fixed: inStore("storeid"), fields: [
    ["routeVersion", "Days of routes are", "choice", { choices: [[1, "the route's"], [2, "each customer's"]], initial: 1 }],
    ["RollOverDueDateAbove", "A day is full above", "whole", { most: 1000, note: "percent of the limits; empty: never" }],
    ["ItemSortMethod", "Items stand", "choice", { choices: [[0, "in their order"], [1, "the most used first"]], initial: 0 }],
    ["oneDiscountPerInvoice", "One discount a ticket", "check"],
    ["groupSimilarItems", "Like pieces on one line", "check", { initial: true }]] },
  hours: { title: "Hours", one: "day of the week", table: "StoreHour",
    keys: ["storeId", "dayOfWeek"], fixed: inStore("storeId"), removes: true, order: "dayOfWeek", fields: [
    ["dayOfWeek", "Day", "choice", { choices: days, isListed: true }],
    ["storeOpen", "Open", "check", { initial: true, isListed: true }],
    ["defaultPickupTime", "Ready at", "words", { size: 20, isListed: true, note: "as it is printed: 5:00 PM" }],
    ["addAfterTime", "Taken in after", "words", { size: 5, isListed: true, pattern: /^([01]\d|2[0-3]):[0-5]\d$/, note: "such as 16:00" }],
    ["addDaysAfter", "it takes more days", "whole", { most: 30, isListed: true }]] },
  holidays: { title: "Holidays", one: "holiday", table: "StoreHoliday",
    keys: ["storeid", "firstDay"], fixed: inStore("storeid"), removes: true, order: "firstDay", fields: [
    ["firstDay", "First day", "day", { needed: true, isListed: true }],
    ["duration", "Days", "whole", { initial: 1, needed: true, least: 1, most: 60, isListed: true }],
    ["description", "Name", "words", { size: 64, isListed: true }]] },
  counters: { title: "Counters", one: "counter", table: "terminal",
    keys: ["terminalid"], number: "terminalid", fixed: inStore("storeId"), order: "terminalid", fields: [
    ["terminalName", "Name", "words", { size: 64, needed: true, isListed: true }]] },
  clerks: { title: "Clerks", one: "clerk", table: "employee",
    keys: ["employeeid"], number: "employeeid", fixed: inStore("storeId"), order: "employeename", fields: [
    ["employeename", "Name", "words", { size: 64, needed: true, isListed: true }],
    ["pinHash", "PIN", "pin", { note: "four to eight digits; empty leaves it as it is" }],
    ["active", "Works here", "check", { initial: true, isListed: true }],
    ["rights", "May", "rights", { isListed: true }]] },
  tenders: { title: "Ways to pay", one: "way to pay", table: "StorePaymentType",
    keys: ["storeId", "paymentTypeName"], fixed: inStore("storeId"), removes: true, order: "displaySequence", fields: [
    ["paymentTypeName", "Way", "choice", { choices: tenders, isListed: true }],
    ["doNotOpenCashDrawer", "Leaves the drawer shut", "check", { isListed: true }],
    ["displaySequence", "Place in the list", "whole", { initial: 0, most: 99 }]] },
  taxes: { title: "Taxes", one: "tax", table: "Tax",
    keys: ["storeID", "taxCode"], number: "taxCode", fixed: inStore("storeID"), removes: true, order: "taxCode",
    withIt: [["ItemTax", "taxCode"], ["ItemDescriptorTax", "taxCode"], ["DEPARTMENTTAX", "taxcode"], ["surchargetax", "taxcode"]], fields: [
    ["description", "Name", "words", { size: 64, needed: true, isListed: true }],
    ["taxPercent", "Percent", "percent", { needed: true, isListed: true }]] },
  lists: { title: "Price lists", one: "price list", table: "PriceList",
    keys: ["PriceListId"], number: "PriceListId", fixed: function() { return {}; }, order: "PriceListId", fields: [
    ["name", "Name", "words", { size: 64, needed: true, isListed: true }],
    ["disable", "Put aside", "check", { isListed: true }],
    ["VIPMinQualAmount", "VIP above", "money", { note: "what a customer has brought" }],
    ["VIPValidNbrOfMonths", "within months", "whole", { most: 99 }],
    ["VIPStraight", "VIP is a percentage", "check", { initial: true }],
    ["VIPStraightPercent", "VIP percent", "percent"],
    ["VIPSmartAmount", "or VIP amount", "money"],
    ["VIPSmartForEveryAmount", "for every", "money"],
    ["VIPValidWithOtherOffers", "VIP beside other offers", "check"],
    ["referralDiscountAmount", "Referral percent", "percent"],
    ["referralValidNbrOfDays", "Referral days", "whole", { most: 3650 }],
    ["referralIncrement", "Referral in steps of", "money"],
    ["referralLimit", "Referral at most", "money"]] },
  departments: { title: "Departments", one: "department", table: "Department",
    keys: ["departmentID"], number: "departmentID", fixed: inStore("storeid"), order: "displaySequence, departmentID", children: ["items", "Items"], fields: [
    ["name", "Name", "words", { size: 50, needed: true, isListed: true }],
    ["pricelistid", "Price list", "choice", { choices: lists, isListed: true }],
    ["daysToProcess", "Days of work", "whole", { needed: true, most: 60, isListed: true, initial: shopDays }],
    ["splitInvoice", "A ticket of its own", "check"],
    ["splitGroup", "together with group", "whole", { initial: 0, most: 99 }],
    ["maxItemsInReceipt", "Pieces a ticket at most", "whole", { most: 9999 }],
    ["userMaxItem", "The clerk parts what is more", "check"],
    ["useHeatSeals", "Heat seals", "check"],
    ["notes", "Note for the clerk", "words", { size: 255 }],
    ["printNotes", "Print the note", "check"],
    ["displaySequence", "Place in the list", "whole", { initial: 0, most: 9999 }],
    ["disabled", "Put aside", "check", { isListed: true }],
    ["taxes", "Taxes on charges, and on new items", "links", { table: "DEPARTMENTTAX", column: "taxcode", choices: taxes, begins: all(taxes),
      mine: function(row) { return { departmentid: row.departmentID, storeid: store() }; } }],
    ["surcharges", "Surcharges", "links", { table: "departmentsurcharge", column: "surchargeCode", choices: surcharges,
      mine: function(row) { return { departmentid: row.departmentID }; } }]] },
  later: { title: "Cut-offs of departments", one: "cut-off", table: "departmentdays",
    keys: ["departmentid", "hour"], fixed: function() { return {}; }, removes: true, order: "departmentid, hour", fields: [
    ["departmentid", "Department", "choice", { choices: departments, isListed: true }],
    ["hour", "From the hour", "whole", { needed: true, most: 23, isListed: true }],
    ["adddays", "it takes more days", "whole", { needed: true, most: 30, isListed: true }]] },
  limits: { title: "Limits of a day", one: "limit", table: "departmentquota",
    keys: ["DepartmentName"], fixed: function() { return {}; }, removes: true, order: "DepartmentName", fields: [
    ["DepartmentName", "Department", "choice", { choices: departmentNames, isListed: true }],
    ["PiecesDue", "Pieces a day", "whole", { needed: true, most: 99999, isListed: true }]] },
  items: { title: "Items", one: "item", table: "PriceListItem",
    keys: ["priceListItemId"], number: "priceListItemId", fixed: function() { return {}; }, of: "departmentId", order: "displaysequence, itemName", children: ["extras", "Upcharges"], fields: [
    ["itemName", "Name", "words", { size: 64, needed: true, isListed: true }],
    ["departmentId", "Department", "choice", { choices: departments, isListed: true }],
    ["price", "Price", "money", { needed: true, isListed: true }],
    ["daysToProcess", "Days of work", "whole", { needed: true, most: 60, initial: departmentDays }],
    ["qtyInInventory", "Pieces of one", "whole", { initial: 1, least: 1, most: 99, note: "a suit has two" }],
    ["priceLater", "Price follows", "check"],
    ["saleOnly", "Sold, not cleaned", "check"],
    ["outsideService", "Sent out", "check"],
    ["prepayDiscount", "Less when paid ahead", "money", { needed: true, initial: 0 }],
    ["prepayPercent", "Paid ahead at least, percent", "percent"],
    ["discountable", "Promotions", "check", { initial: true }],
    ["couponable", "Coupons", "check", { initial: true }],
    ["VIPDiscountable", "VIP discount", "check", { initial: true }],
    ["VIPQualified", "Counts for VIP", "check", { initial: true }],
    ["promptforupcharge", "Ask for upcharges", "check"],
    ["promptfordescriptors", "Ask for colors", "check"],
    ["forcecolor", "Needs a color", "check"],
    ["forcepattern", "Needs a pattern", "check"],
    ["forceupcharge", "Needs an upcharge", "check"],
    ["notes", "Note", "words", { size: 255 }],
    ["printNotes", "Print the note", "check"],
    ["displaysequence", "Place in the list", "whole", { initial: 0, most: 9999 }],
    ["disabled", "Put aside", "check", { isListed: true }],
    ["taxes", "Taxes", "links", { table: "ItemTax", column: "taxCode", choices: taxes, begins: ofDepartment("DEPARTMENTTAX", "taxcode"),
      mine: function(row) { return { priceListItemID: row.priceListItemId, storeID: store() }; } }],
    ["surcharges", "Surcharges", "links", { table: "ItemSurcharge", column: "surchargeCode", choices: surcharges, begins: ofDepartment("departmentsurcharge", "surchargeCode"),
      mine: function(row) { return { priceListItemID: row.priceListItemId, priceListId: inListOf(row.priceListItemId) }; } }]] },
  extras: { title: "Upcharges, colors and patterns of an item", one: "upcharge", table: "ItemDescriptorPrice",
    keys: ["itemDescriptorPriceID"], number: "itemDescriptorPriceID", fixed: function() { return {}; }, of: "priceListItemId", order: "displaysequence, descriptorName", fields: [
    ["descriptorName", "Name", "words", { size: 64, needed: true, isListed: true }],
    ["descriptorType", "Kind", "choice", { choices: [["UP", "upcharge"], ["CO", "color"], ["PA", "pattern"]], isListed: true }],
    ["price", "Price", "money", { needed: true, isListed: true }],
    ["daysToProcess", "More days", "whole", { most: 60 }],
    ["oneShot", "For one cleaning only", "check"],
    ["maxQuantity", "At most", "whole", { most: 99 }],
    ["discountable", "Promotions", "check", { initial: true }],
    ["couponable", "Coupons", "check", { initial: true }],
    ["vipdiscountable", "VIP discount", "check", { initial: true }],
    ["notes", "Note", "words", { size: 255 }],
    ["printnotes", "Print the note", "check"],
    ["displaysequence", "Place in the list", "whole", { initial: 0, most: 9999 }],
    ["disabled", "Put aside", "check", { isListed: true }],
    ["taxes", "Taxes", "links", { table: "ItemDescriptorTax", column: "taxCode", choices: taxes, begins: ofItem("ItemTax", "taxCode"),
      mine: function(row) { var key = extraKey(row); key.storeID = store(); return key; } }],
    ["surcharges", "Surcharges", "links", { table: "ItemDescriptorSurcharge", column: "surchargeCode", choices: surcharges, begins: ofItem("ItemSurcharge", "surchargeCode"),
      mine: function(row) { var key = extraKey(row); key.priceListId = inListOf(row.priceListItemId); return key; } }]] },
  groups: { title: "Panels of colors and the like", one: "panel", table: "descriptorgroup",
    keys: ["descriptorgroupid"], number: "descriptorgroupid", fixed: function() { return {}; }, order: "displayorder", fields: [
    ["name", "Name", "words", { size: 64, needed: true, isListed: true }],
    ["type", "Kind", "choice", { choices: [["CO", "color"], ["PA", "pattern"], ["BR", "brand"], ["ST", "stain"], ["DM", "damage"]], isListed: true }],
    ["displayorder", "Place in the list", "whole", { initial: 0, most: 9999 }]] },
  words: { title: "Colors, patterns, brands", one: "word", table: "descriptor",
    keys: ["descriptorid"], number: "descriptorid", fixed: function() { return {}; }, removes: true, order: "descriptorgroupid, displayorder, name", fields: [
    ["name", "Name", "words", { size: 64, needed: true, isListed: true }],
    ["descriptorgroupid", "Panel", "choice", { choices: groups, isListed: true }],
    ["color", "Shown as", "words", { size: 7, pattern: /^#[0-9a-fA-F]{6}$/, note: "such as #1a2b4c" }],
    ["price", "Price on every garment", "money", { needed: true, initial: 0, isListed: true }],
    ["maxquantity", "At most", "whole", { initial: 1, needed: true, least: 1, most: 99 }],
    ["displayorder", "Place in the list", "whole", { initial: 0, most: 9999 }]] },
  rush: { title: "Rush", one: "rush", table: "rushupcharge",
    keys: ["storeid", "daystoprocess"], fixed: inStore("storeid"), removes: true, order: "daystoprocess", fields: [
    ["daystoprocess", "Ready within days", "whole", { needed: true, most: 30, isListed: true }],
    ["upchargename", "Upcharge of that name", "words", { size: 64, needed: true, isListed: true, note: "its price is the item's" }]] },
  surcharges: { title: "Surcharges", one: "surcharge", table: "Surcharge",
    keys: ["surchargeCode", "pricelistId"], number: "surchargeCode", fixed: function() { return {}; }, removes: true, order: "surchargeCode",
    withIt: [["ItemSurcharge", "surchargeCode"], ["ItemDescriptorSurcharge", "surchargeCode"], ["departmentsurcharge", "surchargeCode"], ["surchargetax", "surchargecode"]], fields: [
    ["name", "Name", "words", { size: 64, needed: true, isListed: true }],
    ["pricelistId", "Price list", "choice", { choices: lists, isListed: true }],
    ["surchargePercent", "Percent", "percent", { isListed: true }],
    ["fixedAmount", "or amount", "money", { isListed: true }],
    ["applyPerItem", "for each piece", "check"],
    ["taxes", "Taxes on it", "links", { table: "surchargetax", column: "taxcode", choices: taxes,
      mine: function(row) { return { surchargecode: row.surchargeCode, priceListId: row.pricelistId }; } }]] },
  offers: { title: "Offers", one: "offer", table: "Discount",
    keys: ["discountID"], number: "discountID", fixed: function() { return {}; }, order: "discountType, discountID", fields: [
    ["discountName", "Name", "words", { size: 64, needed: true, isListed: true }],
    ["discountType", "Kind", "choice", { choices: [["CU", "coupon"], ["PR", "promotion"], ["LY", "loyalty"]], isListed: true }],
    ["priceListID", "Price list", "choice", { choices: lists }],
    ["effectiveDate", "From", "day", { isListed: true }],
    ["expiryDate", "To", "day", { isListed: true }],
    ["discountPercent", "Percent", "percent", { isListed: true }],
    ["discountAmount", "or amount", "money", { isListed: true }],
    ["appliesPerUnit", "for each piece", "check"],
    ["maxDiscountAmount", "At most", "money"],
    ["minPieceCount", "From pieces", "whole", { most: 9999 }],
    ["minQualAmount", "From amount", "money"],
    ["validWithOtherOffer", "Beside other offers", "check"],
    ["noOfUses", "Times a customer", "whole", { most: 9999 }],
    ["active", "In use", "check", { initial: true, isListed: true }],
    ["departments", "For departments; none is the whole ticket", "links", { table: "DiscountDepartment", column: "departmentID", choices: departments,
      mine: function(row) { return { discountID: row.discountID }; } }]] },
  routes: { title: "Routes", one: "route", table: "route",
    keys: ["routeNumber"], number: "routeNumber", fixed: function() { return {}; }, order: "routeNumber", fields: [["routeName", "Name", "words", { size: 64, needed: true, isListed: true }]].concat(
    ["Mon", "Tue", "Wed", "Thu", "Fri", "Sat", "Sun"].map(function(day) { return ["delivery" + day, day, "check", { isListed: true }]; })) },
  racks: { title: "Places on the rack", one: "place", table: "RackPlace",
    keys: ["storeId", "place"], fixed: inStore("storeId"), removes: true, order: "place", fields: [
    ["place", "Place", "words", { size: 20, needed: true, isListed: true, isUpper: true }],
    ["isSlot", "A slot for one ticket", "check", { isListed: true }]] },
  preferences: { title: "Preferences of customers", one: "preference", table: "customerpreferencetype",
    keys: ["customerpreferencetypeid"], number: "customerpreferencetypeid", fixed: function() { return {}; }, order: "displayorder", fields: [
    ["name", "Name", "words", { size: 64, needed: true, isListed: true }],
    ["options", "Choices, parted by |", "words", { size: 255, isListed: true }],
    ["[default]", "Usual", "words", { size: 64 }],
    ["displayorder", "Place in the list", "whole", { initial: 0, most: 9999 }]] },
  seals: { title: "Rolls of heat seals", one: "roll", table: "validheatsealranges",
    keys: ["starths"], fixed: function() { return {}; }, removes: true, order: "starths", fields: [
    ["starths", "First seal", "words", { size: 20, needed: true, isListed: true }],
    ["endhs", "Last seal", "words", { size: 20, needed: true, isListed: true }]] }
};

// The order in which a new shop is set up: kind, what it is for, whether nothing goes without it.
exports.steps = [
  ["Before the first ticket", [
    ["shop", "Name and address, as on the receipt.", true],
    ["hours", "Open days, the hour of readiness, the last hour for today's work. Without any, every day is open.", false],
    ["taxes", "What is added to prices.", false],
    ["lists", "A list for most; others for customers with prices of their own.", true],
    ["departments", "Dry cleaning, shirts, ...: days of work, tickets of their own.", true],
    ["items", "What is cleaned, with prices.", true],
    ["tenders", "Cash, checks, cards.", true],
    ["counters", "One for each drawer.", true],
    ["clerks", "Who works here, with PIN and rights.", true]]],
  ["As you need it", [
    ["holidays", "Nothing is promised for these days.", false],
    ["groups", "Panels on the entry screen.", false],
    ["words", "What a garment looks like.", false],
    ["rush", "What haste costs.", false],
    ["surcharges", "Environment, hangers.", false],
    ["offers", "Coupons, promotions, loyalty.", false],
    ["later", "From an hour of the day on, a department takes longer.", false],
    ["limits", "Full days roll over, with the option.", false],
    ["routes", "Delivery days.", false],
    ["racks", "Without any, every place is taken as it is scanned.", false],
    ["preferences", "Starch, folding.", false],
    ["seals", "Without any, every seal is taken.", false],
    ["options", "How items stand, how discounts add up.", false]]]
];
// clang-format on
