#pragma once

#include <cstdint>
#include <string_view>

namespace ondrel {

// A number that is the same for two texts that are equal but for case. Up to seven bytes it holds the
// whole text, so that equal keys mean equal texts; a longer text has a digest there, and equal keys
// then need a look at the texts.
using FoldedKey = std::uint64_t;

FoldedKey foldedKey(std::string_view text);

constexpr bool holdsWholeText(FoldedKey key) {
  return key >> 56 < 8;
}

}  // namespace ondrel
