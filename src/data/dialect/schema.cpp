#include "data/dialect/schema.h"

#include "base/text.h"
#include "data/dialect/lexer.h"

namespace ondrel::sql {

int TableDefinition::find(std::string_view column) const {
  for (size_t k = 0; k < columns.size(); ++k)
    if (sameWord(columns[k].name, column)) return static_cast<int>(k);
  return -1;
}

int TableDefinition::identityColumn() const {
  for (size_t k = 0; k < columns.size(); ++k)
    if (columns[k].identity) return static_cast<int>(k);
  return -1;
}

void Schema::add(TableDefinition table) {
  std::string key = toLower(table.name);
  tables_[std::move(key)] = std::move(table);
}

void Schema::remove(std::string_view table) {
  tables_.erase(toLower(table));
}

const TableDefinition* Schema::find(std::string_view table) const {
  const auto found = tables_.find(toLower(table));
  return found == tables_.end() ? nullptr : &found->second;
}

}  // namespace ondrel::sql
