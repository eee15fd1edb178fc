#include <CLI/CLI.hpp>
#include <cstdio>
#include <filesystem>
#include <memory>

#include "automation/drivers.h"
#include "base/error.h"
#include "commands.h"
#include "data/embedded/embedded_connection.h"
#include "data/embedded/embedded_store.h"
#include "store_files_command.h"

namespace ondrel {
namespace {

std::unique_ptr<Connection> open(const std::string& connectionString) {
  auto connection = connectToDatabase({connectionString, "", "", std::make_shared<SystemClock>()});
  connection->open();
  return connection;
}

int create(const std::string& connectionString, bool ifMissing) {
  const auto path = connectionStringValue(connectionString, "Database");
  if (ifMissing && path && std::filesystem::exists(*path)) {
    std::puts("there already");
    return 0;
  }
  if (isEmbeddedConnectionString(connectionString) && path)
    createDatabaseFile(*path, StoreContents::Empty);
  else
    createSchema(*open(connectionString));
  std::puts("created");
  return 0;
}

int loadSample(const std::string& connectionString, bool) {
  const auto connection = open(connectionString);
  if (connection->query("select count(*) as stores from Store")->integer("stores") > 0)
    throw Error(ErrorNumber::StatementFailed, "ondrel",
                "The database holds a store already; the sample store goes into an empty one");
  loadSampleStore(*connection);
  std::puts("sample store loaded");
  return 0;
}

int check(const std::string& connectionString, bool) {
  const CheckedStore store =
      isEmbeddedConnectionString(connectionString) ? CheckedStore::Embedded : CheckedStore::Server;
  const std::vector<std::string> findings = checkDatabase(*open(connectionString), store);
  for (const std::string& finding : findings) std::puts(finding.c_str());
  if (findings.empty()) std::puts("complete");
  return findings.empty() ? 0 : 1;
}

struct DatabaseAction {
  const char* name;
  const char* description;
  int (*run)(const std::string& connectionString, bool ifMissing);
};

// clang-format off
constexpr DatabaseAction kDatabaseActions[] = {
    {"create", "Make the database with the tables of a store",   create},
    {"sample", "Load the sample store into an empty database",   loadSample},
    {"check",  "Say what the database lacks; status 1 if it does", check},
};
// clang-format on

}  // namespace

void addDatabaseCommand(CLI::App& app, int& exitCode) {
  CLI::App* database = app.add_subcommand("db", "Create, fill or check the database of a store");
  database->require_subcommand(1);
  addStoreFileCommands(*database);
  const auto connectionString = std::make_shared<std::string>();
  const auto ifMissing = std::make_shared<bool>(false);
  for (const DatabaseAction& action : kDatabaseActions) {
    CLI::App* command = database->add_subcommand(action.name, action.description);
    command
        ->add_option("CONNECTION", *connectionString,
                     "Connection string: \"Driver=Embedded;Database=PATH\", or that of a SQL Server")
        ->required();
    if (action.run == create)
      command->add_flag("--if-missing", *ifMissing, "Leave a database file that is there as it is");
    command->callback([&action, connectionString, ifMissing, &exitCode] {
      exitCode = action.run(*connectionString, *ifMissing);
    });
  }
}

}  // namespace ondrel
