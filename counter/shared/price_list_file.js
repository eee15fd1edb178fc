// A price list as a text of lines: department, item, price, and if the first line names them days, pieces and
// note. Fields are parted by commas, semicolons or tabs; one with such a sign stands in quotes.
var text = Server.include("shared/text.js");
var desk = Server.include("shared/desk.js");
var shop = Server.include("shared/shop.js");
var kinds = Server.include("shared/setup_kinds.js");

exports.most = 3000;

// Rows of fields; each has the number of its line.
function parsed(words, sign) {
  var rows = [], row = [], field = "", isQuoted = false, line = 1, begun = 1;
  function end(isRow) {
    row.push(field.replace(/^\s+|\s+$/g, ""));
    field = "";
    if (!isRow) return;
    if (row.join("")) rows.push({ line: begun, fields: row });
    row = [];
    begun = line;
  }
  for (var at = 0; at < words.length; ++at) {
    var letter = words.charAt(at);
    if (letter === "\n") ++line;
    if (isQuoted && letter === '"' && words.charAt(at + 1) === '"') {
      field += '"';
      ++at;
    } else if (letter === '"' && (isQuoted || !/\S/.test(field))) {
      isQuoted = !isQuoted;
      if (isQuoted) field = "";
    } else if (isQuoted) field += letter;
    else if (letter === sign) end(false);
    else if (letter === "\n") end(true);
    else if (letter !== "\r") field += letter;
  }
  end(true);
  return { rows: rows, isOpen: isQuoted };
}

// The sign that the first line has most of.
function signOf(words) {
  var first = words.split("\n")[0];
  return [",", ";", "\t"].sort(function(a, b) { return first.split(b).length - first.split(a).length; })[0];
}

// clang-format off
var heads = {
  department: /^(department|dept)$/i,
  item:       /^(item|name|garment|article)$/i,
  price:      /^price$/i,
  days:       /^days$/i,
  pieces:     /^pieces$/i,
  note:       /^notes?$/i
};
// clang-format on

// Where the columns stand, by the first line; null when it names none, and then they are department, item,
// price.
function columnsOf(row) {
  var found = {}, names = Object.keys(heads);
  row.fields.forEach(function(one, at) {
    names.forEach(function(name) {
      if (heads[name].test(one)) found[name] = at;
    });
  });
  return found.item !== undefined && found.price !== undefined ? found : null;
}

function whole(words, least, most) {
  return !words || (/^\d{1,4}$/.test(words) && Number(words) >= least && Number(words) <= most);
}

// What is wrong with a line, or nothing.
function trouble(one, seen) {
  var amount = text.dollars(one.price);
  if (!one.department) return "the department is missing";
  if (!one.item) return "the item is missing";
  if (one.department.length > 50 || one.item.length > 64 || one.note.length > 255)
    return "a name is too long";
  if (amount === null) return one.price ? "this is no price: " + one.price : "the price is missing";
  if (!whole(one.days, 0, 60)) return "days: a whole number up to 60";
  if (!whole(one.pieces, 1, 99)) return "pieces: a whole number from 1 to 99";
  var before = seen[one.key];
  return before ? "the same as line " + before : "";
}

function keyOf(department, item) { return (department + "|" + item).toLowerCase(); }

function known(list) {
  var items = {}, departments = {};
  text.rows(
    Database.query(
      "select departmentID, name from Department where storeid = " + desk.place().store +
      " and pricelistid = " + list),
    function(field) { departments[String(field("name")).toLowerCase()] = field("departmentID"); });
  text.rows(
    Database.query(
      "select i.priceListItemId, i.itemName, i.price, d.name from PriceListItem i inner join Department d on d.departmentID = i.departmentId where d.storeid = " +
      desk.place().store + " and d.pricelistid = " + list),
    function(field) {
      items[keyOf(field("name"), field("itemName"))] = {
        id: field("priceListItemId"),
        price: text.cents(field("price"))
      };
    });
  return { items: items, departments: departments };
}

// What a text would do: {rows: [{line, department, item, price, before, isNew, isSame}], problems: [{line,
// words}], departments: names that are new}.
exports.preview = function(words, list) {
  var sign = signOf(words), all = parsed(words, sign), problems = [], seen = {}, there = known(list),
      fresh = [];
  if (all.isOpen)
    problems.push({
      line: all.rows.length ? all.rows[all.rows.length - 1].line : 1,
      words: "a quotation mark has no end"
    });
  var named = all.rows.length ? columnsOf(all.rows[0]) : null,
      columns = named || { department: 0, item: 1, price: 2, days: 3, pieces: 4, note: 5 };
  var rows = (named ? all.rows.slice(1) : all.rows).map(function(row) {
    var one = { line: row.line };
    Object.keys(heads).forEach(function(name) {
      one[name] = columns[name] === undefined ? "" : text.clean(row.fields[columns[name]] || "", 300);
    });
    one.key = keyOf(one.department, one.item);
    var wrong = trouble(one, seen);
    if (wrong) problems.push({ line: row.line, words: wrong });
    seen[one.key] = seen[one.key] || row.line;
    var before = there.items[one.key];
    one.amount = text.dollars(one.price);
    one.id = before ? before.id : 0;
    one.before = before ? before.price : null;
    one.isSame = !!before && before.price === one.amount && !one.days && !one.pieces && !one.note;
    var department = one.department.toLowerCase();
    if (
      !there.departments[department] &&
      fresh.map(function(each) { return each.toLowerCase(); }).indexOf(department) < 0)
      fresh.push(one.department);
    return one;
  });
  if (rows.length > exports.most)
    problems.push({ line: rows[exports.most].line, words: "more than " + exports.most + " lines at once" });
  if (!rows.length) problems.push({ line: 1, words: "there is no line with an item" });
  return { rows: rows, problems: problems, departments: fresh };
};

// Takes it over, all of it or nothing. A new department bears the shop's taxes, a new item its department's.
exports.take = function(words, list) {
  var plan = exports.preview(words, list);
  if (plan.problems.length)
    return { problem: "Line " + plan.problems[0].line + ": " + plan.problems[0].words + "." };
  var store = desk.place().store, departments = known(list).departments, all = [];
  var department = shop.next("Department", "departmentID"),
      item = shop.next("PriceListItem", "priceListItemId");
  plan.departments.forEach(function(name) {
    departments[name.toLowerCase()] = department;
    all.push(
      "insert into Department (departmentID, storeid, pricelistid, name, daysToProcess, displaySequence) values (" +
        [department, store, list, text.quoted(name), kinds.shopDays(), department].join(", ") + ")",
      "insert into DEPARTMENTTAX (storeid, departmentid, taxcode) select storeID, " + department +
        ", taxCode from Tax where storeID = " + store);
    ++department;
  });
  plan.rows.filter(function(one) { return !one.isSame; }).forEach(function(one) {
    var more = [
      ["daysToProcess", one.days], ["qtyInInventory", one.pieces],
      ["notes", one.note && text.quoted(one.note)]
    ].filter(function(each) { return each[1]; });
    var of = departments[one.department.toLowerCase()];
    if (one.id) {
      all.push(
        "update PriceListItem set price = " + one.amount.toFixed(2) +
        more.map(function(each) { return ", " + each[0] + " = " + each[1]; }).join("") +
        " where priceListItemId = " + one.id);
      return;
    }
    if (!one.days)
      more.push([
        "daysToProcess", "(select isnull(daysToProcess, 0) from Department where departmentID = " + of + ")"
      ]);
    all.push(
      "insert into PriceListItem (priceListItemId, departmentId, itemName, price, displaysequence" +
        more.map(function(each) { return ", " + each[0]; }).join("") + ") values (" +
        [item, of, text.quoted(one.item), one.amount.toFixed(2), item]
          .concat(more.map(function(each) { return each[1]; }))
          .join(", ") +
        ")",
      "insert into ItemTax (priceListItemID, taxCode, storeID) select " + item +
        ", taxcode, storeid from DEPARTMENTTAX where departmentid = " + of,
      "insert into ItemSurcharge (priceListItemID, surchargeCode, priceListId) select " + item +
        ", surchargeCode, " + list + " from departmentsurcharge where departmentid = " + of);
    ++item;
  });
  shop.book(
    all.concat(shop.logged("setup", { detail: "price list from a file: " + plan.rows.length + " lines" })));
  return { lines: plan.rows.length };
};

// The list as such a text.
exports.written = function(list) {
  function quoted(words) { return /[",;\t\n]/.test(words) ? '"' + words.replace(/"/g, '""') + '"' : words; }
  return "department,item,price\r\n" +
    text
      .rows(
        Database.query(
          "select d.name, i.itemName, i.price from PriceListItem i inner join Department d on d.departmentID = i.departmentId where i.disabled = 0 and d.disabled = 0 and d.storeid = " +
          desk.place().store + " and d.pricelistid = " + list +
          " order by d.displaySequence, d.departmentID, i.displaysequence, i.itemName"),
        function(field) {
          return [
            quoted(String(field("name"))), quoted(String(field("itemName"))),
            Number(field("price")).toFixed(2)
          ].join(",") +
            "\r\n";
        })
      .join("");
};
