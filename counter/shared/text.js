// Values as the screen shows them and as SQL takes them.
exports.encoded = function(
  value) { return Server.HTMLEncode(value === null || value === undefined ? "" : String(value)); };

exports.money = function(value) { return (value < 0 ? "-$" : "$") + Math.abs(value || 0).toFixed(2); };

exports.day = function(date) {
  if (!date) return "";
  var names = ["Sun", "Mon", "Tue", "Wed", "Thu", "Fri", "Sat"];
  return names[date.getDay()] + " " + (date.getMonth() + 1) + "/" + date.getDate() + "/" + date.getFullYear();
};

// As the library takes a day.
exports.slashed = function(
  date) { return (date.getMonth() + 1) + "/" + date.getDate() + "/" + date.getFullYear(); };

// A text as a literal of SQL.
exports.quoted = function(value) { return "'" + String(value).replace(/'/g, "''") + "'"; };

// What somebody typed, up to so many letters, without the signs of mark-up.
exports.clean = function(value, size) {
  return String(value === undefined || value === null ? "" : value).substr(0, size).replace(/[<>]/g, "");
};

// A whole number that came from a browser; anything else is 0.
exports.whole = function(
  value) { return /^-?\d{1,9}$/.test(String(value).substr(0, 12)) ? Number(value) : 0; };

// Whole numbers above 0 from a text like "1100-1101", as pages pass tickets on to each other.
exports.numbers = function(value) {
  return String(value || "")
    .split("-")
    .map(exports.whole)
    .filter(function(one) { return one > 0; })
    .slice(0, 40);
};

// Dollars that were keyed in, with commas between thousands only; null for anything else.
exports.dollars = function(value) {
  var digits = exports.clean(value, 20).replace(/^\s*\$?|\s+$/g, "");
  if (!/^(\d{1,5}|\d{1,2},\d{3})?(\.\d{0,2})?$/.test(digits) || !/\d/.test(digits)) return null;
  return Number(digits.replace(",", ""));
};

// An amount of money above nothing, or 0.
exports.amount = function(value) { return exports.dollars(value) || 0; };

// The rows of a Recordset as the results of a function that gets its fields by name.
exports.rows = function(recordset, made) {
  var all = [];
  function field(name) { return recordset.Fields(name).Value; }
  for (; !recordset.EOF; recordset.MoveNext()) all.push(made(field));
  return all;
};

// Money to the cent.
exports.cents = function(value) { return Math.round(value * 100 + (value < 0 ? -1e-6 : 1e-6)) / 100; };

exports.pieces = function(count) { return count + (count === 1 ? " piece" : " pieces"); };
