#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string_view>
#include <vector>

#include "data/recordset/column_names.h"
#include "data/recordset/column_store.h"
#include "data/recordset/filter.h"

namespace ondrel {

class View;

// Error 3265 that names the column.
[[noreturn]] void failColumn(std::string_view name);

// Columns and rows that any number of views share. A row is told by its place in the columns; places
// follow the order of insertion. A deleted row keeps its place, marked in alive(), until room is needed.
class Table {
 public:
  // Rows are worked on in blocks: places come in multiples of this, those behind the last row unused.
  static constexpr size_t kBlock = 16;

  void addColumn(std::string_view name, FieldType type, int size, bool nullable);
  void reserveColumns(size_t count) { columns_.reserve(count); }
  int columnCount() const { return columnCount_; }
  const ColumnStore& column(int index) const { return columns_[static_cast<size_t>(index)]; }
  ColumnStore& column(int index) { return columns_[static_cast<size_t>(index)]; }
  // Position of a column by name without regard to case; -1 when there is none.
  int find(std::string_view name) const { return names_.find(name); }
  int find(std::string_view name, int guess) const { return names_.find(name, guess); }

  // Places in use, deleted rows included.
  size_t places() const { return places_; }
  size_t blocks() const { return (places_ + kBlock - 1) / kBlock; }
  bool hasGaps() const { return dead_ > 0; }
  // 1 for each place with a row, 0 for the others, up to the end of the last block.
  const std::uint8_t* alive() const { return alive_.data(); }

  // Makes room for so many more rows at once.
  void reserveRows(size_t rows) {
    if (places_ + rows > alive_.size()) resize((places_ + rows + kBlock - 1) / kBlock * kBlock);
  }
  // A row is made in two steps, so that one whose values do not fit never becomes part of the table:
  // the place that the next row will take, to be written to, and its completion.
  size_t prepareRow();
  void completeRow(const View* maker);
  void abandonRow();
  void removeRow(size_t row);
  // To be called after a cell of a row was written to.
  void noteWrite(size_t row, int column);

  // The number that a row keeps for as long as it exists.
  std::int32_t serial(size_t row) const { return serials_[row]; }
  std::optional<size_t> rowOfSerial(std::int32_t serial) const;

  void attach(View* view) { views_.push_back(view); }
  void detach(View* view) { std::erase(views_, view); }

  FilterCache& filters() { return filters_; }
  // A filter that no view uses, and the way back for one that is not used any more. Its buffers have
  // their size already.
  std::unique_ptr<Filter> takeFilter();
  void giveBack(std::unique_ptr<Filter> filter);
  // Bytes for the results of a filter's steps.
  std::uint8_t* workingSpace(size_t size) const {
    if (workingSpace_.size() < size) workingSpace_.resize(size);
    return workingSpace_.data();
  }

 private:
  void makeRoom();
  void dropGaps();
  void resize(size_t places);

  std::vector<ColumnStore> columns_;
  int columnCount_ = 0;
  ColumnNames names_;
  std::vector<std::uint8_t> alive_;
  std::vector<std::int32_t> serials_;
  std::vector<View*> views_;
  size_t places_ = 0;
  size_t dead_ = 0;
  std::int32_t lastSerial_ = 0;
  FilterCache filters_;
  std::vector<std::unique_ptr<Filter>> unusedFilters_;
  mutable std::vector<std::uint8_t> workingSpace_;
};

}  // namespace ondrel
