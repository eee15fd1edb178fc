#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <string>

#include "base/error.h"

namespace ondrel {

// Number of the error that `action` raises, 0 when it raises none.
inline int errorOf(const std::function<void()>& action) {
  try {
    action();
  } catch (const Error& error) {
    return error.number();
  }
  return 0;
}

// What the error says that `action` raises, "" when it raises none.
inline std::string descriptionOf(const std::function<void()>& action) {
  try {
    action();
  } catch (const Error& error) {
    return error.description();
  }
  return "";
}

}  // namespace ondrel
