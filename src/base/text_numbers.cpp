#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstring>

#include "base/text.h"
#include "base/whole_number.h"

namespace ondrel {
namespace {

constexpr int kSignificantDigits = 15;

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

bool isAllZero(std::string_view number) {
  return number.find_first_of("123456789") == std::string_view::npos;
}

}  // namespace

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
