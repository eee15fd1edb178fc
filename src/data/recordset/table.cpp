#include "data/recordset/table.h"

#include <fmt/format.h>

#include <algorithm>
#include <bit>
#include <cstring>

#include "base/text.h"
#include "data/recordset/view.h"

namespace ondrel {
namespace {

// Of the first and the last letters of a name, without regard to the bit that tells small letters from
// capitals: columns of one table rarely share both.
size_t nameHash(std::string_view name) {
  constexpr std::uint64_t kSmall = 0x2020202020202020;
  std::uint64_t head = 0, tail = 0;
  if (name.size() >= sizeof head) {
    std::memcpy(&head, name.data(), sizeof head);
    std::memcpy(&tail, name.data() + name.size() - sizeof tail, sizeof tail);
  } else {
    for (const char c : name) head = head << 8 | static_cast<unsigned char>(c);
  }
  // An accented letter has its case in another bit, so only the length tells such names apart.
  if (((head | tail) & 0x8080808080808080) != 0) return name.size();
  return (((head | kSmall) ^ (tail | kSmall) * 3 ^ name.size()) * 0x9E3779B97F4A7C15) >> 40;
}

bool sameName(std::string_view a, std::string_view b) {
  return a.size() == b.size() && (std::memcmp(a.data(), b.data(), a.size()) == 0 || equalsIgnoringCase(a, b));
}

}  // namespace

void failColumn(std::string_view name) {
  throw Error(ErrorNumber::ItemNotFound, "Recordset", fmt::format("The table has no column \"{}\"", name));
}

void Table::addColumn(std::string_view name, FieldType type, int size, bool nullable) {
  columns_.emplace_back(name, type, size, nullable);
  columns_.back().resize(alive_.size());
  names_.assign(std::bit_ceil(columns_.size() * 4), -1);
  for (size_t index = 0; index < columns_.size(); ++index) {
    size_t slot = nameHash(columns_[index].name) & (names_.size() - 1);
    while (names_[slot] >= 0) slot = (slot + 1) & (names_.size() - 1);
    names_[slot] = static_cast<std::int16_t>(index);
  }
}

int Table::find(std::string_view name) const {
  if (names_.empty()) return -1;
  for (size_t slot = nameHash(name) & (names_.size() - 1); names_[slot] >= 0;
       slot = (slot + 1) & (names_.size() - 1))
    if (sameName(column(names_[slot]).name, name)) return names_[slot];
  return -1;
}

size_t Table::prepareRow() {
  if (places_ == alive_.size()) makeRoom();
  return places_;
}

void Table::completeRow(const View* maker) {
  alive_[places_] = 1;
  serials_[places_] = ++lastSerial_;
  ++places_;
  for (View* view : views_)
    if (view != maker) view->noteRowAdded();
}

void Table::abandonRow() {
  for (ColumnStore& column : columns_) column.reset(places_);
}

void Table::removeRow(size_t row) {
  alive_[row] = 0;
  ++dead_;
  for (View* view : views_) view->noteRowRemoved(row);
  for (; places_ > 0 && !alive_[places_ - 1]; --dead_) {
    --places_;
    for (ColumnStore& column : columns_) column.reset(places_);
  }
}

void Table::write(size_t row, int column, const Variant& value) {
  columns_[static_cast<size_t>(column)].write(row, value);
  for (View* view : views_) view->noteWrite(row, column);
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
  for (View* view : views_) view->noteRowsMoved(moved);
}

void Table::resize(size_t places) {
  for (ColumnStore& column : columns_) column.resize(places);
  alive_.resize(places);
  serials_.resize(places);
}

}  // namespace ondrel
