#include "store_files_command.h"

#include <CLI/CLI.hpp>
#include <cstdio>
#include <fstream>
#include <iterator>
#include <memory>

#include "automation/drivers.h"
#include "base/error.h"
#include "data/embedded/database_upgrade.h"
#include "data/embedded/embedded_connection.h"
#include "data/embedded/setup_transfer.h"
#include "platform/clock.h"

namespace ondrel {
namespace {

struct Arguments {
  std::string connectionString;
  std::string file;
  bool everything = false;
  bool replaces = false;
};

std::string pathOf(const Arguments& arguments) {
  const auto path = connectionStringValue(arguments.connectionString, "Database");
  if (!isEmbeddedConnectionString(arguments.connectionString) || !path)
    throw CLI::ValidationError("CONNECTION",
                               "this is for a database file: \"Driver=Embedded;Database=PATH\"");
  return *path;
}

std::unique_ptr<Connection> open(const Arguments& arguments) {
  auto connection = connectToDatabase({arguments.connectionString, "", "", std::make_shared<SystemClock>()});
  connection->open();
  return connection;
}

void upgrade(const Arguments& arguments) {
  const DatabaseUpgrade done = upgradeDatabase(pathOf(arguments));
  if (done.copy.empty()) return void(std::printf("up to date (version %d)\n", done.to));
  for (const std::string& one : done.added) std::printf("added: %s\n", one.c_str());
  std::printf("upgraded from version %d to %d; as it was: %s\n", done.from, done.to, done.copy.c_str());
}

void backUp(const Arguments& arguments) {
  backUpDatabase(pathOf(arguments), arguments.file);
  std::printf("copied to %s\n", arguments.file.c_str());
}

void exportTo(const Arguments& arguments) {
  const std::string text = exportedStore(*open(arguments), arguments.everything);
  std::ofstream file(arguments.file, std::ios::binary | std::ios::trunc);
  file << text << std::flush;
  if (!file) throw Error(ErrorNumber::PathAccess, "ondrel", "Cannot write " + arguments.file);
  std::puts("exported");
}

void importFrom(const Arguments& arguments) {
  std::ifstream file(arguments.file, std::ios::binary);
  if (!file) throw Error(ErrorNumber::FileNotFound, "ondrel", "Cannot read " + arguments.file);
  const std::string text{std::istreambuf_iterator<char>(file), {}};
  std::printf("%d rows\n", importStore(*open(arguments), text, arguments.replaces));
}

struct Action {
  const char* name;
  const char* description;
  const char* file;  // what the second argument is; null for none
  void (*run)(const Arguments&);
};

// clang-format off
constexpr Action kActions[] = {
    {"upgrade", "Bring a database of an earlier version to this one; a copy is kept",    nullptr,                    upgrade},
    {"backup",  "Copy a database, also while the host serves it",                        "File of the copy",         backUp},
    {"export",  "Write a shop's set-up as a text",                                       "File of the text",         exportTo},
    {"import",  "Enter a shop's set-up from such a text",                                "File of the text",         importFrom},
};
// clang-format on

}  // namespace

void addStoreFileCommands(CLI::App& database) {
  const auto arguments = std::make_shared<Arguments>();
  for (const Action& action : kActions) {
    CLI::App* command = database.add_subcommand(action.name, action.description);
    command->add_option("CONNECTION", arguments->connectionString, "\"Driver=Embedded;Database=PATH\"")
        ->required();
    if (action.file) command->add_option("FILE", arguments->file, action.file)->required();
    if (action.run == exportTo)
      command->add_flag("--all", arguments->everything, "Customers, tickets and books as well");
    if (action.run == importFrom)
      command->add_flag("--replace", arguments->replaces, "Remove the rows of the text's tables first");
    command->callback([&action, arguments] { action.run(*arguments); });
  }
}

}  // namespace ondrel
