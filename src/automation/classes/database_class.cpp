#include "automation/classes/class_tables.h"
#include "automation/script/database_access.h"

namespace ondrel {

const ClassTable& databaseClass() {
  // clang-format off
  static const ClassTable table("Database", {
      property("connectionString", &DatabaseAccess::connectionString),
      method("execute", &DatabaseAccess::execute, {{"sql"}}),
      method("query", &DatabaseAccess::query, {{"sql"}}),
      method("begin", &DatabaseAccess::begin),
      method("commit", &DatabaseAccess::commit),
      method("trace", &DatabaseAccess::trace),
  });
  // clang-format on
  return table;
}

}  // namespace ondrel
