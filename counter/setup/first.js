// The first start of an empty store: the shop, its counter and who stands at it. The rest is led through at
// /setup.
var layout = Server.include("shared/layout.js");
var html = Server.include("shared/html.js");
var desk = Server.include("shared/desk.js");
var text = Server.include("shared/text.js");
var shop = Server.include("shared/shop.js");
var h = html.tag;

if (desk.places().length) return Response.redirect("/place");

var form = Request.method === "POST" ? Request.form :
                                       { counter: "Front counter", days: "3", ready: "5:00 PM", closed: "7" };
function value(name) { return text.clean(form[name], 128).replace(/^\s+|\s+$/g, ""); }
function field(name, label, size, more) {
  var options = { maxlength: size };
  Object.keys(more || {}).forEach(function(one) { options[one] = more[one]; });
  return shop.field(name, label, value(name), options);
}
var closed = [[7, "Sunday"], [0, "no day"], [1, "Monday"]];

function shown(problem) {
  layout.page(
    "Open the shop",
    shop.form(
      "/setup/first", {},
      html.all(
        shop.problem(problem),
        h("p", { "class": "notice" },
          "This store is empty. Say who you are; then the counter leads you through prices and the rest. All of it can be changed later."),
        h("fieldset", null, h("legend", null, "The shop, as on the receipt"),
          field("name", "Name", 64, { required: true, autofocus: true }), field("address", "Address", 128),
          field("city", "City", 64), field("state", "State", 2), field("zip", "Zip code", 10),
          field("phone", "Phone", 20)),
        h("fieldset", null, h("legend", null, "When it is ready"),
          field("days", "Days of work", 2, { inputmode: "numeric", required: true }),
          field("ready", "Ready at", 20), shop.select("closed", "Closed on", value("closed"), closed)),
        h("fieldset", null, h("legend", null, "Tax on cleaning, if there is any"),
          field("tax", "Its name", 64), field("percent", "Percent", 8, { inputmode: "decimal" })),
        h("fieldset", null, h("legend", null, "Who works here"),
          field("counter", "This counter", 64, { required: true }),
          field("clerk", "Your name", 64, { required: true })),
        h("div", { "class": "finish" }, h("button", { "class": "main" }, "Open the shop")))),
    { styles: ["shop.css"], plain: true });
}
if (Request.method !== "POST") return shown("");

var days = value("days"), percent = value("percent").replace(/\s*%$/, "");
if (!value("name") || !value("counter") || !value("clerk"))
  return shown("The shop, its counter and you need a name.");
if (!/^\d{1,2}$/.test(days)) return shown("Days of work: a whole number.");
if (percent ? !/^\d{1,2}(\.\d{1,4})?$/.test(percent) || !value("tax") : value("tax"))
  return shown("A tax has a name and a percentage.");

// What a shop begins with; numbers go on from what an earlier beginning has left.
function statements(ids) {
  function hour(day) {
    return "insert into StoreHour (storeId, dayOfWeek, storeOpen) values (" +
      [ids.store, day, String(day) === value("closed") ? 0 : 1].join(", ") + ")";
  }
  function tender(one, at) {
    return "insert into StorePaymentType (storeId, paymentTypeName, doNotOpenCashDrawer, displaySequence) values (" +
      [ids.store, text.quoted(one), at > 1 ? 1 : 0, at + 1].join(", ") + ")";
  }
  var words =
    [["name", 64], ["address", 128], ["city", 64], ["state", 2], ["zip", 10], ["phone", 20], ["ready", 20]];
  var all = [
    "insert into Store (storeId, name, address, city, state, zipCode, phone, defaultpickuptime, defaultProcessingDays) values (" +
      [ids.store]
        .concat(words.map(function(one) { return shop.literal(value(one[0]), one[1]); }), days)
        .join(", ") +
      ")",
    "insert into miscsetup (storeid, routeVersion, ItemSortMethod, groupSimilarItems) values (" + ids.store +
      ", 1, 0, 1)",
    "insert into terminal (terminalid, storeId, terminalName) values (" +
      [ids.terminal, ids.store, shop.literal(value("counter"), 64)].join(", ") + ")",
    "insert into employee (employeeid, employeename, storeId) values (" +
      [ids.employee, shop.literal(value("clerk"), 64), ids.store].join(", ") + ")",
    "insert into PriceList (PriceListId, name) values (" + ids.list + ", 'Counter')"
  ].concat([1, 2, 3, 4, 5, 6, 7].map(hour), ["Cash", "Check", "GiftCard", "On Account"].map(tender));
  if (percent)
    all.push(
      "insert into Tax (storeID, taxCode, taxPercent, description) values (" +
      [ids.store, ids.tax, percent, shop.literal(value("tax"), 64)].join(", ") + ")");
  return all;
}
var ids = Server.recorded(function() {
  Server.alone();
  if (desk.places().length) return null;
  var fresh = {
    store: shop.next("Store", "storeId"),
    terminal: shop.next("terminal", "terminalid"),
    employee: shop.next("employee", "employeeid"),
    list: shop.next("PriceList", "PriceListId"),
    tax: shop.next("Tax", "taxCode")
  };
  shop.book(statements(fresh));
  return fresh;
});
if (!ids) return Response.redirect("/place");
Session.kept.place = {
  store: ids.store,
  storeName: value("name"),
  terminal: ids.terminal,
  name: value("counter")
};
if (!Request.clerk) Session.kept.employee = { id: ids.employee, name: value("clerk") };
desk.workDone();
Response.redirect("/setup");
