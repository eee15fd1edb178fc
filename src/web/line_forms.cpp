#include "base/text.h"
#include "invoice/line_access.h"
#include "web/html_writer.h"
#include "web/line_views.h"
#include "web/panels.h"

namespace ondrel {
namespace {

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
    html.raw("<tr><td>")
        .raw(upcharges.value(col::quantity))
        .raw("</td><td>")
        .raw(upcharges.value(col::itemName));
    html.raw("</td><td>").raw(fixedText(upcharges.number(col::unitPrice), 2)).raw("</td><td>");
    html.raw("<input class=\"currency item-upcharge-price\"")
        .attribute("data-line-number", upcharges.value(col::lineNumber));
    html.raw(" value=\"\"></td></tr>");
  }
  html.raw("</tbody></table>");
}

}  // namespace

Variant htmlLineFunctions(Invoice& invoice, const Variant& lineNumber) {
  HtmlWriter html;
  const bool found = !lineNumber.joined().empty() && findLine(*invoice.lineItems, lineNumber);
  html.raw("<div class=\"button edit-line-price\"><span class=\"value\">");
  if (found) html.currency(invoice.lineItems->number(col::unitPrice));
  html.raw("</span><span class=\"label\">Unit Price</span></div>");
  html.raw("<div class=\"button edit-line-notes\"><span class=\"value\">");
  if (found) html.encoded(leftCharacters(invoice.lineItems->text(col::notes), kNotesOnButton));
  html.raw("</span><span class=\"label\">Notes</span></div>");
  return html.take();
}

Variant htmlLineProperties(Invoice& invoice, const Variant&, const Variant& lineNumber) {
  HtmlWriter html, upcharges;
  bool found = false;
  Variant name, pieces = "1", packed = "1", seal, note;
  double price = 0;
  if (!lineNumber.joined().empty()) {
    found = findLine(*invoice.lineItems, lineNumber);
    if (found) {
      name = invoice.lineItems->value(col::itemName);
      pieces = invoice.lineItems->value(col::quantity);
      price = invoice.lineItems->number(col::unitPrice);
      seal = invoice.lineItems->value(col::heatSeal);
      note = invoice.lineItems->value(col::notes);
      packed = invoice.lineItems->value(col::pkgQuantity);
    }
    invoice.lineItems->setFilter("parentLineNumber=" + lineNumber.toText() + " and itemType='UP'");
    writeUpcharges(upcharges, *invoice.lineItems);
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

Variant htmlAddChargeDetail(Invoice& invoice, const Variant& lineNumber) {
  Variant pieces = 1, price = "0.00", description;
  if (!lineNumber.joined().empty()) {
    invoice.lineItems->setFilter("itemType='AC' and lineNumber=" + lineNumber.toText());
    if (!invoice.lineItems->eof()) {
      price = invoice.lineItems->value(col::unitPrice);
      pieces = invoice.lineItems->value(col::quantity);
      description = invoice.lineItems->value(col::itemName);
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
