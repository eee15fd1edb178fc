#include "data/embedded/session.h"

#include <fmt/format.h>

#include <utility>

#include "data/dialect/schema_statement.h"
#include "data/dialect/server_errors.h"
#include "data/embedded/prepared_statement.h"
#include "data/embedded/stored_schema.h"

namespace ondrel::sql {
namespace {

constexpr int kNoLimitSeconds = 14 * 86'400;  // what a time limit of 0 comes to: two weeks
constexpr int kStepsBetweenChecks = 50'000;   // of the engine, before the clock is looked at

// Leaves a statement ready for its next run, whatever happens.
class RunningStatement {
 public:
  explicit RunningStatement(sqlite3_stmt* statement) : statement_(statement) {}
  ~RunningStatement() { sqlite3_reset(statement_); }
  RunningStatement(const RunningStatement&) = delete;
  RunningStatement& operator=(const RunningStatement&) = delete;

 private:
  sqlite3_stmt* statement_;
};

constexpr const char* kFilePragmas = "pragma synchronous = full; pragma temp_store = memory";
constexpr const char* kMemoryPragmas =
    "pragma journal_mode = memory; pragma cache_spill = off; pragma temp_store = memory";

}  // namespace

// ---- opening and closing

Session::Session(Catalogue& catalogue, const DatabaseFile& file) : catalogue_(catalogue), path_(file.path) {
  const int opened = sqlite3_open_v2(file.path.c_str(), &handle_, SQLITE_OPEN_READWRITE | SQLITE_OPEN_NOMUTEX,
                                     file.fileSystem);
  if (opened != SQLITE_OK) {
    const std::string reason = handle_ ? sqlite3_errmsg(handle_) : "out of memory";
    sqlite3_close_v2(handle_);
    throw Error(ErrorNumber::ConnectionFailed, kStoreSource,
                fmt::format("Cannot open the database \"{}\": {}", file.path, reason));
  }
  try {
    sqlite3_extended_result_codes(handle_, 1);
    sqlite3_db_config(handle_, SQLITE_DBCONFIG_DQS_DML, 0, nullptr);
    sqlite3_db_config(handle_, SQLITE_DBCONFIG_DQS_DDL, 0, nullptr);
    context_.handle = handle_;
    registerFunctions(handle_, context_);
    sqlite3_progress_handler(
        handle_, kStepsBetweenChecks,
        [](void* session) { return int{static_cast<Session*>(session)->isLate()}; }, this);
    setTimeout(kDefaultTimeoutSeconds);
    runPlain(file.fileSystem ? kMemoryPragmas : kFilePragmas);
  } catch (...) {
    context_.releaseStatements();
    sqlite3_close_v2(handle_);
    throw;
  }
}

Session::~Session() {
  forgetStatements();
  sqlite3_close_v2(handle_);
}

void Session::lend(std::shared_ptr<Clock> clock, int timeoutSeconds) {
  context_.clock = std::move(clock);
  context_.identity.reset();
  context_.rowCount = 0;
  setTimeout(timeoutSeconds);
}

void Session::setTimeout(int seconds) {
  if (seconds == timeoutSeconds_) return;
  constexpr int kMillisecondsPerSecond = 1000;
  timeoutSeconds_ = seconds > 0 ? seconds : kNoLimitSeconds;
  sqlite3_busy_timeout(handle_, timeoutSeconds_ * kMillisecondsPerSecond);
}

void Session::useSchema(const std::shared_ptr<const Schema>& schema) {
  if (schema_ != schema) forgetStatements();
  schema_ = schema;
}

void Session::forgetStatements() {
  last_ = nullptr;
  prepared_.clear();
  context_.releaseStatements();
}

// ---- running

RecordsetRef Session::run(std::string_view sql, bool fetch) {
  context_.statementTime.reset();
  context_.failure.reset();
  deadline_.reset();
  Prepared& prepared = prepare(sql);
  switch (prepared.translation.kind) {
    case StatementKind::Call:
      return call(prepared.translation, fetch);
    case StatementKind::Setting:
      return fetch ? Recordset::create() : nullptr;
    default:
      break;
  }
  const RunningStatement running(prepared.statement.get());
  bind(prepared);
  return step(prepared, fetch);
}

// The clock is looked at for the first time when a statement has been at work for a moment.
bool Session::isLate() {
  const auto now = std::chrono::steady_clock::now();
  if (!deadline_) deadline_ = now + std::chrono::seconds(timeoutSeconds_);
  return now > *deadline_;
}

// ---- definitions

void Session::runKept(std::string_view sql) {
  deadline_.reset();
  sqlite3_stmt* statement = context_.prepared(sql);
  const int code = sqlite3_step(statement);
  sqlite3_reset(statement);
  if (code != SQLITE_DONE) fail(code);
}

void Session::runPlain(const char* sql) {
  const int code = sqlite3_exec(handle_, sql, nullptr, nullptr, nullptr);
  if (code != SQLITE_OK) fail(code);
}

void Session::execute(std::string_view sql) {
  isSchemaStatement(sql) ? define(sql) : void(run(sql, false));
}

void Session::rollback() {
  if (!inTransaction()) return;
  sqlite3_exec(handle_, "rollback", nullptr, nullptr, nullptr);
  if (std::exchange(definedInTransaction_, false)) {
    forgetStatements();
    try {
      catalogue_.setSchema(readSchema(handle_, path_));
    } catch (const Error&) {
      catalogue_.forgetSchema();  // whoever opens the database next is told
    }
  }
}

// ---- failures

void Session::fail(int code) {
  if (context_.failure) throw *std::exchange(context_.failure, std::nullopt);
  const std::string reason = sqlite3_errmsg(handle_);
  switch (code & 0xFF) {
    case SQLITE_BUSY:
    case SQLITE_LOCKED:
    case SQLITE_INTERRUPT:
      throw serverError(ServerError::Timeout, "Timeout expired");
    case SQLITE_CONSTRAINT:
      break;
    case SQLITE_NOTADB:
      throw Error(ErrorNumber::ConnectionFailed, kStoreSource,
                  "The file is not a database of this program: " + reason);
    default:
      throw Error(ErrorNumber::StatementFailed, kStoreSource, reason);
  }
  const bool missing = code == SQLITE_CONSTRAINT_NOTNULL;
  throw serverError(
      missing ? ServerError::CannotInsertNull : ServerError::DuplicateKey,
      (missing ? "Cannot insert the value NULL: " : "Violation of a key, cannot insert a duplicate: ") +
          reason);
}

}  // namespace ondrel::sql
