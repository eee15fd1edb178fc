#include "data/odbc/odbc_connection.h"

#include <functional>
#include <map>
#include <mutex>
#include <tuple>

#include "base/text.h"
#include "data/odbc/odbc_target.h"
#include "data/odbc/this_machine.h"

namespace ondrel {
namespace {

using TargetRef = std::shared_ptr<const OdbcTarget>;

// A program has few connection strings and opens connections all the time.
TargetRef targetOf(const ConnectionSettings& settings) {
  static std::mutex mutex;
  static std::map<std::tuple<std::string, std::string, std::string>, TargetRef> known;
  const std::scoped_lock guard(mutex);
  TargetRef& target = known[{settings.connectionString, settings.user, settings.password}];
  if (!target) target = std::make_shared<OdbcTarget>(odbcTarget(settings, thisMachine()));
  return target;
}

// True only for what is certain to change nothing, data that looks like a change aside.
bool isPlainRead(std::string_view sql) {
  const std::string text = toLower(trim(sql));
  if (!text.starts_with("select")) return false;
  for (const std::string_view change : {"insert", "update", "delete", "merge", "exec", "into", "tran",
                                        "commit", "set ", "drop", "openquery", "openrowset", "truncate"})
    if (text.find(change) != std::string::npos) return false;
  return true;
}

class OdbcConnection : public Connection {
 public:
  OdbcConnection(const ConnectionSettings& settings, std::shared_ptr<OdbcPool> pool)
      : settings_(settings), pool_(std::move(pool)) {}
  ~OdbcConnection() override { close(); }

  void setCommandTimeout(int seconds) override {
    timeout_ = seconds;
    if (loan_.session) loan_.session->setTimeout(seconds);
  }

  void open() override {
    if (open_) throw Error(ErrorNumber::ObjectOpen, kOdbcSource, "The connection is open already");
    target_ = targetOf(settings_);
    borrow(false);
    open_ = true;
  }

  void begin() override {
    onceMoreAfterALoss([this] {
      session().begin();
      return RecordsetRef();
    });
    inTransaction_ = true;
  }

  void commit() override {
    session().commit();
    inTransaction_ = false;
  }

  void execute(std::string_view sql) override { run(sql, false); }
  RecordsetRef query(std::string_view sql) override { return run(sql, true); }

  void close() override {
    giveBack();
    open_ = inTransaction_ = false;
  }

 private:
  using Action = std::function<RecordsetRef()>;

  RecordsetRef run(std::string_view sql, bool fetch) {
    const Action send = [&] { return session().run(sql, fetch); };
    return !inTransaction_ && isPlainRead(sql) ? onceMoreAfterALoss(send) : noticingALoss(send);
  }

  // A session that lay in the pool may have died there, as all do when the server is started anew. What changes
  // nothing, a begin or a read, is then sent once more on a new one; nothing else ever is.
  RecordsetRef onceMoreAfterALoss(const Action& action) {
    try {
      return noticingALoss(action);
    } catch (const Error& error) {
      const bool isDead = !loan_.session || loan_.session->isLost();
      if (!loan_.reused || !isDead || error.code() == kTimeoutExpired) throw;
    }
    giveBack();
    borrow(true);
    return noticingALoss(action);
  }

  // With one session its idle neighbours are lost.
  RecordsetRef noticingALoss(const Action& action) {
    try {
      return action();
    } catch (const Error&) {
      if (loan_.session && loan_.session->isLost()) pool_->closeIdle(*target_);
      throw;
    }
  }

  // A lost session is replaced, unless a transaction went with it.
  TimedSession& session() {
    if (!open_)
      throw Error(ErrorNumber::ObjectClosed, kOdbcSource,
                  "Operation is not allowed when the connection is closed");
    if (!inTransaction_ && loan_.session && loan_.session->isLost()) giveBack();
    if (!loan_.session) borrow(false);
    return *loan_.session;
  }

  void borrow(bool fresh) {
    loan_ = pool_->borrow(*target_, fresh);
    loan_.session->setTimeout(timeout_);
  }

  void giveBack() {
    if (loan_.session) pool_->giveBack(*target_, std::move(loan_.session));
    loan_ = {};
  }

  ConnectionSettings settings_;
  std::shared_ptr<OdbcPool> pool_;
  TargetRef target_;
  OdbcPool::Loan loan_;
  bool open_ = false;
  bool inTransaction_ = false;
  int timeout_ = kOdbcTimeoutSeconds;
};

}  // namespace

std::unique_ptr<Connection> connectOdbc(const ConnectionSettings& settings) {
  return connectOdbc(settings, OdbcPool::ofProcess());
}

std::unique_ptr<Connection> connectOdbc(const ConnectionSettings& settings, std::shared_ptr<OdbcPool> pool) {
  return std::make_unique<OdbcConnection>(settings, std::move(pool));
}

}  // namespace ondrel
