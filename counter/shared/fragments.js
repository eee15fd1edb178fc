// The parts of the entry screen that change with a click, and the pick lists, as the library draws them.
var html = Server.include("shared/html.js");
var text = Server.include("shared/text.js");
var paper = Server.include("shared/paper.js");
var quotes = Server.include("shared/quote.js");
var tickets = Server.include("shared/tickets.js");
var h = html.tag;

// The fragments carry styles of their own, which the security policy does not admit: they are kept as data.
function plain(fragment) { return fragment.replace(/ style="/g, " data-style=\""); }

// What changes with every click.
exports.paper = function(invoice, line) {
  var quote = quotes.of(invoice);
  return {
    lines: paper.lines(invoice, line, quote),
    sums: paper.sums(quote),
    bar: paper.bar(invoice, quote),
    offers: paper.offers(),
    notices: paper.notices(quote),
    preferences: invoice.htmlInvoicePreferences(),
    seals: invoice.htmlNewHeatSeals(),
    coupons: paper.coupons(invoice),
    undo: Session.undo ? Session.undo.what : "",
    line: line > 0 ? line : 0
  };
};

// ---- pick lists, with the price on each button

function prices(sql, id) {
  var all = {};
  text.rows(
    Database.query(sql),
    function(field) { all[field(id)] = field("later") ? "price later" : text.money(field("price")); });
  return all;
}

function itemPrices(invoice, department) {
  return prices(
    "select priceListItemId, price, priceLater as later from PriceListItem where disabled = 0 and " +
      (department ? "departmentId = " + text.whole(department) : "commonitem = 1"),
    "priceListItemId");
}

function upchargePrices(item) {
  return item ?
    prices(
      "select itemDescriptorPriceId, price, 0 as later from ItemDescriptorPrice where disabled = 0 and " +
        "priceListItemId = " + item,
      "itemDescriptorPriceId") :
    {};
}

// How often each extra is on the line, by name.
function counts(invoice, line) {
  var all = {}, children = invoice.lineItems.Clone();
  children.Filter = "parentLineNumber=" + line;
  text.rows(children, function(field) { all[field("itemName")] = field("quantity"); });
  return all;
}

function priced(fragment, kind, known) {
  return fragment.replace(
    new RegExp("(<div id=\"" + kind + "(\\d+)\"[^>]*><span>[^<]*</span>)", "g"),
    function(
      all, button,
      id) { return known[id] ? button + "<span class=\"price\">" + known[id] + "</span>" : button; });
}

function counted(fragment, known) {
  return fragment.replace(
    /(class="[^"]*plisel[^"]*"[^>]*><span>([^<]*)<\/span>)/g, function(all, button, name) {
      var count = Object.keys(known)
                    .filter(function(one) { return text.encoded(one) === name; })
                    .map(function(one) { return known[one]; })[0];
      return count > 1 ? button + "<span class=\"count\">\u00d7" + count + "</span>" : button;
    });
}

// The pick list of a group: items of a department, or what hangs on the selected garment.
exports.panel = function(invoice, group, department, line, filter) {
  var chosen = line > 0 ? line : "",
      item = line > 0 ? tickets.fieldOf(invoice, line, "lineItemId") || "" : "";
  switch (group) {
    case "up":
      return plain(counted(
        priced(invoice.htmlUpcharges(item, chosen), "up", upchargePrices(item)), counts(invoice, line)));
    case "co":
    case "pa":
    case "br": return plain(invoice.htmlDescriptor(group, chosen, filter));
    case "pr":
      return plain(
        "<form class=\"properties\">" + invoice.htmlLineProperties(department, chosen) + "</form>");
    default: return plain(priced(invoice.htmlItems(department, ""), "it", itemPrices(invoice, department)));
  }
};

exports.groups = function(
  invoice, line, group) { return line > 0 ? plain(invoice.htmlIdGroups(line, group)) : ""; };

// What the price list asks the clerk about a garment that has no answer yet.
exports.question = function(invoice, line) {
  return line > 0 && !tickets.fieldOf(invoice, line, "promptResponse") &&
    tickets.fieldOf(invoice, line, "peNotes") ||
    "";
};

// A stored ticket, to be compared with the one on the screen. Reading it loads the shop's tables for that
// ticket.
exports.preview = function(invoice, ticket) {
  Session.tables = "";
  return invoice.htmlSummary(ticket) + invoice.htmlPreviewLineItems(ticket);
};

// All items of the price list, for what is typed: [id, name, price].
exports.items = function(invoice) {
  return text.rows(
    Database.query(
      "select p.priceListItemId, p.itemName from PriceListItem p inner join Department d on " +
      "d.departmentID = p.departmentId where p.disabled = 0 and d.disabled = 0 and d.pricelistid = " +
      invoice.priceListId + " order by p.usecounter desc, p.displaysequence"),
    function(field) {
      return [field("priceListItemId"), field("itemName")];
    });
};
