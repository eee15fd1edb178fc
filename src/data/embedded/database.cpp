#include "data/embedded/database.h"

#include <fmt/format.h>

#include "base/text.h"
#include "data/embedded/database_files.h"

namespace ondrel::sql {

std::unique_ptr<Session> Database::borrow() {
  std::unique_ptr<Session> session;
  std::unique_lock guard(mutex_);
  if (idle_.empty()) {
    guard.unlock();
    session = std::make_unique<Session>(*this, file_);
    guard.lock();
  } else {
    session = std::move(idle_.back());
    idle_.pop_back();
  }
  if (!schemaRead_) schema_ = readSchema(session->handle(), file_.path);
  schemaRead_ = true;
  session->useSchema(schema_);
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

bool Database::isKnown() const {
  const std::scoped_lock guard(mutex_);
  return schemaRead_;
}

std::shared_ptr<const Schema> Database::schema() const {
  const std::scoped_lock guard(mutex_);
  return schema_;
}

void Database::setSchema(std::shared_ptr<const Schema> schema) {
  const std::scoped_lock guard(mutex_);
  schema_ = std::move(schema);
  schemaRead_ = true;
}

void Database::forgetSchema() {
  const std::scoped_lock guard(mutex_);
  schemaRead_ = false;
}

void Database::addTable(TableDefinition table) {
  const std::scoped_lock guard(mutex_);
  auto changed = std::make_shared<Schema>(*schema_);
  changed->add(std::move(table));
  schema_ = std::move(changed);
}

void Database::removeTable(std::string_view name) {
  const std::scoped_lock guard(mutex_);
  auto changed = std::make_shared<Schema>(*schema_);
  changed->remove(name);
  schema_ = std::move(changed);
}

std::shared_ptr<const Procedure> Database::procedure(std::string_view name) const {
  {
    const std::scoped_lock guard(mutex_);
    const auto found = replaced_.find(toLower(name));
    if (found != replaced_.end()) return found->second;
  }
  // The store's procedures live as long as the program.
  return {std::shared_ptr<const Procedure>(), storeProcedures().find(name)};
}

void Database::replaceProcedure(Procedure procedure) {
  const std::scoped_lock guard(mutex_);
  std::string key = toLower(procedure.name);
  replaced_[std::move(key)] = std::make_shared<const Procedure>(std::move(procedure));
}

void Database::restoreProcedures() {
  const std::scoped_lock guard(mutex_);
  replaced_.clear();
}

}  // namespace ondrel::sql
