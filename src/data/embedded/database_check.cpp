#include <fmt/format.h>

#include <algorithm>
#include <set>

#include "base/text.h"
#include "data/dialect/schema_statement.h"
#include "data/dialect/server_errors.h"
#include "data/dialect/store_texts.h"
#include "data/embedded/embedded_store.h"
#include "data/embedded/functions.h"

namespace ondrel {

using namespace sql;

namespace {

using Findings = std::vector<std::string>;

// First words, in lower case, of the lines of a statement that carry the note: columns, or "create" for the
// table itself.
std::set<std::string> ownNames(std::string_view statement) {
  constexpr std::string_view kNote = "-- own";
  std::set<std::string> names;
  while (!statement.empty()) {
    const size_t end = std::min(statement.find('\n'), statement.size());
    const std::string_view line = trim(statement.substr(0, end));
    if (line.ends_with(kNote)) names.insert(toLower(line.substr(0, line.find(' '))));
    statement.remove_prefix(std::min(end + 1, statement.size()));
  }
  return names;
}

std::string tableFinding(const std::string& table, const Error& error) {
  constexpr int kSelectDenied = 229;  // of a server
  if (error.number() == kSelectDenied) return fmt::format("Table {} may not be read by this user", table);
  const auto says = [&](std::string_view text) {
    return error.description().find(text) != std::string::npos;
  };
  const bool isMissing = error.number() == static_cast<int>(ServerError::InvalidObject) ||
                         says("(SQLSTATE 42S02)") || says("no such table");
  return isMissing ? fmt::format("Table {} is missing", table)
                   : fmt::format("Table {} cannot be read: {}", table, error.description());
}

// The table without its rows; nothing, and a finding, when the database has none. Without a connection
// there is nothing to be found.
RecordsetRef emptyTable(Connection& connection, const std::string& name, Findings& findings) {
  try {
    return connection.query(fmt::format("select * from {} where 1 = 0", name));
  } catch (const Error& error) {
    if (error.code() == ErrorNumber::ConnectionFailed) throw;
    findings.push_back(tableFinding(name, error));
    return nullptr;
  }
}

void checkTable(Connection& connection, const SchemaStatement& declared,
                const std::set<std::string>& notAsked, Findings& findings) {
  if (notAsked.contains("create")) return;
  const TableDefinition& table = declared.table;
  const RecordsetRef rows = emptyTable(connection, table.name, findings);
  if (!rows) return;
  for (const ColumnDefinition& column : table.columns)
    if (!rows->hasColumn(column.name) && !notAsked.contains(toLower(column.name)))
      findings.push_back(fmt::format("Table {} has no column {}", table.name, column.name));
}

std::set<std::string> catalogueNames(Connection& connection, std::string_view types) {
  std::set<std::string> names;
  const RecordsetRef rows =
      connection.query(fmt::format("select name from sysobjects where xtype in ({})", types));
  for (; !rows->eof(); rows->moveNext()) names.insert(toLower(rows->text("name")));
  return names;
}

void checkRoutines(Connection& connection, Findings& findings) {
  try {
    const std::set<std::string> procedures = catalogueNames(connection, "'P', 'PC'");
    for (const auto& [key, procedure] : storeProcedures().all())
      if (!procedures.contains(key))
        findings.push_back(fmt::format("Procedure {} is missing", procedure.name));
    const std::set<std::string> functions = catalogueNames(connection, "'FN', 'FS'");
    for (const RegisteredFunction& function : storeFunctions())
      if (!functions.contains(toLower(function.name)))
        findings.push_back(fmt::format("Function {} is missing", function.name));
  } catch (const Error& error) {
    if (error.code() == ErrorNumber::ConnectionFailed) throw;
    findings.push_back("Procedures and functions cannot be looked up: " + error.description());
  }
}

}  // namespace

std::vector<std::string> checkDatabase(Connection& connection, CheckedStore store) {
  const bool isServer = store == CheckedStore::Server;
  Findings findings;
  for (const std::string_view statement : splitScript(schemaText())) {
    const SchemaStatement declared = readSchemaStatement(statement);
    if (declared.kind == SchemaStatement::Kind::Table)
      checkTable(connection, declared, isServer ? ownNames(statement) : std::set<std::string>(), findings);
  }
  if (isServer) checkRoutines(connection, findings);
  return findings;
}

}  // namespace ondrel
