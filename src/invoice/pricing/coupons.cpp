#include <fmt/format.h>

#include "base/text.h"
#include "data/query_database.h"
#include "invoice/invoice.h"
#include "invoice/line_kinds.h"
#include "invoice/pricing/offers.h"

namespace ondrel {

using enum LineColumn;

void Invoice::getQualifyingCoupons() {
  const Totals totals = getDiscountableTotals(true);
  const RecordsetRef rows = queryDatabase(
      *apartment_, fmt::format("GetProbableCoupons  '{}','{}',{},'{}'", priceListId, numberText(totals.count),
                               numberText(totals.total), custSeqNumber));
  initOfferTable();
  fillOfferTable(*rows, totals.total, totals.count);
}

Variant Invoice::addCoupon(const Variant& couponID) {
  return addOffer(kCouponOffer, couponID);
}

Variant Invoice::removeCoupon(const Variant& line) {
  lineItems->setFilter(fmt::format("itemType='CU' and linenumber={}", line.toLong()));
  for (; !lineItems->eof(); lineItems->moveNext()) lineItems->deleteRow();
  return {};
}

void Invoice::adjustCoupon() {
  adjustOffers(kCouponOffer);
  adjustOffers(kLoyaltyOffer);
}

Variant Invoice::isFirstCoupon() {
  return !hasLines("itemType='CU' or itemType='LY'");
}

bool Invoice::validateCouponAdd() {
  lineItems->setFilter("itemType='CU' or itemType='LY'");
  const Variant id = lineItems->eof() ? Variant() : lineItems->value(lineItemId);
  lineItems->clearFilter();
  const RecordsetRef offer = queryDatabase(
      *apartment_,
      fmt::format("Select validWithOtherOffer From Discount Where discountId='{}'", id.joined()));
  return offer->eof() || offer->isNull("validWithOtherOffer") || offer->flag("validWithOtherOffer");
}

// The store may allow one discount an invoice; otherwise each coupon and promotion that stands must suffer
// others beside it. A setting or an offer that cannot be read forbids nothing.
Variant Invoice::allowFurtherDiscounts() {
  bool allowed = true;
  try {
    const Variant onlyOne = getMiscSetupValue("oneDiscountPerInvoice");
    if (discountExists() && !onlyOne.isNull() && onlyOne.toBoolean()) return false;
    lineItems->setFilter("itemType='CU' OR itemType='PR'");
    for (; allowed && !lineItems->eof(); lineItems->moveNext()) {
      const RecordsetRef offer = queryDatabase(
          *apartment_, fmt::format(" select validWithOtherOffer from discount where discountID = '{}'",
                                   lineItems->value(lineItemId).joined()));
      allowed = offer->eof() || offer->isNull("validWithOtherOffer") || offer->flag("validWithOtherOffer");
    }
  } catch (const Error&) {
    // The answer stays as the reads up to here made it.
  }
  lineItems->clearFilter();
  return allowed;
}

}  // namespace ondrel
