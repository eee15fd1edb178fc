#include "data/odbc/odbc_pool.h"

#include <fmt/format.h>

namespace ondrel {

OdbcPool::OdbcPool(std::function<Clock::time_point()> now)
    : now_(std::move(now)), environment_(std::make_shared<OdbcHandle>(SQL_HANDLE_ENV, nullptr)) {
  SQLSetEnvAttr(environment_->get(), SQL_ATTR_ODBC_VERSION, reinterpret_cast<SQLPOINTER>(SQL_OV_ODBC3), 0);
}

// Never destroyed: the drivers may be gone before the end of the process.
std::shared_ptr<OdbcPool> OdbcPool::ofProcess() {
  static auto* pool = new std::shared_ptr<OdbcPool>(std::make_shared<OdbcPool>());
  return *pool;
}

OdbcPool::Loan OdbcPool::borrow(const OdbcTarget& target, bool fresh) {
  Sessions closing;  // outside of the lock: closing may take a while
  Loan loan = take(target, fresh, closing);
  closing.clear();
  if (loan.session && !loan.session->isLost()) return loan;
  loan = {};
  try {
    return {std::make_unique<TimedSession>(environment_, target), false};
  } catch (...) {
    const std::scoped_lock guard(mutex_);
    leave(groups_[target.text]);
    throw;
  }
}

// Counts the borrower in; the loan has no session where a new one is to be made.
OdbcPool::Loan OdbcPool::take(const OdbcTarget& target, bool fresh, Sessions& closing) {
  std::unique_lock guard(mutex_);
  Group& group = groups_[target.text];
  const auto limit = Clock::now() + std::chrono::seconds(target.pool.waitSeconds);
  for (;;) {
    removeExpired(closing);
    if (!group.idle.empty()) {
      Loan loan{std::move(group.idle.back().session), true};
      group.idle.pop_back();
      ++group.inUse;
      if (!fresh) return loan;
      closing.push_back(std::move(loan.session));
      return {};
    }
    if (!target.pool.pooled || group.inUse < target.pool.size) {
      ++group.inUse;
      return {};
    }
    if (returned_.wait_until(guard, limit) == std::cv_status::timeout)
      throw Error(ErrorNumber::ConnectionFailed, kOdbcSource,
                  fmt::format("All {} connections to the database are in use", target.pool.size));
  }
}

void OdbcPool::giveBack(const OdbcTarget& target, std::unique_ptr<TimedSession> session) {
  bool useful = false;
  try {
    useful = session->reset() && target.pool.pooled && target.pool.idleSeconds > 0;
  } catch (const Error&) {
    useful = false;  // it cannot be readied, so it is closed
  }
  if (!useful) session.reset();
  Sessions closing;
  const std::scoped_lock guard(mutex_);
  Group& group = groups_[target.text];
  if (useful)
    group.idle.push_back({std::move(session), now_() + std::chrono::seconds(target.pool.idleSeconds)});
  leave(group);
  removeExpired(closing);
}

void OdbcPool::closeIdle(const OdbcTarget& target) {
  Sessions closing;
  const std::scoped_lock guard(mutex_);
  for (Idle& idle : groups_[target.text].idle) closing.push_back(std::move(idle.session));
  groups_[target.text].idle.clear();
}

int OdbcPool::idleCount(const OdbcTarget& target) {
  const std::scoped_lock guard(mutex_);
  return static_cast<int>(groups_[target.text].idle.size());
}

void OdbcPool::leave(Group& group) {
  --group.inUse;
  returned_.notify_all();
}

void OdbcPool::removeExpired(Sessions& closing) {
  const Clock::time_point now = now_();
  for (auto& [text, group] : groups_) {
    for (Idle& idle : group.idle)
      if (idle.until <= now) closing.push_back(std::move(idle.session));
    std::erase_if(group.idle, [](const Idle& idle) { return !idle.session; });
  }
}

}  // namespace ondrel
