#include "data/odbc/call_thread.h"

#include <condition_variable>
#include <mutex>

namespace ondrel {

struct CallThread::Work {
  std::mutex mutex;
  std::condition_variable changed;
  std::function<void()> call;  // none when it is made
  bool isEnding = false;

  void serve() {
    std::unique_lock lock(mutex);
    for (;;) {
      changed.wait(lock, [this] { return call || isEnding; });
      if (!call) return;
      lock.unlock();
      call();
      lock.lock();
      call = nullptr;
      changed.notify_all();
    }
  }
};

CallThread::CallThread() : work_(std::make_shared<Work>()), thread_([work = work_] { work->serve(); }) {}

CallThread::~CallThread() {
  {
    const std::scoped_lock lock(work_->mutex);
    work_->isEnding = true;
  }
  work_->changed.notify_all();
  if (thread_.joinable()) thread_.join();
}

bool CallThread::run(std::function<void()> call, std::optional<std::chrono::milliseconds> time) {
  std::unique_lock lock(work_->mutex);
  work_->call = std::move(call);
  work_->changed.notify_all();
  const auto isMade = [this] { return !work_->call; };
  if (!time) return work_->changed.wait(lock, isMade), true;
  if (work_->changed.wait_for(lock, *time, isMade)) return true;
  work_->isEnding = true;
  thread_.detach();
  return false;
}

}  // namespace ondrel
