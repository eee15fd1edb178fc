#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "data/odbc/odbc_handle.h"
#include "data/odbc/odbc_result.h"
#include "data/odbc/odbc_target.h"

namespace ondrel {

// Seconds that a statement may take unless the connection is told another time.
inline constexpr int kOdbcTimeoutSeconds = 30;

// One connection of the driver manager. Statements go to the server as plain batches and their whole result
// comes at once, so nothing is open on the server between them. A failure raises Error; nothing is retried.
//
// A SQL Server begins and ends its transactions by batches, a round trip each, and autocommit stays on. Another
// store does by the driver's autocommit. A procedure that fails behind its own begin, or a page's own, leaves
// a transaction open on the server that nobody here began: `commit` commits it with the rest, `begin` and
// `reset` roll it back.
//
// | a failure                            | in a transaction                   | outside of one    |
// |--------------------------------------|------------------------------------|-------------------|
// | of a statement                       | it goes on                         |                   |
// | for which the server rolled it back  | it is over: nothing more is sent   |                   |
// | because the connection is lost       | it is over: nothing more is sent   | isLost            |
// | of a commit, whatever the reason     | in doubt: nothing more is sent     |                   |
class OdbcSession {
 public:
  // Connects. An error holds no password.
  OdbcSession(SQLHANDLE environment, const OdbcTarget& target);
  ~OdbcSession();
  OdbcSession(const OdbcSession&) = delete;
  OdbcSession& operator=(const OdbcSession&) = delete;

  // Seconds a statement may take; 0 is no limit.
  void setTimeout(int seconds);
  void begin();
  void commit();
  // Runs a statement with all of its results. With `fetch` its first result with columns, or a table that is
  // not open when it has none; without, nothing.
  RecordsetRef run(std::string_view sql, bool fetch);

  // Discards what is open and readies the session for another user; false when it is of no more use. The server
  // is asked only where it may have a transaction open.
  bool reset();
  // Asks the driver, not the server.
  bool isLost();

 private:
  enum class State { Free, InTransaction, Over, Lost };

  void requireUse() const;
  void check(SQLRETURN code, const OdbcHandle& handle);
  [[noreturn]] void fail(const OdbcHandle& handle);
  // Of a lost connection the number is ConnectionFailed, unless it is lost to a time-out.
  [[noreturn]] void raise(const OdbcDiagnosis& said, bool lost, std::string_view before) const;
  SQLRETURN setAutocommit(bool on);
  SQLRETURN endTransaction(SQLSMALLINT how);
  RecordsetRef runOnce(std::string_view sql, bool fetch);
  RecordsetRef readResults(SQLRETURN executed, bool fetch);
  std::optional<int> transactionCount();
  void noteRollback();

  std::string password_;
  OdbcHandle connection_;
  OdbcHandle statement_;
  OdbcResult result_;
  State state_ = State::Free;
  bool isSqlServer_ = false;
  bool isOpen_ = false;     // the transaction is open on the server; some drivers begin with a statement
  bool mayBeOpen_ = false;  // something was sent that may have left another one open
  std::string reason_;      // why it is over
  int timeoutSeconds_ = -1;
};

}  // namespace ondrel
