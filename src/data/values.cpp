#include "data/values.h"

#include <array>
#include <cmath>

#include "base/text.h"

namespace ondrel {
namespace {

constexpr int kLargestPower = 50;

constexpr double kCent = 0.01;
constexpr double kHalfCent = 0.005;

// Each power comes from its neighbour by one multiplication or division, so that it carries the very
// error that amounts in the store were rounded with.
const std::array<double, 2 * kLargestPower + 1>& powersOfTen() {
  static const auto table = [] {
    std::array<double, 2 * kLargestPower + 1> powers{};
    powers[kLargestPower] = 1.0;
    for (size_t k = 1; k <= kLargestPower; ++k) {
      powers[kLargestPower + k] = powers[kLargestPower + k - 1] * 10.0;
      powers[kLargestPower - k] = powers[kLargestPower - k + 1] / 10.0;
    }
    return powers;
  }();
  return table;
}

double powerOfTen(int exponent) {
  if (exponent < -kLargestPower || exponent > kLargestPower)
    throw Error(ErrorNumber::SubscriptOutOfRange, "values", "Subscript out of range");
  return powersOfTen()[static_cast<size_t>(exponent + kLargestPower)];
}

std::string quoted(std::string_view text) {
  return "'" + replaceAll(text, "'", "''") + "'";
}

std::string_view entityOf(int code) {
  switch (code) {
    case '"':
      return "&quot;";
    case '&':
      return "&amp;";
    case '<':
      return "&lt;";
    case '>':
      return "&gt;";
    default:
      return {};
  }
}

// What needs no change goes over in runs.
template <class Form>
void appendForms(std::string& target, std::string_view text, Form formOf) {
  size_t from = 0;
  for (size_t k = 0; k < text.size(); ++k) {
    const std::string_view form = formOf(text[k]);
    if (form.empty()) continue;
    target.append(text, from, k - from).append(form);
    from = k + 1;
  }
  target.append(text, from, std::string_view::npos);
}

}  // namespace

void appendJsonEscaped(std::string& target, std::string_view text) {
  appendForms(target, text, [](char c) -> std::string_view {
    switch (c) {
      case '\\':
        return "\\\\";
      case '"':
        return "\\\"";
      case '\r':
        return "\\r";
      case '\n':
        return "\\n";
      default:
        return {};
    }
  });
}

void appendJsEscaped(std::string& target, std::string_view text) {
  appendForms(target, text, [](char c) -> std::string_view {
    return c == '\\' ? "\\\\" : c == '"' ? "\\" : std::string_view();
  });
}

void appendHtmlEncoded(std::string& target, std::string_view text) {
  size_t from = 0;
  for (size_t k = 0; k < text.size();) {
    const size_t at = k;
    const auto byte = static_cast<unsigned char>(text[k]);
    const int code = byte < 128 ? byte : ansiCode(nextCharacter(text, k));
    if (byte < 128) ++k;
    const std::string_view entity = entityOf(code);
    // A character that the code page lacks stays as it is too: its code is that of the question mark.
    if (entity.empty() && code >= 32 && code < 128) continue;
    target.append(text, from, at - from);
    from = k;
    if (entity.empty())
      target.append("&#").append(std::to_string(code)).append(";");
    else
      target += entity;
  }
  target.append(text, from, std::string_view::npos);
}

Variant jsonEscape(const Variant& value) {
  if (value.isNull()) return value;
  std::string result;
  appendJsonEscaped(result, value.toText());
  return result;
}

std::string jsEscapeSimple(const Variant& value) {
  std::string result;
  appendJsEscaped(result, value.joined());
  return result;
}

std::string htmlEncode(const Variant& value) {
  std::string result;
  appendHtmlEncoded(result, value.joined());
  return result;
}

std::string escapeSql(const Variant& value) {
  return replaceAll(value.toText(), "'", "''");
}

std::string escapeSqlValue(const Variant& value) {
  return escapeSql(value);
}

const Variant& plainValue(const Variant& value) {
  return value;
}

std::string sqlQuotedOrNull(const Variant& value) {
  if (value.isNull() || value.isObject()) return "null";
  return quoted(value.toText());
}

std::string sqlString(const Variant& value) {
  const std::string text = value.joined();
  return text.empty() ? "NULL" : quoted(text);
}

std::string sqlNumber(const Variant& value) {
  return value.isNull() ? "NULL" : value.toText();
}

bool isOn(const Variant& setting) {
  return !setting.isNull() && setting.toBoolean();
}

std::int32_t integerOrOne(const Variant& quantity) {
  return quantity.isNumeric() ? quantity.toLong() : 1;
}

double wholeAmount(double value) {
  return std::floor(value / 1) * 1;
}

double roundMoney(std::string_view, double amount) {
  return std::floor((amount + kHalfCent) / kCent) * kCent;
}

double roundingDP(double value, int digits) {
  const double power = powerOfTen(digits), inverse = powerOfTen(-digits);
  if (value < 0) return -std::floor(-value * power + 0.5) * inverse;
  return std::floor(value * power + 0.5) * inverse;
}

Variant roundTo(const Variant& value, Variant& step) {
  if (!value.isNumeric()) return value;
  if (step.toDouble() <= 0) step = kCent;
  return roundTo(value.toDouble(), step.toDouble());
}

double roundTo(double value, double step) {
  if (step <= 0) step = kCent;
  return std::floor((value + step / 2) / step) * step;
}

Variant round2(Variant& value, int digits) {
  if (!value.isNumeric()) return value;
  value = shownValue(value.toDouble());
  return roundingDP(value.toDouble(), digits);
}

double round2(double value, int digits) {
  return roundingDP(shownValue(value), digits);
}

Variant roundDB(const Variant& value, int digits) {
  constexpr int kMostDigits = 1000;  // beyond those that any double has
  if (!value.isNumeric()) return value;
  if (digits > kMostDigits || digits < -kMostDigits)
    throw Error(ErrorNumber::InvalidCall, "roundDB", "Invalid procedure call or argument");
  return fixedText(value.toDouble(), digits);
}

}  // namespace ondrel
