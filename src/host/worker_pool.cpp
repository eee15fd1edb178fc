#include "host/worker_pool.h"

#include <pthread.h>
#include <sched.h>

#include <algorithm>
#include <optional>

namespace ondrel {

using Moment = std::chrono::steady_clock::time_point;

// A piece of work on its way.
struct Task {
  std::function<void()> work;
  std::mutex mutex;
  std::condition_variable changed;
  std::optional<Moment> started;
  pthread_t worker{};
  std::optional<RunOutcome> outcome;

  void finish(RunOutcome result) {
    const std::lock_guard lock(mutex);
    if (!outcome) outcome = result;
    changed.notify_all();
  }
};

struct WorkerPoolState {
  RunLimits limits;
  std::mutex mutex;
  std::condition_variable changed;
  std::deque<TaskQueueRef> queues;  // those with work and nobody at it
  std::vector<std::thread> threads;
  size_t busy = 0;
  size_t waiting = 0;
  size_t lost = 0;
  bool isStopping = false;

  TaskQueueRef nextQueue();
  std::shared_ptr<Task> takeFrom(TaskQueue& queue);
  void release(const TaskQueueRef& queue);
};

TaskQueueRef WorkerPoolState::nextQueue() {
  std::unique_lock lock(mutex);
  changed.wait(lock, [this] { return isStopping || !queues.empty(); });
  if (queues.empty()) return nullptr;
  TaskQueueRef queue = std::move(queues.front());
  queues.pop_front();
  ++busy;
  return queue;
}

std::shared_ptr<Task> WorkerPoolState::takeFrom(TaskQueue& queue) {
  const std::lock_guard lock(queue.mutex_);
  if (queue.waiting_.empty()) return nullptr;
  std::shared_ptr<Task> task = std::move(queue.waiting_.front());
  queue.waiting_.pop_front();
  return task;
}

// Behind the others when it has more work.
void WorkerPoolState::release(const TaskQueueRef& queue) {
  const std::lock_guard lock(mutex);
  --busy;
  const std::lock_guard queueLock(queue->mutex_);
  queue->isBusy_ = !queue->waiting_.empty();
  if (!queue->isBusy_) return;
  queues.push_back(queue);
  changed.notify_one();
}

namespace {

void runTask(Task& task) {
  {
    const std::lock_guard lock(task.mutex);
    if (task.outcome) return;
    task.started = std::chrono::steady_clock::now();
    task.worker = pthread_self();
    task.changed.notify_all();
  }
  task.work();
  task.work = nullptr;
  task.finish(RunOutcome::Done);
}

// A lost worker ends when it comes back: another has taken its place.
void runQueues(const std::shared_ptr<WorkerPoolState>& state) {
  while (const TaskQueueRef queue = state->nextQueue()) {
    if (const auto task = state->takeFrom(*queue)) {
      {
        const std::lock_guard lock(state->mutex);
        --state->waiting;
      }
      runTask(*task);
      const std::lock_guard lock(task->mutex);
      if (task->outcome == RunOutcome::TimeLimit) {
        const std::lock_guard stateLock(state->mutex);
        --state->lost;
        return;
      }
    }
    state->release(queue);
  }
}

void addWorker(const std::shared_ptr<WorkerPoolState>& state) {
  state->threads.emplace_back([state] { runQueues(state); });
}

// Where the thread stands in the list of those that are waited for at the end, it is taken out.
void giveUp(const std::shared_ptr<WorkerPoolState>& state, pthread_t worker) {
  const sched_param idle{};
  pthread_setschedparam(worker, SCHED_IDLE, &idle);
  const std::lock_guard lock(state->mutex);
  --state->busy;
  ++state->lost;
  const auto thread = std::ranges::find_if(
      state->threads, [&](std::thread& each) { return pthread_equal(each.native_handle(), worker) != 0; });
  if (thread != state->threads.end()) {
    thread->detach();
    state->threads.erase(thread);
  }
  if (!state->isStopping) addWorker(state);
}

}  // namespace

WorkerPool::WorkerPool(size_t count, RunLimits limits) : state_(std::make_shared<WorkerPoolState>()) {
  state_->limits = limits;
  for (size_t k = 0; k < count; ++k) addWorker(state_);
}

WorkerPool::~WorkerPool() {
  std::vector<std::thread> threads;
  {
    const std::lock_guard lock(state_->mutex);
    state_->isStopping = true;
    threads.swap(state_->threads);
  }
  state_->changed.notify_all();
  for (std::thread& thread : threads) thread.join();
}

RunOutcome WorkerPool::run(const TaskQueueRef& queue, std::function<void()> work) {
  const auto task = std::make_shared<Task>();
  task->work = std::move(work);
  {
    const std::lock_guard lock(state_->mutex);
    const std::lock_guard queueLock(queue->mutex_);
    if (queue->isClosed_) return RunOutcome::Ended;
    if (state_->waiting >= state_->limits.waiting || queue->waiting_.size() >= state_->limits.waitingInQueue)
      return RunOutcome::Full;
    ++state_->waiting;
    queue->waiting_.push_back(task);
    if (!queue->isBusy_) {
      queue->isBusy_ = true;
      state_->queues.push_back(queue);
      state_->changed.notify_one();
    }
  }
  std::unique_lock lock(task->mutex);
  task->changed.wait(lock, [&] { return task->started || task->outcome; });
  if (task->outcome) return *task->outcome;
  if (task->changed.wait_until(lock, *task->started + state_->limits.time,
                               [&] { return task->outcome.has_value(); }))
    return *task->outcome;
  giveUp(state_, task->worker);
  task->outcome = RunOutcome::TimeLimit;
  lock.unlock();
  close(queue);
  return RunOutcome::TimeLimit;
}

void WorkerPool::close(const TaskQueueRef& queue) {
  std::deque<std::shared_ptr<Task>> waiting;
  {
    const std::lock_guard lock(state_->mutex);
    const std::lock_guard queueLock(queue->mutex_);
    queue->isClosed_ = true;
    waiting.swap(queue->waiting_);
    state_->waiting -= waiting.size();
  }
  for (const auto& task : waiting) task->finish(RunOutcome::Ended);
}

size_t WorkerPool::busy() const {
  const std::lock_guard lock(state_->mutex);
  return state_->busy;
}

size_t WorkerPool::waiting() const {
  const std::lock_guard lock(state_->mutex);
  return state_->waiting;
}

size_t WorkerPool::lost() const {
  const std::lock_guard lock(state_->mutex);
  return state_->lost;
}

}  // namespace ondrel
