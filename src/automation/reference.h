#pragma once

#include <string>
#include <string_view>

namespace ondrel {

// The classes with their members as pages call them, in Markdown: docs/reference.md.
std::string describeClasses();

// The section of one class or enumeration, by its name with or without the project name, in any case. Error 429 when there is
// no such class.
std::string describeClass(std::string_view name);

}  // namespace ondrel
