#include <fmt/format.h>

#include "base/text.h"
#include "data/query_database.h"
#include "invoice/invoice.h"
#include "invoice/pricing/offers.h"

namespace ondrel {

void Invoice::getQualifyingLoyalty() {
  const QualifyingTotals totals = discountableTotals(lines_, col::couponable);
  const RecordsetRef rows = queryDatabase(
      *apartment_, fmt::format("GetProbableLoyaltyDiscounts  '{}','{}','{}',{}", custSeqNumber, priceListId,
                               numberText(totals.pieces), numberText(totals.amount)));
  listOffers(*this, *rows, totals);
}

void Invoice::addLoyalty(const Variant& couponID) {
  addOffer(*this, kLoyaltyOffer, couponID);
}

}  // namespace ondrel
