// Work on the shop's own data: who may do it, that it is done once and wholly, and that it is written down.
var text = Server.include("shared/text.js");
var desk = Server.include("shared/desk.js");
var html = Server.include("shared/html.js");
var layout = Server.include("shared/layout.js");
var h = html.tag;

// ---- rights

// What a clerk may be allowed: the word that employee.rights holds, and what it lets do.
// clang-format off
exports.rights = [
  ["price",   "change a price"],
  ["redo",    "clean again for nothing"],
  ["void",    "void a ticket"],
  ["refund",  "give money back"],
  ["close",   "count and close the drawer"],
  ["reports", "see the reports"],
  ["setup",   "set up the shop"]
];
// clang-format on

// A shop that has given nobody any right lets everybody do everything.
exports.may = function(right) {
  var named = text.rows(
    Database.query(
      "select employeeid, isnull(rights, '') as rights from employee where active = 1 and rights <> ''"),
    function(field) { return { id: field("employeeid"), rights: String(field("rights")).split(" ") }; });
  if (!named.length) return true;
  var me = text.whole(desk.employee().id);
  return named.some(function(one) { return one.id === me && one.rights.indexOf(right) >= 0; });
};

// What a right lets do, in words.
exports.wordsOf = function(
  right) { return exports.rights.filter(function(one) { return one[0] === right; })[0][1]; };

// True when the clerk may; otherwise the page says who is asked.
exports.allowed = function(right) {
  if (exports.may(right)) return true;
  Response.status = 403;
  layout.notice(
    "Not allowed",
    desk.employee().name + " may not " + exports.wordsOf(right) + ". Ask somebody who may to sign in.", "/",
    "Back");
  return false;
};

// ---- changes

// Does a change that is looked at and then booked, alone at this host; brought back after a restart it is not
// done again. The result is a plain value.
exports.change = function(work) {
  var result = Server.recorded(function() {
    Server.alone();
    return work();
  });
  desk.workDone();
  return result;
};

// All of the statements or none.
exports.book = function(statements) {
  Database.begin();
  statements.forEach(function(one) { Database.execute(one); });
  Database.commit();
};

// A text that was typed, as a literal; null for nothing.
exports.literal = function(value, size) {
  var words = text.clean(value, size).replace(/^\s+|\s+$/g, "");
  return words ? text.quoted(words) : "null";
};

// The statement that writes down what was done. `about` has ticket, customer, amount and detail as they
// apply.
exports.logged = function(kind, about) {
  var place = desk.place(), employee = desk.employee();
  return "insert into ShopLog (logDate, storeId, terminalId, employeeId, employeeName, kind, " +
    "ticketNumber, customerSequenceNumber, amount, detail) values (getdate(), " +
    [
      place.store, place.terminal, text.whole(employee.id), text.quoted(employee.name), text.quoted(kind),
      about.ticket || "null", about.customer || "null",
      about.amount === undefined ? "null" : about.amount.toFixed(2), exports.literal(about.detail, 255)
    ].join(", ") +
    ")";
};

// The first value of a query; null without a row.
exports.value = function(sql) {
  var found = Database.query(sql);
  return found.EOF ? null : found.Fields(0).Value;
};

// The number after the greatest of a table.
exports.next = function(
  table, column) { return (exports.value("select max(" + column + ") from " + table) || 0) + 1; };

// ---- parts of forms

// A field with its label. `options` are attributes of the input.
exports.field = function(name, label, value, options) {
  var attributes = {
    id: "f-" + name,
    name: name,
    value: value === null || value === undefined ? "" : value,
    autocomplete: "off"
  };
  Object.keys(options || {}).forEach(function(key) { attributes[key] = options[key]; });
  return h("div", null, h("label", { "for": "f-" + name }, label), h("input", attributes));
};

// Choices are [value, words].
exports.select = function(name, label, value, choices, options) {
  var attributes = { id: "f-" + name, name: name };
  Object.keys(options || {}).forEach(function(key) { attributes[key] = options[key]; });
  return h(
    "div", null, h("label", { "for": "f-" + name }, label),
    h("select", attributes, choices.map(function(one) {
      return h("option", { value: one[0], selected: String(one[0]) === String(value) }, one[1]);
    })));
};

exports.check = function(name, label, isOn) {
  return h(
    "label", { "class": "check" }, h("input", { type: "checkbox", name: name, value: "1", checked: !!isOn }),
    label);
};

// A form that is sent once. `content` is what stands in it.
exports.form = function(path, hidden, content) {
  return h(
    "form", { method: "post", action: path, "class": "shop-form" }, html.raw(layout.token()),
    html.raw(layout.once()), html.raw(layout.hidden(hidden)), content);
};

exports.problem = function(
  words) { return words ? h("p", { "class": "problem", role: "alert" }, words) : ""; };

// A table of rows; `columns` are names, or [name, class].
exports.table = function(columns, rows, label) {
  var heads = columns.map(function(one) { return Array.isArray(one) ? one : [one, ""]; });
  return h(
    "div", { "class": "wide-table" },
    h("table", { "aria-label": label || false },
      h("thead", null, h("tr", null, heads.map(function(one) {
          return one[0] ? h("th", { scope: "col", "class": one[1] || false }, one[0]) : h("td", null);
        }))),
      h("tbody", null, rows)));
};
