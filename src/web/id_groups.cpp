#include <algorithm>
#include <array>

#include <fmt/format.h>

#include "base/text.h"
#include "invoice/line_access.h"
#include "web/html_writer.h"
#include "web/line_views.h"
#include "web/panels.h"

namespace ondrel {
namespace {

struct IdGroup {
  std::string_view group, label, idName;
};

// The buttons in their order.
// clang-format off
constexpr std::array<IdGroup, 6> kIdGroups = {{
  {"it", "Item",       "items"},
  {"up", "Upcharge",   "upcharges"},
  {"co", "Color",      "colors"},
  {"pa", "Pattern",    "patterns"},
  {"br", "Brand",      "brands"},
  {"",   "Properties", "properties"},
}};
// clang-format on

// What the line has of a group, for the group's button.
struct IdGroupSelection {
  std::string name, image, color;
};

IdGroupSelection getIdGroupSelection(Invoice& invoice, const Variant& lineNumber, std::string_view group) {
  IdGroupSelection selection;
  if (lineNumber.joined().empty()) return selection;
  bool found = findLine(*invoice.lineItems, lineNumber);
  std::int32_t pieces = found && !invoice.lineItems->isNull(col::quantity)
                            ? std::max(invoice.lineItems->integer(col::quantity), 1)
                            : 1;
  if (group != "it") {
    invoice.lineItems->setFilter(
        fmt::format("parentLineNumber = {} and itemType = '{}'", lineNumber.toText(), toUpper(group)));
    found = !invoice.lineItems->eof();
  }
  if (found) {
    selection = {invoice.lineItems->text(col::itemName), invoice.lineItems->text(col::backgroundImage),
                 invoice.lineItems->text(col::backgroundColor)};
    if (!invoice.lineItems->isNull(col::quantity) && invoice.lineItems->integer(col::quantity) > pieces)
      selection.name +=
          " (" + numberText(static_cast<double>(invoice.lineItems->integer(col::quantity)) / pieces) + ") ";
    if (selection.image.empty() && selection.color.empty()) {
      // With the count if there is one, which no descriptor's name has: more than one a piece shows no picture.
      const Invoice::DescriptorDisplay display = invoice.getDescriptorDisplay(selection.name, group);
      selection.image = display.icon.joined();
      selection.color = display.color.joined();
    }
  }
  invoice.lineItems->clearFilter();
  return selection;
}

}  // namespace

// Whether a group is chosen goes by the length of its name alone, for all buttons alike: pages tell the chosen
// one by other means.
Variant htmlIdGroups(Invoice& invoice, const Variant& lineNumber, const Variant& currentIdGroup) {
  const std::string current = currentIdGroup.joined();
  const bool chosen = leftCharacters(current, 2) == current;
  HtmlWriter html;
  html.raw("<div class=\"id-group-panel\">");
  for (const IdGroup& each : kIdGroups) {
    const IdGroupSelection selection = getIdGroupSelection(invoice, lineNumber, each.group);
    html.raw("<div class=\"sel-")
        .raw(each.group)
        .raw(chosen ? " id-group-button id-group-selected" : " id-group-button");
    html.raw("\"").attribute("group", each.idName).raw("><div class=\"icon\" style=\"");
    if (!selection.image.empty())
      html.raw("background-image: url('/UploadedImages/").raw(selection.image).raw("');");
    if (!selection.color.empty()) html.raw("background-color: #").raw(selection.color).raw(";");
    html.raw("\"></div><div class=\"label\">").raw(each.label).raw("</div>");
    html.raw("<div class=\"name\">").encoded(selection.name).raw("</div></div>");
  }
  html.raw("</div>");
  return html.take();
}

}  // namespace ondrel
