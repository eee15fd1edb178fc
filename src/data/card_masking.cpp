#include "data/card_masking.h"

#include <algorithm>
#include <vector>

#include "base/text.h"
#include "data/card_columns.h"
#include "data/card_numbers.h"

namespace ondrel {
namespace {

constexpr size_t kShortestNumber = 13;
constexpr size_t kLongestNumber = 19;
constexpr size_t kShortestTrackNumber = 12;
constexpr size_t kMostMarks = 3;  // between two groups
constexpr std::string_view kGuidShape = "xxxxxxxx-xxxx-xxxx-xxxx-xxxxxxxxxxxx";
// What parts the values of a statement or the fields of a track, and so no groups of one number.
constexpr std::string_view kNoMarks = "'\",()=;^?\r\n";

size_t digitsAt(std::string_view text, size_t start) {
  size_t end = start;
  while (end < text.size() && isDigit(text[end])) ++end;
  return end - start;
}

bool isHexDigit(char c) {
  return isDigit(c) || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F');
}

size_t guidLengthAt(std::string_view text, size_t start) {
  const std::string_view candidate = text.substr(start, kGuidShape.size());
  const auto fits = [](char shape, char c) { return shape == 'x' ? isHexDigit(c) : c == shape; };
  return std::equal(kGuidShape.begin(), kGuidShape.end(), candidate.begin(), candidate.end(), fits)
             ? kGuidShape.size()
             : 0;
}

// Reads up to `most` digits, at least `least`; -1 when they are not there.
int numberAt(std::string_view text, size_t& at, size_t least, size_t most) {
  int number = 0;
  const size_t count = digitsAt(text, at);
  if (count < least || count > most) return -1;
  for (const size_t end = at + count; at < end; ++at) number = number * 10 + (text[at] - '0');
  return number;
}

bool isDay(int year, int month, int day) {
  return year >= 1900 && year < 2100 && month >= 1 && month <= 12 && day >= 1 && day <= 31;
}

// "2026-11-24", "11/24/2026" and a time of day behind a blank or a T, in seconds or minutes; 0 for anything else. All but
// the first have a digit less than the shortest number, but two moments together would look like one.
size_t momentLengthAt(std::string_view text, size_t start) {
  size_t at = start;
  const size_t first = digitsAt(text, start);
  const int a = numberAt(text, at, 1, 4);
  const char part = at < text.size() ? text[at] : ' ';
  if (a < 0 || (part != '-' && part != '/')) return 0;
  const int b = numberAt(text, ++at, 1, 2);
  if (b < 0 || at >= text.size() || text[at] != part) return 0;
  const int c = numberAt(text, ++at, 1, first == 4 ? 2 : 4);
  if (!(first == 4 ? isDay(a, b, c) : isDay(c, a, b))) return 0;
  const size_t day = at;
  if (at >= text.size() || (text[at] != ' ' && text[at] != 'T')) return day - start;
  const int hour = numberAt(text, ++at, 1, 2);
  if (hour < 0 || hour > 23 || at >= text.size() || text[at] != ':') return day - start;
  for (int pieces = 0; pieces < 2 && at < text.size() && text[at] == ':'; ++pieces) {
    size_t piece = at + 1;
    const int value = numberAt(text, piece, 2, 2);
    if (value < 0 || value > 59) return day - start;
    at = piece;
  }
  return at - start;
}

// Marks between two groups of digits, 0 when no group follows.
size_t marksAt(std::string_view text, size_t start) {
  size_t end = start;
  while (end < text.size() && !isDigit(text[end]) && !isLetter(text[end]) &&
         kNoMarks.find(text[end]) == std::string_view::npos)
    ++end;
  const bool goesOn = end < text.size() && isDigit(text[end]) && end - start <= kMostMarks;
  return goesOn ? end - start : 0;
}

// One digit of those that may be a number, and what they are with it as the last.
struct Digit {
  size_t end;     // in the text
  size_t groups;  // so far
  bool endsGroup;
};

struct Candidates {
  std::string digits;
  std::vector<Digit> at;
  bool hasPoint = false;  // between the first two groups
};

Candidates candidatesAt(std::string_view text, size_t start) {
  Candidates found;
  for (size_t at = start, groups = 1;; ++groups) {
    const size_t group = digitsAt(text, at);
    found.digits += text.substr(at, group);
    for (size_t k = 1; k <= group; ++k) found.at.push_back({at + k, groups, k == group});
    at += group;
    const size_t marks = marksAt(text, at);
    if (marks == 0 || found.digits.size() >= kLongestNumber) return found;
    if (groups == 1) found.hasPoint = marks == 1 && text[at] == '.';
    at += marks;
  }
}

struct Found {
  size_t length = 0;  // in the text
  std::string digits;
};

bool isTrackNumber(std::string_view text, size_t start, size_t run) {
  if (run < kShortestTrackNumber || run > kLongestNumber || start + run >= text.size()) return false;
  const char behind = text[start + run];
  return behind == '^' || (behind == '=' && start > 0 && text[start - 1] == ';');
}

// The longest number that begins where digits begin.
Found cardNumberAt(std::string_view text, size_t start) {
  const size_t run = digitsAt(text, start);
  if (isTrackNumber(text, start, run)) return {run, std::string(text.substr(start, run))};
  const bool isBehindPoint = start > 1 && text[start - 1] == '.' && isDigit(text[start - 2]);
  const Candidates found = candidatesAt(text, start);
  for (size_t count = std::min(kLongestNumber, found.digits.size()); count >= kShortestNumber; --count) {
    const std::string digits = found.digits.substr(0, count);
    if (!passesLuhn(digits)) continue;
    const Digit& last = found.at[count - 1];
    const bool isAmount = last.groups == 1 ? isBehindPoint : last.groups == 2 && found.hasPoint;
    if (!isAmount && (last.endsGroup || checkCardNumber(digits).isValid)) return {last.end - start, digits};
  }
  return {};
}

// Digits of a literal without those of its GUIDs; empty for an amount.
std::string digitsOfLiteral(std::string_view content) {
  std::string digits;
  for (size_t at = 0; at < content.size();) {
    const size_t guid = guidLengthAt(content, at);
    if (guid == 0 && isDigit(content[at])) digits += content[at];
    at += std::max<size_t>(guid, 1);
  }
  const bool isAmount = content.find('.') != std::string_view::npos && digits.size() + 1 == content.size();
  return isAmount ? "" : digits;
}

// With its quotes.
Found cardLiteralAt(std::string_view text, size_t start) {
  const size_t end = text.find('\'', start + 1);
  if (end == std::string_view::npos) return {};
  const std::string digits = digitsOfLiteral(text.substr(start + 1, end - start - 1));
  return checkCardNumber(digits).isValid ? Found{end + 1 - start, digits} : Found{};
}

size_t trackLengthAt(std::string_view text, size_t start) {
  if (start >= text.size() || (text[start] != '^' && text[start] != '=')) return 0;
  const size_t end = std::min(text.find_first_of("?'\"\r\n", start), text.size());
  return end - start;
}

// Appends what begins at `start`, masked, and gives its length. What stands between two literals, values and the
// commas that part them, is no literal itself; without a comma it may be, in text with an apostrophe of its own.
size_t appendMasked(std::string_view text, size_t start, bool& isInLiteral, std::string& result) {
  size_t length = std::max<size_t>(std::max(guidLengthAt(text, start), momentLengthAt(text, start)), 1);
  if (length == 1 && text[start] == '\'') {
    const Found literal = cardLiteralAt(text, start);
    const std::string_view content = text.substr(start, literal.length);
    if (literal.length > 0 && (!isInLiteral || content.find(',') == std::string_view::npos)) {
      result += "'" + maskedCardNumber(literal.digits) + "'";
      return literal.length;
    }
    isInLiteral = !isInLiteral;
  } else if (length == 1 && isDigit(text[start])) {
    if (const Found number = cardNumberAt(text, start); number.length > 0) {
      result += maskedCardNumber(number.digits);
      const size_t track = trackLengthAt(text, start + number.length);
      if (track > 0) result += "[track]";
      return number.length + track;
    }
    length = digitsAt(text, start);
  }
  result += text.substr(start, length);
  return length;
}

// Full-width digits are three bytes each.
constexpr std::string_view kWideLead = "\xEF\xBC";

std::string withNarrowDigits(std::string_view text) {
  std::string result;
  for (size_t at = 0; at < text.size(); ++at) {
    const auto third = at + 2 < text.size() ? static_cast<unsigned char>(text[at + 2]) : 0;
    if (text.substr(at, 2) == kWideLead && third >= 0x90 && third <= 0x99) {
      result += static_cast<char>('0' + (third - 0x90));
      at += 2;
    } else {
      result += text[at];
    }
  }
  return result;
}

std::string masked(std::string_view text) {
  std::string result;
  result.reserve(text.size());
  bool isInLiteral = false;
  for (size_t at = 0; at < text.size();) at += appendMasked(text, at, isInLiteral, result);
  return result;
}

}  // namespace

std::string maskCardData(std::string_view text) {
  const std::string bound = maskCardColumns(text);
  if (bound.find(kWideLead) == std::string::npos) return masked(bound);
  const std::string narrow = withNarrowDigits(bound);
  std::string result = masked(narrow);
  return result == narrow ? masked(bound) : result;
}

}  // namespace ondrel
