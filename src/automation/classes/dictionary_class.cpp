#include "automation/classes/class_tables.h"
#include "base/dictionary.h"

namespace ondrel {

const ClassTable& dictionaryClass() {
  // clang-format off
  static const ClassTable table("Dictionary", {
      property("Item", &Dictionary::item, &Dictionary::setItem, {{"Key"}}),
      property("Count", &Dictionary::count),
      method("Add", &Dictionary::add, {{"Key"}, {"Item"}}),
      method("Exists", &Dictionary::exists, {{"Key"}}),
      method("Items", &Dictionary::items),
      method("Keys", &Dictionary::keys),
      method("Remove", &Dictionary::remove, {{"Key"}}),
      method("RemoveAll", &Dictionary::removeAll),
  }, "Item");
  // clang-format on
  return table;
}

}  // namespace ondrel
