#pragma once

#include <chrono>
#include <condition_variable>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <thread>
#include <vector>

namespace ondrel {

enum class RunOutcome {
  Done,
  Full,       // too many wait, in the lane or altogether
  Ended,      // the lane was closed before the work's turn came
  TimeLimit,  // the work is still at it; its lane is closed and its runner given up
};

struct RunLimits {
  size_t waitingInLane = 8;
  size_t waiting = 256;
  std::chrono::milliseconds time{30'000};  // from the moment the work begins
};

struct RunnersState;
struct Errand;

// The order of one session: its work is done piece by piece, as it came.
class Lane {
 private:
  friend class Runners;
  friend struct RunnersState;

  std::mutex mutex_;
  std::deque<std::shared_ptr<Errand>> waiting_;
  bool isBusy_ = false;
  bool isClosed_ = false;
};

using LaneRef = std::shared_ptr<Lane>;

// Threads that do the sessions' work: many lanes side by side, one piece of a lane at a time.
//
// Nothing can break a script that neither calls the library nor needs memory. When one passes its time the
// waiting caller is released, another runner takes the place, and the lost one goes on at the lowest
// priority until it comes back, if ever.
class Runners {
 public:
  Runners(size_t count, RunLimits limits);
  // Waits for the work at hand, but not for lost runners.
  ~Runners();
  Runners(const Runners&) = delete;
  Runners& operator=(const Runners&) = delete;

  // Runs `work` in its turn and waits for it. The work must own what it uses: after TimeLimit it goes on.
  // It must not throw.
  RunOutcome run(const LaneRef& lane, std::function<void()> work);
  // What waits in the lane will not be run, nor what comes later.
  void close(const LaneRef& lane);

  size_t busy() const;
  size_t waiting() const;
  // Runners that passed their time and have not come back.
  size_t lost() const;

 private:
  std::shared_ptr<RunnersState> state_;
};

}  // namespace ondrel
