#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <thread>

namespace ondrel {

// A thread that makes the calls of one connection, so that whoever waits for an answer of a server can stop
// waiting: nothing breaks off a driver that reads from a server which is silent.
class CallThread {
 public:
  CallThread();
  // Waits for the thread unless it was given up; it then ends with the call at hand.
  ~CallThread();
  CallThread(const CallThread&) = delete;
  CallThread& operator=(const CallThread&) = delete;

  // Makes the call and waits for it, without end where no time is given. False after the time: the thread is
  // given up and the call goes on, so it must own what it uses. It must not throw.
  bool run(std::function<void()> call, std::optional<std::chrono::milliseconds> time);

 private:
  struct Work;

  std::shared_ptr<Work> work_;
  std::thread thread_;
};

}  // namespace ondrel
