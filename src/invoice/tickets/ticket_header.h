#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <variant>

#include "data/recordset/recordset.h"

namespace ondrel {

// A column of a ticket's header and the property that takes it, of any class that loads tickets.
template <class Class>
struct HeaderField {
  std::string_view column;
  std::variant<std::int32_t Class::*, double Class::*, bool Class::*, Date Class::*, std::string Class::*>
      property;
};

inline void assignProperty(std::int32_t& property, const Variant& value) {
  property = value.toLong();
}
inline void assignProperty(double& property, const Variant& value) {
  property = value.toDouble();
}
inline void assignProperty(bool& property, const Variant& value) {
  property = value.toBoolean();
}
inline void assignProperty(Date& property, const Variant& value) {
  property = value.toDate();
}
inline void assignProperty(std::string& property, const Variant& value) {
  property = value.toText();
}

// Sets every property whose column the header has and whose value is not Null.
template <class Class>
void takeHeaderFields(Class& object, const Recordset& header, std::span<const HeaderField<Class>> fields) {
  for (const HeaderField<Class>& field : fields) {
    if (!header.hasColumn(field.column) || header.isNull(field.column)) continue;
    const Variant value = header.value(field.column);
    std::visit([&](auto property) { assignProperty(object.*property, value); }, field.property);
  }
}

}  // namespace ondrel
