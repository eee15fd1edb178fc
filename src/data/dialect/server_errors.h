#pragma once

#include <string_view>

#include "base/error.h"

namespace ondrel::sql {

// Numbers of the server's own messages that the embedded store raises with them.
enum class ServerError : int {
  IncorrectSyntax = 102,
  TooFewValues = 109,
  TooManyValues = 110,
  NestedTooDeeply = 191,
  MissingArgument = 201,
  InvalidColumn = 207,
  InvalidObject = 208,
  AmbiguousColumn = 209,
  ColumnCountMismatch = 213,
  DateConversion = 241,
  TextToNumber = 245,
  ComputedColumn = 271,
  CannotInsertNull = 515,
  DateOverflow = 517,
  DuplicateKey = 2627,
  NoSuchProcedure = 2812,
  NoSuchFunction = 4121,
  TextTruncated = 8152,
  ArithmeticOverflow = 8115,
  DivideByZero = 8134,
  TooManyArguments = 8144,
  Timeout = -2147217871,  // the platform's number, not the server's
};

inline constexpr std::string_view kStoreSource = "Embedded store";

inline Error serverError(ServerError number, std::string_view description) {
  return Error(static_cast<ErrorNumber>(number), kStoreSource, description);
}

}  // namespace ondrel::sql
