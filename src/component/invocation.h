#pragma once

#include <string_view>

#include "automation/dispatch/class_table.h"
#include "component/ondrel_component.h"

namespace ondrel {

// Place of the parameter from 0, DISPID_UNKNOWN when there is none of that name.
DISPID parameterPlace(const Member& member, std::string_view name);

// Calls, reads or sets a member as the flags say, writes arguments by reference back, and leaves the result in
// `result` unless that is nullptr. Errors of the call pass to the caller. An argument that is not given takes
// its default, or the status is DISP_E_PARAMNOTOPTIONAL with its place among the given ones in `wrongArgument`.
HRESULT invokeMember(const ClassTable& table, const ObjectRef& object, const Member& member,
                     std::uint16_t flags, const DISPPARAMS& parameters, VARIANT* result,
                     std::uint32_t* wrongArgument);

}  // namespace ondrel
