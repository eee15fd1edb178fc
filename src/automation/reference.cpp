#include "automation/reference.h"

#include <fmt/format.h>

#include <algorithm>
#include <vector>

#include "automation/class_factory.h"
#include "automation/classes/class_tables.h"
#include "base/text.h"
#include "services/helper_functions.h"

namespace ondrel {
namespace {

constexpr std::string_view kIntroduction = R"(# Reference of the classes

Written by `scripts/reference` from the tables by which the classes are called. Names match in any case.

`Sub` returns nothing, `Function` a value; a `Property` is read and assigned, one that is read only is not. What has no type is a Variant. `ByRef` marks an argument that the call writes back. Brackets mark one that may be left out and what it is then.

)";

std::string typeText(AutomationType type) {
  const bool isPlain = type == AutomationType::None || type == AutomationType::Variant;
  return isPlain ? "" : " As " + std::string(automationTypeName(type));
}

std::string defaultText(const Variant& value) {
  if (value.isEmpty()) return "Empty";
  if (value.isNull()) return "Null";
  return value.isText() ? "\"" + value.text() + "\"" : value.toText();
}

std::string parameterText(const MemberParameter& parameter) {
  const std::string text =
      fmt::format("{}{}{}", parameter.byReference ? "ByRef " : "", parameter.name, typeText(parameter.type));
  return parameter.isOptional() ? "[" + text + " = " + defaultText(*parameter.defaultValue) + "]" : text;
}

std::string memberText(const ClassTable& table, const Member& member) {
  const bool isProperty = member.kind == MemberKind::Property;
  std::string arguments;
  for (const MemberParameter& parameter : member.parameters)
    arguments += (arguments.empty() ? "" : ", ") + parameterText(parameter);
  const bool hasList = !isProperty || !member.parameters.empty();
  return fmt::format("{} {}{}{}{}{}\n",
                     isProperty                                  ? "Property"
                     : member.resultType == AutomationType::None ? "Sub"
                                                                 : "Function",
                     member.name, hasList ? "(" + arguments + ")" : "", typeText(member.resultType),
                     isProperty && !member.put ? ", read only" : "",
                     table.defaultMember() == &member ? ", default" : "");
}

std::string section(const ClassTable& table) {
  std::string text = fmt::format("## {}\n\n", table.className());
  if (const PublicClass* row = findPublicClass(table.className()))
    text += fmt::format("`{}.{}`, class id `{}`, default interface `_{}` with id `{}`.\n\n", kProjectName,
                        row->name, row->classId, row->name, row->interfaceId);
  text += "```vb\n";
  for (const Member& member : table.members()) text += memberText(table, member);
  return text + "```\n";
}

constexpr std::string_view kConversionEnum = "StrConvOptionsEnum";

std::string enumSection() {
  std::string text =
      fmt::format("## {}\n\nOptions of `HelperFunctions.ASPStrConv`.\n\n```vb\n", kConversionEnum);
  for (const ConversionName& row : conversionNames())
    text += fmt::format("{} = {}\n", row.name, static_cast<int>(row.option));
  return text + "```\n";
}

}  // namespace

std::string describeClasses() {
  std::vector<const ClassTable*> tables(classTables().begin(), classTables().end());
  std::sort(tables.begin(), tables.end(), [](const ClassTable* a, const ClassTable* b) {
    const bool aIsPublic = findPublicClass(a->className()), bIsPublic = findPublicClass(b->className());
    if (aIsPublic != bIsPublic) return aIsPublic;
    return compareIgnoringCase(a->className(), b->className()) < 0;
  });
  std::string text(kIntroduction);
  for (size_t k = 0; k < tables.size(); ++k) text += (k > 0 ? "\n" : "") + section(*tables[k]);
  return text + "\n" + enumSection();
}

std::string describeClass(std::string_view name) {
  if (equalsIgnoringCase(name, kConversionEnum)) return enumSection();
  const PublicClass* const row = findPublicClass(name);
  for (const ClassTable* table : classTables())
    if (equalsIgnoringCase(table->className(), row ? row->name : name)) return section(*table);
  throw Error(ErrorNumber::CannotCreateObject, kProjectName, "There is no class '" + std::string(name) + "'");
}

}  // namespace ondrel
