#include "data/card_masking.h"

#include <algorithm>

#include "base/text.h"

namespace ondrel {
namespace {

constexpr size_t kShortestNumber = 13;
constexpr size_t kLongestNumber = 19;
constexpr size_t kShownDigits = 4;
constexpr size_t kShortestGroup = 3;
constexpr size_t kLongestGroup = 6;
constexpr std::string_view kStars = "************";

bool isCardNumber(std::string_view digits) {
  return digits.size() >= kShortestNumber && digits.size() <= kLongestNumber && passesLuhn(digits);
}

size_t digitsAt(std::string_view text, size_t start) {
  size_t end = start;
  while (end < text.size() && isDigit(text[end])) ++end;
  return end - start;
}

struct Found {
  size_t length = 0;  // in the text
  std::string digits;
};

// A number in groups, "4111 1111 1111 1111". Groups of other lengths are identifiers and dates.
Found groupedNumberAt(std::string_view text, size_t start) {
  Found found;
  for (size_t at = start;;) {
    const size_t group = digitsAt(text, at);
    if (group < kShortestGroup || group > kLongestGroup) return {};
    found.digits += text.substr(at, group);
    at += group;
    const bool goesOn = at + 1 < text.size() && (text[at] == ' ' || text[at] == '-') && isDigit(text[at + 1]);
    if (!goesOn || found.digits.size() > kLongestNumber) {
      found.length = at - start;
      return found;
    }
    ++at;
  }
}

// A number begins where digits begin; digits behind a point are the places of an amount.
Found cardNumberAt(std::string_view text, size_t start) {
  if (start > 0 && text[start - 1] == '.') return {};
  const size_t run = digitsAt(text, start);
  const Found plain{run, std::string(text.substr(start, run))};
  if (isCardNumber(plain.digits)) return plain;
  const Found grouped = groupedNumberAt(text, start);
  return isCardNumber(grouped.digits) ? grouped : Found{};
}

size_t trackLengthAt(std::string_view text, size_t start) {
  if (start >= text.size() || (text[start] != '^' && text[start] != '=')) return 0;
  const size_t end = std::min(text.find_first_of("?'\"\r\n", start), text.size());
  return end - start;
}

}  // namespace

bool passesLuhn(std::string_view digits) {
  int sum = 0;
  bool isDoubled = false;
  for (auto digit = digits.rbegin(); digit != digits.rend(); ++digit, isDoubled = !isDoubled) {
    const int value = (*digit - '0') * (isDoubled ? 2 : 1);
    sum += value > 9 ? value - 9 : value;
  }
  return sum % 10 == 0;
}

std::string maskedCardNumber(std::string_view number) {
  const std::string_view plain = trim(number);
  const size_t count = characterCount(plain);
  const size_t hidden = leftCharacters(plain, count > kShownDigits ? count - kShownDigits : 0).size();
  return std::string(kStars) + std::string(plain.substr(hidden));
}

std::string maskCardData(std::string_view text) {
  std::string result;
  result.reserve(text.size());
  for (size_t at = 0; at < text.size();) {
    if (!isDigit(text[at])) {
      result += text[at++];
      continue;
    }
    const Found found = cardNumberAt(text, at);
    if (found.length == 0) {
      const size_t run = digitsAt(text, at);
      result += text.substr(at, run);
      at += run;
      continue;
    }
    result += maskedCardNumber(found.digits);
    at += found.length;
    if (const size_t track = trackLengthAt(text, at)) {
      result += "[track]";
      at += track;
    }
  }
  return result;
}

}  // namespace ondrel
