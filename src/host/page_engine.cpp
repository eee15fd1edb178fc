#include "host/page_engine.h"

#include <array>
#include <utility>

#include "automation/drivers.h"
#include "automation/script/database_access.h"
#include "base/array.h"
#include "base/text.h"
#include "data/values.h"
#include "host/outlets.h"
#include "host/page_script.h"
#include "host/secrets.h"

namespace ondrel {
namespace {

constexpr const char* kEngineSource = "Host";
constexpr size_t kLongestPrint = 2000;
constexpr size_t kLongestKept = 64 << 10;
// For those who want to work alone.
constexpr std::chrono::seconds kLongestQueue{20};

// What the host says of every answer; a page does not.
constexpr std::array<std::string_view, 11> kHostHeaders = {"set-cookie",
                                                           "content-security-policy",
                                                           "content-length",
                                                           "transfer-encoding",
                                                           "connection",
                                                           "cache-control",
                                                           "x-content-type-options",
                                                           "x-frame-options",
                                                           "referrer-policy",
                                                           "cross-origin-opener-policy",
                                                           "cross-origin-resource-policy"};

std::shared_ptr<Clock> makeClock(const PageContext& context) {
  if (context.now) return std::make_shared<FixedClock>(*context.now);
  return std::make_shared<SystemClock>();
}

Variant arrayOf(const NamedTexts& texts) {
  auto array = std::make_shared<Array>();
  for (const auto& [name, value] : texts) {
    array->items.emplace_back(name);
    array->items.emplace_back(value);
  }
  return Variant(ArrayRef(array));
}

// A text of a script whose letters are bytes, from 0 to 255.
std::string bytesOf(std::string_view text) {
  std::string bytes;
  for (size_t k = 0; k < text.size(); ++k) {
    const auto lead = static_cast<unsigned char>(text[k]);
    const bool isPair = (lead & 0xFC) == 0xC0 && k + 1 < text.size();
    if (lead >= 0x80 && !isPair)
      throw Error(ErrorNumber::InvalidCall, kEngineSource, "What is delivered is bytes");
    bytes += isPair ? static_cast<char>((lead & 3) << 6 | (text[++k] & 0x3F)) : text[k];
  }
  return bytes;
}

Variant arrayOf(std::vector<Variant> values) {
  return Variant(ArrayRef(std::make_shared<Array>(std::move(values))));
}

void checkHeader(const std::string& name, const std::string& value) {
  const std::string lower = toLower(name);
  for (const std::string_view reserved : kHostHeaders)
    if (lower == reserved)
      throw Error(ErrorNumber::InvalidCall, kEngineSource, "This header is the host's: " + name);
  for (const char c : name)
    if (!isLetter(c) && !isDigit(c) && c != '-')
      throw Error(ErrorNumber::InvalidCall, kEngineSource, "Invalid name of a header");
  for (const char c : value)
    if (static_cast<unsigned char>(c) < ' ')
      throw Error(ErrorNumber::InvalidCall, kEngineSource, "Invalid value of the header " + name);
}

// A page sends the browser to pages only.
void checkTarget(std::string_view path) {
  const bool isLocal = path.starts_with('/') && !path.starts_with("//") && !path.starts_with("/\\");
  if (!isLocal)
    throw Error(ErrorNumber::InvalidCall, kEngineSource, "A redirection needs a path of this host");
}

void takeHeader(PageAnswer& answer, const std::string& name, const std::string& value) {
  checkHeader(name, value);
  if (equalsIgnoringCase(name, "location")) checkTarget(value);
  if (equalsIgnoringCase(name, "content-type"))
    answer.contentType = value;
  else
    answer.headers.emplace_back(name, value);
}

}  // namespace

PageEngine::PageEngine(std::shared_ptr<const PageContext> context, PageOwner& owner)
    : context_(std::move(context)),
      owner_(owner),
      apartment_(std::make_shared<Apartment>()),
      usualClock_(makeClock(*context_)),
      engine_(
          apartment_,
          [this](std::string_view text) {
            if (run_ && run_->printed.size() < kLongestPrint) run_->printed += text;
          },
          context_->scriptMemory) {
  apartment_->clock = usualClock_;
  apartment_->connect = [this](const ConnectionSettings& settings) -> std::unique_ptr<Connection> {
    return std::make_unique<WatchedConnection>(connectToDatabase(settings), database_,
                                               context_->openConnections, writing_,
                                               [this] { owner_.beforeCommit(); });
  };
  engine_.define("Database",
                 Variant(std::make_shared<DatabaseAccess>(*apartment_, context_->connectionString)));
  defineFunctions();
  const ScriptOutcome outcome = engine_.run(kPageScript, "host");
  if (outcome.failure) throw Error(ErrorNumber::InvalidCall, kEngineSource, outcome.failure->text());
}

void PageEngine::defineFunctions() {
  using Arguments = std::span<const Variant>;
  const auto define = [this](std::string_view name, ScriptEngine::Function function) {
    engine_.defineFunction("host_" + std::string(name), std::move(function));
  };
  // What answers with nothing.
  const auto action = [&define](std::string_view name, std::function<void(Arguments)> work) {
    define(name, [work = std::move(work)](Arguments arguments) {
      work(arguments);
      return Variant();
    });
  };
  define("changed", [this](Arguments) { return Variant(haveFilesChanged()); });
  define("clerk", [this](Arguments) {
    const Clerk clerk = owner_.clerk();
    return arrayOf({Variant(clerk.id), Variant(clerk.name)});
  });
  define("doubtful", [this](Arguments) { return Variant(owner_.isDoubtful()); });
  define("encode", [](Arguments text) { return Variant(htmlEncode(text[0])); });
  define("hashPin", [](Arguments pin) { return Variant(hashPin(pin[0].toText())); });
  define("isPin", [](Arguments given) { return Variant(isPinOf(given[0].toText(), given[1].toText())); });
  define("now", [this](Arguments) { return Variant(apartment_->clock->now()); });
  define("recall", [this](Arguments) {
    const auto known = owner_.recall();
    return known ? Variant(*known) : Variant();
  });
  define("request", [this](Arguments) {
    const bool isJson = request_->contentType == kJsonType;
    return arrayOf({Variant(request_->method), Variant(request_->path), arrayOf(request_->query),
                    arrayOf(request_->form), Variant(request_->body), arrayOf(request_->headers),
                    Variant(isJson), Variant(request_->number), Variant(request_->address)});
  });
  define("room", [this](Arguments) { return Variant(static_cast<double>(context_->answerSize)); });
  define("setting", [this](Arguments name) {
    const auto found = context_->settings.find(name[0].toText());
    return found == context_->settings.end() ? Variant() : Variant(found->second);
  });
  define("signIn",
         [this](Arguments given) { return Variant(owner_.signIn(given[0].toText(), given[1].toText())); });
  define("token", [this](Arguments) { return Variant(owner_.token()); });
  action("alone", [this](Arguments) { workAlone(); });
  action("answer", [this](Arguments given) {
    answer_.status = given[0].toLong();
    answer_.body = given[1].toText();
  });
  action("compile", [this](Arguments name) { compile(name[0].toText()); });
  action("deliver", [this](Arguments given) {
    const auto outlet = context_->settings.find(given[0].toText());
    if (outlet == context_->settings.end())
      throw Error(ErrorNumber::FileNotFound, kEngineSource, "This counter has no " + given[0].toText());
    deliver(outlet->second, bytesOf(given[1].toText()));
  });
  action("header", [this](Arguments given) { takeHeader(answer_, given[0].toText(), given[1].toText()); });
  action("keep", [this](Arguments json) {
    std::string text = json[0].toText();
    if (text.size() > kLongestKept)
      throw Error(ErrorNumber::InvalidCall, kEngineSource, "Session.kept holds more than 64 KB");
    kept_ = text.empty() ? "{}" : std::move(text);
  });
  action("record", [this](Arguments result) { owner_.record(result[0].toText()); });
  action("settleDoubt", [this](Arguments) { owner_.settleDoubt(); });
  action("signOut", [this](Arguments) { owner_.signOut(); });
  action("workDone", [this](Arguments) { owner_.workDone(); });
}

// The version of a script that the host brings itself never changes.
std::string PageEngine::version(std::string_view name) const {
  if (const auto file = context_->files->script(name)) return file->version;
  return name == kSignInPage ? "host" : "";
}

bool PageEngine::haveFilesChanged() {
  for (const auto& [name, known] : versions_) {
    if (version(name) == known) continue;
    versions_.clear();
    return true;
  }
  return false;
}

std::string PageEngine::source(std::string_view name) const {
  if (const auto file = context_->files->script(name)) return PageFiles::textOf(*file);
  if (name == kSignInPage) return std::string(kSignInScript);
  throw Error(ErrorNumber::FileNotFound, kEngineSource, "There is no script " + std::string(name));
}

// What stands before the text stands on its first line, so that positions are those of the file.
void PageEngine::compile(const std::string& name) {
  const std::string known = version(name);
  const ScriptOutcome outcome = engine_.run("__take(function (exports) {" + source(name) + "\n});", name);
  if (outcome.failure) throw Error(ErrorNumber::InvalidCall, kEngineSource, outcome.failure->text());
  versions_[name] = known;
}

void PageEngine::answerFailure(const ScriptFailure& failure) {
  answer_ = plainAnswer(500, "The page failed.");
  run_->failure = failure.text();
}

PageAnswer PageEngine::run(const PageRequest& request, PageRun& run) {
  const auto start = std::chrono::steady_clock::now();
  const auto libraryBefore = engine_.libraryTime();
  const DatabaseAccount before = database_;
  request_ = &request;
  run_ = &run;
  answer_ = {};
  // Names of pages hold no quotes.
  const ScriptOutcome outcome = engine_.run("__serve('" + request.page + "')", "host");
  if (outcome.failure) answerFailure(*outcome.failure);
  dropTransaction();
  alone_ = {};
  run.total = std::chrono::steady_clock::now() - start;
  run.database = database_.time - before.time;
  run.library = std::max(engine_.libraryTime() - libraryBefore - run.database, std::chrono::nanoseconds{0});
  run.statements = database_.statements - before.statements;
  run.discarded = database_.discarded - before.discarded;
  run.scriptMemory = engine_.memoryInUse();
  request_ = nullptr;
  run_ = nullptr;
  return std::move(answer_);
}

// Until the page ends.
void PageEngine::workAlone() {
  if (alone_.owns_lock()) return;
  alone_ = std::unique_lock(*context_->alone, kLongestQueue);
  if (!alone_.owns_lock())
    throw Error(ErrorNumber::InvalidCall, kEngineSource, "Another page has worked alone for too long");
}

// A transaction that outlived its request would hold the database's lock until the next click.
void PageEngine::dropTransaction() {
  const ApartmentScope scope(apartment_);
  apartment_->sharedCommand.clear();
  apartment_->sharedConnection = nullptr;
}

void PageEngine::setKept(std::string_view json) {
  const ScriptOutcome outcome =
      engine_.run("__keep(decodeURIComponent('" + percentEncoded(json) + "'))", "host");
  if (outcome.failure) throw Error(ErrorNumber::InvalidCall, kEngineSource, outcome.failure->text());
  kept_ = json;
}

void PageEngine::setReplay(std::optional<Date> moment) {
  writing_ = moment ? Writing::Discarded : Writing::Real;
  apartment_->clock = moment ? std::make_shared<FixedClock>(*moment) : usualClock_;
}

}  // namespace ondrel
