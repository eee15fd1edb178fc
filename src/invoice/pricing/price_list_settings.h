#pragma once

#include <string_view>

#include "invoice/invoice.h"

namespace ondrel {

// The VIP and referral rules of the invoice's price list.

// Reads them.
void loadPriceListSettings(Invoice& invoice);
// A column of them; Null before they are loaded and for an unknown price list.
Variant priceListSetting(Invoice& invoice, std::string_view column);

}  // namespace ondrel
