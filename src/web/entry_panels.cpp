#include <fmt/format.h>

#include "base/text.h"
#include "data/query_database.h"
#include "data/values.h"
#include "invoice/invoice.h"
#include "web/html_writer.h"

namespace ondrel {
namespace {

using enum LineColumn;

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

// ---------------------------------------------------------------- readers of the lines

Variant Invoice::lineItemExists(const Variant& type, const Variant& item) {
  lineItems->setFilter(
      fmt::format("itemType='{}' and lineItemID={}", escapeSqlValue(type.joined()), sqlNumber(item)));
  const bool found = !lineItems->eof();
  lineItems->clearFilter();
  return found;
}

Variant Invoice::getLineItemQuantity(const Variant& line) {
  const Variant found = findLine(line) ? lineItems->value(quantity) : Variant(0);
  lineItems->clearFilter();
  return found;
}

Variant Invoice::getDepartmentID() {
  lineItems->clearFilter();
  return lineItems->eof() ? Variant() : lineItems->value(deptId);
}

// ---------------------------------------------------------------- panels

Variant Invoice::htmlDepartments(const Variant& departmentID) {
  HtmlWriter html;
  const RecordsetRef rows = queryDatabase(
      *apartment_,
      fmt::format(" select departmentid, name from department where disabled = 0 and pricelistid = "
                  "'{}'  order by displaysequence ",
                  priceListId));
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
Variant Invoice::htmlCoupons() {
  const Variant oneDiscount = getMiscSetupValue("oneDiscountPerInvoice");
  getQualifyingCoupons();
  const RecordsetRef coupons = getDisplayCouponRst()->clone();
  HtmlWriter html;
  html.raw("<div class=\"commands\"><div class=\"command\" id=\"item-delete\"><span>Delete</span></div>");
  bool applied = false;
  for (; !coupons->eof(); coupons->moveNext())
    if (lineItemExists("CU", coupons->value("discountId")).toBoolean()) applied = true;
  const bool onlyApplied = applied && !oneDiscount.isNull() && oneDiscount.toBoolean();
  if (coupons->recordCount() > 0) coupons->moveFirst();
  for (; !coupons->eof(); coupons->moveNext()) {
    const Variant id = coupons->value("discountId");
    if (onlyApplied && !lineItemExists("CU", id).toBoolean()) continue;
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

Variant Invoice::htmlPreferenceList() {
  HtmlWriter html;
  const RecordsetRef types = queryDatabase(
      *apartment_,
      " select *, isnull(options, '') as options from customerpreferencetype order by displayorder ");
  for (; !types->eof(); types->moveNext()) {
    const Variant* chosen =
        preferences ? preferences->find(types->value("customerpreferencetypeid")) : nullptr;
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
