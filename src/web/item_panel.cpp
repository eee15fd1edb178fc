#include <fmt/format.h>

#include "base/text.h"
#include "data/query_database.h"
#include "invoice/line_access.h"
#include "web/button_panel.h"
#include "web/line_views.h"
#include "web/panels.h"

namespace ondrel {
namespace {

constexpr size_t kHeadSize = 256;

// Without a department the common items of the price list.
std::string itemsOf(std::int32_t priceList, const std::string& department) {
  return fmt::format(
      " select pricelistitem.itemname, pricelistitem.pricelistitemid, pricelistitem.departmentid, "
      "pricelistitem.promptforupcharge, pricelistitem.promptfordescriptors,  "
      "isnull(pricelistitem.imagefilename, '') as icon,  department.name as departmentname,  "
      "department.useheatseals  from pricelistitem  inner join department on pricelistitem.departmentID = "
      "department.departmentID  where department.pricelistid = '{}'{} order by pricelistitem.displaysequence, "
      "pricelistitem.itemname ",
      priceList,
      department.empty()
          ? " and pricelistitem.disabled = 0 and pricelistitem.commonitem = 1 "
          : fmt::format(" and pricelistitem.disabled = 0 and pricelistitem.departmentID = '{}'",
                        escapeSqlValue(department)));
}

// What the line at hand says to the buttons.
struct ChosenItem {
  Variant id = 0, pieces;
};

void writeButtons(ButtonPanel& panel, Recordset& rows, const ChosenItem& chosen, bool wantsHeatSeals) {
  const Column itemId = rows.column("pricelistitemid"), itemname = rows.column("itemname"),
               icon = rows.column("icon"), department = rows.column("departmentid"),
               promptForUpcharge = rows.column("promptforupcharge"),
               useHeatSeals = rows.column("useheatseals");
  HtmlWriter& html = panel.buttons();
  for (; !rows.eof(); rows.moveNext()) {
    const std::string name = rows.text(itemname), image = rows.text(icon);
    const Variant id = rows.value(itemId);
    html.raw("<div id=\"it").raw(id).raw("\"").attribute("departmentid", rows.value(department));
    if (!image.empty()) {
      html.raw(" style=\"");
      writeImage(html, image);
      html.raw("\"");
    }
    const bool isChosen = isGreater(chosen.id, 0) && isEqual(id, chosen.id);
    if (isChosen) panel.choose(name);
    if (isChosen && !chosen.pieces.isNull() && !isEqual(chosen.pieces, 1))
      html.attribute("quantity", chosen.pieces);
    html.raw(isChosen ? " class=\"button pli li-it plisel" : " class=\"button pli li-it");
    if (!rows.isNull(promptForUpcharge) && !rows.flag(promptForUpcharge)) html.raw(" fin");
    if (wantsHeatSeals && rows.flag(useHeatSeals)) html.raw(" uhs");
    html.raw("\"").escaped("itemname", toLower(name)).raw("><span>").encoded(name).raw("</span></div>");
  }
}

}  // namespace

Variant htmlItems(Invoice& invoice, const Variant& departmentID, const Variant& lineNumber) {
  std::string department = departmentID.joined();
  ChosenItem chosen;
  if (!lineNumber.joined().empty() && findLine(*invoice.lineItems, lineNumber)) {
    chosen = {invoice.lineItems->value(col::lineItemId), invoice.lineItems->value(col::quantity)};
    department = invoice.lineItems->value(col::deptId).joined();
  }
  invoice.lineItems->clearFilter();
  const RecordsetRef rows = queryDatabase(*invoice.apartment(), itemsOf(invoice.priceListId, department));
  if (rows->eof()) return "";
  const std::string title = rows->text("departmentname");
  ButtonPanel panel;
  writeButtons(panel, *rows, chosen, !invoice.garmentSearch);
  HtmlWriter html(panel.buttons().text().size() + kHeadSize);
  html.raw("<div class=\"items collapsed collapsible panel\" group=\"it\">");
  panel.writeTo(html, "items", title, "it");
  return html.take();
}

}  // namespace ondrel
