#pragma once

#include <string>
#include <string_view>

namespace ondrel {

// A new random identifier in its registry form: "{0F8FAD5B-D9CB-469F-A165-70867728950E}".
std::string newGuid();
// True for one in the form of newGuid.
bool isGuid(std::string_view text);

}  // namespace ondrel
