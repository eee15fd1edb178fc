#pragma once

#include <string_view>

namespace ondrel {

// The script that makes the globals of a page out of the host's functions.
extern const std::string_view kPageScript;
// The page that asks for clerk and PIN.
extern const std::string_view kSignInScript;

}  // namespace ondrel
