#include "host/connections.h"

#include <sys/socket.h>

#include <algorithm>

namespace ondrel {
namespace {

thread_local bool isOneTooMany = false;

}  // namespace

// ---- the table

void ConnectionTable::enter(int socket, std::string address) {
  const std::lock_guard lock(mutex_);
  connections_[socket] = {std::move(address), std::chrono::steady_clock::now()};
}

void ConnectionTable::leave(int socket) {
  const std::lock_guard lock(mutex_);
  connections_.erase(socket);
}

void ConnectionTable::setWorking(int socket, bool isWorking) {
  const std::lock_guard lock(mutex_);
  Connection& connection = connections_.at(socket);
  connection.isWorking = isWorking;
  connection.since = std::chrono::steady_clock::now();
}

bool ConnectionTable::endWaiting() {
  const std::lock_guard lock(mutex_);
  std::map<std::string_view, int> waiting;
  for (const auto& [socket, each] : connections_)
    if (!each.isWorking && !each.isEnding) ++waiting[each.address];
  auto ended = connections_.end();
  const auto rank = [&](const Connection& each) {
    return std::pair(-waiting[each.address], each.since);  // most of an address first, then the longest
  };
  for (auto each = connections_.begin(); each != connections_.end(); ++each) {
    if (each->second.isWorking || each->second.isEnding) continue;
    if (ended == connections_.end() || rank(each->second) < rank(ended->second)) ended = each;
  }
  if (ended == connections_.end()) return false;
  ended->second.isEnding = true;
  ::shutdown(ended->first, SHUT_RDWR);
  return true;
}

size_t ConnectionTable::size() const {
  const std::lock_guard lock(mutex_);
  return connections_.size();
}

// ---- the threads

bool ConnectionThreads::isTooMany() {
  return isOneTooMany;
}

void ConnectionThreads::enqueue(std::function<void()> task) {
  {
    const std::lock_guard lock(mutex_);
    const bool hasThread = tasks_.size() < idle_ || threads_.size() < most_;
    if (hasThread || connections_.endWaiting()) {
      tasks_.push_back(std::move(task));
      if (tasks_.size() > idle_ && threads_.size() < most_) threads_.emplace_back([this] { serve(); });
      changed_.notify_one();
      return;
    }
  }
  isOneTooMany = true;
  task();
  isOneTooMany = false;
}

void ConnectionThreads::shutdown() {
  {
    const std::lock_guard lock(mutex_);
    isStopping_ = true;
  }
  changed_.notify_all();
  for (std::thread& thread : threads_) thread.join();
}

void ConnectionThreads::serve() {
  std::unique_lock lock(mutex_);
  while (true) {
    ++idle_;
    changed_.wait(lock, [this] { return isStopping_ || !tasks_.empty(); });
    --idle_;
    if (tasks_.empty()) return;
    const std::function<void()> task = std::move(tasks_.front());
    tasks_.pop_front();
    lock.unlock();
    task();
    lock.lock();
  }
}

}  // namespace ondrel
