#pragma once

#include <atomic>
#include <chrono>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>

#include "automation/script/script_engine.h"
#include "host/page_files.h"
#include "host/page_request.h"
#include "host/watched_connection.h"

namespace ondrel {

// An employee who has signed in.
struct Clerk {
  std::string id;  // empty for nobody
  std::string name;
};

// What every engine of a host is made with.
struct PageContext {
  std::shared_ptr<const PageFiles> files;
  std::string connectionString;
  std::optional<Date> now;  // fixes the clock
  std::map<std::string, std::string> settings;
  size_t scriptMemory = 0;  // bytes
  size_t answerSize = 0;    // bytes
  OpenConnections openConnections = std::make_shared<std::atomic<size_t>>(0);
  // Held by the one page that works alone.
  std::shared_ptr<std::timed_mutex> alone = std::make_shared<std::timed_mutex>();
};

// What the pages of a session ask their host. Runs on the thread that runs the page.
class PageOwner {
 public:
  virtual ~PageOwner() = default;
  virtual std::string token() = 0;
  virtual Clerk clerk() = 0;
  // "ok", "wrong" or "wait".
  virtual std::string signIn(const std::string& clerkId, const std::string& pin) = 0;
  virtual void signOut() = 0;
  // Before each commit; raises an error to prevent it.
  virtual void beforeCommit() = 0;
  // What was written so far is saved or given up, and is not brought back after a restart.
  virtual void workDone() = 0;
  // True after a restart in the middle of a numbered call of the work that was brought back, which may have been
  // saved or not; until a page says that it is known which.
  virtual bool isDoubtful() = 0;
  virtual void settleDoubt() = 0;
  // What a recorded piece of work gave when the call was made first; nothing outside of a replay.
  virtual std::optional<std::string> recall() = 0;
  virtual void record(const std::string& result) = 0;
};

// What one run of a page took, and what went wrong in it.
struct PageRun {
  std::chrono::nanoseconds total{0};
  std::chrono::nanoseconds library{0};  // in library calls, the database left out
  std::chrono::nanoseconds database{0};
  std::uint64_t statements = 0;
  std::uint64_t discarded = 0;  // statements of a transaction that was broken off
  size_t scriptMemory = 0;      // bytes, after the run
  std::string printed;
  std::string failure;     // with the position; not for the browser
  std::string restored;    // how many calls of work in progress were brought back before
  bool isRenamed = false;  // a sign-in gave the session a new id
};

// The script engine and the apartment of one session, with the globals that a page sees. One thread at a
// time.
class PageEngine {
 public:
  PageEngine(std::shared_ptr<const PageContext> context, PageOwner& owner);

  // Runs the page of the request. A failure of the page is an answer of status 500 that tells nothing. A
  // transaction that the page left open is discarded.
  PageAnswer run(const PageRequest& request, PageRun& run);

  // The values of Session.kept as a JSON text.
  const std::string& kept() const { return kept_; }
  void setKept(std::string_view json);

  // For work that is brought back: the moment that the library and the embedded database take for the present,
  // with everything that is written discarded. Nothing ends it.
  void setReplay(std::optional<Date> moment);

  // The only operation for other threads; see ScriptEngine.
  void interrupt() noexcept { engine_.interrupt(); }

 private:
  void defineFunctions();
  std::string source(std::string_view name) const;
  std::string version(std::string_view name) const;
  bool haveFilesChanged();
  void compile(const std::string& name);
  void answerFailure(const ScriptFailure& failure);
  void dropTransaction();
  void workAlone();

  std::shared_ptr<const PageContext> context_;
  PageOwner& owner_;
  DatabaseAccount database_;
  Writing writing_ = Writing::Real;
  ApartmentRef apartment_;
  std::shared_ptr<Clock> usualClock_;
  const PageRequest* request_ = nullptr;
  PageRun* run_ = nullptr;
  PageAnswer answer_;
  std::unique_lock<std::timed_mutex> alone_;
  std::string kept_ = "{}";
  std::map<std::string, std::string> versions_;  // of the scripts that are compiled
  ScriptEngine engine_;                          // last: its objects go first
};

}  // namespace ondrel
