#pragma once

#include <cstdint>
#include <string>

namespace ondrel {

// What the store is asked about offers that stand on an invoice.
struct OfferQuestion {
  std::int32_t priceListId = 0;
  double count = 0;      // pieces that the offers look at
  double total = 0;      // their price
  std::string ids;       // the offers, as a comma list
  std::string customer;  // whose uses count; empty to leave uses out
};

// The named coupons that still qualify.
std::string getCouponQuery(const OfferQuestion& question);
// The named coupons whether they qualify or not, and whatever else qualifies.
std::string getCouponPassQuery(const OfferQuestion& question);
// The named loyalty offers that still qualify. Withdrawn offers count, and uses are not asked for.
std::string getLoyaltyQuery(const OfferQuestion& question);

}  // namespace ondrel
