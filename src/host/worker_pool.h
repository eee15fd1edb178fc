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
  Full,       // too many wait, in the queue or altogether
  Ended,      // the queue was closed before the work's turn came
  TimeLimit,  // the work is still at it; its queue is closed and its worker given up
};

struct RunLimits {
  size_t waitingInQueue = 8;
  size_t waiting = 256;
  std::chrono::milliseconds time{30'000};  // from the moment the work begins
};

struct WorkerPoolState;
struct Task;

// The order of one session: its work is done piece by piece, as it came.
class TaskQueue {
 private:
  friend class WorkerPool;
  friend struct WorkerPoolState;

  std::mutex mutex_;
  std::deque<std::shared_ptr<Task>> waiting_;
  bool isBusy_ = false;
  bool isClosed_ = false;
};

using TaskQueueRef = std::shared_ptr<TaskQueue>;

// Threads that do the sessions' work: many queues side by side, one piece of a queue at a time.
//
// Nothing can break a script that neither calls the library nor needs memory. When one passes its time the
// waiting caller is released, another worker takes the place, and the lost one goes on at the lowest
// priority until it comes back, if ever.
class WorkerPool {
 public:
  WorkerPool(size_t count, RunLimits limits);
  // Waits for the work at hand, but not for lost workers.
  ~WorkerPool();
  WorkerPool(const WorkerPool&) = delete;
  WorkerPool& operator=(const WorkerPool&) = delete;

  // Runs `work` in its turn and waits for it. The work must own what it uses: after TimeLimit it goes on.
  // It must not throw.
  RunOutcome run(const TaskQueueRef& queue, std::function<void()> work);
  // What waits in the queue will not be run, nor what comes later.
  void close(const TaskQueueRef& queue);

  size_t busy() const;
  size_t waiting() const;
  // WorkerPool that passed their time and have not come back.
  size_t lost() const;

 private:
  std::shared_ptr<WorkerPoolState> state_;
};

}  // namespace ondrel
