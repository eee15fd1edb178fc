#include <fmt/format.h>

#include "base/text.h"
#include "data/query_database.h"
#include "data/values.h"
#include "invoice/invoice.h"
#include "invoice/pricing/discount_lines.h"
#include "invoice/pricing/offers.h"

namespace ondrel {
namespace {

const std::string kOffers = filterOf(&LineKind::isOffer);
const std::string kMustStandOthers = ofKinds({kind::coupon, kind::promotion});

// Whether a discount says that it stands beside others; one that is gone or does not say does.
bool standsBesideOthers(const Recordset& discount) {
  return discount.eof() || discount.isNull("validWithOtherOffer") || discount.flag("validWithOtherOffer");
}

}  // namespace

void Invoice::getQualifyingCoupons() {
  const QualifyingTotals totals = discountableTotals(lines_, col::couponable);
  const RecordsetRef rows = queryDatabase(
      *apartment_, fmt::format("GetProbableCoupons  '{}','{}',{},'{}'", priceListId,
                               numberText(totals.pieces), numberText(totals.amount), custSeqNumber));
  listOffers(*this, *rows, totals);
}

Variant Invoice::addCoupon(const Variant& couponID) {
  return addOffer(*this, kCouponOffer, couponID);
}

Variant Invoice::removeCoupon(const Variant& lineNumber) {
  const std::string coupon = fmt::format("{} and linenumber={}", ofKind(kind::coupon), lineNumber.toLong());
  lines_.remove(coupon);
  lines_.leaves(coupon);
  return {};
}

void Invoice::adjustCoupon() {
  adjustOffers(*this, kCouponOffer);
  adjustOffers(*this, kLoyaltyOffer);
}

Variant Invoice::isFirstCoupon() {
  return !lines_.any(kOffers);
}

bool Invoice::validateCouponAdd() {
  Variant first;
  {
    const LineSet offer = lines_.where(kOffers);
    if (offer) first = offer->value(col::lineItemId);
  }
  return standsBesideOthers(*queryDatabase(
      *apartment_,
      fmt::format("Select validWithOtherOffer From Discount Where discountId='{}'", first.joined())));
}

// The store may allow one discount an invoice; otherwise each coupon and promotion that stands must suffer
// others beside it. A setting or an offer that cannot be read forbids nothing.
Variant Invoice::allowFurtherDiscounts() {
  bool allowed = true;
  try {
    const Variant onlyOne = getMiscSetupValue("oneDiscountPerInvoice");
    if (discountExists(lines_) && isOn(onlyOne)) return false;
    for (auto discount = lines_.where(kMustStandOthers); allowed && discount; discount.next())
      allowed = standsBesideOthers(*queryDatabase(
          *apartment_, fmt::format(" select validWithOtherOffer from discount where discountID = '{}'",
                                   discount->value(col::lineItemId).joined())));
  } catch (const Error&) {
    // The answer stays as the reads up to here made it.
    lines_.leavesAll();
  }
  return allowed;
}

}  // namespace ondrel
