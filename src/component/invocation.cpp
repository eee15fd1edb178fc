#include "component/invocation.h"

#include <vector>

#include "automation/dispatch/call.h"
#include "base/text.h"
#include "component/values.h"

namespace ondrel {
namespace {

// What a caller gives, in the order of the parameters. A place without a VARIANT is one that was left out.
struct Given {
  std::vector<const VARIANT*> arguments;
  const VARIANT* newValue = nullptr;
};

// Positional arguments stand behind the named ones, from last to first.
HRESULT order(const DISPPARAMS& parameters, Given& given) {
  if (parameters.cNamedArgs > parameters.cArgs) return E_INVALIDARG;
  for (std::uint32_t k = parameters.cArgs; k > parameters.cNamedArgs; --k)
    given.arguments.push_back(&parameters.rgvarg[k - 1]);
  for (std::uint32_t k = 0; k < parameters.cNamedArgs; ++k) {
    const DISPID place = parameters.rgdispidNamedArgs[k];
    constexpr DISPID kMostParameters = 64;
    if (place == DISPID_PROPERTYPUT) {
      given.newValue = &parameters.rgvarg[k];
    } else if (place < 0 || place > kMostParameters) {
      return DISP_E_PARAMNOTFOUND;
    } else {
      const auto index = static_cast<size_t>(place);
      if (given.arguments.size() <= index) given.arguments.resize(index + 1, nullptr);
      given.arguments[index] = &parameters.rgvarg[k];
    }
  }
  for (const VARIANT*& argument : given.arguments)
    if (argument && isOmitted(*argument)) argument = nullptr;
  while (!given.arguments.empty() && !given.arguments.back()) given.arguments.pop_back();
  return S_OK;
}

HRESULT valuesOf(const Member& member, const Given& given, std::vector<Variant>& values,
                 std::uint32_t* wrongArgument) {
  for (size_t k = 0; k < given.arguments.size(); ++k) {
    if (given.arguments[k]) {
      values.push_back(fromVARIANT(*given.arguments[k]));
    } else if (k < member.parameters.size() && member.parameters[k].isOptional()) {
      values.push_back(*member.parameters[k].defaultValue);
    } else {
      if (wrongArgument) *wrongArgument = static_cast<std::uint32_t>(k);
      return DISP_E_PARAMNOTOPTIONAL;
    }
  }
  return S_OK;
}

void writeBackAll(const Member& member, const Given& given, const std::vector<Variant>& values) {
  for (size_t k = 0; k < values.size() && k < member.parameters.size(); ++k) {
    const VARIANT* const argument = given.arguments[k];
    if (member.parameters[k].byReference && argument && (argument->vt & VT_BYREF))
      writeBack(*argument, values[k]);
  }
}

}  // namespace

DISPID parameterPlace(const Member& member, std::string_view name) {
  for (size_t k = 0; k < member.parameters.size(); ++k)
    if (equalsIgnoringCase(member.parameters[k].name, name)) return static_cast<DISPID>(k);
  return DISPID_UNKNOWN;
}

HRESULT invokeMember(const ClassTable& table, const ObjectRef& object, const Member& member,
                     std::uint16_t flags, const DISPPARAMS& parameters, VARIANT* result,
                     std::uint32_t* wrongArgument) {
  Given given;
  std::vector<Variant> values;
  if (const HRESULT status = order(parameters, given); status < 0) return status;
  if (const HRESULT status = valuesOf(member, given, values, wrongArgument); status < 0) return status;
  if (result) VariantInit(result);
  if (flags & (DISPATCH_PROPERTYPUT | DISPATCH_PROPERTYPUTREF)) {
    if (!given.newValue) return DISP_E_PARAMNOTOPTIONAL;
    putMember(table, object, member, fromVARIANT(*given.newValue), values);
    return S_OK;
  }
  const Variant value = callMember(table, object, member, values);
  writeBackAll(member, given, values);
  if (result) *result = toVARIANT(value);
  return S_OK;
}

}  // namespace ondrel
