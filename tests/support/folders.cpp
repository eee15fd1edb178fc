#include "support/folders.h"

#include <string>

namespace ondrel {

// The only file that is compiled with the folders' names: every other is the same in all checkouts, so that
// the compiler's cache serves them all.
std::string sourcePath(std::string_view below) {
  return std::string(ONDREL_SOURCE_DIR "/").append(below);
}

std::string buildPath(std::string_view below) {
  return std::string(ONDREL_BINARY_DIR "/").append(below);
}

}  // namespace ondrel
