#include "invoice/tickets/customer_preferences.h"

#include <fmt/format.h>

#include "data/query_database.h"

namespace ondrel {
namespace {

Variant preferenceValue(Apartment& apartment, const Variant& customer, const Variant& ticket,
                        const Variant& typeId, const Variant& defaultValue) {
  Variant result = defaultValue;
  if (customer.joined().empty()) return result;
  const auto takeValue = [&](const std::string& whose) {
    const RecordsetRef rows = queryDatabase(
        apartment,
        fmt::format(" select [value] from customerpreference where  customerpreferencetypeid = '{}' and "
                    "customersequencenumber = '{}'{}",
                    typeId.joined(), escapeSqlValue(customer), whose));
    if (!rows->eof()) result = rows->value("value");
  };
  takeValue(" and ticketnumber is null ");
  if (const std::string number = ticket.joined(); !number.empty())
    takeValue(fmt::format(" and ticketnumber = '{}'", escapeSqlValue(number)));
  return result;
}

}  // namespace

CustomerPreferences readPreferences(Apartment& apartment, std::string_view typesStatement,
                                    const Variant& customer, const Variant& ticket) {
  CustomerPreferences result;
  const RecordsetRef types = queryDatabase(apartment, typesStatement);
  for (; !types->eof(); types->moveNext()) {
    const Variant id = types->value("customerpreferencetypeid");
    result.values->add(id, preferenceValue(apartment, customer, ticket, id, types->value("default")));
    result.names->add(id, types->value("name"));
  }
  return result;
}

void setPreference(DictionaryRef& values, const Variant& typeId, const Variant& value) {
  if (!values) values = std::make_shared<Dictionary>();
  values->setItem(typeId, value);
}

void savePreferences(Apartment& apartment, const DictionaryRef& values, const Variant& customer,
                     const Variant& ticket) {
  const std::string who = customer.joined(), number = ticket.joined();
  if (number.empty()) return;
  executeInTransaction(
      apartment,
      fmt::format(" delete customerpreference where  customersequencenumber = {} and ticketnumber = {}", who,
                  number));
  if (!values) return;
  const std::vector<Variant> ids = values->keys(), items = values->items();
  for (size_t k = 0; k < ids.size(); ++k)
    executeInTransaction(
        apartment,
        fmt::format(" insert into customerpreference (customerpreferencetypeid, customersequencenumber, "
                    "ticketnumber, value)  values ({}, {}, {}, '{}')",
                    ids[k].joined(), who, number, items[k].joined()));
}

}  // namespace ondrel
