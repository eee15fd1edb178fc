#include "base/text.h"

namespace ondrel {
namespace {

constexpr char lowerAscii(char c) {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c + ('a' - 'A')) : c;
}

char32_t lowerCharacter(char32_t c) {
  if (c < 128) return static_cast<unsigned char>(lowerAscii(static_cast<char>(c)));
  if (c >= 0xC0 && c <= 0xDE && c != 0xD7) return c + 0x20;
  switch (c) {
    case 0x0160:
      return 0x0161;
    case 0x0152:
      return 0x0153;
    case 0x017D:
      return 0x017E;
    case 0x0178:
      return 0x00FF;
    default:
      return c;
  }
}

char32_t upperCharacter(char32_t c) {
  if (c >= 'a' && c <= 'z') return c - ('a' - 'A');
  if (c >= 0xE0 && c <= 0xFE && c != 0xF7) return c - 0x20;
  switch (c) {
    case 0x0161:
      return 0x0160;
    case 0x0153:
      return 0x0152;
    case 0x017E:
      return 0x017D;
    case 0x00FF:
      return 0x0178;
    default:
      return c;
  }
}

template <class Change>
std::string changeEach(std::string_view text, Change change) {
  std::string result;
  result.reserve(text.size());
  for (size_t position = 0; position < text.size();) {
    if (const auto byte = static_cast<unsigned char>(text[position]); byte < 128) {  // stays one byte
      result += static_cast<char>(change(byte));
      ++position;
    } else {
      appendCharacter(result, change(nextCharacter(text, position)));
    }
  }
  return result;
}

}  // namespace

std::string_view trim(std::string_view text) {
  const size_t first = text.find_first_not_of(' ');
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(' ') - first + 1);
}

std::string toLower(std::string_view text) {
  return changeEach(text, [](char32_t c) { return lowerCharacter(c); });
}

std::string toUpper(std::string_view text) {
  return changeEach(text, [](char32_t c) { return upperCharacter(c); });
}

int compareIgnoringCase(std::string_view a, std::string_view b) {
  size_t i = 0, j = 0;
  while (i < a.size() && j < b.size()) {
    if (((a[i] | b[j]) & 0x80) == 0) {  // the common case needs no decoding
      const char left = lowerAscii(a[i++]), right = lowerAscii(b[j++]);
      if (left != right) return left < right ? -1 : 1;
      continue;
    }
    const char32_t left = lowerCharacter(nextCharacter(a, i));
    const char32_t right = lowerCharacter(nextCharacter(b, j));
    if (left != right) return left < right ? -1 : 1;
  }
  return i < a.size() ? 1 : j < b.size() ? -1 : 0;
}

bool equalsIgnoringCase(std::string_view a, std::string_view b) {
  return a.size() == b.size() && compareIgnoringCase(a, b) == 0;
}

std::string replaceAll(std::string_view text, std::string_view what, std::string_view with) {
  if (what.empty()) return std::string(text);
  std::string result;
  size_t from = 0;
  for (size_t found = 0; (found = text.find(what, from)) != std::string_view::npos;
       from = found + what.size())
    result.append(text, from, found - from).append(with);
  return result.append(text, from, std::string_view::npos);
}

}  // namespace ondrel
