#include <fmt/format.h>

#include "data/query_database.h"
#include "invoice/invoice.h"

namespace ondrel {

void Invoice::loadPriceListSettings() {
  priceListSettings_ = queryDatabase(
      *apartment_,
      fmt::format("Select VIPMinQualAmount, VIPValidWithOtherOffers, VIPStraight,  VIPStraightPercent, "
                  "VIPSmartAmount, VIPSmartForEveryAmount, VIPValidNbrOfMonths,  referralDiscountAmount, "
                  "referralValidNbrOfDays,  referralIncrement, referralLimit  FROM PriceList where "
                  "PriceListId='{}'",
                  priceListId));
}

Variant Invoice::priceListSetting(std::string_view column) const {
  if (!priceListSettings_ || priceListSettings_->eof()) return Variant::null();
  return priceListSettings_->value(column);
}

}  // namespace ondrel
