// Statements that change the tables, entered in the schema.
#include <utility>

#include "data/dialect/schema_statement.h"
#include "data/embedded/session.h"
#include "data/embedded/sqlite_schema.h"

namespace ondrel::sql {
namespace {

void bindName(sqlite3_stmt* statement, int index, std::string_view text) {
  sqlite3_bind_text(statement, index, text.data(), static_cast<int>(text.size()), SQLITE_STATIC);
}

}  // namespace

void Session::define(std::string_view statement) {
  SchemaStatement change = readSchemaStatement(statement);
  const bool drops = change.kind == SchemaStatement::Kind::Drop;
  forgetStatements();
  runPlain(sqliteStatement(change).c_str());
  sqlite3_stmt* record = context_.prepared(drops ? "delete from ondrel_schema where name = ?1"
                                                 : "insert into ondrel_schema (name, text) values (?1, ?2)");
  bindName(record, 1, change.tableName);
  if (!drops) bindName(record, 2, change.text);
  const int code = sqlite3_step(record);
  sqlite3_reset(record);
  if (code != SQLITE_DONE) fail(code);
  if (change.kind == SchemaStatement::Kind::Table) catalogue_.addTable(std::move(change.table));
  if (drops) catalogue_.removeTable(change.tableName);
  definedInTransaction_ = inTransaction();
}

void Session::redefine(std::string_view table, std::string_view statement) {
  SchemaStatement change = readSchemaStatement(statement);
  forgetStatements();
  sqlite3_stmt* record =
      context_.prepared("update ondrel_schema set text = ?2 where name = ?1 and text like 'create%table%'");
  bindName(record, 1, table);
  bindName(record, 2, statement);
  const int code = sqlite3_step(record);
  sqlite3_reset(record);
  if (code != SQLITE_DONE) fail(code);
  catalogue_.addTable(std::move(change.table));
  definedInTransaction_ = inTransaction();
}

}  // namespace ondrel::sql
