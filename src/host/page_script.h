#pragma once

#include <string_view>

namespace ondrel {

// The script that makes the globals of a page out of the host's functions (page_globals.js).
extern const std::string_view kPageScript;
// The page that asks for clerk and PIN (sign_in.js).
extern const std::string_view kSignInScript;

}  // namespace ondrel
