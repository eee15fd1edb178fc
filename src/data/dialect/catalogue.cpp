#include "data/dialect/catalogue.h"

#include "base/text.h"

namespace ondrel::sql {

bool Catalogue::isKnown() const {
  const std::scoped_lock guard(mutex_);
  return isKnown_;
}

std::shared_ptr<const Schema> Catalogue::schema() const {
  const std::scoped_lock guard(mutex_);
  return schema_;
}

void Catalogue::setSchema(std::shared_ptr<const Schema> schema) {
  const std::scoped_lock guard(mutex_);
  schema_ = std::move(schema);
  isKnown_ = true;
}

void Catalogue::forgetSchema() {
  const std::scoped_lock guard(mutex_);
  isKnown_ = false;
}

void Catalogue::addTable(TableDefinition table) {
  const std::scoped_lock guard(mutex_);
  auto changed = std::make_shared<Schema>(*schema_);
  changed->add(std::move(table));
  schema_ = std::move(changed);
}

void Catalogue::removeTable(std::string_view name) {
  const std::scoped_lock guard(mutex_);
  auto changed = std::make_shared<Schema>(*schema_);
  changed->remove(name);
  schema_ = std::move(changed);
}

std::shared_ptr<const Procedure> Catalogue::procedure(std::string_view name) const {
  {
    const std::scoped_lock guard(mutex_);
    const auto found = replaced_.find(toLower(name));
    if (found != replaced_.end()) return found->second;
  }
  // The store's procedures live as long as the program.
  return {std::shared_ptr<const Procedure>(), storeProcedures().find(name)};
}

void Catalogue::replaceProcedure(Procedure procedure) {
  const std::scoped_lock guard(mutex_);
  std::string key = toLower(procedure.name);
  replaced_[std::move(key)] = std::make_shared<const Procedure>(std::move(procedure));
}

void Catalogue::restoreProcedures() {
  const std::scoped_lock guard(mutex_);
  replaced_.clear();
}

}  // namespace ondrel::sql
