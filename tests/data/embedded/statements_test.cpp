#include <gtest/gtest.h>

#include <fstream>
#include <string>
#include <vector>

#include "data/dialect/procedures/procedure.h"
#include "data/embedded/embedded_connection.h"
#include "data/embedded/embedded_store.h"
#include "data/odbc/odbc_connection.h"
#include "support/folders.h"
#include "support/odbc_double/odbc_double.h"

namespace ondrel {

using namespace sql;

namespace {

// Every statement that the library sends, with sample values, one a line.
std::vector<std::string> statements() {
  std::ifstream file(sourcePath("tests/data/embedded/statements.sql"));
  std::vector<std::string> lines;
  for (std::string line; std::getline(file, line);)
    if (!line.empty()) lines.push_back(line);
  return lines;
}

class EveryStatement : public testing::TestWithParam<std::tuple<StoreContents, bool>> {};

TEST_P(EveryStatement, Runs) {
  const auto [contents, overOdbc] = GetParam();
  EmbeddedStore store(contents);
  StoreServer server(store, nullptr);
  for (const auto& [key, procedure] : storeProcedures().all())
    store.replaceProcedure(procedure.name, procedure.least, procedure.most,
                           [](ProcedureCall&) { return RecordsetRef(); });
  const auto connection = overOdbc
                              ? connectOdbc({connectionStringOf(server) + ";Pooling=no", "", "", nullptr})
                              : connectEmbedded({store.connectionString(), "", "", nullptr});
  connection->open();
  const std::vector<std::string> all = statements();
  ASSERT_GT(all.size(), 150U);
  for (const std::string& statement : all) {
    try {
      connection->query(statement);
    } catch (const Error& error) {
      ADD_FAILURE() << statement << "\n  " << error.number() << ": " << error.description();
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Stores, EveryStatement,
                         testing::Combine(testing::Values(StoreContents::Empty, StoreContents::Sample),
                                          testing::Bool()));

}  // namespace
}  // namespace ondrel
