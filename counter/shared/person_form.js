// The form of a customer: what a stranger says first, the rest behind it.
var html = Server.include("shared/html.js");
var shop = Server.include("shared/shop.js");
var person = Server.include("shared/person.js");
var h = html.tag;

var visits = [[0, "none"], [1, "delivery"], [2, "collection"], [3, "both"]];

function wordsField(one, name, options) {
  var known = person.words.filter(function(each) { return each[0] === name; })[0];
  var attributes = { maxlength: known[2] };
  Object.keys(options || {}).forEach(function(key) { attributes[key] = options[key]; });
  return shop.field(name, known[1], one[name], attributes);
}

function routePart(one) {
  var routes = person.routes();
  if (!routes.length) return "";
  return h(
    "fieldset", null, h("legend", null, "Route"),
    shop.select("route", "Route", one.route || 0, [[0, "none"]].concat(routes)),
    h("div", { "class": "days" },
      person.days.map(function(
        day) { return shop.select("deliver" + day, day, one.deliveries[day] || 0, visits); })));
}

function preferencePart(one) {
  var types = person.preferenceTypes();
  if (!types.length) return "";
  return h("fieldset", null, h("legend", null, "Preferences"), types.map(function(type) {
    var name = "preference" + type.id, value = one.preferences[type.id] || "";
    return type.options.length ?
      shop.select(
        name, type.name, value,
        [["", "usual" + (type.usual ? ": " + type.usual : "")]].concat(type.options.map(function(each) {
          return [each, each];
        }))) :
      shop.field(name, type.name, value, { maxlength: 64 });
  }));
}

// `one` is a person as stored or given; `options` may have problem, doubles (mark-up) and isOpen, which shows
// all fields.
exports.form = function(one, options) {
  var lists = person.lists(), more = options || {};
  return shop.form(
    "/customers/save", { id: one.id || 0, changes: one.changes || 0, sure: more.sure || "" },
    html.all(
      shop.problem(more.problem), more.doubles || "",
      h("fieldset", null, h("legend", null, "Who is it?"), wordsField(one, "firstName", { autofocus: true }),
        wordsField(one, "lastName"), shop.field("phone", "Phone", one.phone, { type: "tel", maxlength: 20 }),
        shop.select(
          "notifyBy", "When it is ready", one.notifyBy,
          [["", "say nothing"], ["text", "send a text"], ["email", "send an e-mail"]]),
        wordsField(one, "email", { type: "email" })),
      h("details", { open: !!more.isOpen }, h("summary", null, "Address, price list, route, preferences"),
        h("fieldset", null, h("legend", null, "Address"), wordsField(one, "billingAddress1"),
          wordsField(one, "billingAddress2"), wordsField(one, "billingCity"), wordsField(one, "billingState"),
          wordsField(one, "billingZipCode"),
          shop.field("otherPhone", "Other phone", one.otherPhone, { type: "tel", maxlength: 20 }),
          wordsField(one, "employer")),
        h("fieldset", null, h("legend", null, "At the counter"),
          shop.select("list", "Price list", one.list || 0, [[0, "the shop's"]].concat(lists)),
          shop.check("vipEligible", "VIP", one.vipEligible),
          shop.check("taxExempt", "Pays no tax", one.taxExempt),
          shop.check("surchargeExempt", "Pays no surcharge", one.surchargeExempt),
          shop.check("permanentaccount", "Has an account", one.permanentaccount)),
        routePart(one), preferencePart(one),
        h("fieldset", null, h("legend", null, "Notes"), wordsField(one, "notes"))),
      h("div", { "class": "finish" },
        h("button", { "class": "main", name: "then", value: one.id ? "customer" : "ticket" },
          one.id ? "Save" : "Save, and write a ticket"),
        one.id ? "" : h("button", { name: "then", value: "customer" }, "Save"),
        h("a", { "class": "button quiet", href: one.id ? "/customer?id=" + one.id : "/" }, "Leave it"))));
};
