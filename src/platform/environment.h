#pragma once

#include <cstdlib>
#include <string>

namespace ondrel {

// A variable of the environment, which nothing changes while the library works. The fallback counts where it is
// not set or empty.
inline std::string environmentValue(const char* name, const std::string& fallback = {}) {
  const char* value = std::getenv(name);  // NOLINT(concurrency-mt-unsafe)
  return value && *value ? value : fallback;
}

}  // namespace ondrel
