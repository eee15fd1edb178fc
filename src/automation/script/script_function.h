#pragma once

#include <functional>
#include <span>
#include <string_view>

#include "base/variant.h"

namespace ondrel {

// Takes what a script prints, line ends included.
using ScriptPrinter = std::function<void(std::string_view)>;
// A function of the host; an Error that it raises reaches the script.
using ScriptFunction = std::function<Variant(std::span<const Variant> arguments)>;

}  // namespace ondrel
