#include <fmt/format.h>

#include "base/text.h"
#include "data/query_database.h"
#include "invoice/line_access.h"
#include "web/button_panel.h"
#include "web/line_views.h"
#include "web/panels.h"

namespace ondrel {
namespace {

// Where the answer of a read keeps what a button is made of.
struct ButtonColumns {
  Column id, name, icon, maxQuantity;
};

// ---------------------------------------------------------------- upcharges

constexpr std::string_view kMaxQuantity = "isnull(itemdescriptorprice.maxQuantity, 1)";

std::string upchargesOf(std::string_view item, std::string_view maxQuantity) {
  return fmt::format(
      "select itemdescriptorprice.descriptorname, itemdescriptorprice.itemdescriptorpriceid, "
      "isnull(itemdescriptorprice.imagefilename, '') as icon, {} as maxQuantity, "
      "pricelistitem.promptfordescriptors  from itemdescriptorprice  inner join pricelistitem on "
      "itemdescriptorprice.pricelistitemid = pricelistitem.pricelistitemid  where itemdescriptorprice.disabled = 0 "
      "and itemdescriptorprice.descriptortype = 'UP'  and itemdescriptorprice.pricelistitemid = '{}' order by "
      "itemdescriptorprice.displaysequence, itemdescriptorprice.descriptorname ",
      maxQuantity, item);
}

RecordsetRef readUpcharges(Apartment& apartment, const std::string& item) {
  try {
    return queryDatabase(apartment, upchargesOf(item, kMaxQuantity));
  } catch (const Error&) {
    // An older database has no such column; any other failure comes again.
    return queryDatabase(apartment, upchargesOf(item, "1"));
  }
}

// ---------------------------------------------------------------- descriptors

constexpr std::int32_t kMostBrands = 30;

std::string descriptorsOf(const Recordset& group, const std::string& filter) {
  const bool isShortened = filter.empty() && equalsIgnoringCase(trim(group.text("type")), "BR");
  return fmt::format(
      " select {}descriptorid, name, isnull(color, '') as color, isnull(icon, '') as icon, preview, maxquantity from "
      "descriptor where descriptorgroupid = '{}'{} order by displayorder, name ",
      isShortened ? fmt::format("top {} ", kMostBrands) : "",
      escapeSqlValue(group.value("descriptorgroupid").joined()),
      filter.empty() ? "" : fmt::format(" and name like '{}%' ", escapeSqlValue(filter)));
}

void writeDescriptorStyle(HtmlWriter& html, const std::string& color, const std::string& icon) {
  if (color.empty() && icon.empty()) return;
  html.raw(" style=\"");
  if (!color.empty()) html.raw("background-color: #").raw(color);
  if (!color.empty() && !icon.empty()) html.raw("; ");
  if (!icon.empty()) writeImage(html, icon);
  html.raw("\"");
}

void writeDescriptorButtons(ButtonPanel& panel, Recordset& rows, std::string_view type,
                            std::span<const ChildLine> chosen) {
  const ButtonColumns columns = {rows.column("descriptorid"), rows.column("name"), rows.column("icon"),
                                 rows.column("maxquantity")};
  const Column color = rows.column("color");
  for (; !rows.eof(); rows.moveNext()) {
    const std::string name = rows.text(columns.name);
    const std::int32_t pieces = childQuantity(chosen, name, type);
    HtmlWriter& html = panel.buttons();
    html.raw("<div id=\"").raw(type).raw(rows.value(columns.id)).raw("\"");
    html.raw(pieces > 0 ? " class=\"button plisel pli li-" : " class=\"button pli li-").raw(type).raw("\"");
    if (pieces > 0) panel.choose(name, pieces);
    writeDescriptorStyle(html, rows.text(color), rows.text(columns.icon));
    html.escaped("itemname", toLower(name)).attribute("maxquantity", rows.value(columns.maxQuantity));
    html.raw("><span>").encoded(name).raw("</span></div>");
  }
}

// A brand that the table does not hold can be named by typing it.
void writeTypedButton(HtmlWriter& html, std::string_view type, const std::string& typed) {
  html.raw("<div id=\"")
      .raw(type)
      .raw("0\" class=\"button pli li-")
      .raw(type)
      .raw("\"")
      .attribute("itemname", typed);
  html.raw(" maxquantity=\"1\"><span>").raw(typed).raw("</span></div>");
}

struct DescriptorChoice {
  bool ofOneGroup = false, withUpcharges = true;
  std::string filter;  // how the names begin, "" for all
};

// The filter goes off with the first button that asks what the line has of it; without a line, or without a
// button, it stays as it was set.
//
// | panel           | groups          | upcharges            | descriptors                          |
// |-----------------|-----------------|----------------------|--------------------------------------|
// | htmlDescriptors | all             | always, in front     | all, the first 30 brands             |
// | htmlDescriptor  | of one type,    | without a type       | the same; with a filter those that   |
// |                 | all without one | or with "up"         | begin so, or what was typed          |
std::string descriptorPanels(Invoice& invoice, const std::string& groupsStatement, const Variant& lineNumber,
                             const DescriptorChoice& choice) {
  Variant item = "";
  const bool hasLine = !lineNumber.joined().empty();
  if (hasLine && findLine(*invoice.lineItems, lineNumber)) item = invoice.lineItems->value(col::lineItemId);
  HtmlWriter html;
  if (choice.withUpcharges)
    html.raw("<div class=\"upcharge-section\">").raw(htmlUpcharges(invoice, item, lineNumber)).raw("</div>");
  const ChildLines children(*invoice.lineItems, invoice.lineItems->sort());
  const std::span<const ChildLine> chosen =
      hasLine ? children.of(lineNumber.toLong()) : std::span<const ChildLine>();
  const RecordsetRef groups = queryDatabase(*invoice.apartment(), groupsStatement);
  for (; !groups->eof(); groups->moveNext()) {
    const RecordsetRef rows = queryDatabase(*invoice.apartment(), descriptorsOf(*groups, choice.filter));
    if (rows->eof() && choice.filter.empty()) continue;
    if (hasLine && !rows->eof()) invoice.lineItems->clearFilter();
    const std::string title = groups->text("name"), name = toLower(title), type = groups->text("type");
    const std::string shortType = toLower(trim(type));
    ButtonPanel panel;
    if (rows->eof())
      writeTypedButton(panel.buttons(), shortType, choice.filter);
    else
      writeDescriptorButtons(panel, *rows, shortType, chosen);
    html.raw("<div class=\"")
        .raw(name)
        .raw(choice.ofOneGroup ? " collapsible panel\"" : " collapsed collapsible panel\"");
    html.attribute("group", toLower(type)).content();
    panel.writeTo(html, name, title, type);
  }
  return html.take();
}

}  // namespace

// ---------------------------------------------------------------- descriptors

Variant htmlDescriptorGroup(Invoice& invoice, const Variant& descriptorGroupID, const Variant& lineNumber) {
  return htmlDescriptor(invoice, descriptorGroupID, lineNumber);
}

Variant htmlDescriptors(Invoice& invoice, const Variant&, const Variant& lineNumber) {
  return descriptorPanels(invoice, " select * from descriptorgroup order by displayorder ", lineNumber,
                          DescriptorChoice{});
}

Variant htmlDescriptor(Invoice& invoice, const Variant& group, const Variant& lineNumber,
                       const Variant& filter) {
  const std::string type = group.joined();
  const std::string ofType = type.empty() ? "" : fmt::format(" where [type] = '{}'", escapeSqlValue(type));
  return descriptorPanels(
      invoice, fmt::format(" select * from descriptorgroup {} order by displayorder ", ofType), lineNumber,
      {.ofOneGroup = true,
       .withUpcharges = type.empty() || equalsIgnoringCase(type, "up"),
       .filter = filter.joined()});
}

Variant htmlUpcharges(Invoice& invoice, const Variant& priceListItemId, const Variant& lineNumber) {
  HtmlWriter html;
  html.raw("<div class=\"upcharges collapsible collapsed panel\" group=\"up\">");
  ButtonPanel panel;
  if (const std::string item = priceListItemId.joined(); !item.empty()) {
    const RecordsetRef rows = readUpcharges(*invoice.apartment(), escapeSqlValue(item));
    const ButtonColumns columns = {rows->column("itemdescriptorpriceid"), rows->column("descriptorname"),
                                   rows->column("icon"), rows->column("maxQuantity")};
    const Column promptForDescriptors = rows->column("promptfordescriptors");
    const bool hasLine = !lineNumber.joined().empty();
    const ChildLines children(*invoice.lineItems, invoice.lineItems->sort());
    const std::span<const ChildLine> chosen =
        hasLine ? children.of(lineNumber.toLong()) : std::span<const ChildLine>();
    if (hasLine && !rows->eof()) invoice.lineItems->clearFilter();
    for (; !rows->eof(); rows->moveNext()) {
      const std::string name = rows->text(columns.name), icon = rows->text(columns.icon);
      const std::int32_t pieces = childQuantity(chosen, name, "UP");
      HtmlWriter& button = panel.buttons();
      button.raw("<div id=\"up").raw(rows->value(columns.id)).raw("\"");
      button.attribute("maxquantity", rows->value(columns.maxQuantity)).raw(" ");
      button.raw(pieces > 0 ? " class=\"button plisel pli li-up" : " class=\"button pli li-up");
      if (pieces > 0) panel.choose(name, pieces);
      button.raw(rows->isNull(promptForDescriptors) || rows->flag(promptForDescriptors) ? "\"" : " fin\"");
      writeDescriptorStyle(button, "", icon);
      // The attribute stands twice; a browser keeps the first.
      button.escaped("itemname", toLower(name))
          .raw(" maxquantity=\"1\"><span>")
          .encoded(name)
          .raw("</span></div>");
    }
  }
  panel.writeTo(html, "upcharges", "Upcharges", "up");
  return html.take();
}

}  // namespace ondrel
