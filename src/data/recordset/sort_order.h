#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "data/recordset/table_columns.h"

namespace ondrel {

// The order of a sort text: "column [asc | desc], ...". Null comes before every value, text goes without
// regard to case, False before True. Equal rows stand in order of insertion.
class SortOrder {
 public:
  // Errors: 3265 for a column that the table does not have, 3001 for a text of another form; the order
  // is then as it was.
  void set(std::string_view text, const TableColumns& table);
  const std::string& text() const { return text_; }
  bool isEmpty() const { return keys_.empty(); }
  // As Filter::columns().
  std::uint64_t columns() const { return columns_; }

  void sort(const TableColumns& table, std::span<std::int32_t> rows) const;
  bool comesBefore(const TableColumns& table, std::int32_t a, std::int32_t b) const;

 private:
  void sortByInteger(const ColumnStore& column, std::span<std::int32_t> rows) const;

  struct Key {
    int column = 0;
    bool descending = false;
  };

  std::string text_;
  std::vector<Key> keys_;
  std::uint64_t columns_ = 0;
};

}  // namespace ondrel
