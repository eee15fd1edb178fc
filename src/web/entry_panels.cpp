#include <fmt/format.h>

#include "base/text.h"
#include "data/query_database.h"
#include "data/values.h"
#include "web/html_writer.h"
#include "web/line_readers.h"
#include "web/panels.h"

namespace ondrel {
namespace {

bool isSameTrimmed(const Variant& a, const Variant& b) {
  const std::string left = a.joined(), right = b.joined();
  return trim(left) == trim(right);
}

// The parts between the bars; none of an empty text.
std::vector<std::string> optionsIn(const std::string& text) {
  std::vector<std::string> options;
  for (size_t from = 0; !text.empty() && from <= text.size();) {
    const size_t bar = std::min(text.find('|', from), text.size());
    options.push_back(text.substr(from, bar - from));
    from = bar + 1;
  }
  return options;
}

}  // namespace

Variant htmlDepartments(Invoice& invoice, const Variant& departmentID) {
  HtmlWriter html;
  const RecordsetRef rows = queryDatabase(
      *invoice.apartment(),
      fmt::format(" select departmentid, name from department where disabled = 0 and pricelistid = "
                  "'{}'  order by displaysequence ",
                  invoice.priceListId));
  for (; !rows->eof(); rows->moveNext()) {
    const Variant id = rows->value("departmentid");
    html.raw("<div").attribute("departmentid", id);
    html.attribute("class",
                   isSameTrimmed(id, departmentID) ? "command department selected" : "command department");
    html.raw("><span>").encoded(rows->value("name")).raw("</span></div>");
  }
  return html.take();
}

// | one discount an invoice | a coupon is on it | shown                                       |
// |-------------------------|-------------------|---------------------------------------------|
// | yes                     | yes               | the coupons that are on it, selected        |
// | otherwise               |                   | all that the invoice qualifies for          |
Variant htmlCoupons(Invoice& invoice) {
  const Variant oneDiscount = invoice.getMiscSetupValue("oneDiscountPerInvoice");
  invoice.getQualifyingCoupons();
  const RecordsetRef coupons = invoice.getDisplayCouponRst()->clone();
  HtmlWriter html;
  html.raw("<div class=\"commands\"><div class=\"command\" id=\"item-delete\"><span>Delete</span></div>");
  bool applied = false;
  for (; !coupons->eof(); coupons->moveNext())
    if (lineItemExists(invoice, "CU", coupons->value("discountId")).toBoolean()) applied = true;
  const bool onlyApplied = applied && !oneDiscount.isNull() && oneDiscount.toBoolean();
  if (coupons->recordCount() > 0) coupons->moveFirst();
  for (; !coupons->eof(); coupons->moveNext()) {
    const Variant id = coupons->value("discountId");
    if (onlyApplied && !lineItemExists(invoice, "CU", id).toBoolean()) continue;
    html.tag("div").attribute("class",
                              onlyApplied ? "discount coupon selected sel_discount" : "discount coupon");
    html.attribute("discountid", id)
        .raw("><span>")
        .encoded(coupons->value("discountName"))
        .raw("</span></div>");
  }
  html.raw("</div>");
  return html.take();
}

Variant htmlPreferenceList(Invoice& invoice) {
  HtmlWriter html;
  const RecordsetRef types = queryDatabase(
      *invoice.apartment(),
      " select *, isnull(options, '') as options from customerpreferencetype order by displayorder ");
  for (; !types->eof(); types->moveNext()) {
    const Variant* chosen =
        invoice.preferences ? invoice.preferences->find(types->value("customerpreferencetypeid")) : nullptr;
    const Variant value = chosen ? *chosen : Variant();
    html.raw("<div class=\"invoice_pref\"><h3>").encoded(types->value("name")).raw("</h3>");
    html.raw("<div class=\"pref_list\"").attribute("pref_name", types->value("name")).content();
    for (const std::string& option : optionsIn(types->text("options"))) {
      html.tag("div").attribute(
          "class", isSameTrimmed(option, value) ? "button pref_option sel_pref" : "button pref_option");
      html.escaped("pref_val", option).raw("><span>").encoded(option).raw("</span></div>");
    }
    html.raw("</div></div>");
  }
  return html.take();
}

}  // namespace ondrel
