#pragma once

#include <string>
#include <string_view>

namespace ondrel {

// Paths below the source tree and below the build folder: sourcePath("docs/reference.md").
std::string sourcePath(std::string_view below);
std::string buildPath(std::string_view below);

}  // namespace ondrel
