#include "automation/classes/class_tables.h"
#include "automation/classes/recordset_fields.h"

namespace ondrel {

std::shared_ptr<RecordsetField> RecordsetFields::item(const Variant& key) const {
  if (key.isText()) return std::make_shared<RecordsetField>(table_, table_->column(key.text()));
  const int position = key.toLong();
  if (position < 0 || position >= count())
    throw Error(ErrorNumber::ItemNotFound, "Recordset",
                "Item cannot be found in the collection corresponding to the requested name or ordinal: " +
                    std::to_string(position));
  return std::make_shared<RecordsetField>(table_, Column(position));
}

void RecordsetFields::append(const std::string& name, FieldType type, int size, int attributes) {
  table_->appendField(name, type, size, attributes);
}

const ClassTable& recordsetFieldsClass() {
  // clang-format off
  static const ClassTable table("Fields", {
      property("Count", &RecordsetFields::count),
      property("Item", &RecordsetFields::item, {{"Index"}}),
      method("Append", &RecordsetFields::append, {{"Name"}, {"Type"}, {"DefinedSize", 0}, {"Attrib", 0}}),
  }, "Item");
  // clang-format on
  return table;
}

}  // namespace ondrel
