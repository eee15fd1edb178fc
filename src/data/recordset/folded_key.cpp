#include "data/recordset/folded_key.h"

#include <cstring>

#include "base/text.h"

namespace ondrel {
namespace {

constexpr std::uint64_t kEachByte = 0x0101010101010101;
constexpr std::uint64_t kHighBits = 0x80 * kEachByte;
constexpr size_t kWord = sizeof(std::uint64_t);
constexpr FoldedKey kDigestMark = FoldedKey{0xFF} << 56;

std::uint64_t loadBytes(const char* bytes, size_t count) {
  std::uint64_t word = 0;
  if (count > 0) std::memcpy(&word, bytes, count);  // an empty text may have no bytes to point at
  return word;
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
