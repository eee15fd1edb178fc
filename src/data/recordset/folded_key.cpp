#include "data/recordset/folded_key.h"

#include "base/text.h"
#include "data/recordset/words.h"

namespace ondrel {
namespace {

constexpr std::uint64_t kEachByte = 0x0101010101010101;
constexpr std::uint64_t kHighBits = 0x80 * kEachByte;
constexpr FoldedKey kDigestMark = FoldedKey{0xFF} << 56;

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
  for (; position + kWordBytes <= text.size(); position += kWordBytes)
    seen |= loadWord(text.data() + position, kWordBytes);
  seen |= loadWord(text.data() + position, text.size() - position);
  return (seen & kHighBits) == 0;
}

FoldedKey keyOfFolded(std::string_view text) {
  if (text.size() < kWordBytes)
    return foldAscii(loadWord(text.data(), text.size())) | FoldedKey{text.size()} << 56;
  std::uint64_t digest = text.size();
  const auto mix = [&digest](std::uint64_t word) {
    digest = (digest ^ foldAscii(word)) * 0x9E3779B97F4A7C15;
    digest ^= digest >> 32;
  };
  size_t position = 0;
  for (; position + kWordBytes <= text.size(); position += kWordBytes)
    mix(loadWord(text.data() + position, kWordBytes));
  mix(loadWord(text.data() + position, text.size() - position));
  return digest | kDigestMark;
}

}  // namespace

FoldedKey foldedKey(std::string_view text) {
  return isAscii(text) ? keyOfFolded(text) : keyOfFolded(toLower(text));
}

}  // namespace ondrel
