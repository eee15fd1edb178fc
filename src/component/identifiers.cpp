#include "component/identifiers.h"

#include <array>
#include <charconv>
#include <cstring>

namespace ondrel {
namespace {

// Digits of the identifier's text in groups, and where the hyphens stand.
constexpr size_t kLength = 36;
constexpr std::array<size_t, 4> kHyphens = {8, 13, 18, 23};

template <class Number>
bool take(std::string_view text, size_t place, Number& number) {
  const char* const first = text.data() + place;
  const char* const last = first + 2 * sizeof(Number);
  return std::from_chars(first, last, number, 16).ptr == last;
}

}  // namespace

bool operator==(const GUID& a, const GUID& b) {
  return std::memcmp(&a, &b, sizeof a) == 0;
}

GUID toGuid(std::string_view text) {
  if (text.size() == kLength + 2 && text.front() == '{' && text.back() == '}') text = text.substr(1, kLength);
  GUID guid{};
  bool isWhole = text.size() == kLength;
  for (const size_t hyphen : kHyphens) isWhole = isWhole && text[hyphen] == '-';
  isWhole = isWhole && take(text, 0, guid.Data1) && take(text, 9, guid.Data2) && take(text, 14, guid.Data3);
  for (size_t k = 0; k < 8; ++k) isWhole = isWhole && take(text, (k < 2 ? 19 : 20) + 2 * k, guid.Data4[k]);
  return isWhole ? guid : GUID{};
}

}  // namespace ondrel
