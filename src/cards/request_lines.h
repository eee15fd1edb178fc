#pragma once

#include <string>

#include "base/variant.h"
#include "cards/credit_card_fields.h"

namespace ondrel {

// Dollars as the card program reads them: two places, no thousands separator, nothing before the point below
// one dollar. Error 13 for what is no number.
std::string amountText(double amount);

// "2812": year and month of a card.
std::string expirationText(const CreditCardFields& fields);

// The line of a credit request, without its line end.
std::string makeRequestString(const CreditCardFields& fields, const Variant& clerk, const Variant& receipt,
                              const Variant& amount);

// What a debit request has beside the card.
struct DebitDetails {
  double purchaseAmount = 0;
  double cashBackAmount = 0;
  std::string block, key;  // of the reader's encrypted PIN

  double total() const { return purchaseAmount + cashBackAmount; }
};

std::string makeRequestStringDebit(const CreditCardFields& fields, const Variant& clerk,
                                   const Variant& receipt, const DebitDetails& debit);

}  // namespace ondrel
