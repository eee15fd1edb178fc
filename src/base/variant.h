#pragma once

#include <compare>
#include <concepts>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <variant>

#include "base/date.h"
#include "base/error.h"
#include "base/object.h"

namespace ondrel {

// The value that crosses between pages, tables and operations.
//
// | kind    | as number    | as Boolean        | as text                       |
// |---------|--------------|-------------------|-------------------------------|
// | Empty   | 0            | False             | ""                            |
// | Null    | error 94     | error 94          | error 94 (joined as "")       |
// | Boolean | -1 or 0      | itself            | True, False                   |
// | Long    | itself       | not 0             | digits                        |
// | Double  | itself       | not 0             | up to 15 significant digits   |
// | Date    | days         | not 0             | m/d/yyyy h:mm:ss AM/PM        |
// | Text    | if a number  | True, False, number | itself                      |
// | Object  | error 438    | error 438         | error 438                     |
class Variant {
 public:
  // In the order of the alternatives that hold them.
  enum class Kind { Empty, Null, Boolean, Long, Double, Date, Text, Object };

  Variant() = default;
  template <std::same_as<bool> Bool>
  Variant(Bool value) : value_(value) {}
  template <std::integral Integer>
  requires(!std::same_as<Integer, bool> && !std::same_as<Integer, char>) Variant(Integer value) {
    if (std::in_range<std::int32_t>(value))
      value_ = static_cast<std::int32_t>(value);
    else
      value_ = static_cast<double>(value);
  }
  Variant(double value) : value_(value) {}
  Variant(Date value) : value_(value) {}
  Variant(std::string value) : value_(std::move(value)) {}
  Variant(std::string_view value) : value_(std::string(value)) {}
  Variant(const char* value) : value_(std::string(value)) {}
  Variant(ObjectRef value) : value_(std::move(value)) {}
  template <std::derived_from<Object> Class>
  Variant(std::shared_ptr<Class> value) : value_(ObjectRef(std::move(value))) {}

  static Variant null() {
    Variant result;
    result.value_ = NullValue{};
    return result;
  }

  Kind kind() const { return static_cast<Kind>(value_.index()); }
  bool isEmpty() const { return kind() == Kind::Empty; }
  bool isNull() const { return kind() == Kind::Null; }
  bool isText() const { return kind() == Kind::Text; }
  bool isObject() const { return kind() == Kind::Object; }
  // True for every kind that converts to a number without an error, Empty and number texts included;
  // False for Null, dates, objects and other texts.
  bool isNumeric() const;

  // Conversions. Null raises error 94, text of the wrong form and objects 13 and 438.
  bool toBoolean() const {
    const auto* flag = std::get_if<bool>(&value_);
    return flag ? *flag : convertToBoolean();
  }
  std::int32_t toLong() const {  // half to even; error 6 outside 32 bits
    const auto* whole = std::get_if<std::int32_t>(&value_);
    return whole ? *whole : convertToLong();
  }
  double toDouble() const {
    const auto* number = std::get_if<double>(&value_);
    return number ? *number : convertToDouble();
  }
  Date toDate() const {  // from a number too; error 6 outside the years 100 to 9999
    const auto* date = std::get_if<Date>(&value_);
    return date ? *date : convertToDate();
  }
  std::string toText() const;
  // Nothing for Empty; error 424 when the value is no object.
  ObjectRef toObject() const;

  // As the joining operator takes a value: Null counts as the empty text.
  std::string joined() const { return isNull() ? std::string() : toText(); }
  // Without a copy; only for a value that is text.
  const std::string& text() const { return std::get<std::string>(value_); }

  // Same kind and same value, Null included: for tests and keys, not the comparison of the platform.
  bool identicalTo(const Variant& other) const { return value_ == other.value_; }

 private:
  bool convertToBoolean() const;
  std::int32_t convertToLong() const;
  double convertToDouble() const;
  Date convertToDate() const;

  struct NullValue {
    bool operator==(const NullValue&) const = default;
  };

  std::variant<std::monostate, NullValue, bool, std::int32_t, double, Date, std::string, ObjectRef> value_;
};

// Rounds half to even; error 6 outside 32 bits.
std::int32_t toLong(double value);

// Arithmetic of the platform: Null spreads, Empty counts as 0, text converts to a number, two texts are
// joined by +. Two Longs give a Long, with error 6 on overflow; / always gives a Double, with error 11
// on a zero divisor. A date plus or minus a number is a date.
Variant operator+(const Variant& a, const Variant& b);
Variant operator-(const Variant& a, const Variant& b);
Variant operator*(const Variant& a, const Variant& b);
Variant operator/(const Variant& a, const Variant& b);
Variant operator-(const Variant& a);

// Comparison of the platform. Numbers, dates and Booleans compare as numbers, text with text by
// character code and case, a number with text as numbers when the text is one. Unordered with Null, and
// every test below is then false.
std::partial_ordering compare(const Variant& a, const Variant& b);
inline bool isEqual(const Variant& a, const Variant& b) {
  return std::is_eq(compare(a, b));
}
inline bool isLess(const Variant& a, const Variant& b) {
  return std::is_lt(compare(a, b));
}
inline bool isGreater(const Variant& a, const Variant& b) {
  return std::is_gt(compare(a, b));
}

}  // namespace ondrel
