#include "base/text.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstring>

#include "base/whole_number.h"

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

constexpr int kSignificantDigits = 15;

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

// Significant digits of |value| without trailing zeros, and the power of ten of the first of them.
struct Decimal {
  std::string digits;
  int exponent = 0;
};

Decimal decimalOf(double value) {
  std::array<char, 40> buffer{};
  const auto end = std::to_chars(buffer.data(), buffer.data() + buffer.size(), std::fabs(value),
                                 std::chars_format::scientific, kSignificantDigits - 1)
                       .ptr;
  const std::string_view text(buffer.data(), static_cast<size_t>(end - buffer.data()));
  const size_t mark = text.find('e');
  Decimal result;
  result.digits = text.front();
  result.digits += text.substr(2, mark - 2);
  result.digits.erase(std::max<size_t>(result.digits.find_last_not_of('0') + 1, 1));
  const std::string_view power = text.substr(text[mark + 1] == '+' ? mark + 2 : mark + 1);
  std::from_chars(power.data(), power.data() + power.size(), result.exponent);
  return result;
}

// The digit that stands at the power of ten `place`, 0 outside the significant ones.
char digitAt(const Decimal& number, int place) {
  const int index = number.exponent - place;
  return index >= 0 && index < static_cast<int>(number.digits.size())
             ? number.digits[static_cast<size_t>(index)]
             : '0';
}

std::string positional(const Decimal& number, int places) {
  std::string result;
  for (int place = std::max(number.exponent, 0); place >= 0; --place) result += digitAt(number, place);
  if (places > 0) result += '.';
  for (int place = -1; place >= -places; --place) result += digitAt(number, place);
  return result;
}

// Rounds half up, in decimal digits, behind the power of ten `last`.
Decimal roundedBehind(Decimal number, int last) {
  const int kept = number.exponent - last + 1;
  if (kept >= static_cast<int>(number.digits.size())) return number;
  if (kept < 0) return {"0", 0};
  const bool up = number.digits[static_cast<size_t>(kept)] >= '5';
  number.digits.resize(static_cast<size_t>(kept));
  if (!up) return kept == 0 ? Decimal{"0", 0} : number;
  int index = kept - 1;
  for (; index >= 0 && number.digits[static_cast<size_t>(index)] == '9'; --index)
    number.digits[static_cast<size_t>(index)] = '0';
  if (index >= 0) {
    ++number.digits[static_cast<size_t>(index)];
  } else {
    number.digits.insert(number.digits.begin(), '1');
    ++number.exponent;
  }
  return number;
}

std::string longNumberText(double value) {
  if (std::isnan(value)) return "-1.#IND";
  if (std::isinf(value)) return value < 0 ? "-1.#INF" : "1.#INF";
  const Decimal number = decimalOf(value);
  const int places = std::max(static_cast<int>(number.digits.size()) - 1 - number.exponent, 0);
  const std::string sign = value < 0 ? "-" : "";
  if (number.exponent < kSignificantDigits && places <= kSignificantDigits)
    return sign + positional(number, places);
  const std::string fraction = number.digits.size() > 1 ? "." + number.digits.substr(1) : "";
  return fmt::format("{}{}{}E{}{:02}", sign, number.digits.front(), fraction, number.exponent < 0 ? '-' : '+',
                     std::abs(number.exponent));
}

// ---- the short way, for amounts

// Digits behind the point of the amounts that are told without looking at each decimal digit.
constexpr int kShortPlaces = 4;
constexpr std::array<double, kShortPlaces + 1> kPowers = {1, 10, 100, 1'000, 10'000};

long long nearestWhole(double value) {
  return *wholeNumber<long long>(value < 0 ? value - 0.5 : value + 0.5);
}

// The value in ten-thousandths, when it is the very number that so many of them give. A decimal of at most 15
// digits comes back from a number unharmed, so these are the digits that the value shows.
std::optional<long long> tenThousandths(double value) {
  const double scaled = value * kPowers.back();
  if (!(std::fabs(scaled) < 1e15)) return std::nullopt;
  const long long units = nearestWhole(scaled);
  if (static_cast<double>(units) / kPowers.back() != value) return std::nullopt;
  return units;
}

// The value in units of so many places, when it lies so close to one that its decimal digits cannot round to
// another: they differ from the value by less than a hundredth of a unit.
std::optional<long long> nearestUnits(double value, int places) {
  if (places < 0 || places > kShortPlaces || !(std::fabs(value) < 1e9)) return std::nullopt;
  const double scaled = value * kPowers[static_cast<size_t>(places)];
  const long long units = nearestWhole(scaled);
  if (std::fabs(scaled - static_cast<double>(units)) > 0.49) return std::nullopt;
  return units;
}

// Units of so many places with a point; trailing zeros behind it only when asked for.
char* writeUnits(char* to, long long units, int places, bool withZeros) {
  std::array<char, 2 * kShortNumber> buffer;
  char* const end = buffer.data() + kShortNumber;
  char* first = end;
  char* last = end;
  bool shown = withZeros;
  auto rest = static_cast<unsigned long long>(units < 0 ? -units : units);
  for (int place = 0; place < places; ++place, rest /= 10) {
    shown = shown || rest % 10 != 0;
    *--first = static_cast<char>('0' + rest % 10);
    if (!shown) last = first;
  }
  if (shown && places > 0) *--first = '.';
  do *--first = static_cast<char>('0' + rest % 10);
  while ((rest /= 10) != 0);
  if (units < 0) *--first = '-';
  std::memcpy(to, first, kShortNumber);  // in one block, which is quicker than one of the right size
  return to + (last - first);
}

// Of a finite value, without its sign.
std::string fixedMagnitude(double value, int digits) {
  return positional(roundedBehind(decimalOf(value), -digits), digits);
}

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

bool isAllZero(std::string_view number) {
  return number.find_first_of("123456789") == std::string_view::npos;
}

}  // namespace

std::string_view trim(std::string_view text) {
  const size_t first = text.find_first_not_of(' ');
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(' ') - first + 1);
}

std::string toLower(std::string_view text) {
  return changeEach(text, lowerCharacter);
}

std::string toUpper(std::string_view text) {
  return changeEach(text, upperCharacter);
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

bool isWholeText(std::string_view text) {
  for (size_t position = 0; position < text.size();) {
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

void appendCharacter(std::string& text, char32_t c) {
  const auto byte = [&](char32_t bits) { text += static_cast<char>(static_cast<unsigned char>(bits)); };
  if (c < 0x80) {
    byte(c);
  } else if (c < 0x800) {
    byte(0xC0 | c >> 6), byte(0x80 | (c & 0x3F));
  } else if (c < 0x10000) {
    byte(0xE0 | c >> 12), byte(0x80 | (c >> 6 & 0x3F)), byte(0x80 | (c & 0x3F));
  } else {
    byte(0xF0 | c >> 18), byte(0x80 | (c >> 12 & 0x3F)), byte(0x80 | (c >> 6 & 0x3F)),
        byte(0x80 | (c & 0x3F));
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

std::string replaceAll(std::string_view text, std::string_view what, std::string_view with) {
  if (what.empty()) return std::string(text);
  std::string result;
  size_t from = 0;
  for (size_t found = 0; (found = text.find(what, from)) != std::string_view::npos;
       from = found + what.size())
    result.append(text, from, found - from).append(with);
  return result.append(text, from, std::string_view::npos);
}

std::optional<double> parseNumber(std::string_view text) {
  while (!text.empty() && (text.front() == ' ' || text.front() == '\t')) text.remove_prefix(1);
  while (!text.empty() && (text.back() == ' ' || text.back() == '\t')) text.remove_suffix(1);

  bool negative = false, signSeen = false, currencySeen = false;
  while (!text.empty()) {
    const char c = text.front();
    if (!signSeen && (c == '-' || c == '+')) {
      signSeen = true;
      negative = c == '-';
    } else if (!currencySeen && c == '$') {
      currencySeen = true;
    } else if (c != ' ' || !(signSeen || currencySeen)) {
      break;
    }
    text.remove_prefix(1);
  }

  std::string digits;
  digits.reserve(text.size());
  bool pointSeen = false, exponentSeen = false, digitSeen = false;
  for (size_t k = 0; k < text.size(); ++k) {
    const char c = text[k];
    if (isDigit(c)) {
      digitSeen = true;
    } else if (c == '.' && !pointSeen && !exponentSeen) {
      pointSeen = true;
    } else if (c == ',' && digitSeen && !pointSeen && !exponentSeen) {
      continue;
    } else if ((c == 'e' || c == 'E') && digitSeen && !exponentSeen) {
      exponentSeen = true;
      digitSeen = false;
      digits += c;
      if (k + 1 < text.size() && (text[k + 1] == '+' || text[k + 1] == '-')) {
        if (text[++k] == '-') digits += '-';
      }
      continue;
    } else {
      return std::nullopt;
    }
    digits += c;
  }
  if (!digitSeen) return std::nullopt;

  double value = 0;
  const auto [end, failure] = std::from_chars(digits.data(), digits.data() + digits.size(), value);
  if (failure != std::errc() || end != digits.data() + digits.size()) return std::nullopt;
  return negative ? -value : value;
}

std::string numberText(double value) {
  std::string text;
  appendNumber(text, value);
  return text;
}

void appendNumber(std::string& text, double value) {
  std::array<char, kShortNumber> buffer;
  if (char* end = writeShortNumber(buffer.data(), value))
    text.append(buffer.data(), static_cast<size_t>(end - buffer.data()));
  else
    text += longNumberText(value);
}

char* writeNumber(char* to, std::int32_t value) {
  return writeUnits(to, value, 0, false);
}

char* writeShortNumber(char* to, double value) {
  const auto units = tenThousandths(value);
  return units ? writeUnits(to, *units, kShortPlaces, false) : nullptr;
}

double shownValue(double value) {
  if (!std::isfinite(value) || tenThousandths(value)) return value;
  std::array<char, 40> buffer{};
  char* const end = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value,
                                  std::chars_format::scientific, kSignificantDigits - 1)
                        .ptr;
  std::from_chars(buffer.data(), end, value);
  return value;
}

std::string currencyText(double value) {
  if (!std::isfinite(value)) return numberText(value);
  std::string amount = fixedText(std::fabs(value), 2);
  for (size_t comma = amount.size() - 3; comma > 3;) amount.insert(comma -= 3, ",");
  return value < 0 && !isAllZero(amount) ? "($" + amount + ")" : "$" + amount;
}

std::string fixedText(double value, int digits) {
  std::string text;
  appendFixed(text, value, digits);
  return text;
}

void appendFixed(std::string& text, double value, int digits) {
  std::array<char, kShortNumber> buffer;
  if (char* end = writeShortFixed(buffer.data(), value, digits)) {
    text.append(buffer.data(), static_cast<size_t>(end - buffer.data()));
    return;
  }
  if (!std::isfinite(value)) return appendNumber(text, value);
  const std::string magnitude = fixedMagnitude(value, digits);
  if (value < 0 && !isAllZero(magnitude)) text += '-';
  text += magnitude;
}

char* writeShortFixed(char* to, double value, int digits) {
  const auto units = nearestUnits(value, digits);
  return units ? writeUnits(to, *units, digits, true) : nullptr;
}

}  // namespace ondrel
