#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "base/date.h"
#include "data/dialect/syntax_tree.h"

namespace ondrel::sql {

// A value on its way into or out of the table engine; a text is viewed, not owned.
struct SqlValue {
  enum class Kind : std::uint8_t { Null, Integer, Real, Text };

  Kind kind = Kind::Null;
  std::int64_t integer = 0;
  double real = 0;
  std::string_view text;

  static SqlValue null() { return {}; }
  static SqlValue of(std::int64_t value) { return {Kind::Integer, value, 0, {}}; }
  static SqlValue of(double value) { return {Kind::Real, 0, value, {}}; }
  static SqlValue of(std::string_view value) { return {Kind::Text, 0, 0, value}; }
  bool isNull() const { return kind == Kind::Null; }
};

// The value of a number literal: whole when it is written so and fits.
SqlValue numberValue(std::string_view digits);

// | conversion    | number                   | text                                       | empty text |
// |---------------|--------------------------|--------------------------------------------|------------|
// | ToInteger     | fraction cut off         | whole number, else error 245               | 0          |
// | ToBit         | 0 or 1                   | number, true, false, else error 245        | 0          |
// | ToNumber      | itself                   | number, else error 245                     | 0          |
// | ToMoney       | rounded to four decimals | the same                                   | 0          |
// | ToDecimal     | rounded to the scale     | the same                                   | 0          |
// | ToDate, ToDay | days since 1900-01-01    | a moment in any form taken, else error 241 | 1900-01-01 |
// | ToText        | digits                   | itself; error 8152 when too long           | itself     |
// | CutText       | digits                   | shortened to the length                    | itself     |
// | Compare..     | itself                   | as above                                   | 0          |
//
// A number out of the range of an integer type is error 8115. Null stays Null. A text that the conversion
// makes is put in `buffer`, which the result then views.
SqlValue converted(const SqlValue& value, const ValueConversion& conversion, std::string& buffer);

// ---- the normal form of a moment, "yyyy-mm-dd hh:mm:ss", in which columns hold it: it sorts as text

inline constexpr std::size_t kNormalDateLength = 19;
void appendNormalDate(std::string& text, Date moment);
// A moment in the normal form or in any other that is taken; error 241 when it is none.
Date dateOfText(std::string_view text);

}  // namespace ondrel::sql
