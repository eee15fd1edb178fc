#include "data/recordset/table.h"

#include <algorithm>

namespace ondrel {
void Table::addColumn(std::string_view name, FieldType type, int size, bool nullable) {
  add(name, type, size, nullable);
  columns_.back().resize(alive_.size());
}

std::unique_ptr<Filter> Table::takeFilter() {
  if (unusedFilters_.empty()) return std::make_unique<Filter>();
  std::unique_ptr<Filter> filter = std::move(unusedFilters_.back());
  unusedFilters_.pop_back();
  return filter;
}

void Table::giveBack(std::unique_ptr<Filter> filter) {
  if (filter) unusedFilters_.push_back(std::move(filter));
}

size_t Table::prepareRow() {
  if (places_ == alive_.size()) makeRoom();
  return places_;
}

void Table::completeRow(const TableObserver* maker) {
  alive_[places_] = 1;
  serials_[places_] = ++lastSerial_;
  ++places_;
  for (TableObserver* observer : observers_)
    if (observer != maker) observer->noteRowAdded();
}

void Table::abandonRow() {
  for (ColumnStore& column : columns_) column.reset(places_);
}

void Table::removeRow(size_t row) {
  alive_[row] = 0;
  ++dead_;
  for (TableObserver* observer : observers_) observer->noteRowRemoved(row);
  for (; places_ > 0 && !alive_[places_ - 1]; --dead_) {
    --places_;
    for (ColumnStore& column : columns_) column.reset(places_);
  }
}

std::optional<size_t> Table::rowOfSerial(std::int32_t serial) const {
  const auto end = serials_.begin() + static_cast<std::ptrdiff_t>(places_);
  const auto found = std::lower_bound(serials_.begin(), end, serial);
  if (found == end || *found != serial) return std::nullopt;
  const auto row = static_cast<size_t>(found - serials_.begin());
  if (!alive_[row]) return std::nullopt;
  return row;
}

void Table::makeRoom() {
  if (dead_ > alive_.size() / 4)
    dropGaps();
  else
    resize(std::max(alive_.size() * 2, kBlock));
}

void Table::dropGaps() {
  std::vector<std::int32_t> moved(places_, -1);
  size_t kept = 0;
  for (size_t row = 0; row < places_; ++row) {
    if (!alive_[row]) continue;
    moved[row] = static_cast<std::int32_t>(kept);
    if (kept != row) {
      for (ColumnStore& column : columns_) column.move(row, kept);
      serials_[kept] = serials_[row];
    }
    ++kept;
  }
  for (size_t row = kept; row < places_; ++row)
    for (ColumnStore& column : columns_) column.reset(row);
  std::fill(alive_.begin(), alive_.begin() + static_cast<std::ptrdiff_t>(kept), std::uint8_t{1});
  std::fill(alive_.begin() + static_cast<std::ptrdiff_t>(kept), alive_.end(), std::uint8_t{0});
  places_ = kept;
  dead_ = 0;
  for (TableObserver* observer : observers_) observer->noteRowsMoved(moved);
}

void Table::resize(size_t places) {
  for (ColumnStore& column : columns_) column.resize(places);
  alive_.resize(places);
  serials_.resize(places);
}

}  // namespace ondrel
