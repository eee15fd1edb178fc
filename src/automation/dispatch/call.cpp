#include "automation/dispatch/call.h"

#include <algorithm>
#include <string>

namespace ondrel {
namespace {

std::string fullName(const ClassTable& table, const Member& member) {
  return std::string(table.className()) + "." + std::string(member.name);
}

[[noreturn]] void failCount(const ClassTable& table, const Member& member) {
  throw Error(ErrorNumber::WrongNumberOfArguments, table.className(),
              "Wrong number of arguments or invalid property assignment: '" + fullName(table, member) + "'");
}

[[noreturn]] void failPut(const ClassTable& table, const Member& member) {
  throw Error(
      ErrorNumber::NoSuchMember, table.className(),
      "Object doesn't support this property or method: '" + fullName(table, member) + "' cannot be assigned");
}

[[noreturn]] void failConversion(const ClassTable& table, const Member& member,
                                 const ConversionFailure& failure) {
  std::string description = failure.error.description() + ": ";
  if (failure.argument < member.parameters.size())
    description += "argument '" + std::string(member.parameters[failure.argument].name) + "' of ";
  throw Error(failure.error.code(), table.className(), description + "'" + fullName(table, member) + "'");
}

const ObjectRef& required(const ObjectRef& object) {
  if (!object) throw Error(ErrorNumber::ObjectRequired, "Automation", "Object required");
  return object;
}

// An object in a value that has a default member.
struct DefaultTarget {
  ObjectRef object;
  const ClassTable* table = nullptr;

  explicit operator bool() const { return table != nullptr; }
};

DefaultTarget defaultTarget(const Variant& value) {
  if (!value.isObject()) return {};
  ObjectRef object = value.toObject();
  if (!object) return {};
  const ClassTable& table = classTableOf(*object);
  if (!table.defaultMember()) return {};
  return {std::move(object), &table};
}

}  // namespace

Variant callMember(const ClassTable& table, const ObjectRef& object, const Member& member,
                   Arguments arguments) {
  if (member.kind == MemberKind::Property && member.parameters.empty() && !arguments.empty()) {
    const DefaultTarget target = defaultTarget(callMember(table, object, member));
    if (!target) failCount(table, member);
    return callMember(*target.table, target.object, *target.table->defaultMember(), arguments);
  }
  if (arguments.size() < member.requiredArguments() || arguments.size() > member.parameters.size())
    failCount(table, member);
  try {
    return member.call(object, arguments, member);
  } catch (const ConversionFailure& failure) {
    failConversion(table, member, failure);
  }
}

void putMember(const ClassTable& table, const ObjectRef& object, const Member& member, const Variant& value,
               Arguments arguments) {
  if (member.kind == MemberKind::Method) failPut(table, member);
  if (member.put && arguments.size() == member.parameters.size()) {
    try {
      member.put(object, arguments, value, member);
    } catch (const ConversionFailure& failure) {
      failConversion(table, member, failure);
    }
    return;
  }
  const size_t own = std::min(arguments.size(), member.parameters.size());
  const DefaultTarget target = defaultTarget(callMember(table, object, member, arguments.first(own)));
  if (!target && arguments.size() > own) failCount(table, member);
  if (!target) failPut(table, member);
  putMember(*target.table, target.object, *target.table->defaultMember(), value, arguments.subspan(own));
}

Variant callMember(const ObjectRef& object, std::string_view name, Arguments arguments) {
  const ClassTable& table = classTableOf(*required(object));
  return callMember(table, object, table.member(name), arguments);
}

void putMember(const ObjectRef& object, std::string_view name, const Variant& value, Arguments arguments) {
  const ClassTable& table = classTableOf(*required(object));
  putMember(table, object, table.member(name), value, arguments);
}

}  // namespace ondrel
