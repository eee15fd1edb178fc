#include "automation/classes/class_tables.h"
#include "services/helper_functions.h"

namespace ondrel {

const ClassTable& helperFunctionsClass() {
  // clang-format off
  static const ClassTable table("HelperFunctions", {
      method("ASPStrConv", &HelperFunctions::ASPStrConv, {{"strIn"}, {"convOption"}, {"lcid", 0}}),
  });
  // clang-format on
  return table;
}

}  // namespace ondrel
