#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "data/recordset/column_names.h"
#include "data/recordset/column_store.h"

namespace ondrel {

// Error 3265 that names the column.
[[noreturn]] void failColumn(std::string_view name);

// The columns of a table: what a filter and a sort look at.
class TableColumns {
 public:
  // Rows are worked on in blocks: places come in multiples of this, those behind the last row unused.
  static constexpr size_t kBlock = 16;

  void reserveColumns(size_t count) { columns_.reserve(count); }
  int columnCount() const { return columnCount_; }
  const ColumnStore& column(int index) const { return columns_[static_cast<size_t>(index)]; }
  ColumnStore& column(int index) { return columns_[static_cast<size_t>(index)]; }
  // Position of a column by name without regard to case; -1 when there is none.
  int find(std::string_view name) const { return names_.find(name); }
  int find(std::string_view name, int guess) const { return names_.find(name, guess); }

  // Bytes for the results of a filter's steps.
  std::uint8_t* workingSpace(size_t size) const {
    if (workingSpace_.size() < size) workingSpace_.resize(size);
    return workingSpace_.data();
  }

 protected:
  TableColumns() = default;
  ~TableColumns() = default;
  void add(std::string_view name, FieldType type, int size, bool nullable);

  std::vector<ColumnStore> columns_;

 private:
  int columnCount_ = 0;
  ColumnNames names_;
  mutable std::vector<std::uint8_t> workingSpace_;
};

}  // namespace ondrel
