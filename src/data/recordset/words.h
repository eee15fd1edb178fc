#pragma once

#include <bit>
#include <cstdint>
#include <cstring>

namespace ondrel {

// Text taken eight bytes at a time.
using TextWord = std::uint64_t;
inline constexpr size_t kWordBytes = sizeof(TextWord);

static_assert(std::endian::native == std::endian::little, "parts of a word are put together by shifts");

template <class Part>
TextWord loadPart(const char* bytes) {
  Part part;
  std::memcpy(&part, bytes, sizeof part);
  return part;
}

// The first `count` bytes, up to eight, and 0 for the others. Two loads that may overlap, as a copy of a
// length known only now would be a call.
inline TextWord loadWord(const char* bytes, size_t count) {
  if (count == kWordBytes) return loadPart<std::uint64_t>(bytes);
  if (count >= 4)
    return loadPart<std::uint32_t>(bytes) | loadPart<std::uint32_t>(bytes + count - 4) << (8 * (count - 4));
  if (count >= 2)
    return loadPart<std::uint16_t>(bytes) | loadPart<std::uint16_t>(bytes + count - 2) << (8 * (count - 2));
  return count == 1 ? loadPart<std::uint8_t>(bytes) : 0;
}

}  // namespace ondrel
