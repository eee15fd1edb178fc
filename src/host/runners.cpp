#include "host/runners.h"

#include <pthread.h>
#include <sched.h>

#include <algorithm>
#include <optional>

namespace ondrel {

using Moment = std::chrono::steady_clock::time_point;

// A piece of work on its way.
struct Errand {
  std::function<void()> work;
  std::mutex mutex;
  std::condition_variable changed;
  std::optional<Moment> started;
  pthread_t runner{};
  std::optional<RunOutcome> outcome;

  void finish(RunOutcome result) {
    const std::lock_guard lock(mutex);
    if (!outcome) outcome = result;
    changed.notify_all();
  }
};

struct RunnersState {
  RunLimits limits;
  std::mutex mutex;
  std::condition_variable changed;
  std::deque<LaneRef> lanes;  // those with work and nobody at it
  std::vector<std::thread> threads;
  size_t busy = 0;
  size_t waiting = 0;
  size_t lost = 0;
  bool isStopping = false;

  LaneRef nextLane();
  std::shared_ptr<Errand> takeFrom(Lane& lane);
  void release(const LaneRef& lane);
};

LaneRef RunnersState::nextLane() {
  std::unique_lock lock(mutex);
  changed.wait(lock, [this] { return isStopping || !lanes.empty(); });
  if (lanes.empty()) return nullptr;
  LaneRef lane = std::move(lanes.front());
  lanes.pop_front();
  ++busy;
  return lane;
}

std::shared_ptr<Errand> RunnersState::takeFrom(Lane& lane) {
  const std::lock_guard lock(lane.mutex_);
  if (lane.waiting_.empty()) return nullptr;
  std::shared_ptr<Errand> errand = std::move(lane.waiting_.front());
  lane.waiting_.pop_front();
  return errand;
}

// Behind the others when it has more work.
void RunnersState::release(const LaneRef& lane) {
  const std::lock_guard lock(mutex);
  --busy;
  const std::lock_guard laneLock(lane->mutex_);
  lane->isBusy_ = !lane->waiting_.empty();
  if (!lane->isBusy_) return;
  lanes.push_back(lane);
  changed.notify_one();
}

namespace {

void runErrand(Errand& errand) {
  {
    const std::lock_guard lock(errand.mutex);
    if (errand.outcome) return;
    errand.started = std::chrono::steady_clock::now();
    errand.runner = pthread_self();
    errand.changed.notify_all();
  }
  errand.work();
  errand.work = nullptr;
  errand.finish(RunOutcome::Done);
}

// A lost runner ends when it comes back: another has taken its place.
void runLanes(const std::shared_ptr<RunnersState>& state) {
  while (const LaneRef lane = state->nextLane()) {
    if (const auto errand = state->takeFrom(*lane)) {
      {
        const std::lock_guard lock(state->mutex);
        --state->waiting;
      }
      runErrand(*errand);
      const std::lock_guard lock(errand->mutex);
      if (errand->outcome == RunOutcome::TimeLimit) {
        const std::lock_guard stateLock(state->mutex);
        --state->lost;
        return;
      }
    }
    state->release(lane);
  }
}

void addRunner(const std::shared_ptr<RunnersState>& state) {
  state->threads.emplace_back([state] { runLanes(state); });
}

// Where the thread stands in the list of those that are waited for at the end, it is taken out.
void giveUp(const std::shared_ptr<RunnersState>& state, pthread_t runner) {
  const sched_param idle{};
  pthread_setschedparam(runner, SCHED_IDLE, &idle);
  const std::lock_guard lock(state->mutex);
  --state->busy;
  ++state->lost;
  const auto thread = std::ranges::find_if(
      state->threads, [&](std::thread& each) { return pthread_equal(each.native_handle(), runner) != 0; });
  if (thread != state->threads.end()) {
    thread->detach();
    state->threads.erase(thread);
  }
  if (!state->isStopping) addRunner(state);
}

}  // namespace

Runners::Runners(size_t count, RunLimits limits) : state_(std::make_shared<RunnersState>()) {
  state_->limits = limits;
  for (size_t k = 0; k < count; ++k) addRunner(state_);
}

Runners::~Runners() {
  std::vector<std::thread> threads;
  {
    const std::lock_guard lock(state_->mutex);
    state_->isStopping = true;
    threads.swap(state_->threads);
  }
  state_->changed.notify_all();
  for (std::thread& thread : threads) thread.join();
}

RunOutcome Runners::run(const LaneRef& lane, std::function<void()> work) {
  const auto errand = std::make_shared<Errand>();
  errand->work = std::move(work);
  {
    const std::lock_guard lock(state_->mutex);
    const std::lock_guard laneLock(lane->mutex_);
    if (lane->isClosed_) return RunOutcome::Ended;
    if (state_->waiting >= state_->limits.waiting || lane->waiting_.size() >= state_->limits.waitingInLane)
      return RunOutcome::Full;
    ++state_->waiting;
    lane->waiting_.push_back(errand);
    if (!lane->isBusy_) {
      lane->isBusy_ = true;
      state_->lanes.push_back(lane);
      state_->changed.notify_one();
    }
  }
  std::unique_lock lock(errand->mutex);
  errand->changed.wait(lock, [&] { return errand->started || errand->outcome; });
  if (errand->outcome) return *errand->outcome;
  if (errand->changed.wait_until(lock, *errand->started + state_->limits.time,
                                 [&] { return errand->outcome.has_value(); }))
    return *errand->outcome;
  giveUp(state_, errand->runner);
  errand->outcome = RunOutcome::TimeLimit;
  lock.unlock();
  close(lane);
  return RunOutcome::TimeLimit;
}

void Runners::close(const LaneRef& lane) {
  std::deque<std::shared_ptr<Errand>> waiting;
  {
    const std::lock_guard lock(state_->mutex);
    const std::lock_guard laneLock(lane->mutex_);
    lane->isClosed_ = true;
    waiting.swap(lane->waiting_);
    state_->waiting -= waiting.size();
  }
  for (const auto& errand : waiting) errand->finish(RunOutcome::Ended);
}

size_t Runners::busy() const {
  const std::lock_guard lock(state_->mutex);
  return state_->busy;
}

size_t Runners::waiting() const {
  const std::lock_guard lock(state_->mutex);
  return state_->waiting;
}

size_t Runners::lost() const {
  const std::lock_guard lock(state_->mutex);
  return state_->lost;
}

}  // namespace ondrel
