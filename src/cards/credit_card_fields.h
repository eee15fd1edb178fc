#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "base/object.h"

namespace ondrel {

// One card as the page and the requests see it.
class CreditCardFields : public Object {
 public:
  std::string_view className() const override { return "creditCardFields"; }

  std::string swipedata, accountnumber;
  std::int32_t expirationyear = 0;  // two digits
  std::int32_t expirationmonth = 0;
  std::string lastname, firstname, address, zip, cvv2;
  std::string guid;  // the transaction that this record belongs to; blank until a request is made
  std::int32_t ticketNumber = 0;
  std::string accountnumbermasked;  // held for the page
};

using CreditCardFieldsRef = std::shared_ptr<CreditCardFields>;

}  // namespace ondrel
