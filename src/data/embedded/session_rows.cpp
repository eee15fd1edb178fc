// Running a prepared statement, and its result as a table.
#include <algorithm>
#include <utility>

#include "data/embedded/prepared_statement.h"
#include "data/embedded/session.h"

namespace ondrel::sql {
namespace {

constexpr size_t kRowsExpected = 1000;  // at most, of a statement that gave as many the last time

// Puts a column of the row that the statement stands on into a new cell. Gives whether a column that takes its
// type from its values must hold Doubles for this one.
bool takeValue(sqlite3_stmt* statement, int column, Category category, ColumnStore& cells, size_t row) {
  const int stored = sqlite3_column_type(statement, column);
  const auto text = [&] {
    const auto* bytes = reinterpret_cast<const char*>(sqlite3_column_text(statement, column));
    return std::string_view(bytes, static_cast<size_t>(sqlite3_column_bytes(statement, column)));
  };
  if (stored == SQLITE_NULL) return false;  // as a new cell is
  if (category == Category::Text) {
    cells.write(row, text());
  } else if (category == Category::Bit) {
    cells.write(row, sqlite3_column_int(statement, column) != 0);
  } else if (category == Category::Date) {
    cells.write(row, dateOfText(text()));
  } else if (category == Category::Number || stored == SQLITE_FLOAT) {
    cells.write(row, sqlite3_column_double(statement, column));
    return true;
  } else if (stored == SQLITE_INTEGER) {
    const std::int64_t whole = sqlite3_column_int64(statement, column);
    cells.write(row, whole);
    return !std::in_range<std::int32_t>(whole);
  } else {
    cells.write(row, text());
  }
  return false;
}

}  // namespace

RecordsetRef Session::step(Prepared& prepared, bool fetch) {
  if (prepared.translation.kind == StatementKind::Select && fetch) return fetchRows(prepared);
  int code = SQLITE_ROW;
  while (code == SQLITE_ROW) code = sqlite3_step(prepared.statement.get());
  if (code != SQLITE_DONE) fail(code);
  if (prepared.translation.kind != StatementKind::Select) {
    context_.rowCount = sqlite3_changes64(handle_);
    if (prepared.translation.movesIdentity && context_.rowCount > 0)
      context_.identity = sqlite3_last_insert_rowid(handle_);
  }
  return fetch ? Recordset::create() : nullptr;
}

RecordsetRef Session::fetchRows(Prepared& prepared) {
  sqlite3_stmt* statement = prepared.statement.get();
  const std::vector<OutputColumn>& columns = prepared.translation.columns;
  RecordsetRef table = Recordset::create(prepared.layout);
  table->reserveRows(prepared.rows);
  std::vector<bool> isReal(columns.size());
  size_t rows = 0;
  int code = 0;
  for (; (code = sqlite3_step(statement)) == SQLITE_ROW; ++rows)
    table->appendRowBy([&](Table& cells, size_t row) {
      for (int k = 0; k < cells.columnCount(); ++k)
        if (takeValue(statement, k, columns[static_cast<size_t>(k)].type.category, cells.column(k), row))
          isReal[static_cast<size_t>(k)] = true;
    });
  if (code != SQLITE_DONE) fail(code);
  context_.rowCount = static_cast<std::int64_t>(rows);
  prepared.rows = std::min(rows, kRowsExpected);
  for (size_t k = 0; k < columns.size(); ++k)
    if (isUnsettled(columns[k].type) && !isReal[k]) table->makeLong(Column(static_cast<int>(k)));
  table->moveFirst();
  return table;
}

}  // namespace ondrel::sql
