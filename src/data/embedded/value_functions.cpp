#include <cmath>
#include <random>

#include <fmt/format.h>

#include "base/text.h"
#include "base/whole_number.h"
#include "data/dialect/server_errors.h"
#include "data/embedded/functions.h"

namespace ondrel::sql {
namespace {

// to_column(value, conversion, type, size, scale)
void toColumn(const FunctionCall& call) {
  ValueConversion conversion;
  conversion.kind = static_cast<Conversion>(call.integer(1));
  conversion.target = {static_cast<SqlType>(call.integer(2)), static_cast<int>(call.integer(3)),
                       static_cast<int>(call.integer(4))};
  std::string buffer;
  call.give(converted(call.value(0), conversion, buffer));
}

std::string moneyText(double amount, int style) {
  constexpr int kFullDecimals = 2;
  if (style == kFullDecimals) return fixedText(amount, 4);
  if (style == 0) return fixedText(amount, 2);
  const std::string text = currencyText(std::fabs(amount)).substr(1);
  return amount < 0 ? "-" + text : text;
}

std::string valueText(const FunctionCall& call, SqlType type, int style) {
  switch (categoryOf(type)) {
    case Category::Date:
      return styledDate(call.date(0), style, type == SqlType::Date);
    case Category::Number:
      return type == SqlType::Money ? moneyText(call.number(0), style) : numberText(call.number(0));
    default:
      return std::string(call.text(0));
  }
}

// convert_text(value, type of the value, length, style, strict): a text too long is cut, or an error when
// strict. The style means nothing to a value that is a text already.
void convertText(const FunctionCall& call) {
  if (call.isNull(0)) return call.giveNull();
  const std::string text =
      valueText(call, static_cast<SqlType>(call.integer(1)), static_cast<int>(call.integer(3)));
  const ValueConversion conversion{call.integer(4) != 0 ? Conversion::ToText : Conversion::CutText,
                                   {SqlType::VarChar, static_cast<int>(call.integer(2)), 0}};
  std::string buffer;
  call.give(converted(SqlValue::of(std::string_view(text)), conversion, buffer));
}

void divisor(const FunctionCall& call) {
  const SqlValue value = call.value(0);
  if (!value.isNull() && call.number(0) == 0)
    throw serverError(ServerError::DivideByZero, "Divide by zero error encountered.");
  call.give(value);
}

// Rounds half away from zero; whole numbers stay whole.
void roundTo(const FunctionCall& call) {
  if (call.anyNull()) return call.giveNull();
  const auto places = static_cast<int>(call.integer(1));
  const SqlValue value = call.value(0);
  if (value.kind == SqlValue::Kind::Integer && places >= 0) return call.give(value);
  const double power = std::pow(10.0, places);
  const double rounded = std::round(call.number(0) * power) / power;
  if (value.kind != SqlValue::Kind::Integer) return call.give(rounded);
  const auto whole = wholeNumber<std::int64_t>(rounded);
  if (!whole)
    throw serverError(ServerError::ArithmeticOverflow, "Arithmetic overflow error converting expression.");
  call.give(*whole);
}

void ceiling(const FunctionCall& call) {
  if (call.isNull(0)) return call.giveNull();
  const SqlValue value = call.value(0);
  value.kind == SqlValue::Kind::Integer ? call.give(value) : call.give(std::ceil(call.number(0)));
}

void floorOf(const FunctionCall& call) {
  if (call.isNull(0)) return call.giveNull();
  const SqlValue value = call.value(0);
  value.kind == SqlValue::Kind::Integer ? call.give(value) : call.give(std::floor(call.number(0)));
}

void lastIdentity(const FunctionCall& call) {
  const auto& identity = call.context().identity;
  identity ? call.give(*identity) : call.giveNull();
}

void rowCount(const FunctionCall& call) {
  call.give(call.context().rowCount);
}

void newId(const FunctionCall& call) {
  static thread_local std::mt19937_64 random{std::random_device{}()};
  const std::uint64_t a = random(), b = random();
  call.give(std::string_view(fmt::format("{:08X}-{:04X}-4{:03X}-{:04X}-{:012X}", a >> 32, a >> 16 & 0xFFFF,
                                         a & 0xFFF, 0x8000 | (b >> 48 & 0x3FFF), b & 0xFFFFFFFFFFFF)));
}

// clang-format off
constexpr RegisteredFunction kValueFunctions[] = {
    {"to_column",     5, toColumn},
    {"convert_text",  5, convertText},
    {"divisor",       1, divisor},
    {"round_to",      2, roundTo},
    {"ceiling",       1, ceiling},
    {"floor",         1, floorOf},
    {"last_identity", 0, lastIdentity},
    {"row_count",     0, rowCount},
    {"newid",         0, newId, 0},
};
// clang-format on

}  // namespace

std::span<const RegisteredFunction> valueFunctions() {
  return kValueFunctions;
}

}  // namespace ondrel::sql
