#pragma once

#include <chrono>
#include <memory>
#include <string>
#include <string_view>

#include "data/odbc/call_thread.h"
#include "data/odbc/odbc_session.h"

namespace ondrel {

// What a server may take beyond a limit before the connection is given up: the driver breaks a statement off
// by itself, and a server that is alive answers that.
inline constexpr std::chrono::milliseconds kOdbcGrace{1000};

// A session whose calls come back within their limits whatever the server does. Where it gives no answer the
// connection is given up, with a time-out's number; what was sent may have been done.
//
// | call                        | limit                                |
// |-----------------------------|--------------------------------------|
// | connecting                  | `loginSeconds` of the target         |
// | statement, begin, commit    | the time limit, and the grace        |
// | reset, disconnecting        | the time limit; the grace            |
//
// A limit of 0 is none. A store in a file has no server to wait for, and none of the limits.
class TimedSession {
 public:
  TimedSession(std::shared_ptr<const OdbcHandle> environment, const OdbcTarget& target);
  ~TimedSession();
  TimedSession(const TimedSession&) = delete;
  TimedSession& operator=(const TimedSession&) = delete;

  void setTimeout(int seconds);
  void begin();
  void commit();
  RecordsetRef run(std::string_view sql, bool fetch);
  bool reset();
  bool isLost() { return isGivenUp_ || session_->isLost(); }

 private:
  using Limit = std::optional<std::chrono::milliseconds>;

  template <class Action>
  auto within(Limit limit, std::string_view failure, Action action);
  Limit limit() const;

  std::shared_ptr<OdbcSession> session_;
  std::unique_ptr<CallThread> thread_;
  bool isGivenUp_ = false;
  int timeoutSeconds_ = kOdbcTimeoutSeconds;
};

}  // namespace ondrel
