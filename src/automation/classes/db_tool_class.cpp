#include "automation/classes/class_tables.h"
#include "services/db_tool.h"

namespace ondrel {

const ClassTable& dbToolClass() {
  // clang-format off
  static const ClassTable table("DbTool", {
      method("GetDbOption", &DbTool::GetDbOption, {{"name"}}),
      method("GetDbOptions", &DbTool::GetDbOptions),
      method("GetDefaultConnectionString", &DbTool::GetDefaultConnectionString),
      method("GetDefaultCommandLine", &DbTool::GetDefaultCommandLine),
  });
  // clang-format on
  return table;
}

}  // namespace ondrel
