#pragma once

#include <stdexcept>
#include <string>
#include <string_view>

namespace ondrel {

// Numbers of the platform's error object that this library raises.
enum class ErrorNumber : int {
  InvalidCall = 5,
  Overflow = 6,
  SubscriptOutOfRange = 9,
  DivisionByZero = 11,
  TypeMismatch = 13,
  FileNotFound = 53,
  PermissionDenied = 70,
  PathAccess = 75,
  ObjectNotSet = 91,
  InvalidUseOfNull = 94,
  InvalidFileFormat = 321,
  ObjectRequired = 424,
  CannotCreateObject = 429,
  NoSuchMember = 438,
  WrongNumberOfArguments = 450,
  KeyAlreadyExists = 457,
  PrinterError = 482,
  InvalidArgument = 3001,
  NoCurrentRecord = 3021,
  ItemNotFound = 3265,
  ObjectClosed = 3704,
  ObjectOpen = 3705,
  ProviderFailure = 3706,
  ElementNotFound = 32811,
  ConnectionFailed = -2147467259,
  DataOverflow = -2147217887,
  StatementFailed = -2147217900,
};

// The one exception of the library: what the platform's error object tells a page.
// `source` names the class or module that failed, `description` is fit to be shown.
class Error : public std::runtime_error {
 public:
  Error(ErrorNumber number, std::string_view source, std::string_view description)
      : std::runtime_error(std::string(description)), number_(number), source_(source) {}

  ErrorNumber code() const { return number_; }
  int number() const { return static_cast<int>(number_); }
  const std::string& source() const { return source_; }
  std::string description() const { return what(); }

 private:
  ErrorNumber number_;
  std::string source_;
};

}  // namespace ondrel
