#include "data/odbc/odbc_session.h"

#include <fmt/format.h>

#include <algorithm>

#include "data/odbc/this_machine.h"

namespace ondrel {
namespace {

// Of the standard's version 3.8: the next statement finds the connection as if it were new.
constexpr SQLINTEGER kResetConnection = 116;

// Batches of a SQL Server. A commit without a transaction stays an error: what was to be committed is gone.
constexpr std::string_view kTransactionCount = "select @@trancount";
constexpr std::string_view kBegin = "if @@trancount > 0 rollback transaction begin transaction";
constexpr std::string_view kCommit = "commit transaction while @@trancount > 0 commit transaction";
constexpr std::string_view kRollback = "if @@trancount > 0 rollback transaction";

// True as well for a statement that only has the letters in its data, which costs a round trip.
bool speaksOfTransactions(std::string_view sql) {
  constexpr std::string_view kWord = "tran";
  return std::search(sql.begin(), sql.end(), kWord.begin(), kWord.end(),
                     [](char c, char letter) { return (c | 0x20) == letter; }) != sql.end();
}

SQLPOINTER number(std::uintptr_t value) {
  return reinterpret_cast<SQLPOINTER>(value);
}

SQLCHAR* characters(std::string_view text) {
  return reinterpret_cast<SQLCHAR*>(const_cast<char*>(text.data()));
}

void refuseTrafficLog(const OdbcHandle& connection) {
  std::string log = trafficLog();
  SQLUINTEGER traced = SQL_OPT_TRACE_OFF;
  SQLGetConnectAttr(connection.get(), SQL_ATTR_TRACE, &traced, 0, nullptr);
  if (traced == SQL_OPT_TRACE_ON) log = "The trace of the driver manager";
  if (!log.empty())
    throw Error(ErrorNumber::ConnectionFailed, kOdbcSource,
                log + " is refused: it writes what passes to a file, and card numbers pass");
}

}  // namespace

// ---- connecting

// The driver would complete the connection string, password included; nobody takes it.
OdbcSession::OdbcSession(SQLHANDLE environment, const OdbcTarget& target)
    : password_(target.password), connection_(SQL_HANDLE_DBC, environment), isSqlServer_(target.isSqlServer) {
  refuseTrafficLog(connection_);
  SQLSetConnectAttr(connection_.get(), SQL_ATTR_LOGIN_TIMEOUT,
                    number(static_cast<std::uintptr_t>(target.loginSeconds)), SQL_IS_UINTEGER);
  const SQLRETURN code = SQLDriverConnect(connection_.get(), nullptr, characters(target.text), SQL_NTS,
                                          nullptr, 0, nullptr, SQL_DRIVER_NOPROMPT);
  if (!succeeded(code)) {
    const OdbcDiagnosis said = diagnosisOf(connection_, password_);
    throw Error(ErrorNumber::ConnectionFailed, kOdbcSource,
                odbcError(said, "Cannot connect: ").description());
  }
  try {
    statement_ = OdbcHandle(SQL_HANDLE_STMT, connection_.get());
    setTimeout(kOdbcTimeoutSeconds);
  } catch (...) {
    SQLDisconnect(connection_.get());
    throw;
  }
  // A brace or a question mark in a statement is nothing to the driver, where it can be told.
  SQLSetStmtAttr(statement_.get(), SQL_ATTR_NOSCAN, number(SQL_NOSCAN_ON), SQL_IS_UINTEGER);
}

OdbcSession::~OdbcSession() {
  statement_ = {};
  // A SQL Server rolls back by itself when a connection ends.
  if (!isSqlServer_ && (state_ == State::InTransaction || state_ == State::Over))
    endTransaction(SQL_ROLLBACK);
  SQLDisconnect(connection_.get());
}

void OdbcSession::setTimeout(int seconds) {
  if (seconds == timeoutSeconds_) return;
  check(SQLSetStmtAttr(statement_.get(), SQL_ATTR_QUERY_TIMEOUT, number(static_cast<std::uintptr_t>(seconds)),
                       SQL_IS_UINTEGER),
        statement_);
  timeoutSeconds_ = seconds;
}

// ---- statements

RecordsetRef OdbcSession::run(std::string_view sql, bool fetch) {
  requireUse();
  if (speaksOfTransactions(sql)) mayBeOpen_ = true;
  try {
    RecordsetRef table = runOnce(sql, fetch);
    isOpen_ = true;
    return table;
  } catch (const Error&) {
    mayBeOpen_ = true;
    if (state_ == State::InTransaction && isOpen_) noteRollback();
    throw;
  }
}

RecordsetRef OdbcSession::runOnce(std::string_view sql, bool fetch) {
  const SQLRETURN executed =
      SQLExecDirect(statement_.get(), characters(sql), static_cast<SQLINTEGER>(sql.size()));
  RecordsetRef table;
  try {
    table = readResults(executed, fetch);
  } catch (...) {
    SQLFreeStmt(statement_.get(), SQL_CLOSE);
    throw;
  }
  SQLFreeStmt(statement_.get(), SQL_CLOSE);
  return table;
}

// Nothing from another store, which does not know the question.
std::optional<int> OdbcSession::transactionCount() {
  try {
    const RecordsetRef answer = runOnce(kTransactionCount, true);
    if (!answer->isOpen() || answer->eof()) return std::nullopt;
    return answer->integer(Column(0));
  } catch (const Error&) {
    return std::nullopt;
  }
}

// Some errors make the server roll the transaction back, a failed conversion for one; what follows would
// then take effect on its own.
void OdbcSession::noteRollback() {
  if (transactionCount() != 0) return;
  state_ = State::Over;
  reason_ = "the server rolled it back when a statement failed";
}

// The error of a later statement of a batch shows only when its result is asked for, so all are.
RecordsetRef OdbcSession::readResults(SQLRETURN executed, bool fetch) {
  RecordsetRef table;
  SQLRETURN code = executed;
  if (code == SQL_NO_DATA) code = SQLMoreResults(statement_.get());
  for (; code != SQL_NO_DATA; code = SQLMoreResults(statement_.get())) {
    check(code, statement_);
    if (!fetch || table) continue;
    const int columns = OdbcResult::columnCount(statement_);
    if (columns < 0) fail(statement_);
    if (columns == 0) continue;
    table = result_.fetch(statement_, columns);
    if (!table) fail(statement_);
  }
  return fetch && !table ? Recordset::create() : table;
}

// ---- transactions

// Switching autocommit on rolls back what is open with one driver and commits it with the others, so
// whatever is open is ended first.
SQLRETURN OdbcSession::setAutocommit(bool on) {
  return SQLSetConnectAttr(connection_.get(), SQL_ATTR_AUTOCOMMIT,
                           number(on ? SQL_AUTOCOMMIT_ON : SQL_AUTOCOMMIT_OFF), SQL_IS_UINTEGER);
}

// What went wrong stays to be asked for: of a SQL Server the statement, else the connection.
SQLRETURN OdbcSession::endTransaction(SQLSMALLINT how) {
  if (!isSqlServer_) return SQLEndTran(SQL_HANDLE_DBC, connection_.get(), how);
  SQLFreeStmt(statement_.get(), SQL_CLOSE);
  const std::string_view sql = how == SQL_COMMIT ? kCommit : kRollback;
  SQLRETURN code = SQLExecDirect(statement_.get(), characters(sql), static_cast<SQLINTEGER>(sql.size()));
  while (succeeded(code)) code = SQLMoreResults(statement_.get());
  return code == SQL_NO_DATA ? SQL_SUCCESS : code;
}

void OdbcSession::begin() {
  requireUse();
  if (state_ == State::InTransaction)
    throw Error(ErrorNumber::StatementFailed, kOdbcSource,
                "Only one transaction can be active on this connection");
  try {
    if (isSqlServer_)
      runOnce(kBegin, false);
    else
      check(setAutocommit(false), connection_);
  } catch (const Error&) {
    state_ = State::Lost;  // nobody knows whether a transaction is open now
    throw;
  }
  state_ = State::InTransaction;
  isOpen_ = isSqlServer_;
}

// Ending a transaction opens the next with one driver; the switch back closes that.
void OdbcSession::commit() {
  requireUse();
  if (state_ != State::InTransaction)
    throw Error(ErrorNumber::StatementFailed, kOdbcSource, "No transaction is active");
  if (!succeeded(endTransaction(SQL_COMMIT))) {
    const OdbcDiagnosis said = diagnosisOf(isSqlServer_ ? statement_ : connection_, password_);
    const bool lost = said.isConnectionLoss() || isLost();
    state_ = State::Over;
    reason_ = "it is not known whether it was committed";
    raise(said, lost, "The commit failed, and it is not known whether the server made it: ");
  }
  mayBeOpen_ = false;
  state_ = State::Free;
  if (!isSqlServer_ && !succeeded(setAutocommit(true))) state_ = State::Lost;
}

bool OdbcSession::reset() {
  if (state_ == State::Over || state_ == State::Lost) return false;
  if (state_ == State::InTransaction || mayBeOpen_) {
    if (!succeeded(endTransaction(SQL_ROLLBACK))) return false;
    if (!isSqlServer_ && !succeeded(setAutocommit(true))) return false;
    mayBeOpen_ = false;
    state_ = State::Free;
  }
  if (isLost()) return false;
  SQLSetConnectAttr(connection_.get(), kResetConnection, number(1), SQL_IS_UINTEGER);
  setTimeout(kOdbcTimeoutSeconds);
  return true;
}

// ---- failures

bool OdbcSession::isLost() {
  if (state_ == State::Lost) return true;
  SQLUINTEGER dead = SQL_CD_FALSE;
  const SQLRETURN code = SQLGetConnectAttr(connection_.get(), SQL_ATTR_CONNECTION_DEAD, &dead, 0, nullptr);
  return succeeded(code) && dead == SQL_CD_TRUE;
}

void OdbcSession::requireUse() const {
  if (state_ == State::Over)
    throw Error(ErrorNumber::StatementFailed, kOdbcSource, "The transaction is over: " + reason_);
  if (state_ == State::Lost)
    throw Error(ErrorNumber::ConnectionFailed, kOdbcSource, "The connection to the server is lost");
}

void OdbcSession::check(SQLRETURN code, const OdbcHandle& handle) {
  if (!succeeded(code)) fail(handle);
}

// A lost connection comes as a general error first, so the driver is asked after each.
void OdbcSession::fail(const OdbcHandle& handle) {
  const OdbcDiagnosis said = diagnosisOf(handle, password_);
  const bool lost = said.isConnectionLoss() || isLost();
  const bool inTransaction = state_ == State::InTransaction;
  if (inTransaction && (lost || said.endsTransaction())) {
    state_ = State::Over;
    reason_ = lost                ? "the connection to the server was lost"
              : said.isDeadlock() ? "the server ended it to resolve a deadlock"
                                  : "the server rolled it back";
  } else if (lost) {
    state_ = State::Lost;
  }
  raise(said, lost, lost ? "The connection to the server is lost: " : "");
}

void OdbcSession::raise(const OdbcDiagnosis& said, bool lost, std::string_view before) const {
  const Error error = odbcError(said, before);
  const bool keepsNumber = !lost || said.isTimeout();
  throw Error(keepsNumber ? error.code() : ErrorNumber::ConnectionFailed, kOdbcSource, error.description());
}

}  // namespace ondrel
