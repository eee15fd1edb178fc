#pragma once

#include <array>
#include <string_view>
#include <type_traits>

namespace ondrel {

// Type codes of columns, as the platform numbers them. Tables built in memory use the first five; the
// others arrive with the results of a server.
enum class FieldType : int {
  Long = 3,
  Double = 5,
  Boolean = 11,
  Date = 133,
  Text = 200,
  SmallInt = 2,
  Single = 4,
  Currency = 6,
  TinyInt = 17,
  BigInt = 20,
  Guid = 72,
  Char = 129,
  WideChar = 130,
  Numeric = 131,
  DateTime = 135,
  LongText = 201,
  WideText = 202,
  LongWideText = 203,
};

// Attribute of a column that may hold Null.
inline constexpr int kNullableColumn = 32;

// One row of a table's column layout. `size` is the maximum length of a text in characters; 0 for other
// types and for text without a limit.
struct ColumnSpec {
  std::string_view name;
  FieldType type = FieldType::Text;
  int size = 0;
  bool nullable = false;
};

// Position of a column, from 0. Converts from the enum that names the columns of a fixed table in the
// order of its layout.
struct Column {
  int index = 0;

  constexpr explicit Column(int position) : index(position) {}
  template <class Enum>
  requires std::is_enum_v<Enum>
  constexpr Column(Enum name) : index(static_cast<int>(name)) {}
};

// A fixed table from one list: an enum of its columns and the array of their layout, in the list's order. The list
// is a macro that names a column a line, `column(number, Long, 0, false)`, and is named here in turn:
// ONDREL_COLUMNS(ShelfColumn, kShelfLayout, ONDREL_SHELF_COLUMNS).
#define ONDREL_COLUMNS(Enum, layout, list)            \
  enum class Enum : int { list(ONDREL_COLUMN_NAME) }; \
  inline constexpr auto layout = std::to_array<::ondrel::ColumnSpec>({list(ONDREL_COLUMN_SPEC)});
#define ONDREL_COLUMN_NAME(name, type, size, nullable) name,
#define ONDREL_COLUMN_SPEC(name, type, size, nullable) {#name, ::ondrel::FieldType::type, size, nullable},

}  // namespace ondrel
