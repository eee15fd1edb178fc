#include "platform/utf16.h"

#include "base/text.h"

namespace ondrel {
namespace {

constexpr char32_t kFirstOfPair = 0xD800, kSecondOfPair = 0xDC00, kBehindPairs = 0xE000, kPlane = 0x10000;

bool isHalf(char32_t unit) {
  return unit >= kFirstOfPair && unit < kBehindPairs;
}

unsigned char byteAt(std::string_view text, size_t position) {
  return static_cast<unsigned char>(text[position]);
}

// As nextCharacter, and takes half of a pair as well.
char32_t nextUnitOrCharacter(std::string_view text, size_t& position) {
  const bool hasHalf = position + 2 < text.size() && byteAt(text, position) == 0xED &&
                       (byteAt(text, position + 1) & 0xE0) == 0xA0 &&
                       (byteAt(text, position + 2) & 0xC0) == 0x80;
  if (!hasHalf) return nextCharacter(text, position);
  const char32_t half =
      0xD000u | (byteAt(text, position + 1) & 0x3Fu) << 6 | (byteAt(text, position + 2) & 0x3Fu);
  position += 3;
  return half;
}

}  // namespace

std::u16string toUtf16(std::string_view text) {
  std::u16string units;
  units.reserve(text.size());
  for (size_t position = 0; position < text.size();) {
    const char32_t character = nextUnitOrCharacter(text, position);
    if (character < kPlane) {
      units += static_cast<char16_t>(character);
      continue;
    }
    units += static_cast<char16_t>(kFirstOfPair + ((character - kPlane) >> 10));
    units += static_cast<char16_t>(kSecondOfPair + ((character - kPlane) & 0x3FF));
  }
  return units;
}

std::string fromUtf16(std::u16string_view units) {
  std::string text;
  text.reserve(units.size());
  for (size_t k = 0; k < units.size(); ++k) {
    char32_t character = units[k];
    const bool isPair = isHalf(character) && character < kSecondOfPair && k + 1 < units.size() &&
                        isHalf(units[k + 1]) && units[k + 1] >= kSecondOfPair;
    if (isPair) character = kPlane + ((character - kFirstOfPair) << 10) + (units[++k] - kSecondOfPair);
    appendCharacter(text, character);
  }
  return text;
}

}  // namespace ondrel
