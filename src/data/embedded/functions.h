#pragma once

#include <sqlite3.h>

#include <cstdint>
#include <deque>
#include <map>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "base/date.h"
#include "base/error.h"
#include "data/dialect/sql_values.h"
#include "platform/clock.h"

namespace ondrel::sql {

class FunctionCall;
struct FunctionContext;

using FunctionBody = void (*)(const FunctionCall&);

// A function as a handle knows it.
struct BoundFunction {
  FunctionContext* context;
  FunctionBody body;
};

// What the registered functions of a handle know of the statement that runs.
struct FunctionContext {
  sqlite3* handle = nullptr;
  std::shared_ptr<Clock> clock;
  std::optional<Date> statementTime;     // getdate() is one moment for a whole statement
  std::optional<std::int64_t> identity;  // @@identity of the connection
  std::int64_t rowCount = 0;             // @@rowcount
  std::optional<Error> failure;          // what a function raised; the statement fails with it
  std::deque<BoundFunction> functions;

  FunctionContext() = default;
  FunctionContext(const FunctionContext&) = delete;
  FunctionContext& operator=(const FunctionContext&) = delete;
  ~FunctionContext();

  Date now();
  // A statement that a function runs over and over, kept prepared, reset and without bindings. `sql` is a
  // text of the program.
  sqlite3_stmt* prepared(std::string_view sql);
  void releaseStatements();

 private:
  std::map<std::string_view, sqlite3_stmt*> statements_;
};

// One call of a registered function: its arguments and its result.
class FunctionCall {
 public:
  FunctionCall(FunctionContext& session, sqlite3_context* context, int count, sqlite3_value** values)
      : session_(session), context_(context), count_(count), values_(values) {}

  FunctionContext& context() const { return session_; }
  int count() const { return count_; }
  bool isNull(int argument) const { return sqlite3_value_type(at(argument)) == SQLITE_NULL; }
  bool anyNull() const;
  std::int64_t integer(int argument) const { return sqlite3_value_int64(at(argument)); }
  double number(int argument) const { return sqlite3_value_double(at(argument)); }
  std::string_view text(int argument) const;
  Date date(int argument) const { return dateOfText(text(argument)); }
  SqlValue value(int argument) const;

  void giveNull() const { sqlite3_result_null(context_); }
  void give(std::int64_t value) const { sqlite3_result_int64(context_, value); }
  void give(double value) const { sqlite3_result_double(context_, value); }
  void give(std::string_view text) const;
  void give(Date moment) const;
  void give(const SqlValue& value) const;

 private:
  sqlite3_value* at(int argument) const { return values_[argument]; }

  FunctionContext& session_;
  sqlite3_context* context_;
  int count_;
  sqlite3_value** values_;
};

struct RegisteredFunction {
  const char* name;
  int arguments;  // -1 for any number
  FunctionBody body;
  int flags = SQLITE_DETERMINISTIC;  // within one statement
};

// Enters the collation `store` and all functions of the dialect and the store. `context` outlives the handle.
void registerFunctions(sqlite3* handle, FunctionContext& context);

// Order of two texts of the store: case does not matter, nor do blanks at the end.
int compareStoreText(std::string_view a, std::string_view b);

// The functions by what they work on.
std::span<const RegisteredFunction> dateFunctions();
std::span<const RegisteredFunction> textFunctions();
std::span<const RegisteredFunction> valueFunctions();
std::span<const RegisteredFunction> storeFunctions();

// The text of a moment in a style of convert.
std::string styledDate(Date moment, int style, bool dayOnly);

}  // namespace ondrel::sql
