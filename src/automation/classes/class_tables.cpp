#include "automation/classes/class_tables.h"

#include <array>
#include <string>
#include <unordered_map>

namespace ondrel {

std::span<const ClassTable* const> classTables() {
  // clang-format off
  static const std::array tables = {
      &recordsetClass(),
      &recordsetFieldsClass(),
      &recordsetFieldClass(),
      &dictionaryClass(),
      &arrayClass(),
      &invoiceClass(),
      &quickInvoiceClass(),
      &garmentSearchClass(),
      &ticketTagClass(),
      &creditCardProcessingClass(),
      &creditCardFieldsClass(),
      &pickupClass(),
      &pickupInvoiceClass(),
      &claimReceiptFieldsClass(),
      &marketingLettersClass(),
      &dbToolClass(),
      &dbOptionClass(),
      &helperFunctionsClass(),
      &databaseClass(),
  };
  // clang-format on
  return tables;
}

const ClassTable& classTableOf(const Object& object) {
  static const auto byName = [] {
    std::unordered_map<std::string_view, const ClassTable*> result;
    for (const ClassTable* table : classTables()) result.emplace(table->className(), table);
    return result;
  }();
  const auto found = byName.find(object.className());
  if (found == byName.end())
    throw Error(ErrorNumber::NoSuchMember, object.className(),
                "Object doesn't support this property or method: class '" + std::string(object.className()) +
                    "' has no members that can be called by name");
  return *found->second;
}

}  // namespace ondrel
