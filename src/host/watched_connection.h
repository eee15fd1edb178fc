#pragma once

#include <atomic>
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
  std::uint64_t discarded = 0;  // of them, in transactions that were broken off
};

// Connections of a host that are open at the moment.
using OpenConnections = std::shared_ptr<std::atomic<size_t>>;

enum class Writing {
  Real,
  Discarded,  // what is written is seen by the connection itself and gone when it closes
};

// Passes everything on to a connection, adds up what it does, and tells before a commit; what `beforeCommit`
// raises prevents it.
class WatchedConnection : public Connection {
 public:
  WatchedConnection(std::unique_ptr<Connection> connection, DatabaseAccount& use, OpenConnections open,
                    Writing writing, std::function<void()> beforeCommit)
      : connection_(std::move(connection)),
        use_(use),
        open_(std::move(open)),
        writing_(writing),
        beforeCommit_(std::move(beforeCommit)) {
    ++*open_;
  }
  ~WatchedConnection() override {
    const Timer timer(use_);
    discard();
    connection_.reset();
    --*open_;
  }

  void setCommandTimeout(int seconds) override { connection_->setCommandTimeout(seconds); }
  void open() override {
    const Timer timer(use_);
    connection_->open();
    if (writing_ == Writing::Discarded) connection_->begin();
  }
  void begin() override {
    const Timer timer(use_);
    if (writing_ == Writing::Discarded) return;
    connection_->begin();
    isOpen_ = true;
  }
  void commit() override {
    if (writing_ == Writing::Discarded) return;
    const Timer timer(use_);
    beforeCommit_();
    connection_->commit();
    uncommitted_ = 0;
    isOpen_ = false;
  }
  void execute(std::string_view sql) override {
    ++use_.statements;
    const Timer timer(use_);
    connection_->execute(sql);
    if (isOpen_) ++uncommitted_;
  }
  RecordsetRef query(std::string_view sql) override {
    ++use_.statements;
    const Timer timer(use_);
    return connection_->query(sql);
  }
  void close() override {
    const Timer timer(use_);
    discard();
    connection_->close();
  }

 private:
  void discard() {
    use_.discarded += std::exchange(uncommitted_, 0);
    isOpen_ = false;
  }

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
  OpenConnections open_;
  Writing writing_;
  bool isOpen_ = false;            // a transaction
  std::uint64_t uncommitted_ = 0;  // statements in it that were run
  std::function<void()> beforeCommit_;
};

}  // namespace ondrel
