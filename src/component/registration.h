#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "component/ondrel_component.h"
#include "platform/settings.h"

namespace ondrel {

// The names and ids of the classes in the settings of the machine, below "Software\Classes":
//
// | key                         | values                                     |
// |-----------------------------|--------------------------------------------|
// | OndrelCorpComponents.NAME   | "CLSID"                                    |
// | CLSID\{id}                  | "ProgID", "InprocServer32", "Interface", "TypeLib" |
// | Interface\{id}              | "Name"                                     |
// | TypeLib\{id}                | "Name", "Version"                          |
//
// `library` is the path of the file that holds the classes.
void registerClasses(const Settings& settings, const std::string& library);
// Removes what registerClasses enters, and nothing else.
void unregisterClasses(const Settings& settings);
// The id of a class by its full name, "{...}"; nothing when it is not registered.
std::optional<std::string> registeredClassId(const Settings& settings, std::string_view name);

}  // namespace ondrel
