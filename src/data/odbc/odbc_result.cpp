#include "data/odbc/odbc_result.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <utility>

#include "base/text.h"

namespace ondrel {
namespace {

struct TypeRow {
  SQLSMALLINT type;
  FieldType field;
  SQLSMALLINT form;
};

// Any other type is Text.
// clang-format off
constexpr TypeRow kTypes[] = {
    {SQL_INTEGER,        FieldType::Long,    SQL_C_SLONG},
    {SQL_SMALLINT,       FieldType::Long,    SQL_C_SLONG},
    {SQL_TINYINT,        FieldType::Long,    SQL_C_SLONG},
    {SQL_BIGINT,         FieldType::BigInt,  SQL_C_SBIGINT},
    {SQL_BIT,            FieldType::Boolean, SQL_C_BIT},
    {SQL_REAL,           FieldType::Double,  SQL_C_DOUBLE},
    {SQL_FLOAT,          FieldType::Double,  SQL_C_DOUBLE},
    {SQL_DOUBLE,         FieldType::Double,  SQL_C_DOUBLE},
    {SQL_DECIMAL,        FieldType::Double,  SQL_C_DOUBLE},
    {SQL_NUMERIC,        FieldType::Double,  SQL_C_DOUBLE},
    {SQL_TYPE_TIMESTAMP, FieldType::Date,    SQL_C_TYPE_TIMESTAMP},
    {SQL_TYPE_DATE,      FieldType::Date,    SQL_C_TYPE_TIMESTAMP},
    {SQL_TIMESTAMP,      FieldType::Date,    SQL_C_TYPE_TIMESTAMP},
    {SQL_DATE,           FieldType::Date,    SQL_C_TYPE_TIMESTAMP},
};
// clang-format on

constexpr size_t kNameLength = 256;
constexpr size_t kPieceLength = 4096;
constexpr SQLULEN kLongestSizedText = 8000;  // in characters; beyond, a type without a limit

// A value of fixed size; false when the driver fails.
template <class Value>
bool readFixed(const OdbcHandle& statement, int column, SQLSMALLINT form, Value& value, bool& isNull) {
  SQLLEN length = 0;
  const SQLRETURN code = SQLGetData(statement.get(), static_cast<SQLUSMALLINT>(column + 1), form, &value,
                                    sizeof(value), &length);
  isNull = length == SQL_NULL_DATA;
  return succeeded(code);
}

template <class Value, class Make>
bool readAs(const OdbcHandle& statement, int column, SQLSMALLINT form, std::vector<Variant>& cells,
            Make make) {
  Value value{};
  bool isNull = false;
  if (!readFixed(statement, column, form, value, isNull)) return false;
  cells.push_back(isNull ? Variant::null() : Variant(make(value)));
  return true;
}

Date dateOf(const SQL_TIMESTAMP_STRUCT& moment) {
  return Date::of(moment.year, moment.month, moment.day, moment.hour, moment.minute, moment.second);
}

}  // namespace

int OdbcResult::columnCount(const OdbcHandle& statement) {
  SQLSMALLINT columns = 0;
  return succeeded(SQLNumResultCols(statement.get(), &columns)) ? columns : -1;
}

RecordsetRef OdbcResult::fetch(const OdbcHandle& statement, int columns) {
  cells_.clear();
  if (!describe(statement, columns)) return nullptr;
  SQLRETURN code = 0;
  while (succeeded(code = SQLFetch(statement.get())))
    for (int column = 0; column < columns; ++column)
      if (!read(statement, column)) return nullptr;
  if (code != SQL_NO_DATA) return nullptr;
  settle();
  return table();
}

bool OdbcResult::describe(const OdbcHandle& statement, int columns) {
  columns_.resize(static_cast<size_t>(columns));
  for (int k = 0; k < columns; ++k) {
    std::array<SQLCHAR, kNameLength> name{};
    SQLSMALLINT length = 0, type = 0, digits = 0, nullable = 0;
    SQLULEN size = 0;
    if (!succeeded(SQLDescribeCol(statement.get(), static_cast<SQLUSMALLINT>(k + 1), name.data(),
                                  static_cast<SQLSMALLINT>(name.size()), &length, &type, &size, &digits,
                                  &nullable)))
      return false;
    ResultColumn& column = columns_[static_cast<size_t>(k)];
    column = {};
    column.name = reinterpret_cast<const char*>(name.data());
    const auto* row =
        std::find_if(std::begin(kTypes), std::end(kTypes), [&](auto& each) { return each.type == type; });
    if (row != std::end(kTypes)) {
      column.type = row->field;
      column.form = row->form;
    } else if (size <= kLongestSizedText) {
      column.size = static_cast<int>(size);
    }
  }
  return true;
}

bool OdbcResult::read(const OdbcHandle& statement, int column) {
  const SQLSMALLINT form = columns_[static_cast<size_t>(column)].form;
  const auto itself = [](auto value) { return value; };
  switch (form) {
    case SQL_C_SLONG:
      return readAs<SQLINTEGER>(statement, column, form, cells_, itself);
    case SQL_C_SBIGINT:
      return readAs<SQLBIGINT>(statement, column, form, cells_, itself);
    case SQL_C_BIT:
      return readAs<SQLCHAR>(statement, column, form, cells_, [](SQLCHAR value) { return value != 0; });
    case SQL_C_DOUBLE:
      return readAs<SQLDOUBLE>(statement, column, form, cells_, itself);
    case SQL_C_TYPE_TIMESTAMP:
      return readAs<SQL_TIMESTAMP_STRUCT>(statement, column, form, cells_, dateOf);
    default:
      return readText(statement, column);
  }
}

// A long text comes in pieces. A driver that leaves out part of a character at the end of one fills up
// with zeros, which are not part of the text.
bool OdbcResult::readText(const OdbcHandle& statement, int column) {
  constexpr size_t kLongestCharacter = 4;
  std::array<char, kPieceLength> piece;
  text_.clear();
  for (bool whole = false; !whole;) {
    std::memset(piece.data() + piece.size() - kLongestCharacter, 0, kLongestCharacter);
    SQLLEN length = 0;
    const SQLRETURN code = SQLGetData(statement.get(), static_cast<SQLUSMALLINT>(column + 1), SQL_C_CHAR,
                                      piece.data(), piece.size(), &length);
    if (code == SQL_NO_DATA) break;
    if (!succeeded(code)) return false;
    if (length == SQL_NULL_DATA) {
      cells_.push_back(Variant::null());
      return true;
    }
    whole = length != SQL_NO_TOTAL && length < static_cast<SQLLEN>(piece.size());
    size_t taken = whole ? static_cast<size_t>(length) : piece.size() - 1;
    while (!whole && taken > 0 && piece[taken - 1] == '\0') --taken;
    text_.append(piece.data(), taken);
  }
  cells_.emplace_back(std::string_view(text_));
  return true;
}

// What only the values tell: a bigint that needs a Double, a text that is longer than the driver told.
void OdbcResult::settle() {
  for (size_t k = 0; k < columns_.size(); ++k) {
    ResultColumn& column = columns_[k];
    if (column.type == FieldType::BigInt) {
      column.type = FieldType::Long;
      for (size_t at = k; at < cells_.size(); at += columns_.size())
        if (cells_[at].kind() == Variant::Kind::Double) column.type = FieldType::Double;
    } else if (column.size > 0) {
      for (size_t at = k; at < cells_.size(); at += columns_.size())
        if (cells_[at].isText() && cells_[at].text().size() > static_cast<size_t>(column.size))
          column.size = std::max(column.size, static_cast<int>(characterCount(cells_[at].text())));
    }
  }
}

RecordsetRef OdbcResult::table() const {
  std::vector<ColumnSpec> layout;
  layout.reserve(columns_.size());
  for (const ResultColumn& column : columns_) layout.push_back({column.name, column.type, column.size, true});
  const RecordsetRef result = Recordset::create(layout);
  for (size_t row = 0; row < cells_.size(); row += columns_.size())
    result->appendRow(std::span<const Variant>(cells_).subspan(row, columns_.size()));
  result->moveFirst();
  return result;
}

}  // namespace ondrel
