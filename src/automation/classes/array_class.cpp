#include "automation/classes/class_tables.h"

namespace ondrel {
namespace {

Variant& itemAt(Array& array, int index) {
  const long long place = static_cast<long long>(index) - array.lowerBound;
  if (place < 0 || place >= static_cast<long long>(array.items.size()))
    throw Error(ErrorNumber::SubscriptOutOfRange, "Array",
                "Subscript out of range: " + std::to_string(index));
  return array.items[static_cast<size_t>(place)];
}

Variant item(Array& array, int index) {
  return itemAt(array, index);
}

void setItem(Array& array, int index, const Variant& value) {
  itemAt(array, index) = value;
}

int upperBound(Array& array) {
  return array.lowerBound + static_cast<int>(array.items.size()) - 1;
}

}  // namespace

const ClassTable& arrayClass() {
  // clang-format off
  static const ClassTable table("Array", {
      property("Item", item, setItem, {{"Index"}}),
      property("Count", [](Array& self) { return static_cast<int>(self.items.size()); }),
      readOnly("LowerBound", &Array::lowerBound),
      property("UpperBound", upperBound),
  }, "Item");
  // clang-format on
  return table;
}

}  // namespace ondrel
