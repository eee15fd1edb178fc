#pragma once

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
  // Leaves the cell as it was when the value does not fit.
  void write(size_t row, const Variant& value);
  Variant read(size_t row) const;
  // Back to the state of a cell that nobody wrote.
  void reset(size_t row);
  void move(size_t from, size_t to);

  // Keys of all texts, for comparing without regard to case. Made at the first call and kept up to
  // date by every write from then on.
  const FoldedKey* foldedKeys() const;

 private:
  void writeNull(size_t row);
  void writeInteger(size_t row, std::int32_t value);
  void writeText(size_t row, std::string_view text);

  mutable std::vector<FoldedKey> keys_;
};

}  // namespace ondrel
