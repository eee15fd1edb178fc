#include "web/html_writer.h"
#include "web/panels.h"

namespace ondrel {
namespace {

template <class WriteValue>
void writeTotal(HtmlWriter& html, std::string_view label, WriteValue writeValue) {
  html.raw("<div class=\"total\"><div class=\"value\">");
  writeValue();
  html.raw("</div><div class=\"name\">").raw(label).raw("</div></div>");
}

}  // namespace

Variant htmlInvoiceTotals(Invoice& invoice) {
  HtmlWriter html;
  const auto money = [&](std::string_view label, double amount) {
    writeTotal(html, label, [&] { html.currency(amount); });
  };
  writeTotal(html, "Quantity", [&] { html.raw(invoice.getTotalItemCount()); });
  money("Tax", invoice.liColTotal("lineItemTotal", "itemType='TA'").toDouble());
  money("Surcharge", invoice.liColTotal("lineItemTotal", "itemType='SU'").toDouble());
  money("Total", invoice.getInvoiceAmountToPay());
  return html.take();
}

Variant htmlInvoicePreferences(Invoice& invoice) {
  if (!invoice.preferences) return "";
  HtmlWriter html;
  const std::vector<Variant> types = invoice.preferences->keys(), values = invoice.preferences->items();
  for (size_t k = 0; k < types.size(); ++k) {
    const Variant* name = invoice.preferenceNames ? invoice.preferenceNames->find(types[k]) : nullptr;
    html.raw("<div class=\"pref\"><div class=\"value\"><span>").encoded(values[k]).raw("</span></div>");
    html.raw("<div class=\"name\"><span>").encoded(name ? *name : Variant()).raw("</span></div></div>");
  }
  return html.take();
}

Variant htmlNewHeatSeals(Invoice& invoice) {
  HtmlWriter html;
  const Variant described = invoice.getSelectedHeatSeal();
  for (const Variant& seal : invoice.waitingHeatSeals()) {
    const bool isDescribed = isEqual(seal, described);
    html.tag("div").attribute("class", isDescribed ? "new-heatseal new-heatseal-selected" : "new-heatseal");
    html.escaped("heatseal", seal).content();
    html.raw("<div class=\"message\">")
        .raw(isDescribed ? "Describing Heat Seal" : "Click to Describe Heat Seal");
    html.raw("</div><div class=\"heatseal\">").encoded(seal).raw("</div></div>");
  }
  return html.take();
}

}  // namespace ondrel
