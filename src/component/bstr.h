#pragma once

#include <string_view>

#include "component/ondrel_component.h"

namespace ondrel {

// A copy that the caller owns. std::bad_alloc when there is no room for it.
BSTR toBSTR(std::string_view text);

}  // namespace ondrel
