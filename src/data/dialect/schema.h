#pragma once

#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "data/dialect/types.h"

namespace ondrel::sql {

struct ColumnDefinition {
  std::string name;  // as declared
  ColumnType type;
  bool identity = false;
  bool computed = false;  // from other columns of the row; nothing writes it
  bool nullable = true;
};

struct TableDefinition {
  std::string name;
  std::vector<ColumnDefinition> columns;

  // Position of a column, whatever the case; -1 when there is none.
  int find(std::string_view column) const;
  int identityColumn() const;  // -1 when there is none
};

// Names and declared types of the tables: what the translation of a statement needs to know.
class Schema {
 public:
  void add(TableDefinition table);
  void remove(std::string_view table);
  const TableDefinition* find(std::string_view table) const;
  // In the order of their lower-cased names.
  const std::map<std::string, TableDefinition>& tables() const { return tables_; }

 private:
  std::map<std::string, TableDefinition> tables_;
};

}  // namespace ondrel::sql
