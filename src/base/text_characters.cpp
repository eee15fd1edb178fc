#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>

#include "base/text.h"

namespace ondrel {
namespace {

// Windows-1252 from 128 to 159; the rest agrees with the first 256 characters of Unicode. The five
// codes that the page leaves free keep their own value.
// clang-format off
constexpr std::array<char32_t, 32> kWindows1252 = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021,
    0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0x008D, 0x017D, 0x008F,
    0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,
    0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};
// clang-format on

// Bytes of the sequence that starts with `first`, 0 when none does.
size_t sequenceLength(unsigned char first) {
  if (first >= 0xC2 && first < 0xE0) return 2;
  if (first >= 0xE0 && first < 0xF0) return 3;
  return first >= 0xF0 && first < 0xF5 ? 4 : 0;
}

// Whether a decoded sequence was no longer than needed and names a character: no half of a surrogate
// pair, nothing past the last one.
bool isShortestForm(char32_t character, size_t length) {
  if (length == 3) return character >= 0x800 && (character < 0xD800 || character > 0xDFFF);
  return length != 4 || (character >= 0x10000 && character <= 0x10FFFF);
}

// How many bytes at the start, in whole words, are ASCII and no NUL: nearly all of a statement. Taking 1 off each
// byte of a word without a high bit sets one only where a byte was 0.
size_t plainBytes(std::string_view text) {
  constexpr std::uint64_t kOnes = 0x0101010101010101, kHighBits = 0x8080808080808080;
  size_t position = 0;
  for (std::uint64_t word = 0; position + sizeof word <= text.size(); position += sizeof word) {
    std::memcpy(&word, text.data() + position, sizeof word);
    if (((word | (word - kOnes)) & kHighBits) != 0) break;
  }
  return position;
}

}  // namespace

bool isWholeText(std::string_view text) {
  for (size_t position = plainBytes(text); position < text.size();) {
    const auto first = static_cast<unsigned char>(text[position]);
    if (first == 0) return false;
    if (first < 0x80) {
      ++position;
      continue;
    }
    const size_t start = position;
    nextCharacter(text, position);
    if (position == start + 1) return false;
  }
  return true;
}

size_t characterCount(std::string_view text) {
  size_t count = 0;
  for (size_t position = 0; position < text.size(); ++count) nextCharacter(text, position);
  return count;
}

std::string_view leftCharacters(std::string_view text, size_t count) {
  size_t position = 0;
  while (count-- > 0 && position < text.size()) nextCharacter(text, position);
  return text.substr(0, position);
}

char32_t nextCharacter(std::string_view text, size_t& position) {
  const auto byte = [&](size_t at) { return static_cast<unsigned char>(text[at]); };
  const unsigned char first = byte(position);
  if (first < 0x80) return byte(position++);
  const size_t length = sequenceLength(first);
  if (length == 0 || position + length > text.size()) return byte(position++);
  char32_t character = first & (0xFF >> (length + 1));
  for (size_t k = 1; k < length; ++k) {
    if ((byte(position + k) & 0xC0) != 0x80) return byte(position++);
    character = character << 6 | (byte(position + k) & 0x3F);
  }
  if (!isShortestForm(character, length)) return byte(position++);
  position += length;
  return character;
}

void appendCharacter(std::string& text, char32_t character) {
  const auto byte = [&](char32_t bits) { text += static_cast<char>(static_cast<unsigned char>(bits)); };
  if (character < 0x80) {
    byte(character);
  } else if (character < 0x800) {
    byte(0xC0 | character >> 6), byte(0x80 | (character & 0x3F));
  } else if (character < 0x10000) {
    byte(0xE0 | character >> 12), byte(0x80 | (character >> 6 & 0x3F)), byte(0x80 | (character & 0x3F));
  } else {
    byte(0xF0 | character >> 18), byte(0x80 | (character >> 12 & 0x3F)), byte(0x80 | (character >> 6 & 0x3F)),
        byte(0x80 | (character & 0x3F));
  }
}

int ansiCode(char32_t character) {
  if (character < 128 || (character >= 160 && character < 256)) return static_cast<int>(character);
  const auto found = std::find(kWindows1252.begin(), kWindows1252.end(), character);
  return found == kWindows1252.end() ? '?' : static_cast<int>(found - kWindows1252.begin()) + 128;
}

char32_t ansiCharacter(int code) {
  return code >= 128 && code < 160 ? kWindows1252[static_cast<size_t>(code - 128)]
                                   : static_cast<char32_t>(code);
}

}  // namespace ondrel
