#pragma once

#include <cmath>
#include <cstdint>
#include <string>
#include <vector>

#include "base/variant.h"
#include "data/recordset/column.h"
#include "data/recordset/folded_key.h"

namespace ondrel {

// How the cells of a column are held.
enum class Storage : std::uint8_t { Integer, Number, Flag, Date, Text };

constexpr Storage storageOf(FieldType type) {
  switch (type) {
    case FieldType::Long:
    case FieldType::SmallInt:
    case FieldType::TinyInt:
      return Storage::Integer;
    case FieldType::Double:
    case FieldType::Single:
    case FieldType::Currency:
    case FieldType::BigInt:
    case FieldType::Numeric:
      return Storage::Number;
    case FieldType::Boolean:
      return Storage::Flag;
    case FieldType::Date:
    case FieldType::DateTime:
      return Storage::Date;
    default:
      return Storage::Text;
  }
}

// The cells of one column, a typed list by row. Only the list that belongs to `storage` has cells;
// `present` is 0 where the cell is Null. A cell that nobody wrote holds Null, or 0, False, "" in a
// column that takes no Null.
struct ColumnStore {
  ColumnStore(std::string_view columnName, FieldType columnType, int columnSize, bool takesNull);

  std::string name;
  FieldType type;
  Storage storage;
  bool nullable;
  int size;

  std::vector<std::uint8_t> present;
  std::vector<std::int32_t> integers;
  std::vector<double> numbers;  // dates too, as day counts
  std::vector<std::uint8_t> flags;
  std::vector<std::string> texts;

  void resize(size_t rows);
  // Leaves the cell as it was when the value does not fit: error 13 or 6 as the conversion has it,
  // DataOverflow for a text that is too long and for a Null that the column does not take.
  void write(size_t row, const Variant& value) {
    switch (value.kind()) {
      case Variant::Kind::Null:
        if (!nullable) break;
        present[row] = 0;
        return;
      case Variant::Kind::Long:
        if (type != FieldType::Long) break;
        return put(integers, row, value.toLong());
      case Variant::Kind::Double:
        return write(row, value.toDouble());
      case Variant::Kind::Boolean:
        if (storage != Storage::Flag) break;
        return put(flags, row, std::uint8_t{value.toBoolean()});
      case Variant::Kind::Text:
        if (storage != Storage::Text || (size > 0 && value.text().size() > static_cast<size_t>(size))) break;
        return putText(row, value.text());
      default:
        break;
    }
    convertAndWrite(row, value);
  }
  void write(size_t row, double value) {
    if (storage == Storage::Number && std::isfinite(value)) [[likely]]
      put(numbers, row, value);
    else
      convertAndWrite(row, value);
  }
  // Shorter ways for values that need no conversion.
  void write(size_t row, std::string_view text) {
    if (storage == Storage::Text && (size <= 0 || text.size() <= static_cast<size_t>(size))) [[likely]]
      putText(row, text);
    else
      convertAndWrite(row, Variant(text));
  }
  void write(size_t row, std::int64_t value) {
    if (type == FieldType::Long && value == static_cast<std::int32_t>(value)) [[likely]]
      put(integers, row, static_cast<std::int32_t>(value));
    else
      write(row, Variant(value));
  }
  void write(size_t row, bool value) {
    if (storage == Storage::Flag) [[likely]]
      put(flags, row, std::uint8_t{value});
    else
      convertAndWrite(row, Variant(value));
  }
  void write(size_t row, Date value) {
    if (storage == Storage::Date) [[likely]]
      put(numbers, row, value.serial());
    else
      convertAndWrite(row, Variant(value));
  }
  Variant read(size_t row) const;
  // Error 94 for Null.
  std::int32_t readInteger(size_t row) const {
    if (storage == Storage::Integer && present[row]) [[likely]]
      return integers[row];
    return convertToInteger(row);
  }
  double readNumber(size_t row) const {
    if (storage == Storage::Number && present[row]) [[likely]]
      return numbers[row];
    if (storage == Storage::Integer && present[row]) [[likely]]
      return integers[row];
    return convertToNumber(row);
  }
  // Turns a column of Doubles, which hold whole numbers, into one of Longs.
  void becomeLong();
  // Back to the state of a cell that nobody wrote.
  void reset(size_t row);
  void move(size_t from, size_t to);

  // Keys of all texts, for comparing without regard to case. Made at the first call and kept up to
  // date by every write from then on.
  const FoldedKeyList& foldedKeys() const;

 private:
  template <class Cell>
  void put(std::vector<Cell>& cells, size_t row, Cell value) {
    cells[row] = value;
    present[row] = 1;
  }
  void putText(size_t row, std::string_view text) {
    texts[row].assign(text);
    present[row] = 1;
    if (!keys_.isEmpty()) keys_.set(row, foldedKey(text));
  }
  std::int32_t convertToInteger(size_t row) const;
  double convertToNumber(size_t row) const;
  void convertAndWrite(size_t row, const Variant& value);
  void convertAndWrite(size_t row, double value);

  mutable FoldedKeyList keys_;
};

}  // namespace ondrel
