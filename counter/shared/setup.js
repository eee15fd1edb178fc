// Rows of the shop's own data: read, checked, entered, changed and taken away, for every kind of
// setup_kinds.js.
var text = Server.include("shared/text.js");
var desk = Server.include("shared/desk.js");
var shop = Server.include("shared/shop.js");
var kinds = Server.include("shared/setup_kinds.js");

exports.kind = function(
  name) { return Object.prototype.hasOwnProperty.call(kinds.all, String(name)) ? kinds.all[name] : null; };

function plain(column) { return column.replace(/[\[\]]/g, ""); }
function twoDigits(number) { return (number < 10 ? "0" : "") + number; }
function isoDay(date) {
  return date.getFullYear() + "-" + twoDigits(date.getMonth() + 1) + "-" + twoDigits(date.getDate());
}
function isColumn(field) { return field[2] !== "links"; }
function more(field) { return field[3] || {}; }
function choices(field) {
  var all = more(field).choices;
  return typeof all === "function" ? all() : all;
}
exports.choices = choices;

// ---- what stands in the database, as a form has it

// A value of a column, as its field shows it.
var shown = {
  words: function(value) { return String(value === null ? "" : value); },
  money: function(value) { return value === null ? "" : Number(value).toFixed(2); },
  percent: function(value) { return value === null ? "" : String(Number(value)); },
  whole: function(value) { return value === null ? "" : String(value); },
  check: function(value) { return value ? "1" : ""; },
  choice: function(value) { return String(value === null ? "" : value); },
  day: function(value) { return value ? isoDay(value) : ""; },
  rights: function(value) { return String(value || ""); },
  pin: function() { return ""; }
};

function literalOf(value) {
  if (value === null || value === undefined) return "null";
  if (value instanceof Date) return text.quoted(isoDay(value).replace(/-/g, ""));
  return typeof value === "number" ? String(value) :
    typeof value === "boolean"     ? (value ? "1" : "0") :
                                     text.quoted(value);
}
function condition(values) {
  return Object.keys(values).map(function(name) { return name + " = " + values[name]; }).join(" and ");
}

// The rows of a kind: of this shop, and of the row `of` where the kind hangs on one. Each has {key, values,
// row}.
function read(kind, where) {
  return text.rows(
    Database.query(
      "select * from " + kind.table + (where ? " where " + where : "") +
      (kind.order ? " order by " + kind.order : "")),
    function(field) {
      var values = {}, row = {}, key = {};
      kind.fields.filter(isColumn).forEach(function(
        one) { values[one[0]] = shown[one[2]](field(plain(one[0]))); });
      kind.keys.forEach(function(name) {
        row[name] = field(name);
        key[name] = literalOf(field(name));
      });
      if (kind.of) row[kind.of] = field(kind.of);
      if (kind.table === "ItemDescriptorPrice") {
        row.descriptorName = field("descriptorName");
        row.descriptorType = field("descriptorType");
      }
      return {
        key: key,
        name:
          kind.keys
            .map(function(name) { return shown[field(name) instanceof Date ? "day" : "words"](field(name)); })
            .join("|"),
        values: values,
        row: row
      };
    });
}

// Shops and what all shops share are seen whole; a shop's departments and items by its own departments.
function scope(kind) {
  var fixed = kind.fixed(), conditions = Object.keys(fixed).length ? [condition(fixed)] : [];
  if (kind.table === "PriceListItem")
    conditions.push(
      "departmentId in (select departmentID from Department where storeid = " + desk.place().store + ")");
  return conditions;
}
exports.rows = function(
  kind,
  of) { return read(kind, scope(kind).concat(kind.of && of ? kind.of + " = " + of : []).join(" and ")); };
exports.count = function(kind) {
  var where = scope(kind).join(" and ");
  return text.whole(shop.value("select count(*) from " + kind.table + (where ? " where " + where : "")));
};

// A row by its name, the values of its keys joined; null when it is not of this shop.
exports.byName = function(
  kind,
  name) { return exports.rows(kind, 0).filter(function(one) { return one.name === name; })[0] || null; };

exports.linked = function(field, row) {
  return text.rows(
    Database.query(
      "select " + more(field).column + " as id from " + more(field).table + " where " +
      condition(more(field).mine(row))),
    function(each) { return each("id"); });
};

// What a new row begins with.
exports.blank = function(kind, of) {
  var values = {}, row = {};
  if (kind.of) values[kind.of] = String(of || "");
  kind.fields.forEach(function(one) {
    var first = more(one).initial;
    if (typeof first === "function") first = first(of);
    if (one[2] === "links") row[one[0]] = more(one).begins && (of || !kind.of) ? more(one).begins(of) : [];
    else if (values[one[0]] === undefined)
      values[one[0]] = first === undefined ? "" :
        one[2] === "money"                 ? Number(first).toFixed(2) :
        first === true                     ? "1" :
                                             String(first);
  });
  return { key: null, name: "", values: values, row: {}, begins: row };
};

// A mark of what a row says, so that a change by somebody else meanwhile is seen.
exports.mark = function(kind, one) {
  var words = kind.fields
                .map(function(field) {
                  return isColumn(field) ? one.values[field[0]] : exports.linked(field, one.row).join(",");
                })
                .join("|"),
      sum = 7;
  for (var at = 0; at < words.length; ++at) sum = (sum * 31 + words.charCodeAt(at)) % 2147483647;
  return String(sum);
};

// ---- what was keyed in

function trimmed(value, size) { return text.clean(value, size).replace(/^\s+|\s+$/g, ""); }

// Each gives a literal of SQL, or throws words that say what is wrong.
var literals = {
  words: function(given, rule) {
    var words = trimmed(given, rule.size);
    if (words && rule.pattern && !rule.pattern.test(words)) throw "this is written " + rule.note;
    return words ? text.quoted(rule.isUpper ? words.toUpperCase() : words) : "null";
  },
  money: function(given) {
    var sign = /^\s*-/.test(given) ? -1 : 1, amount = text.dollars(given.replace(/^\s*-/, ""));
    if (amount === null) throw "this is no amount of money";
    return (sign * amount).toFixed(2);
  },
  percent: function(given) {
    if (!/^\s*\d{1,3}(\.\d{1,4})?\s*%?\s*$/.test(given) || parseFloat(given) > 100)
      throw "this is no percentage";
    return String(parseFloat(given));
  },
  whole: function(given, rule) {
    var least = rule.least || 0, value = Number(given);
    if (!/^\s*\d{1,9}\s*$/.test(given) || value < least || value > rule.most)
      throw "a whole number from " + least + " to " + rule.most;
    return String(value);
  },
  day: function(given) {
    var parts = /^(\d{4})-(\d\d)-(\d\d)$/.exec(trimmed(given, 10)),
        date = parts && new Date(Number(parts[1]), Number(parts[2]) - 1, Number(parts[3]));
    if (!date || date.getDate() !== Number(parts[3]) || parts[1] < "1990") throw "this is no day";
    return text.quoted(parts[1] + parts[2] + parts[3]);
  },
  choice: function(given, rule, field) {
    var chosen = choices(field).filter(function(one) { return String(one[0]) === given; })[0];
    if (!chosen) throw "choose one";
    return literalOf(chosen[0]);
  },
  pin: function(given) {
    if (!/^\d{4,8}$/.test(given)) throw "four to eight digits";
    return text.quoted(Server.hashPin(given));
  }
};

function literal(field, form) {
  var name = plain(field[0]), given = String(form[name] || ""), rule = more(field);
  if (field[2] === "check") return given === "1" ? "1" : "0";
  if (field[2] === "rights")
    return text.quoted(shop.rights.filter(function(one) { return form["right-" + one[0]] === "1"; })
                         .map(function(one) { return one[0]; })
                         .join(" "));
  if (!/\S/.test(given) && field[2] !== "choice") {
    if (rule.needed) throw "this is needed";
    if (typeof rule.initial === "number") return String(rule.initial);
    return field[2] === "pin" ? undefined : "null";
  }
  return literals[field[2]](given, rule, field);
}

// What a form says: {values, literals, links, problem}; the first field that is wrong is said.
exports.given = function(kind, form) {
  var all = { values: {}, literals: {}, links: {}, problem: "" };
  kind.fields.forEach(function(field) {
    if (field[2] === "links") {
      all.links[field[0]] = choices(field)
                              .map(function(one) { return one[0]; })
                              .filter(function(id) { return form[field[0] + "-" + id] === "1"; });
      return;
    }
    all.values[field[0]] = field[2] === "rights" ?
      shop.rights.filter(function(one) { return form["right-" + one[0]] === "1"; })
        .map(function(one) { return one[0]; })
        .join(" ") :
      field[2] === "pin" ? "" :
                           text.clean(form[plain(field[0])], 255);
    try {
      var value = literal(field, form);
      if (value !== undefined) all.literals[field[0]] = value;
    } catch (wrong) {
      if (typeof wrong !== "string") throw wrong;
      if (!all.problem) all.problem = field[1] + ": " + wrong + ".";
    }
  });
  return all;
};

// ---- entering, changing, taking away

function linkStatements(kind, row, links, before) {
  var all = [];
  kind.fields.filter(function(one) { return one[2] === "links"; }).forEach(function(field) {
    var mine = more(field).mine(row), names = Object.keys(mine),
        had = before ? exports.linked(field, before) : [], wanted = links[field[0]];
    had.filter(function(id) { return wanted.indexOf(id) < 0; }).forEach(function(id) {
      all.push(
        "delete from " + more(field).table + " where " + more(field).column + " = " + id + " and " +
        condition(more(field).mine(before)));
    });
    wanted.filter(function(id) { return had.indexOf(id) < 0; }).forEach(function(id) {
      all.push(
        "insert into " + more(field).table + " (" + names.concat(more(field).column).join(", ") +
        ") values (" + names.map(function(name) { return mine[name]; }).concat(id).join(", ") + ")");
    });
  });
  return all;
}

// Somebody has to be left who may set up the shop.
function locksOut(kind, given, name) {
  if (kind.table !== "employee") return false;
  var others =
    text
      .rows(
        Database.query("select employeeid, isnull(rights, '') as rights from employee where active = 1"),
        function(field) {
          return [String(field("employeeid")), String(field("rights"))];
        })
      .filter(function(one) { return one[0] !== name; })
      .map(function(one) { return one[1]; });
  var all = others.concat(given.literals.active === "1" ? given.values.rights : "")
              .filter(function(one) { return one; });
  return all.length > 0 && !all.some(function(one) { return one.split(" ").indexOf("setup") >= 0; });
}

// Saves what was given: of the row called `name`, or a new one. The result is {name} or {problem}.
exports.save = function(kindName, name, mark, form) {
  var kind = exports.kind(kindName), given = exports.given(kind, form),
      before = name ? exports.byName(kind, name) : null;
  if (given.problem) return { problem: given.problem };
  if (name && !before) return { problem: "Somebody has taken this away meanwhile." };
  if (before && exports.mark(kind, before) !== mark)
    return { problem: "Somebody has changed this meanwhile. Look at it again: " + name };
  if (locksOut(kind, given, name))
    return { problem: "Somebody has to be allowed to set up the shop: give that right to one clerk first." };
  var values = given.literals, fixed = kind.fixed(), key = {}, row = {};
  Object.keys(fixed).forEach(function(one) { values[one] = String(fixed[one]); });
  if (kind.number)
    values[kind.number] = before ? before.key[kind.number] : String(shop.next(kind.table, kind.number));
  if (kind.of && values[kind.of] === undefined)
    values[kind.of] = before ? String(before.row[kind.of]) : String(text.whole(form.of));
  kind.keys.forEach(function(one) { key[one] = values[one]; });
  var isMoved = before && condition(before.key) !== condition(key);
  if (
    (!before || isMoved) && shop.value("select count(*) from " + kind.table + " where " + condition(key)) > 0)
    return { problem: "There is such a " + kind.one + " already." };
  // Rows that hang on it are found by its numbers and words as they are now.
  Object.keys(values).forEach(function(
    one) { row[one] = values[one].replace(/^'|'$/g, "").replace(/''/g, "'"); });
  var names = Object.keys(values);
  var first = before ? "update " + kind.table + " set " +
      names.filter(function(one) { return one !== kind.number; })
        .map(function(one) { return one + " = " + values[one]; })
        .join(", ") +
      " where " + condition(before.key) :
                       "insert into " + kind.table + " (" + names.join(", ") + ") values (" +
      names.map(function(one) { return values[one]; }).join(", ") + ")";
  // A name that changes takes its links along: they are taken away and entered again.
  var isRenamed = before && kind.table === "ItemDescriptorPrice" &&
    (before.row.descriptorName !== row.descriptorName || before.row.descriptorType !== row.descriptorType);
  var gone = isRenamed ? linkStatements(kind, before.row, { taxes: [], surcharges: [] }, before.row) : [];
  shop.book([first].concat(
    gone, linkStatements(kind, row, given.links, isRenamed ? null : before && before.row),
    shop.logged("setup", {
      detail: (before ? "changed " : "entered ") + kind.one + " " + (given.values[kind.fields[0][0]] || "")
    })));
  return { name: kind.keys.map(function(one) { return row[one]; }).join("|") };
};

exports.remove = function(kindName, name) {
  var kind = exports.kind(kindName), before = exports.byName(kind, name);
  if (!before || !kind.removes) return { problem: "This is not there any more." };
  shop.book(
    (kind.withIt || [])
      .map(function(
        one) { return "delete from " + one[0] + " where " + one[1] + " = " + before.key[kind.number]; })
      .concat(
        "delete from " + kind.table + " where " + condition(before.key),
        shop.logged("setup", { detail: "took away " + kind.one + " " + name })));
  return {};
};
