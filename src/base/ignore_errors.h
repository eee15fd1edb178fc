#pragma once

#include "base/error.h"

namespace ondrel {

// Goes on with the next statement when this one fails.
template <class Action>
void ignoreErrors(Action action) {
  try {
    action();
  } catch (const Error&) {
  }
}

}  // namespace ondrel
