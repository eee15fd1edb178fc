#include "base/text.h"
#include "invoice/invoice.h"
#include "web/html_writer.h"

namespace ondrel {
namespace {

using enum LineColumn;

constexpr size_t kNotesOnButton = 10;
constexpr std::int32_t kMostPieces = 10;  // that the form of a charge offers

struct FormField {
  std::string_view id, label;
  bool fixed;  // by the line: the clerk cannot type
};

void writeInput(HtmlWriter& html, const FormField& field, bool hasLine, const Variant& value) {
  html.raw("<div><label").attribute("for", field.id).content().raw(field.label).raw("</label><input");
  if (field.fixed && hasLine) html.raw(" readonly");
  html.attribute("name", field.id).attribute("id", field.id).escaped("value", value).raw("></div>");
}

void writeUpcharges(HtmlWriter& html, Recordset& upcharges) {
  if (upcharges.eof()) return;
  html.raw("<h3>Upcharges</h3><table class=\"table descriptor-table\"><thead><tr>");
  html.raw("<th>Qty</th><th>Name</th><th>Old Price</th><th>New Price</th></tr></thead><tbody>");
  for (; !upcharges.eof(); upcharges.moveNext()) {
    html.raw("<tr><td>").raw(upcharges.value(quantity)).raw("</td><td>").raw(upcharges.value(itemName));
    html.raw("</td><td>").raw(fixedText(upcharges.number(unitPrice), 2)).raw("</td><td>");
    html.raw("<input class=\"currency item-upcharge-price\"")
        .attribute("data-line-number", upcharges.value(lineNumber));
    html.raw(" value=\"\"></td></tr>");
  }
  html.raw("</tbody></table>");
}

}  // namespace

Variant Invoice::htmlLineFunctions(const Variant& line) {
  HtmlWriter html;
  const bool found = !line.joined().empty() && findLine(line);
  html.raw("<div class=\"button edit-line-price\"><span class=\"value\">");
  if (found) html.currency(lineItems->number(unitPrice));
  html.raw("</span><span class=\"label\">Unit Price</span></div>");
  html.raw("<div class=\"button edit-line-notes\"><span class=\"value\">");
  if (found) html.encoded(leftCharacters(lineItems->text(notes), kNotesOnButton));
  html.raw("</span><span class=\"label\">Notes</span></div>");
  return html.take();
}

Variant Invoice::htmlLineProperties(const Variant&, const Variant& line) {
  HtmlWriter html, upcharges;
  bool found = false;
  Variant name, pieces = "1", packed = "1", seal, note;
  double price = 0;
  if (!line.joined().empty()) {
    found = findLine(line);
    if (found) {
      name = lineItems->value(itemName);
      pieces = lineItems->value(quantity);
      price = lineItems->number(unitPrice);
      seal = lineItems->value(heatSeal);
      note = lineItems->value(notes);
      packed = lineItems->value(pkgQuantity);
    }
    lineItems->setFilter("parentLineNumber=" + line.toText() + " and itemType='UP'");
    writeUpcharges(upcharges, *lineItems);
  }
  // clang-format off
  //                 id                    label             fixed
  writeInput(html, {"item-name",          "Name",           true},  found, name);
  writeInput(html, {"item-price",         "Unit price",     false}, found, fixedText(price, 2));
  writeInput(html, {"item-quantity",      "Quantity",       false}, found, pieces);
  writeInput(html, {"item-unit-quantity", "Unit quantity",  true},  found, packed);
  writeInput(html, {"item-heatseal",      "Heat seal",      true},  found, seal);
  // clang-format on
  html.raw("<div><label for=\"item-notes\">Notes</label><textarea name=\"item-notes\" id=\"item-notes\">");
  html.raw(note).raw("</textarea></div>");
  html.raw("<div class=\"item-upcharges\">").raw(upcharges.text()).raw("</div>");
  return html.take();
}

Variant Invoice::htmlAddChargeDetail(const Variant& line) {
  Variant pieces = 1, price = "0.00", description;
  if (!line.joined().empty()) {
    lineItems->setFilter("itemType='AC' and lineNumber=" + line.toText());
    if (!lineItems->eof()) {
      price = lineItems->value(unitPrice);
      pieces = lineItems->value(quantity);
      description = lineItems->value(itemName);
    }
  }
  HtmlWriter html;
  html.raw("<div class=\"charge\"><label for=\"description\">Description</label>");
  html.raw("<input name=\"description\" id=\"description\"").attribute("value", description).raw("/>");
  html.raw("<label for=\"pieces\">Pieces</label><select name=\"pieces\" id=\"pieces\">");
  for (std::int32_t count = 1; count <= kMostPieces; ++count) {
    html.raw("<option").attribute("value", count).raw(isEqual(count, pieces) ? " selected" : "").content();
    html.raw(count).raw("</option>");
  }
  html.raw("</select><label for=\"price\">Price</label><input name=\"price\" id=\"price\"")
      .attribute("value", price);
  html.raw(" /><div class=\"command\" id=\"apply-charge\"><span>Ok</span></div>");
  html.raw("<div class=\"command\" id=\"cancel-charge\"><span>Cancel</span></div></div>");
  return html.take();
}

}  // namespace ondrel
