#pragma once

#include <mutex>
#include <string>
#include <string_view>
#include <thread>
#include <utility>
#include <vector>

namespace ondrel {

// A stand-in for a server on the loopback, as far as a client of its wire sees it: login, batches,
// transaction requests. It records "login USER PASSWORD DATABASE", "encryption N", the batches, "<begin>",
// "<commit>" and "<rollback>". It has no encryption.
//
// | a batch holds   | the answer                                                       |
// |-----------------|------------------------------------------------------------------|
// | "types"         | a row of a column of each type, and one of Nulls                 |
// | "procedure"     | row counts and a message, then the number 1                      |
// | "missing"       | error 208                                                        |
// | "late"          | the number 1, then error 2627                                    |
// | "drop"          | none: the connection is closed                                   |
// | "last"          | the number 1, then the connection is closed                      |
// | "one"           | the number 1                                                     |
// | anything else   | a row count                                                      |
class WireServer {
 public:
  WireServer();
  ~WireServer();

  int port() const { return port_; }
  std::vector<std::string> take() {
    const std::scoped_lock guard(mutex_);
    return std::exchange(log_, {});
  }

 private:
  void serve(int connection);
  bool answerBatch(int connection, std::string_view sql);
  void note(std::string what) {
    const std::scoped_lock guard(mutex_);
    log_.push_back(std::move(what));
  }

  int listener_ = -1;
  int port_ = 0;
  std::thread acceptor_;
  std::vector<std::thread> threads_;
  std::mutex mutex_;
  std::vector<std::string> log_;
};

// Text of the "types" answer that comes in pieces.
std::string wireLongText();

}  // namespace ondrel
