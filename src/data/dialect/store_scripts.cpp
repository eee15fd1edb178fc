#include "data/dialect/store_scripts.h"

#include <fmt/format.h>

#include "data/dialect/schema_statement.h"
#include "data/dialect/store_texts.h"

namespace ondrel::sql {

void createSchema(const StatementRunner& run) {
  for (const std::string_view statement : splitScript(schemaText())) run(statement);
  run(fmt::format("insert into SchemaVersion (version, changedDate) values ({}, getdate())",
                  schemaVersion()));
}

void loadSampleStore(const StatementRunner& run) {
  for (const std::string_view text : sampleTexts())
    for (const std::string_view statement : splitScript(text)) run(statement);
}

}  // namespace ondrel::sql

namespace ondrel {

int schemaVersion() {
  static const int version = [] {
    int count = 0;
    for (const std::string_view statement : sql::splitScript(sql::schemaText()))
      count += 1 + static_cast<int>(sql::readSchemaStatement(statement).columns.size());
    return count;
  }();
  return version;
}

void runScript(Connection& connection, std::string_view script) {
  for (const std::string_view statement : sql::splitScript(script)) connection.execute(statement);
}

void createSchema(Connection& connection) {
  connection.begin();
  sql::createSchema([&](std::string_view statement) { connection.execute(statement); });
  connection.commit();
}

void loadSampleStore(Connection& connection) {
  connection.begin();
  sql::loadSampleStore([&](std::string_view statement) { connection.execute(statement); });
  connection.commit();
}

}  // namespace ondrel
