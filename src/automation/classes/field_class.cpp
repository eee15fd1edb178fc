#include "automation/classes/class_tables.h"
#include "automation/classes/recordset_fields.h"

namespace ondrel {

const ClassTable& recordsetFieldClass() {
  // clang-format off
  static const ClassTable table("Field", {
      property("Value", &RecordsetField::value, &RecordsetField::setValue),
      property("Name", &RecordsetField::name),
      property("Type", &RecordsetField::type),
      property("DefinedSize", &RecordsetField::definedSize),
      property("Attributes", &RecordsetField::attributes),
  }, "Value");
  // clang-format on
  return table;
}

}  // namespace ondrel
