#include "invoice/pricing/price_list_settings.h"

#include <fmt/format.h>

#include "data/query_database.h"

namespace ondrel {

void loadPriceListSettings(Invoice& invoice) {
  invoice.state().priceListSettings = queryDatabase(
      *invoice.apartment(),
      fmt::format("Select VIPMinQualAmount, VIPValidWithOtherOffers, VIPStraight,  VIPStraightPercent, "
                  "VIPSmartAmount, VIPSmartForEveryAmount, VIPValidNbrOfMonths,  referralDiscountAmount, "
                  "referralValidNbrOfDays,  referralIncrement, referralLimit  FROM PriceList where "
                  "PriceListId='{}'",
                  invoice.priceListId));
}

Variant priceListSetting(Invoice& invoice, std::string_view column) {
  const RecordsetRef& settings = invoice.state().priceListSettings;
  if (!settings || settings->eof()) return Variant::null();
  return settings->value(column);
}

}  // namespace ondrel
