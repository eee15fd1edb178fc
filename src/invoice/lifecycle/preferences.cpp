#include <fmt/format.h>

#include "data/query_database.h"
#include "invoice/invoice.h"

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
  const RecordsetRef types = queryDatabase(
      *apartment_,
      " select *, isnull(options, '') as options from customerpreferencetype order by displayorder ");
  preferences = std::make_shared<Dictionary>();
  preferenceNames = std::make_shared<Dictionary>();
  for (; !types->eof(); types->moveNext()) {
    const Variant id = types->value("customerpreferencetypeid");
    preferences->add(id, getCustomerPreferenceValue(CustomerSeq, ticketNumber, id, types->value("default")));
    preferenceNames->add(id, types->value("name"));
  }
  return {};
}

// The later wins: the type's default, the customer's standing value, the value for this ticket.
Variant Invoice::getCustomerPreferenceValue(const Variant& customerSeq, const Variant& ticketNumber,
                                            const Variant& typeId, const Variant& defaultValue) {
  Variant result = defaultValue;
  if (customerSeq.joined().empty()) return result;
  const auto takeValue = [&](const std::string& whose) {
    const RecordsetRef rows = queryDatabase(
        *apartment_,
        fmt::format(" select [value] from customerpreference where  customerpreferencetypeid = '{}' and "
                    "customersequencenumber = '{}'{}",
                    typeId.joined(), escapeSqlValue(customerSeq), whose));
    if (!rows->eof()) result = rows->value("value");
  };
  takeValue(" and ticketnumber is null ");
  if (const std::string ticket = ticketNumber.joined(); !ticket.empty())
    takeValue(fmt::format(" and ticketnumber = '{}'", escapeSqlValue(ticket)));
  return result;
}

Variant Invoice::setCustomerPreference(Variant& preferenceTypeID, Variant& value) {
  if (!preferences) preferences = std::make_shared<Dictionary>();
  preferences->setItem(preferenceTypeID, value);
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
  if (ticketNumber.joined().empty()) return;
  const std::string customer = customerSeq.joined(), ticket = ticketNumber.joined();
  executeInTransaction(
      *apartment_,
      fmt::format(" delete customerpreference where  customersequencenumber = {} and ticketnumber = {}",
                  customer, ticket));
  if (!preferences) return;
  const std::vector<Variant> ids = preferences->keys(), values = preferences->items();
  for (size_t k = 0; k < ids.size(); ++k)
    executeInTransaction(
        *apartment_,
        fmt::format(" insert into customerpreference (customerpreferencetypeid, customersequencenumber, "
                    "ticketnumber, value)  values ({}, {}, {}, '{}')",
                    ids[k].joined(), customer, ticket, values[k].joined()));
}

}  // namespace ondrel
