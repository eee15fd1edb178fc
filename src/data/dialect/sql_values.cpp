#include "data/dialect/sql_values.h"

#include <fmt/format.h>

#include <array>
#include <charconv>
#include <chrono>
#include <cmath>
#include <optional>

#include "base/text.h"
#include "base/whole_number.h"
#include "data/dialect/server_errors.h"

namespace ondrel::sql {
namespace {

constexpr double kServerEpoch = 2;  // 1900-01-01, day 0 of the server
constexpr long long kUnixEpoch = 25569;

[[noreturn]] void failNumber(std::string_view text, const ColumnType& target) {
  throw serverError(ServerError::TextToNumber,
                    fmt::format("Conversion failed when converting the varchar value '{}' to data type {}.",
                                text, typeName(target.type)));
}

[[noreturn]] void failDate(std::string_view text) {
  throw serverError(
      ServerError::DateConversion,
      fmt::format("Conversion failed when converting the varchar value '{}' to data type datetime.", text));
}

// ---- numbers

double numberOf(const SqlValue& value, const ColumnType& target) {
  if (value.kind == SqlValue::Kind::Integer) return static_cast<double>(value.integer);
  if (value.kind == SqlValue::Kind::Real) return value.real;
  if (trim(value.text).empty()) return 0;
  const auto number = parseNumber(value.text);
  if (!number) failNumber(value.text, target);
  return *number;
}

std::int64_t wholeNumberOf(std::string_view text, const ColumnType& target) {
  std::string_view digits = trim(text);
  if (digits.empty()) return 0;
  if (digits.front() == '+') digits.remove_prefix(1);
  std::int64_t result = 0;
  const auto [end, failure] = std::from_chars(digits.data(), digits.data() + digits.size(), result);
  if (failure != std::errc() || end != digits.data() + digits.size()) failNumber(text, target);
  return result;
}

struct Range {
  double least, most;
};

Range rangeOf(SqlType type) {
  switch (type) {
    case SqlType::TinyInt:
      return {0, 255};
    case SqlType::SmallInt:
      return {-32768, 32767};
    case SqlType::BigInt:
      return {-9223372036854775808.0, 9223372036854774784.0};
    default:
      return {-2147483648.0, 2147483647.0};
  }
}

SqlValue toInteger(const SqlValue& value, const ColumnType& target) {
  SqlValue result = value;
  if (value.kind == SqlValue::Kind::Text) result = SqlValue::of(wholeNumberOf(value.text, target));
  const double number =
      std::trunc(result.kind == SqlValue::Kind::Real ? result.real : static_cast<double>(result.integer));
  const Range range = rangeOf(target.type);
  if (!(number >= range.least && number <= range.most))
    throw serverError(ServerError::ArithmeticOverflow,
                      fmt::format("Arithmetic overflow error converting expression to data type {}.",
                                  typeName(target.type)));
  return result.kind == SqlValue::Kind::Real ? SqlValue::of(wholeNumber<std::int64_t>(number).value_or(0))
                                             : result;
}

// The common case of an int column.
bool isPlainInt(const SqlValue& value, const ColumnType& target) {
  return value.kind == SqlValue::Kind::Integer && target.type == SqlType::Int &&
         value.integer == static_cast<std::int32_t>(value.integer);
}

SqlValue toBit(const SqlValue& value, const ColumnType& target) {
  if (value.kind == SqlValue::Kind::Text) {
    if (sameWord(trim(value.text), "true")) return SqlValue::of(std::int64_t{1});
    if (sameWord(trim(value.text), "false")) return SqlValue::of(std::int64_t{0});
  }
  return SqlValue::of(std::int64_t{numberOf(value, target) != 0});
}

// 10 to the 0th to 22nd: the powers that a double holds exactly.
constexpr auto kPowersOfTen = [] {
  std::array<double, 23> powers{1};
  for (size_t k = 1; k < powers.size(); ++k) powers[k] = powers[k - 1] * 10;
  return powers;
}();

double powerOfTen(int exponent) {
  const auto at = static_cast<size_t>(exponent);
  return at < kPowersOfTen.size() ? kPowersOfTen[at] : std::pow(10.0, exponent);
}

SqlValue toScaled(const SqlValue& value, const ColumnType& target, int decimals) {
  constexpr double kWholeBelow = 0x1p53;
  const double power = powerOfTen(decimals), scaled = numberOf(value, target) * power;
  const bool isWhole = std::fabs(scaled) < kWholeBelow && std::trunc(scaled) == scaled;
  return SqlValue::of((isWhole ? scaled : std::round(scaled)) / power);
}

// ---- texts

SqlValue toText(const SqlValue& value, std::string& buffer) {
  if (value.kind == SqlValue::Kind::Text) return value;
  buffer = value.kind == SqlValue::Kind::Integer ? std::to_string(value.integer) : numberText(value.real);
  return SqlValue::of(std::string_view(buffer));
}

bool isLonger(std::string_view text, int size) {
  return size > 0 && text.size() > static_cast<size_t>(size) &&
         characterCount(text) > static_cast<size_t>(size);
}

// Blanks behind the end of the column are dropped without an error, as on the server.
SqlValue fittingText(const SqlValue& value, int size, std::string& buffer) {
  SqlValue result = toText(value, buffer);
  if (!isLonger(result.text, size)) return result;
  const std::string_view kept = leftCharacters(result.text, static_cast<size_t>(size));
  if (result.text.find_first_not_of(' ', kept.size()) != std::string_view::npos)
    throw serverError(ServerError::TextTruncated, "String or binary data would be truncated.");
  return SqlValue::of(kept);
}

SqlValue cutText(const SqlValue& value, int size, std::string& buffer) {
  const SqlValue result = toText(value, buffer);
  return isLonger(result.text, size) ? SqlValue::of(leftCharacters(result.text, static_cast<size_t>(size)))
                                     : result;
}

// ---- dates

int twoDigits(const char* text) {
  return (text[0] - '0') * 10 + (text[1] - '0');
}

std::optional<Date> normalDate(std::string_view text) {
  static constexpr std::string_view kPattern = "0000-00-00 00:00:00";
  if (text.size() != kNormalDateLength) return std::nullopt;
  for (size_t k = 0; k < kNormalDateLength; ++k)
    if (kPattern[k] == '0' ? !isDigit(text[k]) : text[k] != kPattern[k]) return std::nullopt;
  const char* at = text.data();
  const std::chrono::year_month_day day{std::chrono::year{twoDigits(at) * 100 + twoDigits(at + 2)},
                                        std::chrono::month{static_cast<unsigned>(twoDigits(at + 5))},
                                        std::chrono::day{static_cast<unsigned>(twoDigits(at + 8))}};
  const int hour = twoDigits(at + 11), minute = twoDigits(at + 14), second = twoDigits(at + 17);
  if (!day.ok() || hour > 23 || minute > 59 || second > 59) return std::nullopt;
  const long long days = std::chrono::sys_days{day}.time_since_epoch().count() + kUnixEpoch;
  return Date(static_cast<double>(days) + (hour * 3600 + minute * 60 + second) / 86400.0);
}

// "20261124", with or without a time behind it.
std::optional<Date> packedDate(std::string_view text) {
  constexpr size_t kDayLength = 8;
  if (text.size() < kDayLength ||
      text.substr(0, kDayLength).find_first_not_of("0123456789") != std::string_view::npos)
    return std::nullopt;
  return Date::parse(fmt::format("{}-{}-{}{}", text.substr(0, 4), text.substr(4, 2), text.substr(6, 2),
                                 text.substr(kDayLength)));
}

SqlValue toDate(const SqlValue& value, bool dayOnly, std::string& buffer) {
  Date moment = value.kind == SqlValue::Kind::Text ? dateOfText(value.text)
                : value.kind == SqlValue::Kind::Integer
                    ? Date(static_cast<double>(value.integer) + kServerEpoch)
                    : Date(value.real + kServerEpoch);
  if (dayOnly) moment = moment.midnight();
  buffer.clear();
  appendNormalDate(buffer, moment);
  return SqlValue::of(std::string_view(buffer));
}

SqlValue longNumberValue(std::string_view digits) {
  std::int64_t whole = 0;
  const char* end = digits.data() + digits.size();
  const auto [rest, failure] = std::from_chars(digits.data(), end, whole);
  if (failure == std::errc() && rest == end) return SqlValue::of(whole);
  double real = 0;
  std::from_chars(digits.data(), end, real);
  return SqlValue::of(real);
}

}  // namespace

// A number of few digits is read in one go: both its digits and the power of ten below them are exact, so one
// division rounds as it should.
SqlValue numberValue(std::string_view digits) {
  constexpr size_t kMostCharacters = 17;
  constexpr std::int64_t kExactBelow = std::int64_t{1} << 53;
  std::int64_t units = 0;
  size_t point = std::string_view::npos, at = 0;
  const bool negative = !digits.empty() && digits.front() == '-';
  if (digits.size() <= kMostCharacters) {
    for (at = negative; at < digits.size(); ++at) {
      if (isDigit(digits[at]))
        units = units * 10 + (digits[at] - '0');
      else if (digits[at] == '.' && point == std::string_view::npos)
        point = at;
      else
        break;
    }
  }
  if (at == 0 || at < digits.size()) return longNumberValue(digits);
  if (point == std::string_view::npos) return SqlValue::of(negative ? -units : units);
  if (units >= kExactBelow) return longNumberValue(digits);
  const double magnitude = static_cast<double>(units) / kPowersOfTen[digits.size() - point - 1];
  return SqlValue::of(negative ? -magnitude : magnitude);
}

SqlValue converted(const SqlValue& value, const ValueConversion& conversion, std::string& buffer) {
  if (value.isNull()) return value;
  if (conversion.kind == Conversion::ToInteger && isPlainInt(value, conversion.target)) return value;
  constexpr int kMoneyDecimals = 4;
  const ColumnType& target = conversion.target;
  switch (conversion.kind) {
    case Conversion::None:
      return value;
    case Conversion::ToInteger:
      return toInteger(value, target);
    case Conversion::ToBit:
      return toBit(value, target);
    case Conversion::ToNumber:
      return SqlValue::of(numberOf(value, target));
    case Conversion::ToMoney:
      return toScaled(value, target, kMoneyDecimals);
    case Conversion::ToDecimal:
      return toScaled(value, target, target.scale);
    case Conversion::ToDate:
      return toDate(value, false, buffer);
    case Conversion::ToDay:
      return toDate(value, true, buffer);
    case Conversion::ToText:
      return fittingText(value, target.size, buffer);
    case Conversion::CutText:
      return cutText(value, target.size, buffer);
    case Conversion::CompareInteger:
      return value.kind == SqlValue::Kind::Text ? SqlValue::of(wholeNumberOf(value.text, target)) : value;
    case Conversion::CompareNumber:
      return value.kind == SqlValue::Kind::Text ? SqlValue::of(numberOf(value, target)) : value;
  }
  return value;
}

void appendNormalDate(std::string& text, Date moment) {
  const DateParts parts = moment.parts();
  const auto digits = [&](int number, int places) {
    char reversed[4];
    for (int k = 0; k < places; ++k, number /= 10) reversed[k] = static_cast<char>('0' + number % 10);
    for (int k = places; k > 0; --k) text += reversed[k - 1];
  };
  digits(parts.year, 4), text += '-';
  digits(parts.month, 2), text += '-';
  digits(parts.day, 2), text += ' ';
  digits(parts.hour, 2), text += ':';
  digits(parts.minute, 2), text += ':';
  digits(parts.second, 2);
}

// A time of day alone is a time on 1900-01-01, day 0 of the server.
Date dateOfText(std::string_view text) {
  if (const auto normal = normalDate(text)) return *normal;
  const std::string_view trimmed = trim(text);
  if (trimmed.empty()) return Date(kServerEpoch);
  auto moment = Date::parse(trimmed);
  if (!moment) moment = packedDate(trimmed);
  if (!moment) failDate(text);
  const bool timeAlone = moment->day() == 0 && trimmed.find_first_of("/-") == std::string_view::npos;
  return timeAlone ? moment->addDays(kServerEpoch) : *moment;
}

}  // namespace ondrel::sql
