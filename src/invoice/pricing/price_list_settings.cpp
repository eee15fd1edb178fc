#include <fmt/format.h>

#include "data/query_database.h"
#include "invoice/invoice.h"

namespace ondrel {

void Invoice::loadPriceListSettings() {
  priceListSettings_ = queryDatabase(
      *apartment_,
      fmt::format(
          "Select VIPMinQualAmount, VIPValidWithOtherOffers, VIPStraight,  VIPStraightPercent, "
          "VIPSmartAmount, "
          "VIPSmartForEveryAmount, VIPValidNbrOfMonths,  referralDiscountAmount, referralValidNbrOfDays,  "
          "referralIncrement, referralLimit  FROM PriceList where PriceListId='{}'",
          priceListId));
}

}  // namespace ondrel
