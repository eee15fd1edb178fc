#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "data/recordset/column.h"

namespace ondrel::sql {

enum class SqlType : std::uint8_t {
  Int,
  SmallInt,
  TinyInt,
  BigInt,
  Bit,
  Real,
  Float,
  Decimal,
  Money,
  DateTime,
  Date,
  Char,
  VarChar,
  Text,
  Guid
};

// What a value is when two of them meet. In the order of precedence: where values of different categories
// meet, the lower one converts to the higher.
enum class Category : std::uint8_t {
  Null,
  Text,
  Bit,
  Integer,
  Numeral,  // a number literal: whole or not, each time anew
  Number,
  Date,
};

// A declared type. `size` is the length of a text in characters, 0 when unlimited; `scale` the decimals of
// a decimal or money.
struct ColumnType {
  SqlType type = SqlType::Int;
  int size = 0;
  int scale = 0;
};

// The type of an expression as far as it is known without running it.
struct ResolvedType {
  Category category = Category::Null;
  ColumnType declared;
};

Category categoryOf(SqlType type);
ResolvedType valueTypeOf(const ColumnType& declared);
ResolvedType textType(int size = 0);
ResolvedType integerType();
ResolvedType numberType();
ResolvedType dateType();

// The type that values of two types have together.
ResolvedType commonType(const ResolvedType& a, const ResolvedType& b);

// Type of that name ("varchar", "nvarchar", "integer", ...), sizes unset.
std::optional<SqlType> sqlTypeNamed(std::string_view name);
// Name as messages of the server give it.
std::string_view typeName(SqlType type);
// Type of the column that the table engine declares for it: its affinity.
std::string_view storageType(SqlType type);
// Type code under which a page sees it.
FieldType fieldTypeOf(const ColumnType& type);

}  // namespace ondrel::sql
