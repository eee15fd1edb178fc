#include <fmt/format.h>

#include <algorithm>

#include "base/text.h"
#include "invoice/line_kinds.h"
#include "web/html_writer.h"
#include "web/line_views.h"
#include "web/panels.h"

namespace ondrel {
namespace {

constexpr size_t kExpectedLineSize = 512;

bool isShown(const Recordset& line, std::string_view type) {
  if (type == kind::department) return !line.isNull(col::quantity) && line.integer(col::quantity) > 0;
  return type == kind::garment || type == kind::charge || type == kind::coupon || type == kind::promotion;
}

// Price of a line with what hangs on it; a sum that the line lacks is left out.
double shownPrice(const Recordset& line) {
  double price = 0;
  for (const Column each : {Column(col::lineItemTotal), Column(col::upchargeTotal), Column(col::colorTotal),
                            Column(col::patternTotal)})
    if (!line.isNull(each)) price += line.number(each);
  return price;
}

std::int32_t childPieces(std::span<const ChildLine> children, std::string_view type) {
  std::int32_t pieces = 0;
  for (const ChildLine& each : children)
    if (equalsIgnoringCase(each.type, type)) pieces += each.quantity.value_or(0);
  return pieces;
}

// What a line bears in words. More of one than the line has pieces shows the share of a piece, "Navy (1.5) ".
void writeDescriptors(HtmlWriter& html, std::span<const ChildLine> children, std::int32_t pieces) {
  html.raw("<ul class=\"descriptors\">");
  for (const ChildLine& child : children) {
    html.raw("<li><span>").encoded(child.name);
    if (child.quantity && *child.quantity > pieces)
      html.raw(" (").raw(numberText(static_cast<double>(*child.quantity) / pieces)).raw(") ");
    html.raw("</span></li>");
  }
  html.raw("</ul>");
}

// | panel        | order        | due date of a department | selected line, missing descriptors |
// |--------------|--------------|--------------------------|------------------------------------|
// | the entry's  | newest first | a button                 | told by classes                    |
// | a preview    | of the table | no                       | no                                 |
struct LinePanel {
  Invoice& invoice;
  const bool preview;
  const std::string selected;  // number of the selected line
  const ChildLines children;
  HtmlWriter html;

  LinePanel(Invoice& shown, bool isPreview, const Variant& selectedLine)
      : invoice(shown),
        preview(isPreview),
        selected(trim(selectedLine.joined())),
        children(*shown.lineItems),
        html(kExpectedLineSize * static_cast<size_t>(shown.lineItems->clone()->recordCount())) {}

  std::string write() {
    Recordset& lines = *invoice.lineItems;
    lines.clearFilter();
    for (const LineDepartment& department : departmentsOf(lines)) {
      if (department.id.isNull()) continue;
      writeHead(department);
      lines.setFilter(fmt::format("deptID = {} and parentLineNumber < 0", department.id.toLong()));
      if (!preview) lines.setSort("lineNumber desc");
      for (; !lines.eof(); lines.moveNext()) {
        const std::string type = toUpper(lines.text(col::itemType));
        if (isShown(lines, type)) writeLine(lines, type);
      }
      html.raw("</div></div>");
    }
    return html.take();
  }

  void writeHead(const LineDepartment& department) {
    html.raw("<div class=\"department\"").attribute("deptid", department.id).raw("><div class=\"head\">");
    if (!preview)
      html.raw("<div class=\"duedate_button\"")
          .attribute("deptid", department.id)
          .raw("><span>")
          .encoded(invoice.getDeptDueDate(department.name))
          .raw("</span></div>");
    html.raw("<div class=\"name\"><span>").encoded(department.name).raw("</span></div></div>");
    html.raw("<div class=\"lineitems\">");
  }

  void writeLine(const Recordset& line, std::string_view type) {
    const std::int32_t number = line.integer(col::lineNumber);
    const std::int32_t pieces = line.isNull(col::quantity) ? 0 : line.integer(col::quantity);
    const std::span<const ChildLine> own = children.of(number);

    html.raw("<div  class=\"lineitem");
    if (!preview) {
      if (!selected.empty() && selected == std::to_string(number)) html.raw(" selected");
      if (type == kind::garment) writeMissing(line.value(col::lineItemId), pieces, own);
    }
    html.raw(" it-").raw(toLower(type)).raw("\"").attribute("lineid", number).content();
    html.raw("<div class=\"quantity\">").raw(line.value(col::quantity)).raw("</div>");
    if (type == kind::department)
      html.raw("<div class=\"price\"></div><div class=\"name\">Quick ");
    else
      html.raw("<div class=\"price\">").currency(shownPrice(line)).raw("</div><div class=\"name\">");
    html.encoded(line.text(col::itemName)).raw("</div>");
    html.raw("<div class=\"heatseal\">").encoded(line.text(col::heatSeal)).raw("</div>");
    html.raw("<div class=\"notes\">").encoded(line.text(col::notes)).raw("</div>");
    writeDescriptors(html, own, std::max(pieces, 1));
    html.raw("</div>");
  }

  // Descriptors that the price list forces and that do not cover the pieces of the garment.
  void writeMissing(const Variant& item, std::int32_t pieces, std::span<const ChildLine> own) {
    const bool noColor = invoice.itemForces(item, "forcecolor") && childPieces(own, kind::color) < pieces;
    const bool noPattern =
        invoice.itemForces(item, "forcepattern") && childPieces(own, kind::pattern) < pieces;
    const bool noUpcharge = invoice.itemForces(item, "forceupcharge") && invoice.offersUpcharges(item) &&
                            childPieces(own, kind::upcharge) < pieces;
    if (noColor || noPattern || noUpcharge) html.raw(" missing-descriptor");
    if (noColor) html.raw(" missing-color");
    if (noPattern) html.raw(" missing-pattern");
    if (noUpcharge) html.raw(" missing-upcharge");
  }
};

}  // namespace

Variant htmlLineItems(Invoice& invoice, const Variant& lineNumber) {
  return LinePanel(invoice, false, lineNumber).write();
}

Variant htmlPreviewLineItems(Invoice& invoice, const Variant& ticketNumber) {
  const ApartmentScope scope(invoice.apartment());  // a new invoice works where this one does
  Invoice stored;
  stored.storeNumber = invoice.storeNumber;
  stored.LoadDefaults();
  stored.getExistingDetails(ticketNumber);
  stored.setStoreDays(invoice.storeNumber);
  stored.addOrEdit = "edit";
  return LinePanel(stored, true, "").write();
}

}  // namespace ondrel
