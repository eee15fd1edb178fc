#include "automation/classes/class_tables.h"
#include "services/db_option.h"

namespace ondrel {

const ClassTable& dbOptionClass() {
  // clang-format off
  static const ClassTable table("DbOption", {
      property("DbName", &DbOption::DbName),
      property("ConnectionString", &DbOption::ConnectionString),
      property("CommandLine", &DbOption::CommandLine),
  });
  // clang-format on
  return table;
}

}  // namespace ondrel
