#pragma once

#include <string>

namespace ondrel {

// A new random identifier in its registry form: "{0F8FAD5B-D9CB-469F-A165-70867728950E}".
std::string newGuid();

}  // namespace ondrel
