#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string_view>
#include <vector>

#include "data/recordset/filter.h"
#include "data/recordset/table_columns.h"
#include "data/recordset/table_observer.h"

namespace ondrel {

// Columns and rows that any number of views share. A row is told by its place in the columns; places
// follow the order of insertion. A deleted row keeps its place, marked in alive(), until room is needed.
class Table : public TableColumns {
 public:
  void addColumn(std::string_view name, FieldType type, int size, bool nullable);

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
  void completeRow(const TableObserver* maker);
  void abandonRow();
  void removeRow(size_t row);
  // To be called after a cell of a row was written to.
  void noteWrite(size_t row, int column) {
    for (TableObserver* observer : observers_) observer->noteWrite(row, column);
  }

  // The number that a row keeps for as long as it exists.
  std::int32_t serial(size_t row) const { return serials_[row]; }
  std::optional<size_t> rowOfSerial(std::int32_t serial) const;

  void attach(TableObserver* observer) { observers_.push_back(observer); }
  void detach(TableObserver* observer) { std::erase(observers_, observer); }

  FilterCache& filters() { return filters_; }
  // A filter that no view uses, and the way back for one that is not used any more. Its buffers have
  // their size already.
  std::unique_ptr<Filter> takeFilter();
  void giveBack(std::unique_ptr<Filter> filter);

 private:
  void makeRoom();
  void dropGaps();
  void resize(size_t places);

  std::vector<std::uint8_t> alive_;
  std::vector<std::int32_t> serials_;
  std::vector<TableObserver*> observers_;
  size_t places_ = 0;
  size_t dead_ = 0;
  std::int32_t lastSerial_ = 0;
  FilterCache filters_;
  std::vector<std::unique_ptr<Filter>> unusedFilters_;
};

}  // namespace ondrel
