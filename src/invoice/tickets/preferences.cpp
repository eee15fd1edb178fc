#include <fmt/format.h>

#include "data/query_database.h"
#include "invoice/invoice.h"
#include "invoice/tickets/customer_preferences.h"

namespace ondrel {

Variant Invoice::loadCustomerPreferences(Variant& CustomerSeq, Variant& ticketNumber) {
  const RecordsetRef customer = queryDatabase(
      *apartment_,
      fmt::format(" select surchargeExempt, taxExempt from customer where customersequencenumber = '{}'",
                  escapeSqlValue(CustomerSeq.joined())));
  if (!customer->eof()) {
    excludeSurcharges = customer->flag("surchargeExempt");
    excludeTaxes = customer->flag("taxExempt");
  }
  const CustomerPreferences read = readPreferences(
      *apartment_,
      " select *, isnull(options, '') as options from customerpreferencetype order by displayorder ",
      CustomerSeq, ticketNumber);
  preferences = read.values;
  preferenceNames = read.names;
  return {};
}

Variant Invoice::setCustomerPreference(Variant& preferenceTypeID, Variant& value) {
  setPreference(preferences, preferenceTypeID, value);
  return {};
}

Variant Invoice::setCustomerPreferenceByName(Variant& preferenceName, Variant& value) {
  const RecordsetRef rows = queryDatabase(
      *apartment_,
      fmt::format(" select customerpreferencetypeid from customerpreferencetype where name = '{}'",
                  escapeSqlValue(preferenceName.joined())));
  if (rows->eof()) return {};
  Variant id = rows->value("customerpreferencetypeid");
  return setCustomerPreference(id, value);
}

void Invoice::saveCustomerPreferences(const Variant& customerSeq, const Variant& ticketNumber) {
  savePreferences(*apartment_, preferences, customerSeq, ticketNumber);
}

}  // namespace ondrel
