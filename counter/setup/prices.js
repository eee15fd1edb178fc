// A price list from a file: looked at line by line, then taken over as a whole; and the list as it is, to
// begin from. The page's script sends the file's text as JSON, since a form is small.
var layout = Server.include("shared/layout.js");
var html = Server.include("shared/html.js");
var desk = Server.include("shared/desk.js");
var text = Server.include("shared/text.js");
var shop = Server.include("shared/shop.js");
var file = Server.include("shared/price_list_file.js");
var h = html.tag;

if (!desk.staffed() || !shop.allowed("setup")) return;
var lists = text.rows(
  Database.query("select PriceListId, name from PriceList where disable = 0 order by PriceListId"),
  function(field) {
    return [field("PriceListId"), field("name") || field("PriceListId")];
  });
function listOf(value) {
  return lists.filter(function(one) { return one[0] === text.whole(value); })[0];
}

if (Request.query.download) {
  var wanted = listOf(Request.query.download);
  if (!wanted) return Response.redirect("/setup/prices");
  Response.header("Content-Type", "text/csv; charset=utf-8");
  Response.header("Content-Disposition", "attachment; filename=\"prices.csv\"");
  Response.write(file.written(wanted[0]));
  return;
}

function shown(plan) {
  function said(one) { return one.isSame ? "as it is" : one.id ? "was " + text.money(one.before) : "new"; }
  var changed = plan.rows.filter(function(one) { return !one.isSame; }).length;
  if (plan.problems.length) {
    return html.all(
      shop.problem(
        plan.problems.length + (plan.problems.length === 1 ? " line has" : " lines have") +
        " to be mended first; nothing is taken over."),
      shop.table(
        ["Line", "What is wrong"],
        plan.problems.slice(0, 100).map(function(
          one) { return h("tr", null, h("th", { scope: "row" }, one.line), h("td", null, one.words)); }),
        "Lines to mend"));
  }
  return html.all(
    h("p", { "class": "notice" },
      plan.rows.length + " lines, " + changed + " of them new or changed." +
        (plan.departments.length ? " New departments: " + plan.departments.join(", ") + "." : "")),
    changed ? h("button", { "class": "main", type: "button", id: "take" }, "Take it over") : "",
    shop.table(
      ["Line", "Department", "Item", ["Price", "money"], ""], plan.rows.slice(0, 500).map(function(one) {
        return h(
          "tr", null, h("th", { scope: "row" }, one.line), h("td", null, one.department),
          h("td", null, one.item), h("td", { "class": "money" }, text.money(one.amount)),
          h("td", null, said(one)));
      }),
      "Preview"));
}

if (Request.method === "POST") {
  var sent = Request.json || {}, list = listOf(sent.list),
      words = String(sent.text || "").replace(/^\ufeff/, "");
  if (!list) return Response.json({ html: String(shop.problem("There is no such price list.")) });
  if (!sent.take) return Response.json({ html: String(shown(file.preview(words, list[0]))) });
  var result = shop.change(function() { return file.take(words, list[0]); });
  return Response.json({
    html: String(
      result.problem ? shop.problem(result.problem) :
                       h("p", { "class": "done" }, "Taken over: " + result.lines + " lines.")),
    done: !result.problem
  });
}

if (!lists.length)
  return layout.notice(
    "Price list from a file", "Enter a price list first.", "/setup/edit?what=lists", "New price list");
layout.page(
  "Price list from a file",
  html.all(
    h("p", { "class": "notice" },
      "One line an item: department, item, price. A first line that names the columns may have days, pieces and note too. An item that is there already gets the new price; nothing is taken away."),
    h("form", { id: "prices", "class": "shop-form", method: "post", action: "/setup/prices" },
      h("fieldset", null, h("legend", null, "The file"),
        shop.select("list", "Price list", lists[0][0], lists),
        h("div", null, h("label", { "for": "f-file" }, "File"),
          h("input", { id: "f-file", type: "file", accept: ".csv,.txt,text/csv" })),
        h("div", { "class": "wide" }, h("label", { "for": "f-text" }, "or its lines"),
          h("textarea", { id: "f-text", rows: 8, placeholder: "Shirts,Shirt on Hanger,2.50" }))),
      h("div", { "class": "finish" }, h("button", { "class": "main" }, "Look at it"),
        h("a", { "class": "button", href: "/setup/prices?download=" + lists[0][0] }, "The list as it is"),
        h("a", { "class": "button quiet", href: "/setup" }, "All of the shop"))),
    h("div", { id: "plan", "aria-live": "polite" })),
  { styles: ["shop.css"], scripts: ["prices.js"] });
