#include "host/page_host.h"

#include <fmt/format.h>

#include <condition_variable>
#include <mutex>
#include <thread>

#include "base/error.h"
#include "base/text.h"
#include "data/values.h"
#include "host/access.h"
#include "host/clerks.h"
#include "host/incoming.h"
#include "host/journal_folder.h"
#include "host/metrics.h"
#include "host/page_files.h"
#include "host/request_log.h"
#include "host/secrets.h"
#include "host/session_table.h"

namespace ondrel {
namespace {

constexpr const char* kSource = "Host";
// More than processors: a worker whose session waits for the disk is not to keep the others waiting.
constexpr unsigned kFewestWorkers = 8;
constexpr std::chrono::milliseconds kLongestPause{10'000};

PageAnswer fullAnswer() {
  PageAnswer answer = plainAnswer(503, "The host is full.");
  answer.headers.emplace_back("Retry-After", "5");
  return answer;
}

PageAnswer redirection(std::string_view path) {
  PageAnswer answer = plainAnswer(303, "");
  answer.headers.emplace_back("Location", path);
  return answer;
}

std::shared_ptr<const SessionContext> contextOf(const HostOptions& options,
                                                std::shared_ptr<const PageFiles> files) {
  auto pages = std::make_shared<PageContext>();
  pages->files = std::move(files);
  pages->connectionString = options.connectionString;
  pages->now = options.now;
  pages->settings = options.settings;
  pages->scriptMemory = options.limits.scriptMemory;
  pages->answerSize = options.limits.answerSize;
  auto context = std::make_shared<SessionContext>();
  context->pages = std::move(pages);
  context->journalFolder = options.journals;
  if (!options.clerks.empty()) context->clerks = std::make_shared<Clerks>(options.clerks);
  return context;
}

size_t workersOf(const HostLimits& limits) {
  return limits.workers ? limits.workers : std::max(kFewestWorkers, 4 * std::thread::hardware_concurrency());
}

HostOptions checked(HostOptions options) {
  if (!isLoopback(options.address) && options.clerks.empty())
    throw Error(ErrorNumber::InvalidCall, kSource,
                "A host that listens beyond this machine needs a file of clerks who sign in");
  return options;
}

}  // namespace

class PageHost::Work {
 public:
  explicit Work(HostOptions options);
  int start();
  bool stop();

 private:
  // ---- a request: what is refused, what the host answers itself, then the page in its session

  PageAnswer answer(const HttpRequest& request);
  PageAnswer route(const HttpRequest& request, LogEntry& entry, std::string& page);
  void dressRefusal(PageAnswer& answer, const HttpRequest& request) const;
  std::optional<PageFile> pageOf(const std::string& path) const;
  PageAnswer health() const;
  PageAnswer metrics(const HttpRequest& request) const;
  PageAnswer asset(const HttpRequest& request) const;

  // ---- sessions

  PageAnswer inSession(Incoming incoming, LogEntry& entry);

  // Who has only looked and was not here since may lose the place.
  std::chrono::steady_clock::time_point lookers() const;

  // From the journal of an earlier run, or at the second coming of a browser.
  BegunSession beginSession(const Incoming& incoming);
  std::string cookie(std::string_view value, std::string_view more) const;
  PageAnswer admitted(const PageSessionRef& session, const std::string& id, Incoming incoming,
                      LogEntry& entry);

  // What the page works on lives as long as the page, which may be longer than this call.
  struct Turn {
    std::string sessionId;
    PageRequest request;
    PageAnswer answer;
    PageRun run;
  };
  PageAnswer served(const PageSessionRef& session, const std::string& id, PageRequest request,
                    LogEntry& entry);
  static PageAnswer failure(std::uint64_t number);

  // The browser's next request begins anew, with the work that the journal has. A page that hangs while work is
  // brought back would do so again.
  PageAnswer abandoned(const PageSessionRef& session, LogEntry& entry);

  // The journal goes first: a request that comes in between is not to find the session there.
  void endSession(const PageSessionRef& session);

  // ---- idle sessions

  void endIdleSessions();

  HostOptions options_;
  std::unique_ptr<FolderLock> journals_;
  std::shared_ptr<const PageFiles> files_;
  std::shared_ptr<const SessionContext> context_;
  Access access_;
  RequestLog log_;
  Metrics metrics_;
  SessionTable sessions_;
  std::unique_ptr<WorkerPool> workers_;
  std::atomic<std::uint64_t> requests_ = 0;
  std::mutex mutex_;
  std::condition_variable stopped_;
  bool isStopping_ = false;
  std::thread idleWatch_;
  HttpServer server_;  // last: it goes first, and nobody asks any more
};

PageHost::Work::Work(HostOptions options)
    : options_(checked(std::move(options))),
      journals_(prepareJournals(options_.journals, options_.limits.idle)),
      files_(std::make_shared<PageFiles>(options_.pages)),
      context_(contextOf(options_, files_)),
      access_(options_.address, options_.names),
      log_(options_.log),
      sessions_(context_, options_.limits.sessions),
      workers_(std::make_unique<WorkerPool>(workersOf(options_.limits), options_.limits.runs)),
      server_([this](const HttpRequest& request) { return answer(request); }, options_.limits.http) {}

int PageHost::Work::start() {
  const int port = server_.start(options_.address, options_.port);
  idleWatch_ = std::thread([this] { endIdleSessions(); });
  return port;
}

bool PageHost::Work::stop() {
  server_.stop();
  if (idleWatch_.joinable()) {
    {
      const std::lock_guard lock(mutex_);
      isStopping_ = true;
    }
    stopped_.notify_all();
    idleWatch_.join();
  }
  const bool isWhole = !workers_ || workers_->lost() == 0;
  workers_.reset();
  return isWhole;
}

PageAnswer PageHost::Work::answer(const HttpRequest& request) {
  const auto start = std::chrono::steady_clock::now();
  LogEntry entry;
  entry.moment = SystemClock().now();
  entry.number = ++requests_;
  entry.method = request.method;
  entry.path = request.path;
  std::string page = "refused";
  PageAnswer answer =
      options_.isBehindTls ? route(asProxied(request), entry, page) : route(request, entry, page);
  if (answer.status >= 400) dressRefusal(answer, request);
  addSecurityHeaders(answer);
  entry.status = answer.status;
  entry.bytes = answer.body.size();
  entry.time = std::chrono::steady_clock::now() - start;
  metrics_.add(page, answer.status, entry.time, entry.run);
  log_.add(entry);
  return answer;
}

PageAnswer PageHost::Work::route(const HttpRequest& request, LogEntry& entry, std::string& page) {
  if (request.refusal == 405) return plainAnswer(405, "This host answers GET, HEAD and POST.");
  if (request.refusal != 0) return plainAnswer(request.refusal, "This form of a request is not served.");
  if (auto refusal = access_.refusal(request)) return *refusal;
  if (request.path == "/health") return page = "health", health();
  if (request.path == "/metrics") return page = "metrics", metrics(request);
  if (request.path.starts_with("/assets/")) return page = "asset", asset(request);
  const auto file = pageOf(request.path);
  if (!file) return plainAnswer(404, "There is no such page.");
  page = file->name;
  return inSession(incomingOf(request, *file), entry);
}

// Who looks at a page gets the bare text of a refusal within the folder's own page.
void PageHost::Work::dressRefusal(PageAnswer& answer, const HttpRequest& request) const {
  const bool isForReading = valueOf(request.headers, "accept").find("text/html") != std::string_view::npos;
  if (!isForReading || !answer.contentType.starts_with("text/plain")) return;
  const auto file = files_->asset(kRefusedPage);
  if (!file) return;
  const std::string_view words = std::string_view(answer.body).substr(0, answer.body.find('\n'));
  answer.body = replaceAll(PageFiles::textOf(*file), "{{message}}", htmlEncode(words));
  answer.contentType = "text/html; charset=utf-8";
}

std::optional<PageFile> PageHost::Work::pageOf(const std::string& path) const {
  auto file = files_->page(path);
  if (!file && context_->clerks && path == "/sign_in") file = PageFile{std::string(kSignInPage), {}, {}};
  return file;
}

PageAnswer PageHost::Work::health() const {
  const bool isWell = workers_->lost() <= workersOf(options_.limits);
  PageAnswer answer{isWell ? 200 : 503, std::string(kJsonType), {}, ""};
  answer.body = fmt::format("{{\"status\":\"{}\",\"sessions\":{}}}\n", isWell ? "ok" : "pages do not end",
                            sessions_.size());
  return answer;
}

PageAnswer PageHost::Work::metrics(const HttpRequest& request) const {
  if (!isLoopback(request.address)) return plainAnswer(403, "Figures are for this machine.");
  const HostState state{.sessions = sessions_.size(),
                        .scriptMemory = sessions_.scriptMemory(),
                        .connections = server_.connections(),
                        .databaseConnections = *context_->pages->openConnections,
                        .workers = workersOf(options_.limits),
                        .busyWorkers = workers_->busy(),
                        .lostWorkers = workers_->lost(),
                        .waitingRequests = workers_->waiting()};
  return {200, "text/plain; version=0.0.4; charset=utf-8", {}, metrics_.text(state)};
}

PageAnswer PageHost::Work::asset(const HttpRequest& request) const {
  if (request.method == "POST") return plainAnswer(405, "An asset is only read.");
  const auto file = files_->asset(request.path);
  if (!file) return plainAnswer(404, "There is no such asset.");
  const std::string tag = "\"" + file->version + "\"";
  PageAnswer answer{200, std::string(assetType(file->name)), {}, ""};
  answer.headers = {{"ETag", tag}, {"Cache-Control", "no-cache"}};
  if (valueOf(request.headers, "if-none-match") == tag)
    answer.status = 304;
  else
    answer.body = PageFiles::textOf(*file);
  return answer;
}

PageAnswer PageHost::Work::inSession(Incoming incoming, LogEntry& entry) {
  PageSessionRef session = sessions_.find(incoming.sessionId);
  if (!session) {
    // Whoever has work here waits for a place: a new session would leave it behind.
    const BegunSession begun = beginSession(incoming);
    if (begun.hasNoPlace) return fullAnswer();
    session = begun.session;
  }
  const bool isVisit = !session;
  if (isVisit) {
    if (incoming.page.isChanging()) return plainAnswer(403, "The session has ended: load the page again.");
    session = PageSession::visit(context_, sessions_.visitorId());
  }
  const std::string id = session->id();
  PageAnswer answer = admitted(session, id, std::move(incoming), entry);
  answer.headers.emplace_back("Cache-Control", "no-store");
  if (session->isSignedOut()) {
    endSession(session);
    answer.headers.emplace_back("Set-Cookie", cookie("", "; Max-Age=0"));
  } else if (isVisit || entry.run.isRenamed) {
    sessions_.rename(id, session);
    answer.headers.emplace_back("Set-Cookie", cookie(session->id(), ""));
  }
  entry.session = digestOf("log", session->id()).substr(0, 8);
  entry.clerk = session->clerk().id;
  return answer;
}

std::chrono::steady_clock::time_point PageHost::Work::lookers() const {
  return std::chrono::steady_clock::now() - options_.limits.looking;
}

BegunSession PageHost::Work::beginSession(const Incoming& incoming) {
  PageSessionRef ousted;
  BegunSession begun = sessions_.findInJournal(incoming.sessionId, lookers(), ousted);
  if (!begun.session && !begun.hasNoPlace)
    begun = sessions_.begin(incoming.sessionId, incoming.page.address, lookers(), ousted);
  if (ousted) endSession(ousted);
  return begun;
}

std::string PageHost::Work::cookie(std::string_view value, std::string_view more) const {
  return fmt::format("{}={}; Path=/; HttpOnly; SameSite=Strict{}{}", kSessionCookie, value,
                     options_.isBehindTls ? "; Secure" : "", more);
}

PageAnswer PageHost::Work::admitted(const PageSessionRef& session, const std::string& id, Incoming incoming,
                                    LogEntry& entry) {
  const PageRequest& page = incoming.page;
  if (page.isChanging() && !isSameSecret(incoming.token, session->token()))
    return plainAnswer(403, "The token is not that of the session: load the page again.");
  if (!isRequestNumber(page.number))
    return plainAnswer(400, "A request number is up to 64 letters and digits.");
  if (context_->clerks && session->clerk().id.empty() && page.page != kSignInPage)
    return page.isChanging() ? plainAnswer(401, "Sign in first.") : redirection("/sign_in");
  return served(session, id, std::move(incoming.page), entry);
}

PageAnswer PageHost::Work::served(const PageSessionRef& session, const std::string& id, PageRequest request,
                                  LogEntry& entry) {
  const auto turn = std::make_shared<Turn>();
  turn->sessionId = id;
  turn->request = std::move(request);
  const RunOutcome outcome = workers_->run(session->queue(), [session, turn] {
    try {
      turn->answer = session->serve(turn->request, turn->sessionId, turn->run);
    } catch (const std::exception& exception) {
      turn->answer = plainAnswer(500, "");
      turn->run.failure = exception.what();
    }
  });
  if (outcome == RunOutcome::Full) return fullAnswer();
  if (outcome == RunOutcome::Ended) return plainAnswer(503, "The session has ended: load the page again.");
  if (outcome == RunOutcome::TimeLimit) return abandoned(session, entry);
  entry.run = std::move(turn->run);
  if (session->isJournalBroken()) entry.note = "the journal of this session cannot be written";
  if (!entry.run.failure.empty()) return failure(entry.number);
  return std::move(turn->answer);
}

PageAnswer PageHost::Work::failure(std::uint64_t number) {
  return plainAnswer(500, fmt::format("Something went wrong. The log has it as number {}.", number));
}

PageAnswer PageHost::Work::abandoned(const PageSessionRef& session, LogEntry& entry) {
  const bool hangsInReplay = session->isRestoring();
  session->giveUp();
  sessions_.remove(session);
  if (hangsInReplay) std::filesystem::remove(PageSession::journalPath(*context_, session->id()));
  entry.run.failure = "the page passed its time; its session is given up";
  return failure(entry.number);
}

void PageHost::Work::endSession(const PageSessionRef& session) {
  if (workers_->run(session->queue(), [session] { session->end(); }) != RunOutcome::Done) {
    std::error_code error;
    const std::filesystem::path journal = PageSession::journalPath(*context_, session->id());
    if (!journal.empty()) std::filesystem::remove(journal, error);
  }
  sessions_.remove(session);
  workers_->close(session->queue());
}

void PageHost::Work::endIdleSessions() {
  const auto pause = std::min(kLongestPause, options_.limits.idle / 4);
  std::unique_lock lock(mutex_);
  while (!stopped_.wait_for(lock, pause, [this] { return isStopping_; })) {
    lock.unlock();
    for (const PageSessionRef& session :
         sessions_.takeIdle(std::chrono::steady_clock::now() - options_.limits.idle))
      endSession(session);
    lock.lock();
  }
}

PageHost::PageHost(HostOptions options) : work_(std::make_unique<Work>(std::move(options))) {}

PageHost::~PageHost() {
  stop();
}

int PageHost::start() {
  return work_->start();
}

bool PageHost::stop() {
  return work_->stop();
}

}  // namespace ondrel
