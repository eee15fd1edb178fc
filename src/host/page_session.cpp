#include "host/page_session.h"

#include <utility>

#include "base/error.h"
#include "host/secrets.h"

namespace ondrel {
namespace {

constexpr const char* kSessionSource = "Host";

}  // namespace

std::filesystem::path PageSession::journalPath(const SessionContext& context, std::string_view id) {
  if (context.journalFolder.empty()) return {};
  return context.journalFolder / (digestOf("journal", id) + ".journal");
}

PageSession::PageSession(std::shared_ptr<const SessionContext> context, std::string id)
    : context_(std::move(context)), id_(std::move(id)) {}

std::shared_ptr<PageSession> PageSession::visit(std::shared_ptr<const SessionContext> context,
                                                std::string id) {
  auto session = std::make_shared<PageSession>(std::move(context), std::move(id));
  session->isVisit_ = true;
  return session;
}

std::string PageSession::id() const {
  const std::lock_guard lock(mutex_);
  return id_;
}

std::string PageSession::token() {
  return digestOf("token", id());
}

Clerk PageSession::clerk() {
  const std::lock_guard lock(mutex_);
  return clerk_;
}

PageEngine& PageSession::engine() {
  if (engine_) return *engine_;
  journal_ = std::make_unique<Journal>(isVisit_ ? std::filesystem::path() : journalPath(*context_, id()));
  PageOwner& owner = *this;
  auto engine = std::make_unique<PageEngine>(context_->pages, owner);
  const std::lock_guard lock(mutex_);
  engine_ = std::move(engine);
  return *engine_;
}

// The queue may have changed the session since the request was let in: who has the old id and the old token gets
// nothing of what a sign-in made of it.
PageAnswer PageSession::serve(const PageRequest& request, std::string_view admittedAs, PageRun& run) {
  if (isSignedOut_ || id() != admittedAs)
    return plainAnswer(403, "The session has changed: load the page again.");
  request_ = &request;
  PageEngine& pages = engine();
  if (isRestoring_) run.restored = restore();
  PageAnswer answer = request.isChanging() ? serveChanging(request, run) : pages.run(request, run);
  request_ = nullptr;
  run.isRenamed = id() != admittedAs;
  scriptMemory_ = run.scriptMemory;
  isJournalBroken_ = journal_->hasFailed();
  return answer;
}

// 1. a known number: the answer that it had   2. journal   3. page   4. journal, before the answer leaves
PageAnswer PageSession::serveChanging(const PageRequest& request, PageRun& run) {
  // A try at signing in is no work yet.
  if (!context_->clerks || !clerk().id.empty()) hasWork_ = true;
  const bool isNumbered = !request.number.empty();
  if (isNumbered)
    if (const PageAnswer* known = numbers_.find(request)) return *known;
  journal_->call(request, context_->pages->now.value_or(SystemClock().now()));
  PageAnswer answer = engine_->run(request, run);
  if (isNumbered) {
    const std::string print = Journal::takes(request) ? RequestNumbers::fingerprintOf(request) : "";
    numbers_.remember({request.number, print, answer});
  }
  journal_->done(request, answer);
  if (std::exchange(isWorkDone_, false)) endWork();
  return answer;
}

void PageSession::endWork() {
  journal_->ended({clerk(), engine_->kept(), {}, {numbers_.all().begin(), numbers_.all().end()}});
}

std::string PageSession::signIn(const std::string& clerkId, const std::string& pin) {
  if (!context_->clerks) throw Error(ErrorNumber::InvalidCall, kSessionSource, "This host knows no clerks");
  if (replayed_)
    throw Error(ErrorNumber::InvalidCall, kSessionSource, "Nobody signs in while work is brought back");
  Clerk clerk;
  const Clerks::Verdict verdict = context_->clerks->check(request_->address, clerkId, pin, clerk);
  if (verdict != Clerks::Verdict::Right) return verdict == Clerks::Verdict::Wait ? "wait" : "wrong";
  // Who knew the id before does not know it any more.
  std::string id = randomId();
  journal_->rename(journalPath(*context_, id));
  journal_->clerk(clerk);
  const std::lock_guard lock(mutex_);
  id_ = std::move(id);
  clerk_ = std::move(clerk);
  hasWork_ = true;
  return "ok";
}

// Only a number asks later whether it was saved. The mark comes first: a session that is given up in between
// commits nothing without one.
void PageSession::beforeCommit() {
  journal_->committing(request_ && !request_->number.empty());
  if (isGivenUp_) throw Error(ErrorNumber::InvalidCall, kSessionSource, "The session has ended");
}

void PageSession::settleDoubt() {
  if (replayed_ || !std::exchange(isDoubtful_, false)) return;
  journal_->certain();
}

std::optional<std::string> PageSession::recall() {
  if (!replayed_) return std::nullopt;
  if (nextRecord_ >= replayed_->records.size())
    throw Error(ErrorNumber::InvalidCall, kSessionSource, "This piece of work was not recorded");
  return replayed_->records[nextRecord_++];
}

bool PageSession::prepareRestoring() {
  const std::filesystem::path path = journalPath(*context_, id_);
  if (path.empty()) return false;
  toRestore_ = Journal::read(path);
  if (!toRestore_) return false;
  clerk_ = toRestore_->clerk;
  isRestoring_ = true;
  hasWork_ = !toRestore_->calls.empty() || !clerk_.id.empty();
  return true;
}

// Says for the log how far it came. Whatever stops it, the session goes on with what is there by then.
std::string PageSession::restore() {
  const JournalContents contents = std::move(*std::exchange(toRestore_, std::nullopt));
  size_t done = 0;
  std::string trouble;
  try {
    for (const RememberedAnswer& known : contents.answers) numbers_.remember(known);
    engine_->setKept(contents.kept);
    isDoubtful_ = contents.isDoubtful;
    while (done < contents.calls.size() && replay(contents.calls[done])) ++done;
  } catch (const std::exception& exception) {
    trouble = std::string("; stopped by: ") + exception.what();
  }
  isRestoring_ = false;
  return std::to_string(done) + " of " + std::to_string(contents.calls.size()) + " calls" + trouble;
}

// With the clock at the moment of the call, so that the days of a ticket come out as they did, and without a
// trace in the database, which has what the call wrote.
bool PageSession::replay(const JournalledCall& call) {
  struct Replay {
    Replay(PageSession& owner, const JournalledCall& replayed) : session(owner) {
      session.replayed_ = &replayed;
      session.nextRecord_ = 0;
      session.engine_->setReplay(replayed.moment);
    }
    ~Replay() {
      session.engine_->setReplay(std::nullopt);
      session.replayed_ = nullptr;
      session.isWorkDone_ = false;  // of the call that was brought back, not of the next one
    }
    Replay(const Replay&) = delete;
    Replay& operator=(const Replay&) = delete;
    PageSession& session;
  };
  const Replay replay(*this, call);
  PageRun run;
  return engine_->run(call.request, run).status == call.status;
}

void PageSession::giveUp() noexcept {
  isGivenUp_ = true;
  const std::lock_guard lock(mutex_);
  if (!engine_) return;
  engine_->interrupt();
  journal_->giveUp();
}

void PageSession::end() {
  if (journal_) journal_->remove();
}

}  // namespace ondrel
