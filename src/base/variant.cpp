#include "base/variant.h"

#include <cmath>
#include <limits>
#include <optional>

#include "base/text.h"
#include "base/whole_number.h"

namespace ondrel {
namespace {

using Kind = Variant::Kind;

[[noreturn]] void failNull() {
  throw Error(ErrorNumber::InvalidUseOfNull, "Variant", "Invalid use of Null");
}
[[noreturn]] void failMismatch() {
  throw Error(ErrorNumber::TypeMismatch, "Variant", "Type mismatch");
}
[[noreturn]] void failOverflow() {
  throw Error(ErrorNumber::Overflow, "Variant", "Overflow");
}
[[noreturn]] void failObject() {
  throw Error(ErrorNumber::NoSuchMember, "Variant", "Object doesn't support this property or method");
}

bool isWhole(const Variant& value) {
  const Kind kind = value.kind();
  return kind == Kind::Long || kind == Kind::Boolean || kind == Kind::Empty;
}

bool isDate(const Variant& value) {
  return value.kind() == Kind::Date;
}

// Longs stay Longs; whatever does not fit is an error, not a wider number.
Variant wholeResult(std::int64_t value) {
  if (!std::in_range<std::int32_t>(value)) failOverflow();
  return Variant(static_cast<std::int32_t>(value));
}

std::int64_t whole(const Variant& value) {
  return value.toLong();
}

double finite(double value) {
  if (!std::isfinite(value)) failOverflow();
  return value;
}

// The calendar of dates runs from the year 100 to 9999.
Date dateOf(double serial) {
  constexpr double kFirst = -657434, kBehindLast = 2958466;
  if (!(serial >= kFirst && serial < kBehindLast)) failOverflow();
  return Date(serial);
}

std::partial_ordering order(int sign) {
  return sign < 0   ? std::partial_ordering::less
         : sign > 0 ? std::partial_ordering::greater
                    : std::partial_ordering::equivalent;
}

std::partial_ordering compareWithText(const Variant& other, const Variant& text) {
  if (other.isEmpty()) return order(std::string_view().compare(text.text()));
  const std::optional<double> number = parseNumber(text.text());
  if (number) return other.toDouble() <=> *number;
  if (isDate(other)) {
    if (const auto date = Date::parse(text.text())) return other.toDouble() <=> date->serial();
  }
  if (other.kind() == Kind::Boolean) return order(other.toText().compare(text.text()));
  return std::partial_ordering::less;  // a number sorts before any text
}

std::partial_ordering reversed(std::partial_ordering ordering) {
  return std::is_lt(ordering)   ? std::partial_ordering::greater
         : std::is_gt(ordering) ? std::partial_ordering::less
                                : ordering;
}

}  // namespace

bool Variant::isNumeric() const {
  switch (kind()) {
    case Kind::Empty:
    case Kind::Boolean:
    case Kind::Long:
    case Kind::Double:
      return true;
    case Kind::Text:
      return parseNumber(text()).has_value();
    default:
      return false;
  }
}

bool Variant::convertToBoolean() const {
  if (isText()) {
    if (equalsIgnoringCase(text(), "True")) return true;
    if (equalsIgnoringCase(text(), "False")) return false;
  }
  return toDouble() != 0;
}

std::int32_t Variant::convertToLong() const {
  return ondrel::toLong(toDouble());
}

double Variant::convertToDouble() const {
  switch (kind()) {
    case Kind::Empty:
      return 0;
    case Kind::Null:
      failNull();
    case Kind::Boolean:
      return std::get<bool>(value_) ? -1 : 0;
    case Kind::Long:
      return std::get<std::int32_t>(value_);
    case Kind::Double:
      return std::get<double>(value_);
    case Kind::Date:
      return std::get<Date>(value_).serial();
    case Kind::Text: {
      const auto number = parseNumber(text());
      if (!number) failMismatch();
      return *number;
    }
    case Kind::Object:
      break;
  }
  failObject();
}

Date Variant::convertToDate() const {
  if (isText()) {
    if (const auto date = Date::parse(text())) return *date;
  }
  return dateOf(toDouble());
}

std::string Variant::toText() const {
  switch (kind()) {
    case Kind::Empty:
      return {};
    case Kind::Null:
      failNull();
    case Kind::Boolean:
      return std::get<bool>(value_) ? "True" : "False";
    case Kind::Long:
      return std::to_string(std::get<std::int32_t>(value_));
    case Kind::Double:
      return numberText(std::get<double>(value_));
    case Kind::Date:
      return std::get<Date>(value_).text();
    case Kind::Text:
      return text();
    case Kind::Object:
      break;
  }
  failObject();
}

ObjectRef Variant::toObject() const {
  if (isEmpty()) return nullptr;
  if (!isObject()) throw Error(ErrorNumber::ObjectRequired, "Variant", "Object required");
  return std::get<ObjectRef>(value_);
}

std::int32_t toLong(double value) {
  const auto whole = wholeNumber<std::int32_t>(std::nearbyint(value));
  if (!whole) failOverflow();
  return *whole;
}

Variant operator+(const Variant& a, const Variant& b) {
  if (a.isNull() || b.isNull()) return Variant::null();
  if (a.isText() && b.isText()) return a.text() + b.text();
  if (a.isText() && b.isEmpty()) return a;
  if (a.isEmpty() && b.isText()) return b;
  if (isWhole(a) && isWhole(b)) return wholeResult(whole(a) + whole(b));
  const double sum = finite(a.toDouble() + b.toDouble());
  return isDate(a) || isDate(b) ? Variant(dateOf(sum)) : Variant(sum);
}

Variant operator-(const Variant& a, const Variant& b) {
  if (a.isNull() || b.isNull()) return Variant::null();
  if (isWhole(a) && isWhole(b)) return wholeResult(whole(a) - whole(b));
  const double difference = finite(a.toDouble() - b.toDouble());
  return isDate(a) && !isDate(b) ? Variant(dateOf(difference)) : Variant(difference);
}

Variant operator*(const Variant& a, const Variant& b) {
  if (a.isNull() || b.isNull()) return Variant::null();
  if (isWhole(a) && isWhole(b)) return wholeResult(whole(a) * whole(b));
  return finite(a.toDouble() * b.toDouble());
}

Variant operator/(const Variant& a, const Variant& b) {
  if (a.isNull() || b.isNull()) return Variant::null();
  const double divisor = b.toDouble();
  if (divisor == 0) throw Error(ErrorNumber::DivisionByZero, "Variant", "Division by zero");
  return finite(a.toDouble() / divisor);
}

Variant operator-(const Variant& a) {
  return Variant(0) - a;
}

std::partial_ordering compare(const Variant& a, const Variant& b) {
  if (a.isNull() || b.isNull()) return std::partial_ordering::unordered;
  if (a.isText() && b.isText()) return order(a.text().compare(b.text()));
  if (b.isText()) return compareWithText(a, b);
  if (a.isText()) return reversed(compareWithText(b, a));
  return a.toDouble() <=> b.toDouble();
}

}  // namespace ondrel
