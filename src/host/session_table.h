#pragma once

#include <chrono>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

#include "host/page_session.h"

namespace ondrel {

// A session that an earlier run of the host left a journal of, if there is one and a place for it.
struct JournalledSession {
  PageSessionRef session;
  bool hasNoPlace = false;
};

// The open sessions by their ids. Safe to share between threads; its lock is held for a look-up only.
class SessionTable {
 public:
  SessionTable(std::shared_ptr<const SessionSurroundings> surroundings, size_t most)
      : surroundings_(std::move(surroundings)), most_(most) {}

  // The open session of an id.
  PageSessionRef find(std::string_view id);
  // A session for an id that an earlier run of the host left a journal of; it takes a place as `create` does.
  JournalledSession findInJournal(std::string_view id, std::chrono::steady_clock::time_point moment,
                                  PageSessionRef& ousted);
  // With a new id. When the host is full it takes the place of one that has only looked and was not used since
  // `moment`, the longest unused first, which is given back in `ousted`; nothing when there is none.
  PageSessionRef create(std::chrono::steady_clock::time_point moment, PageSessionRef& ousted);
  // Enters a session under the id that it has now.
  void rename(const std::string& from, const PageSessionRef& session);
  void remove(const PageSessionRef& session);
  // Takes out the sessions that nobody used since `moment`.
  std::vector<PageSessionRef> takeIdle(std::chrono::steady_clock::time_point moment);

  size_t size() const;
  size_t scriptMemory() const;

 private:
  std::shared_ptr<const SessionSurroundings> surroundings_;
  PageSessionRef takeIdler(std::chrono::steady_clock::time_point moment);

  size_t most_;
  mutable std::mutex mutex_;
  std::map<std::string, PageSessionRef, std::less<>> sessions_;
};

}  // namespace ondrel
