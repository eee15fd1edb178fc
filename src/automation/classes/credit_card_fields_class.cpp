#include "automation/classes/class_tables.h"
#include "cards/credit_card_fields.h"

namespace ondrel {

const ClassTable& creditCardFieldsClass() {
  // clang-format off
  static const ClassTable table("creditCardFields", {
      property("swipedata", &CreditCardFields::swipedata),
      property("accountnumber", &CreditCardFields::accountnumber),
      property("expirationyear", &CreditCardFields::expirationyear),
      property("expirationmonth", &CreditCardFields::expirationmonth),
      property("lastname", &CreditCardFields::lastname),
      property("firstname", &CreditCardFields::firstname),
      property("address", &CreditCardFields::address),
      property("zip", &CreditCardFields::zip),
      property("cvv2", &CreditCardFields::cvv2),
      property("guid", &CreditCardFields::guid),
      property("ticketNumber", &CreditCardFields::ticketNumber),
      property("accountnumbermasked", &CreditCardFields::accountnumbermasked),
  });
  // clang-format on
  return table;
}

}  // namespace ondrel
