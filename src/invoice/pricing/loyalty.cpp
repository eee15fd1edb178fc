#include <fmt/format.h>

#include "base/text.h"
#include "data/query_database.h"
#include "invoice/invoice.h"
#include "invoice/pricing/offers.h"

namespace ondrel {

void Invoice::getQualifyingLoyalty() {
  const Totals totals = getDiscountableTotals(true);
  const RecordsetRef rows = queryDatabase(
      *apartment_, fmt::format("GetProbableLoyaltyDiscounts  '{}','{}','{}',{}", custSeqNumber, priceListId,
                               numberText(totals.count), numberText(totals.total)));
  initOfferTable();
  fillOfferTable(*rows, totals.total, totals.count);
}

void Invoice::addLoyalty(const Variant& couponID) {
  addOffer(kLoyaltyOffer, couponID);
}

bool Invoice::applyLoyalty(bool vipApplied) {
  return applyOffers(kLoyaltyOffer, vipApplied);
}

}  // namespace ondrel
