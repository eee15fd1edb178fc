#pragma once

#include <string_view>

#include "automation/dispatch/class_table.h"

namespace ondrel {

// Call by name. Errors name the class and the member:
//
// | number | when                                                              |
// |--------|-------------------------------------------------------------------|
// | 438    | no member of that name; a put to a method or a read-only property |
// | 450    | too many or too few arguments                                     |
// | 13, 6, | an argument or a value that does not convert; the description     |
// | 94     | names the argument                                                |
// | 424    | no object                                                         |
//
// A property without parameters that is given arguments passes them to the default member of its value,
// and so does a put to a property that is read only: rs.Fields("quantity") is
// rs.Fields.Item("quantity"), and a put to it sets the Value of that field.

// Calls a method or reads a property.
Variant callMember(const ObjectRef& object, std::string_view name, Arguments arguments = {});
void putMember(const ObjectRef& object, std::string_view name, const Variant& value,
               Arguments arguments = {});

// The same for a member that is known already, of the object's class table.
Variant callMember(const ClassTable& table, const ObjectRef& object, const Member& member,
                   Arguments arguments = {});
void putMember(const ClassTable& table, const ObjectRef& object, const Member& member, const Variant& value,
               Arguments arguments = {});

}  // namespace ondrel
