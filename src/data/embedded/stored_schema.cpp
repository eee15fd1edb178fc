#include "data/embedded/stored_schema.h"

#include <fmt/format.h>

#include "data/dialect/schema_statement.h"
#include "data/dialect/server_errors.h"
#include "data/dialect/store_scripts.h"

namespace ondrel::sql {
namespace {

// Marks a file as one of this program; stands in its header.
constexpr int kApplicationId = 0x4F4E4453;

// Runs a statement of one column and hands over each value as text.
template <class Take>
void readTexts(sqlite3* handle, const std::string& path, const char* sql, Take take) {
  sqlite3_stmt* statement = nullptr;
  int code = sqlite3_prepare_v2(handle, sql, -1, &statement, nullptr);
  if (code == SQLITE_OK)
    while ((code = sqlite3_step(statement)) == SQLITE_ROW)
      take(std::string_view(reinterpret_cast<const char*>(sqlite3_column_text(statement, 0)),
                            static_cast<size_t>(sqlite3_column_bytes(statement, 0))));
  const std::string reason = sqlite3_errmsg(handle);
  sqlite3_finalize(statement);
  if (code != SQLITE_DONE) failOpen(path, reason);
}

// What a newer program wrote may mean what this one does not know.
void refuseNewer(sqlite3* handle, const std::string& path) {
  bool hasVersion = false;
  int version = 0;
  readTexts(handle, path,
            "select name from sqlite_master where type = 'table' and lower(name) = 'schemaversion'",
            [&](std::string_view) { hasVersion = true; });
  if (hasVersion)
    readTexts(handle, path, "select ifnull(max(version), 0) from SchemaVersion",
              [&](std::string_view text) { version = std::stoi(std::string(text)); });
  if (version > schemaVersion())
    failOpen(path, fmt::format("a newer program made it (version {}, this one knows {})", version,
                               schemaVersion()));
}

}  // namespace

void failOpen(const std::string& path, std::string_view reason) {
  throw Error(ErrorNumber::ConnectionFailed, kStoreSource,
              fmt::format("Cannot open the database \"{}\": {}", path, reason));
}

std::shared_ptr<const Schema> readSchema(sqlite3* handle, const std::string& path) {
  std::string mark;
  readTexts(handle, path, "pragma application_id", [&](std::string_view text) { mark = text; });
  if (mark != std::to_string(kApplicationId)) failOpen(path, "it is not a database of this program");
  refuseNewer(handle, path);
  auto schema = std::make_shared<Schema>();
  readTexts(handle, path, "select text from ondrel_schema order by position", [&](std::string_view text) {
    SchemaStatement statement = readSchemaStatement(text);
    if (statement.kind == SchemaStatement::Kind::Table) schema->add(std::move(statement.table));
  });
  return schema;
}

std::string markStatements() {
  return fmt::format(
      "pragma application_id = {}; create table ondrel_schema "
      "(position integer primary key, name text not null collate store, text text not null)",
      kApplicationId);
}

}  // namespace ondrel::sql
