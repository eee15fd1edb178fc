#pragma once

#include <chrono>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

#include "host/page_session.h"
#include "host/visitor_ids.h"

namespace ondrel {

// A session, if there is one and a place for it.
struct BegunSession {
  PageSessionRef session;
  bool hasNoPlace = false;
};

// The open sessions by their ids. Safe to share between threads; its lock is held for a look-up only.
class SessionTable {
 public:
  SessionTable(std::shared_ptr<const SessionContext> context, size_t most)
      : context_(std::move(context)), most_(most) {}

  // The open session of an id.
  PageSessionRef find(std::string_view id);
  // A session for an id that an earlier run of the host left a journal of; it takes a place as with `begin`.
  BegunSession findInJournal(std::string_view id, std::chrono::steady_clock::time_point moment,
                             PageSessionRef& ousted);
  // An id for a browser that has been here once.
  std::string visitorId() { return visitors_.make(); }
  // The session of a browser at an address that comes back with such an id. When the host is full it takes the place of
  // one that has only looked and was not used since `moment`, the longest unused first, which is given back in
  // `ousted`. Who has only looked from an address that has its share of the places already takes one of those.
  BegunSession begin(const std::string& id, const std::string& address,
                     std::chrono::steady_clock::time_point moment, PageSessionRef& ousted);
  // Enters a session under the id that it has now.
  void rename(const std::string& from, const PageSessionRef& session);
  void remove(const PageSessionRef& session);
  // Takes out the sessions that nobody used since `moment`.
  std::vector<PageSessionRef> takeIdle(std::chrono::steady_clock::time_point moment);

  size_t size() const;
  size_t scriptMemory() const;

 private:
  std::shared_ptr<const SessionContext> context_;
  // The longest unused that has only looked, since `moment` and from an address where these are given.
  PageSessionRef takeIdler(std::chrono::steady_clock::time_point moment,
                           const std::string* address = nullptr);

  struct Entry {
    PageSessionRef session;
    std::string address;  // empty for who came back to a journal
  };

  size_t most_;
  mutable std::mutex mutex_;
  std::map<std::string, Entry, std::less<>> sessions_;
  VisitorIds visitors_;
};

}  // namespace ondrel
