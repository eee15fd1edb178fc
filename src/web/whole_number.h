#pragma once

#include <array>
#include <cstdint>
#include <string>

#include "base/text.h"

namespace ondrel {

// Line numbers, ids and pieces, which need none of the care that an amount takes.
inline void appendWhole(std::string& text, std::int32_t number) {
  std::array<char, kShortNumber> digits;
  text.append(digits.data(), writeNumber(digits.data(), number));
}

}  // namespace ondrel
