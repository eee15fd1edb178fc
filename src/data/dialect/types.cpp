#include "data/dialect/types.h"

#include <algorithm>

#include "data/dialect/lexer.h"

namespace ondrel::sql {
namespace {

struct TypeRow {
  SqlType type;
  std::string_view name;
  Category category;
  std::string_view storage;
  FieldType field;
};

// In the order of SqlType.
// clang-format off
constexpr TypeRow kTypes[] = {
    {SqlType::Int,      "int",              Category::Integer, "integer", FieldType::Long},
    {SqlType::SmallInt, "smallint",         Category::Integer, "integer", FieldType::Long},
    {SqlType::TinyInt,  "tinyint",          Category::Integer, "integer", FieldType::Long},
    {SqlType::BigInt,   "bigint",           Category::Integer, "integer", FieldType::BigInt},
    {SqlType::Bit,      "bit",              Category::Bit,     "integer", FieldType::Boolean},
    {SqlType::Real,     "real",             Category::Number,  "real",    FieldType::Double},
    {SqlType::Float,    "float",            Category::Number,  "real",    FieldType::Double},
    {SqlType::Decimal,  "numeric",          Category::Number,  "real",    FieldType::Double},
    {SqlType::Money,    "money",            Category::Number,  "real",    FieldType::Double},
    {SqlType::DateTime, "datetime",         Category::Date,    "text",    FieldType::Date},
    {SqlType::Date,     "date",             Category::Date,    "text",    FieldType::Date},
    {SqlType::Char,     "char",             Category::Text,    "text collate store", FieldType::Text},
    {SqlType::VarChar,  "varchar",          Category::Text,    "text collate store", FieldType::Text},
    {SqlType::Text,     "text",             Category::Text,    "text collate store", FieldType::Text},
    {SqlType::Guid,     "uniqueidentifier", Category::Text,    "text collate store", FieldType::Text},
};

struct TypeSpelling {
  std::string_view name;
  SqlType type;
};

// Other spellings of a type.
constexpr TypeSpelling kSpellings[] = {
    {"integer", SqlType::Int},        {"decimal", SqlType::Decimal},     {"dec", SqlType::Decimal},
    {"smallmoney", SqlType::Money},   {"smalldatetime", SqlType::DateTime}, {"datetime2", SqlType::DateTime},
    {"nchar", SqlType::Char},         {"nvarchar", SqlType::VarChar},    {"ntext", SqlType::Text},
    {"double", SqlType::Float},
};
// clang-format on

const TypeRow& rowOf(SqlType type) {
  return kTypes[static_cast<size_t>(type)];
}

}  // namespace

Category categoryOf(SqlType type) {
  return rowOf(type).category;
}

ResolvedType valueTypeOf(const ColumnType& declared) {
  return {categoryOf(declared.type), declared};
}

ResolvedType textType(int size) {
  return {Category::Text, {SqlType::VarChar, size, 0}};
}

ResolvedType integerType() {
  return {Category::Integer, {SqlType::Int, 0, 0}};
}

ResolvedType numberType() {
  return {Category::Number, {SqlType::Float, 0, 0}};
}

ResolvedType dateType() {
  return {Category::Date, {SqlType::DateTime, 0, 0}};
}

ResolvedType commonType(const ResolvedType& a, const ResolvedType& b) {
  if (a.category != b.category) return a.category > b.category ? a : b;
  if (a.category != Category::Text) return a;
  const bool unlimited = a.declared.size == 0 || b.declared.size == 0;
  return textType(unlimited ? 0 : std::max(a.declared.size, b.declared.size));
}

std::optional<SqlType> sqlTypeNamed(std::string_view name) {
  for (const TypeRow& row : kTypes)
    if (sameWord(row.name, name)) return row.type;
  for (const TypeSpelling& spelling : kSpellings)
    if (sameWord(spelling.name, name)) return spelling.type;
  return std::nullopt;
}

std::string_view typeName(SqlType type) {
  return rowOf(type).name;
}

std::string_view storageType(SqlType type) {
  return rowOf(type).storage;
}

FieldType fieldTypeOf(const ColumnType& type) {
  return rowOf(type.type).field;
}

}  // namespace ondrel::sql
