#include "automation/classes/class_tables.h"
#include "services/marketing_letters.h"

namespace ondrel {

const ClassTable& marketingLettersClass() {
  using Class = MarketingLetters;
  // clang-format off
  static const ClassTable table("MarketingLetters", {
      property("fullFileName", &Class::fullFileName),
      property("fullDataSourceName", &Class::fullDataSourceName),
      method("FileExists", &Class::FileExists, {{"strFile"}}),
      method("GetData", &Class::GetData),
      method("openMLetter", &Class::openMLetter, {{"sTemplate"}, {"sDataSource"}}),
      method("mailMergeLetterToPrinter", &Class::mailMergeLetterToPrinter, {{"sTemplate"}, {"sDataSource"}}),
  });
  // clang-format on
  return table;
}

}  // namespace ondrel
