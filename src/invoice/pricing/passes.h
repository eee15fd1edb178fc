#pragma once

#include "invoice/invoice.h"

namespace ondrel {

// The passes of finishing, in their order; finishing.cpp tells what each acts on. Coupons and loyalty offers are
// one pass, applyOffers of offers.h; surcharges are Invoice::calculateSurcharges, prepay
// Invoice::recalculatePrepay.

// Whether the customer has earned the discount and a garment is open to it.
bool applyVipDiscount(Invoice& invoice);
// `offersApplied`: a coupon or loyalty offer has been, which keeps out promotions that stand beside no other.
void applyPromotions(Invoice& invoice, bool offersApplied);
void calculateTaxes(Invoice& invoice);

}  // namespace ondrel
