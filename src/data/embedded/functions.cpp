#include "data/embedded/functions.h"

#include "base/text.h"
#include "data/dialect/server_errors.h"

namespace ondrel::sql {
namespace {

std::string_view withoutTrailingBlanks(std::string_view text) {
  return text.substr(0, text.find_last_not_of(' ') + 1);
}

int collate(void*, int aLength, const void* a, int bLength, const void* b) {
  return compareStoreText({static_cast<const char*>(a), static_cast<size_t>(aLength)},
                          {static_cast<const char*>(b), static_cast<size_t>(bLength)});
}

// An error cannot cross the engine: it waits in the context until the statement has failed.
void run(sqlite3_context* context, int count, sqlite3_value** values) {
  const auto& bound = *static_cast<const BoundFunction*>(sqlite3_user_data(context));
  try {
    bound.body(FunctionCall(*bound.context, context, count, values));
  } catch (const Error& error) {
    bound.context->failure = error;
    sqlite3_result_error(context, error.what(), -1);
  }
}

}  // namespace

FunctionContext::~FunctionContext() {
  releaseStatements();
}

void FunctionContext::releaseStatements() {
  for (const auto& [sql, statement] : statements_) sqlite3_finalize(statement);
  statements_.clear();
}

Date FunctionContext::now() {
  if (!statementTime) statementTime = clock ? clock->now() : SystemClock().now();
  return *statementTime;
}

sqlite3_stmt* FunctionContext::prepared(std::string_view sql) {
  sqlite3_stmt*& statement = statements_[sql];
  if (!statement && sqlite3_prepare_v3(handle, sql.data(), static_cast<int>(sql.size()),
                                       SQLITE_PREPARE_PERSISTENT, &statement, nullptr) != SQLITE_OK) {
    const std::string reason = sqlite3_errmsg(handle);
    statements_.erase(sql);
    throw serverError(ServerError::InvalidObject, reason);
  }
  sqlite3_reset(statement);
  sqlite3_clear_bindings(statement);
  return statement;
}

bool FunctionCall::anyNull() const {
  for (int k = 0; k < count_; ++k)
    if (isNull(k)) return true;
  return false;
}

std::string_view FunctionCall::text(int argument) const {
  const auto* bytes = reinterpret_cast<const char*>(sqlite3_value_text(at(argument)));
  return bytes ? std::string_view(bytes, static_cast<size_t>(sqlite3_value_bytes(at(argument))))
               : std::string_view();
}

SqlValue FunctionCall::value(int argument) const {
  switch (sqlite3_value_type(at(argument))) {
    case SQLITE_NULL:
      return SqlValue::null();
    case SQLITE_INTEGER:
      return SqlValue::of(integer(argument));
    case SQLITE_FLOAT:
      return SqlValue::of(number(argument));
    default:
      return SqlValue::of(text(argument));
  }
}

void FunctionCall::give(std::string_view text) const {
  sqlite3_result_text(context_, text.data(), static_cast<int>(text.size()), SQLITE_TRANSIENT);
}

void FunctionCall::give(Date moment) const {
  std::string text;
  appendNormalDate(text, moment);
  give(std::string_view(text));
}

void FunctionCall::give(const SqlValue& value) const {
  switch (value.kind) {
    case SqlValue::Kind::Null:
      return giveNull();
    case SqlValue::Kind::Integer:
      return give(value.integer);
    case SqlValue::Kind::Real:
      return give(value.real);
    case SqlValue::Kind::Text:
      return give(value.text);
  }
}

void registerFunctions(sqlite3* handle, FunctionContext& context) {
  sqlite3_create_collation_v2(handle, "store", SQLITE_UTF8, nullptr, collate, nullptr);
  for (const auto group : {dateFunctions(), textFunctions(), valueFunctions(), storeFunctions()}) {
    for (const RegisteredFunction& function : group) {
      context.functions.push_back({&context, function.body});
      sqlite3_create_function_v2(handle, function.name, function.arguments, SQLITE_UTF8 | function.flags,
                                 &context.functions.back(), run, nullptr, nullptr, nullptr);
    }
  }
}

int compareStoreText(std::string_view a, std::string_view b) {
  if (a == b) return 0;
  return compareIgnoringCase(withoutTrailingBlanks(a), withoutTrailingBlanks(b));
}

}  // namespace ondrel::sql
