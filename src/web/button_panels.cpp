#include <fmt/format.h>

#include "base/text.h"
#include "data/query_database.h"
#include "invoice/invoice.h"
#include "web/html_writer.h"
#include "web/line_views.h"

namespace ondrel {
namespace {

using enum LineColumn;

// Where the answer of a read keeps what a button is made of.
struct ButtonColumns {
  Column id, name, icon, maxQuantity;
};

// A panel of buttons with a head that names what is chosen among them.
class ButtonPanel {
 public:
  // Adds to the head; `pieces` above 1 are told in brackets.
  void choose(const std::string& name, std::int32_t pieces = 1) {
    if (!chosen_.empty()) chosen_ += ", ";
    chosen_ += name;
    if (pieces > 1) chosen_ += " (" + std::to_string(pieces) + ")";
  }
  HtmlWriter& buttons() { return buttons_; }

  // The panel from its head on.
  void writeTo(HtmlWriter& html, std::string_view groupName, const std::string& title,
               std::string_view type) {
    html.raw("<div class=\"pligroup\"><div class=\"header\"><span class=\"group\"")
        .attribute("groupname", groupName);
    html.content().encoded(title).raw("</span><span class=\"sel-").raw(type).raw("-name\">").encoded(chosen_);
    html.raw("</span></div>").raw(buttons_.text()).raw("</div></div>");
  }

 private:
  std::string chosen_;
  HtmlWriter buttons_;
};

void writeImage(HtmlWriter& html, const std::string& icon) {
  html.raw("background-image: url(/uploadedimages/").raw(icon).raw(")");
}

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
  const bool isShortened = filter.empty() && equalsIgnoringCase(group.text("type"), "BR");
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

}  // namespace

// ---------------------------------------------------------------- items

Variant Invoice::htmlItems(const Variant& departmentID, const Variant& line) {
  std::string department = departmentID.joined();
  Variant selected = 0, linePieces;
  if (!line.joined().empty() && findLine(line)) {
    selected = lineItems->value(lineItemId);
    department = lineItems->value(deptId).joined();
    linePieces = lineItems->value(quantity);
  }
  const RecordsetRef rows = queryDatabase(
      *apartment_,
      fmt::format(
          " select pricelistitem.itemname, pricelistitem.pricelistitemid, pricelistitem.departmentid, "
          "pricelistitem.promptforupcharge, pricelistitem.promptfordescriptors,  "
          "isnull(pricelistitem.imagefilename, '') as icon,  department.name as departmentname,  "
          "department.useheatseals  from pricelistitem  inner join department on pricelistitem.departmentID = "
          "department.departmentID  where department.pricelistid = '{}'{} order by pricelistitem.displaysequence, "
          "pricelistitem.itemname ",
          priceListId,
          department.empty()
              ? " and pricelistitem.disabled = 0 and pricelistitem.commonitem = 1 "
              : fmt::format(" and pricelistitem.disabled = 0 and pricelistitem.departmentID = '{}'",
                            escapeSqlValue(department))));
  lineItems->clearFilter();
  if (rows->eof()) return "";

  const ButtonColumns columns = {rows->column("pricelistitemid"), rows->column("itemname"),
                                 rows->column("icon"), rows->column("departmentid")};
  const Column departmentOfItem = rows->column("departmentid"),
               promptForUpcharge = rows->column("promptforupcharge"),
               useHeatSeals = rows->column("useheatseals");
  const std::string title = rows->text("departmentname");
  ButtonPanel panel;
  HtmlWriter& html = panel.buttons();
  for (; !rows->eof(); rows->moveNext()) {
    const std::string name = rows->text(columns.name), icon = rows->text(columns.icon);
    const Variant id = rows->value(columns.id);
    html.raw("<div id=\"it").raw(id).raw("\"").attribute("departmentid", rows->value(departmentOfItem));
    if (!icon.empty()) {
      html.raw(" style=\"");
      writeImage(html, icon);
      html.raw("\"");
    }
    const bool isSelected = isGreater(selected, 0) && isEqual(id, selected);
    if (isSelected) panel.choose(name);
    if (isSelected && !isEqual(linePieces, 1)) html.attribute("quantity", linePieces);
    html.raw(isSelected ? " class=\"button pli li-it plisel" : " class=\"button pli li-it");
    if (!rows->flag(promptForUpcharge)) html.raw(" fin");
    if (!garmentSearch && rows->flag(useHeatSeals)) html.raw(" uhs");
    html.raw("\"").escaped("itemname", toLower(name)).raw("><span>").encoded(name).raw("</span></div>");
  }
  HtmlWriter page;
  page.raw("<div class=\"items collapsed collapsible panel\" group=\"it\">");
  panel.writeTo(page, "items", title, "it");
  return page.take();
}

// ---------------------------------------------------------------- descriptors

Variant Invoice::htmlDescriptorGroup(const Variant& descriptorGroupID, const Variant& line) {
  return htmlDescriptor(descriptorGroupID, line);
}

Variant Invoice::htmlDescriptors(const Variant&, const Variant& line) {
  return descriptorPanels(" select * from descriptorgroup order by displayorder ", line, DescriptorChoice{});
}

Variant Invoice::htmlDescriptor(const Variant& group, const Variant& line, const Variant& filter) {
  const std::string type = group.joined();
  const std::string ofType = type.empty() ? "" : fmt::format(" where [type] = '{}'", escapeSqlValue(type));
  return descriptorPanels(fmt::format(" select * from descriptorgroup {} order by displayorder ", ofType),
                          line,
                          {.ofOneGroup = true,
                           .withUpcharges = type.empty() || equalsIgnoringCase(type, "up"),
                           .filter = filter.joined()});
}

// | panel           | groups          | upcharges            | descriptors                          |
// |-----------------|-----------------|----------------------|--------------------------------------|
// | htmlDescriptors | all             | always, in front     | all, the first 30 brands             |
// | htmlDescriptor  | of one type,    | without a type       | the same; with a filter those that   |
// |                 | all without one | or with "up"         | begin so, or what was typed          |
std::string Invoice::descriptorPanels(const std::string& groupsStatement, const Variant& line,
                                      const DescriptorChoice& choice) {
  Variant item = "";
  const bool hasLine = !line.joined().empty();
  if (hasLine && findLine(line)) item = lineItems->value(lineItemId);
  lineItems->clearFilter();
  HtmlWriter html;
  if (choice.withUpcharges)
    html.raw("<div class=\"upcharge-section\">").raw(htmlUpcharges(item, line)).raw("</div>");
  const ChildLines children(*lineItems);
  const std::span<const ChildLine> chosen =
      hasLine ? children.of(line.toLong()) : std::span<const ChildLine>();
  const RecordsetRef groups = queryDatabase(*apartment_, groupsStatement);
  for (; !groups->eof(); groups->moveNext()) {
    const RecordsetRef rows = queryDatabase(*apartment_, descriptorsOf(*groups, choice.filter));
    if (rows->eof() && choice.filter.empty()) continue;
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

Variant Invoice::htmlUpcharges(const Variant& priceListItemId, const Variant& line) {
  HtmlWriter html;
  html.raw("<div class=\"upcharges collapsible collapsed panel\" group=\"up\">");
  ButtonPanel panel;
  if (const std::string item = priceListItemId.joined(); !item.empty()) {
    const RecordsetRef rows = readUpcharges(*apartment_, escapeSqlValue(item));
    const ButtonColumns columns = {rows->column("itemdescriptorpriceid"), rows->column("descriptorname"),
                                   rows->column("icon"), rows->column("maxQuantity")};
    const Column promptForDescriptors = rows->column("promptfordescriptors");
    const bool hasLine = !line.joined().empty();
    const ChildLines children(*lineItems);
    const std::span<const ChildLine> chosen =
        hasLine ? children.of(line.toLong()) : std::span<const ChildLine>();
    for (; !rows->eof(); rows->moveNext()) {
      const std::string name = rows->text(columns.name), icon = rows->text(columns.icon);
      const std::int32_t pieces = childQuantity(chosen, name, "UP");
      HtmlWriter& button = panel.buttons();
      button.raw("<div id=\"up").raw(rows->value(columns.id)).raw("\"");
      button.attribute("maxquantity", rows->value(columns.maxQuantity)).raw(" ");
      button.raw(pieces > 0 ? " class=\"button plisel pli li-up" : " class=\"button pli li-up");
      if (pieces > 0) panel.choose(name, pieces);
      button.raw(rows->flag(promptForDescriptors) ? "\"" : " fin\"");
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
