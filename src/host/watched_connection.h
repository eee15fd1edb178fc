#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <utility>

#include "data/connection.h"

namespace ondrel {

// What the database did for one session.
struct DatabaseAccount {
  std::chrono::nanoseconds time{0};
  std::uint64_t statements = 0;
  std::uint64_t commits = 0;
};

// Passes everything on to a connection, adds up what it does, and asks before a commit; what `beforeCommit`
// raises prevents it.
class WatchedConnection : public Connection {
 public:
  WatchedConnection(std::unique_ptr<Connection> connection, DatabaseAccount& use,
                    std::function<void()> beforeCommit)
      : connection_(std::move(connection)), use_(use), beforeCommit_(std::move(beforeCommit)) {}
  ~WatchedConnection() override {
    const Timer timer(use_);
    connection_.reset();
  }

  void setCommandTimeout(int seconds) override { connection_->setCommandTimeout(seconds); }
  void open() override {
    const Timer timer(use_);
    connection_->open();
  }
  void begin() override {
    const Timer timer(use_);
    connection_->begin();
  }
  void commit() override {
    beforeCommit_();
    const Timer timer(use_);
    connection_->commit();
    ++use_.commits;
  }
  void execute(std::string_view sql) override {
    ++use_.statements;
    const Timer timer(use_);
    connection_->execute(sql);
  }
  RecordsetRef query(std::string_view sql) override {
    ++use_.statements;
    const Timer timer(use_);
    return connection_->query(sql);
  }
  void close() override {
    const Timer timer(use_);
    connection_->close();
  }

 private:
  struct Timer {
    explicit Timer(DatabaseAccount& account) : use(account) {}
    ~Timer() { use.time += std::chrono::steady_clock::now() - start; }
    Timer(const Timer&) = delete;
    Timer& operator=(const Timer&) = delete;

    DatabaseAccount& use;
    std::chrono::steady_clock::time_point start = std::chrono::steady_clock::now();
  };

  std::unique_ptr<Connection> connection_;
  DatabaseAccount& use_;  // outlives the connection
  std::function<void()> beforeCommit_;
};

}  // namespace ondrel
