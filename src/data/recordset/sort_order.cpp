#include "data/recordset/sort_order.h"

#include <fmt/format.h>

#include <algorithm>
#include <functional>
#include <limits>

#include "base/text.h"

namespace ondrel {
namespace {

template <class Value>
int order(Value a, Value b) {
  return (a > b) - (a < b);
}

int compareCells(const ColumnStore& column, size_t a, size_t b) {
  if (!column.present[a] || !column.present[b]) return order(column.present[a], column.present[b]);
  switch (column.storage) {
    case Storage::Integer:
      return order(column.integers[a], column.integers[b]);
    case Storage::Number:
    case Storage::Date:
      return order(column.numbers[a], column.numbers[b]);
    case Storage::Flag:
      return order(column.flags[a], column.flags[b]);
    case Storage::Text:
      break;
  }
  return compareIgnoringCase(column.texts[a], column.texts[b]);
}

[[noreturn]] void failSort(std::string_view text, std::string_view word) {
  throw Error(ErrorNumber::InvalidArgument, "Recordset",
              fmt::format("Sort \"{}\" is not understood at \"{}\"", text, word));
}

// The name and the direction of one entry; the name in brackets may have blanks.
std::pair<std::string_view, std::string_view> splitEntry(std::string_view entry) {
  if (entry.starts_with('[')) {
    const size_t end = entry.find(']');
    if (end != std::string_view::npos) return {entry.substr(1, end - 1), trim(entry.substr(end + 1))};
  }
  const size_t end = std::min(entry.find(' '), entry.size());
  return {entry.substr(0, end), trim(entry.substr(end))};
}

}  // namespace

void SortOrder::set(std::string_view text, const TableColumns& table) {
  if (text == text_) return;
  std::vector<Key> keys;
  std::uint64_t columns = 0;
  for (std::string_view rest = trim(text); !rest.empty();) {
    const size_t comma = std::min(rest.find(','), rest.size());
    const auto [name, direction] = splitEntry(trim(rest.substr(0, comma)));
    const bool descending = equalsIgnoringCase(direction, "desc");
    if (name.empty() || !(descending || direction.empty() || equalsIgnoringCase(direction, "asc")))
      failSort(text, direction.empty() ? rest : direction);
    const int column = table.find(name);
    if (column < 0) failColumn(name);
    keys.push_back({column, descending});
    columns |= std::uint64_t{1} << (column % 64);
    rest.remove_prefix(std::min(comma + 1, rest.size()));
  }
  text_ = text;
  keys_ = std::move(keys);
  columns_ = columns;
}

bool SortOrder::comesBefore(const TableColumns& table, std::int32_t a, std::int32_t b) const {
  for (const Key& key : keys_) {
    const int order = compareCells(table.column(key.column), static_cast<size_t>(a), static_cast<size_t>(b));
    if (order != 0) return (order < 0) != key.descending;
  }
  return a < b;
}

void SortOrder::sort(const TableColumns& table, std::span<std::int32_t> rows) const {
  const ColumnStore& first = table.column(keys_.front().column);
  if (keys_.size() == 1 && first.storage == Storage::Integer) return sortByInteger(first, rows);
  std::sort(rows.begin(), rows.end(),
            [&](std::int32_t a, std::int32_t b) { return comesBefore(table, a, b); });
}

// One whole number a row holds the cell, 0 for Null and 33 bits for the others, and below it the row,
// which settles the order of equal cells.
void SortOrder::sortByInteger(const ColumnStore& column, std::span<std::int32_t> rows) const {
  constexpr int kRowBits = 31;
  constexpr std::int64_t kLeast = std::numeric_limits<std::int32_t>::min();
  const bool descending = keys_.front().descending;
  std::vector<std::uint64_t> packed(rows.size());
  for (size_t k = 0; k < rows.size(); ++k) {
    const auto row = static_cast<size_t>(rows[k]);
    const std::uint64_t cell =
        column.present[row] ? static_cast<std::uint64_t>(column.integers[row] - kLeast + 1) : 0;
    const std::uint64_t key = descending ? (std::uint64_t{1} << 32) - cell : cell;
    packed[k] = key << kRowBits | row;
  }
  // Lines are numbered as they come, so that most often all that is to be done is to turn them round.
  if (std::is_sorted(packed.begin(), packed.end(), std::greater<>()))
    std::reverse(packed.begin(), packed.end());
  else if (!std::is_sorted(packed.begin(), packed.end()))
    std::sort(packed.begin(), packed.end());
  for (size_t k = 0; k < rows.size(); ++k)
    rows[k] = static_cast<std::int32_t>(packed[k] & ((std::uint64_t{1} << kRowBits) - 1));
}

}  // namespace ondrel
