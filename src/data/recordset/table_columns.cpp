#include "data/recordset/table_columns.h"

#include <fmt/format.h>

namespace ondrel {

void failColumn(std::string_view name) {
  throw Error(ErrorNumber::ItemNotFound, "Recordset", fmt::format("The table has no column \"{}\"", name));
}

void TableColumns::add(std::string_view name, FieldType type, int size, bool nullable) {
  columns_.emplace_back(name, type, size, nullable);
  columnCount_ = static_cast<int>(columns_.size());
  names_.add(name);
}

}  // namespace ondrel
