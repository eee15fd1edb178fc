#pragma once

#include <map>
#include <memory>
#include <mutex>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "data/odbc/odbc_connection.h"
#include "support/odbc_double/odbc_double.h"

namespace ondrel {

// A server of prepared answers. It records statements and what is done to connections: "<connect>",
// "<timeout 240>", "<autocommit off>", "<commit>", "<rollback>", "<reset>", "<disconnect>". A statement
// without an answer says that it changed rows. Any number of threads may use it.
class ScriptedServer : public ServerDouble {
 public:
  void answer(std::string sql, std::vector<ServerResult> results) {
    answers_[std::move(sql)] = std::move(results);
  }
  void refuseConnections(Failure reason) { refusal_ = std::move(reason); }
  void failCommits(Failure failure) { commitFailure_ = std::move(failure); }
  void failAutocommit(Failure failure) { autocommitFailure_ = std::move(failure); }
  // The connections that are there break; it shows when they are used next.
  void breakConnections() { broken_.insert(connections_.begin(), connections_.end()); }
  // The sessions fail at this statement as if the server went away.
  void breakAt(std::string sql) { breakingStatement_ = std::move(sql); }

  std::vector<std::string> take() {
    const std::scoped_lock guard(mutex_);
    return std::exchange(log_, {});
  }

  std::unique_ptr<ServerSession> connect(std::string_view, ServerMessage& reason) override;

 private:
  friend class ScriptedSession;
  void note(std::string step) { log_.push_back(std::move(step)); }

  std::mutex mutex_;
  std::map<std::string, std::vector<ServerResult>, std::less<>> answers_;
  Failure refusal_, commitFailure_, autocommitFailure_;
  std::string breakingStatement_;
  std::set<const ServerSession*> connections_, broken_;
  std::vector<std::string> log_;
};

class ScriptedSession : public ServerSession {
 public:
  explicit ScriptedSession(ScriptedServer& server) : server_(server) { server_.connections_.insert(this); }
  ~ScriptedSession() override {
    const std::scoped_lock guard(server_.mutex_);
    server_.note("<disconnect>");
    server_.connections_.erase(this);
    server_.broken_.erase(this);
  }

  std::vector<ServerResult> run(std::string_view sql) override {
    const std::scoped_lock guard(server_.mutex_);
    server_.note(std::string(sql));
    if (sql == server_.breakingStatement_) server_.broken_.insert(this);
    if (const Failure failure = loss())
      return {{.error = failure, .notes = {}, .columns = {}, .rows = {}, .fetchError = {}}};
    const auto found = server_.answers_.find(sql);
    return found == server_.answers_.end() ? std::vector<ServerResult>(1) : found->second;
  }
  Failure setAutocommit(bool on) override {
    return step(on ? "<autocommit on>" : "<autocommit off>", server_.autocommitFailure_);
  }
  Failure endTransaction(bool commit) override {
    return step(commit ? "<commit>" : "<rollback>", commit ? server_.commitFailure_ : std::nullopt);
  }
  void setTimeout(int seconds) override { note("<timeout " + std::to_string(seconds) + ">"); }
  void reset() override { note("<reset>"); }
  bool isDead() override {
    const std::scoped_lock guard(server_.mutex_);
    return dead_;
  }

 private:
  // As a driver says it first: a general error, with the dead connection to be asked for.
  Failure loss() {
    if (!server_.broken_.contains(this)) return std::nullopt;
    dead_ = true;
    return ServerMessage{"01000", 20006, "[FreeTDS][SQL Server]Write to the server failed"};
  }
  // Steps that a driver takes without asking the server.
  void note(std::string step) {
    const std::scoped_lock guard(server_.mutex_);
    server_.note(std::move(step));
  }
  Failure step(const std::string& name, const Failure& failure) {
    const std::scoped_lock guard(server_.mutex_);
    server_.note(name);
    const Failure lost = loss();
    return lost ? lost : failure;
  }

  ScriptedServer& server_;
  bool dead_ = false;
};

inline std::unique_ptr<ServerSession> ScriptedServer::connect(std::string_view, ServerMessage& reason) {
  const std::scoped_lock guard(mutex_);
  note("<connect>");
  if (!refusal_) return std::make_unique<ScriptedSession>(*this);
  reason = *refusal_;
  return nullptr;
}

}  // namespace ondrel
