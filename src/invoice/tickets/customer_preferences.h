#pragma once

#include <string_view>

#include "base/dictionary.h"
#include "data/apartment.h"

namespace ondrel {

// How a customer wants the work done: the value in force of every preference type, and the type's name.
struct CustomerPreferences {
  DictionaryRef values = std::make_shared<Dictionary>();
  DictionaryRef names = std::make_shared<Dictionary>();
};

// Reads the value of each type that `typesStatement` gives. The later wins: the type's default, the customer's
// standing value, the value for this ticket. An empty customer or ticket counts as none.
CustomerPreferences readPreferences(Apartment& apartment, std::string_view typesStatement,
                                    const Variant& customer, const Variant& ticket);
// Sets the value of a type for this ticket; makes the dictionary when there is none.
void setPreference(DictionaryRef& values, const Variant& typeId, const Variant& value);
// Replaces the ticket's values by these; joins an open transaction. Without a ticket nothing is written. A
// quote in a value is an error of the statement.
void savePreferences(Apartment& apartment, const DictionaryRef& values, const Variant& customer,
                     const Variant& ticket);

}  // namespace ondrel
