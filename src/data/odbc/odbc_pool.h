#pragma once

#include <chrono>
#include <condition_variable>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "data/odbc/odbc_target.h"
#include "data/odbc/timed_session.h"

namespace ondrel {

// Keeps connections that nobody uses for the next who wants one to the same database. Any number of
// threads may use it.
//
// - A connection is reset when it comes back: an open transaction is rolled back then, not later. One that
//   is dead, or whose transaction ended in doubt, is closed instead.
// - One that nobody used for the idle time is closed at the next call of any thread.
// - With as many connections as the size allows in use, a borrower waits, up to the waiting time; then
//   error ConnectionFailed.
class OdbcPool {
 public:
  using Clock = std::chrono::steady_clock;

  explicit OdbcPool(std::function<Clock::time_point()> now = Clock::now);
  // The one that all connections of the process share unless told.
  static std::shared_ptr<OdbcPool> ofProcess();

  struct Loan {
    std::unique_ptr<TimedSession> session;
    bool reused = false;
  };
  // A connection, new where `fresh` says so or none is at hand.
  Loan borrow(const OdbcTarget& target, bool fresh = false);
  void giveBack(const OdbcTarget& target, std::unique_ptr<TimedSession> session);
  // Closes the connections to a database that nobody uses: the server behind them has gone.
  void closeIdle(const OdbcTarget& target);
  // Connections to a database that nobody uses at the moment.
  int idleCount(const OdbcTarget& target);

 private:
  struct Idle {
    std::unique_ptr<TimedSession> session;
    Clock::time_point until;
  };
  struct Group {
    std::vector<Idle> idle;  // the one used last at the end
    int inUse = 0;
  };
  using Sessions = std::vector<std::unique_ptr<TimedSession>>;

  Loan take(const OdbcTarget& target, bool fresh, Sessions& closing);
  void leave(Group& group);
  void removeExpired(Sessions& closing);

  std::function<Clock::time_point()> now_;
  std::shared_ptr<OdbcHandle> environment_;
  std::mutex mutex_;
  std::condition_variable returned_;
  std::map<std::string, Group> groups_;  // by the text of the target
};

}  // namespace ondrel
