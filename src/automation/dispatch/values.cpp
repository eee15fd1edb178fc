#include "automation/dispatch/values.h"

namespace ondrel {

std::string_view automationTypeName(AutomationType type) {
  switch (type) {
    case AutomationType::None:
      return "";
    case AutomationType::Variant:
      return "Variant";
    case AutomationType::Boolean:
      return "Boolean";
    case AutomationType::Long:
      return "Long";
    case AutomationType::Double:
      return "Double";
    case AutomationType::Date:
      return "Date";
    case AutomationType::Text:
      return "Text";
    case AutomationType::Object:
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
