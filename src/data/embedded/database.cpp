#include "data/embedded/database.h"

#include "data/embedded/stored_schema.h"

namespace ondrel::sql {

std::unique_ptr<Session> Database::borrow() {
  std::unique_ptr<Session> session;
  std::unique_lock guard(mutex_);
  if (idle_.empty()) {
    guard.unlock();
    session = std::make_unique<Session>(catalogue_, file_);
    guard.lock();
  } else {
    session = std::move(idle_.back());
    idle_.pop_back();
  }
  if (!catalogue_.isKnown()) catalogue_.setSchema(readSchema(session->handle(), file_.path));
  session->useSchema(catalogue_.schema());
  return session;
}

void Database::giveBack(std::unique_ptr<Session> session) {
  session->rollback();
  const std::scoped_lock guard(mutex_);
  idle_.push_back(std::move(session));
}

void Database::closeSessions() {
  const std::scoped_lock guard(mutex_);
  idle_.clear();
}

}  // namespace ondrel::sql
