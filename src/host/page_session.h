#pragma once

#include <atomic>
#include <chrono>
#include <memory>
#include <mutex>
#include <optional>
#include <string>

#include "host/clerks.h"
#include "host/journal.h"
#include "host/page_engine.h"
#include "host/request_numbers.h"
#include "host/worker_pool.h"

namespace ondrel {

// What the sessions of a host share.
struct SessionContext {
  std::shared_ptr<const PageContext> pages;
  std::filesystem::path journalFolder;  // empty for no journals
  std::shared_ptr<Clerks> clerks;
};

// One browser at work: its engine, its remembered answers and its journal. `serve` runs in the session's
// queue; the rest is for any thread.
class PageSession : private PageOwner {
 public:
  PageSession(std::shared_ptr<const SessionContext> context, std::string id);
  // For one look of a browser that has no session: nothing is kept of it.
  static std::shared_ptr<PageSession> visit(std::shared_ptr<const SessionContext> context, std::string id);

  // Answers from memory what carries a number that is known already. `admittedAs` is the id under which the request
  // was let in.
  PageAnswer serve(const PageRequest& request, std::string_view admittedAs, PageRun& run);
  // Reads the journal that an earlier run of the host left, so that the first `serve` brings the work in progress
  // back before it does anything else. False when there is none. Before other threads see the session.
  bool prepareRestoring();
  bool isRestoring() const { return isRestoring_; }

  std::string id() const;
  std::string token() override;
  Clerk clerk() override;
  const TaskQueueRef& queue() const { return queue_; }
  bool isSignedOut() const { return isSignedOut_; }
  // False as long as the browser has only looked: nothing is lost with the session then.
  bool hasWork() const { return hasWork_; }
  bool isJournalBroken() const { return isJournalBroken_; }
  size_t scriptMemory() const { return scriptMemory_; }

  void touch() { lastUsed_ = std::chrono::steady_clock::now(); }
  std::chrono::steady_clock::time_point lastUsed() const { return lastUsed_; }

  // The work of a session that is lost to a page that does not end is prevented as far as that can be done.
  void giveUp() noexcept;
  // The end of the session; nobody is at it any more, and its journal goes.
  void end();

  static std::filesystem::path journalPath(const SessionContext& context, std::string_view id);

 private:
  std::string signIn(const std::string& clerkId, const std::string& pin) override;
  void signOut() override { isSignedOut_ = true; }
  void beforeCommit() override;
  void workDone() override { isWorkDone_ = true; }
  bool isDoubtful() override { return isDoubtful_ && !replayed_; }
  void settleDoubt() override;
  std::optional<std::string> recall() override;
  void record(const std::string& result) override { journal_->record(result); }

  PageEngine& engine();
  PageAnswer serveChanging(const PageRequest& request, PageRun& run);
  void endWork();
  std::string restore();
  bool replay(const JournalledCall& call);

  std::shared_ptr<const SessionContext> context_;
  TaskQueueRef queue_ = std::make_shared<TaskQueue>();
  mutable std::mutex mutex_;  // of what other threads see
  std::string id_;
  Clerk clerk_;
  std::unique_ptr<PageEngine> engine_;
  std::unique_ptr<Journal> journal_;
  std::optional<JournalContents> toRestore_;
  RequestNumbers numbers_;
  const PageRequest* request_ = nullptr;
  const JournalledCall* replayed_ = nullptr;
  size_t nextRecord_ = 0;
  bool isVisit_ = false;
  bool isWorkDone_ = false;
  bool isDoubtful_ = false;
  std::atomic<bool> isGivenUp_ = false;
  std::atomic<bool> isRestoring_ = false;
  std::atomic<bool> isSignedOut_ = false;
  std::atomic<bool> hasWork_ = false;
  std::atomic<bool> isJournalBroken_ = false;
  std::atomic<size_t> scriptMemory_ = 0;
  std::atomic<std::chrono::steady_clock::time_point> lastUsed_ = std::chrono::steady_clock::now();
};

using PageSessionRef = std::shared_ptr<PageSession>;

}  // namespace ondrel
