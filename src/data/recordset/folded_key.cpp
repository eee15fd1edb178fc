#include "data/recordset/folded_key.h"

#include <bit>
#include <cstring>

#include "base/text.h"

namespace ondrel {
namespace {

constexpr std::uint64_t kEachByte = 0x0101010101010101;
constexpr std::uint64_t kHighBits = 0x80 * kEachByte;
constexpr size_t kWord = sizeof(std::uint64_t);
constexpr FoldedKey kDigestMark = FoldedKey{0xFF} << 56;

static_assert(std::endian::native == std::endian::little, "parts of a word are put together by shifts");

template <class Part>
std::uint64_t load(const char* bytes) {
  Part part;
  std::memcpy(&part, bytes, sizeof part);
  return part;
}

// The first `count` bytes, up to eight, the others 0. Two loads that may overlap, as a copy of a length
// known only now would be a call.
std::uint64_t loadBytes(const char* bytes, size_t count) {
  if (count == kWord) return load<std::uint64_t>(bytes);
  if (count >= 4)
    return load<std::uint32_t>(bytes) | load<std::uint32_t>(bytes + count - 4) << (8 * (count - 4));
  if (count >= 2)
    return load<std::uint16_t>(bytes) | load<std::uint16_t>(bytes + count - 2) << (8 * (count - 2));
  return count == 1 ? load<std::uint8_t>(bytes) : 0;
}

// Lower case for the ASCII letters among eight bytes: one that lies from 'A' to 'Z' carries into its
// high bit when 'A' is counted up to 128, but not when 'Z' + 1 is.
std::uint64_t foldAscii(std::uint64_t word) {
  const std::uint64_t low = word & ~kHighBits;
  const std::uint64_t fromA = low + (0x80 - 'A') * kEachByte;
  const std::uint64_t behindZ = low + (0x80 - 'Z' - 1) * kEachByte;
  const std::uint64_t capitals = fromA & ~behindZ & ~word & kHighBits;
  return word | capitals >> 2;
}

bool isAscii(std::string_view text) {
  std::uint64_t seen = 0;
  size_t position = 0;
  for (; position + kWord <= text.size(); position += kWord) seen |= loadBytes(text.data() + position, kWord);
  seen |= loadBytes(text.data() + position, text.size() - position);
  return (seen & kHighBits) == 0;
}

FoldedKey keyOfFolded(std::string_view text) {
  if (text.size() < kWord)
    return foldAscii(loadBytes(text.data(), text.size())) | FoldedKey{text.size()} << 56;
  std::uint64_t digest = text.size();
  const auto mix = [&digest](std::uint64_t word) {
    digest = (digest ^ foldAscii(word)) * 0x9E3779B97F4A7C15;
    digest ^= digest >> 32;
  };
  size_t position = 0;
  for (; position + kWord <= text.size(); position += kWord) mix(loadBytes(text.data() + position, kWord));
  mix(loadBytes(text.data() + position, text.size() - position));
  return digest | kDigestMark;
}

}  // namespace

FoldedKey foldedKey(std::string_view text) {
  return isAscii(text) ? keyOfFolded(text) : keyOfFolded(toLower(text));
}

}  // namespace ondrel
