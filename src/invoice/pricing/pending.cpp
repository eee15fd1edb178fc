#include "invoice/invoice.h"

namespace ondrel {

// An invoice without offers and taxes needs nothing more.
void Invoice::adjustCoupon() {}
bool Invoice::discountExists() {
  return false;
}
Variant Invoice::allowFurtherDiscounts() {
  return true;
}
Variant Invoice::removeCoupon(const Variant&) {
  return {};
}

}  // namespace ondrel
