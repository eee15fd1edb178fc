// | amount                | is                                                              | rounded |
// |-----------------------|-----------------------------------------------------------------|---------|
// | total, subtotal       | prices before the prepay discount                               | yes     |
// | prepay discount       | sum over the tickets                                            | yes     |
// | prepaid               | paid before the session                                         | no      |
// | paid                  | prepaid and what is tendered                                    | yes     |
// | due                   | total less paid less discount, 0 at least                       | yes     |
// | cash paid             | checks, cash and prepaid                                        | yes     |
// | change                | what is paid beyond total less discount, at most the cash paid  | yes     |

#include <algorithm>

#include "data/values.h"
#include "pickup/pickup.h"

namespace ondrel {
namespace {

double rounded(double amount) {
  return roundMoney("total", amount);
}

}  // namespace

double Pickup::sumTickets(double PickupInvoice::*amount) const {
  double sum = 0;
  for (const PickupInvoiceRef& ticket : tickets()) sum += (*ticket).*amount;
  return sum;
}

Variant Pickup::getMinimumPrepayAmount() const {
  return rounded(minimumPrepay_);
}

Variant Pickup::getTotal() const {
  return rounded(sumTickets(&PickupInvoice::invoiceTotal));
}

Variant Pickup::getSubtotal() const {
  return rounded(getTotal().toDouble());
}

Variant Pickup::getAmountPrepaid() const {
  return sumTickets(&PickupInvoice::amountPaid);
}

Variant Pickup::getPrepayDiscount() const {
  return rounded(sumTickets(&PickupInvoice::prepayDiscount));
}

Variant Pickup::getAmountPaid() {
  return rounded(getAmountPrepaid().toDouble() + getPaymentByType(""));
}

double Pickup::openAmount() {
  return getTotal().toDouble() - getAmountPaid().toDouble() - getPrepayDiscount().toDouble();
}

Variant Pickup::getAmountDue() {
  return rounded(std::max(openAmount(), 0.0));
}

Variant Pickup::getCashPaid() {
  return rounded(getPaymentByType("Check") + getPaymentByType("Cash") + getAmountPrepaid().toDouble());
}

Variant Pickup::getChangeDue() {
  const double open = openAmount();
  if (open >= 0) return 0;
  return rounded(std::min(-open, getCashPaid().toDouble()));
}

}  // namespace ondrel
