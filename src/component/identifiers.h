#pragma once

#include <string>
#include <string_view>

#include "component/ondrel_component.h"

namespace ondrel {

bool operator==(const GUID& a, const GUID& b);

// Of the form "FFCE1536-D0A4-4C89-A822-F354F688FC76"; braces around it are taken too. Any other text gives the
// identifier of zeros, which nothing has.
GUID toGuid(std::string_view text);

}  // namespace ondrel
