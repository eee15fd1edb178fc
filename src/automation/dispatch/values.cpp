#include "automation/dispatch/values.h"

namespace ondrel {

std::string_view valueTypeName(ValueType type) {
  switch (type) {
    case ValueType::None:
      return "";
    case ValueType::Variant:
      return "Variant";
    case ValueType::Boolean:
      return "Boolean";
    case ValueType::Long:
      return "Long";
    case ValueType::Double:
      return "Double";
    case ValueType::Date:
      return "Date";
    case ValueType::Text:
      return "Text";
    case ValueType::Object:
      return "Object";
  }
  return "";
}

std::vector<Variant> listOf(const Variant& value) {
  if (value.isObject()) {
    if (const auto array = std::dynamic_pointer_cast<Array>(value.toObject())) return array->items;
  }
  return {value};
}

}  // namespace ondrel
