#include <CLI/CLI.hpp>
#include <memory>

#include "automation/script/script_console.h"
#include "base/error.h"
#include "commands.h"

namespace ondrel {
namespace {

struct RunArguments {
  std::string connectionString;
  std::string now;
  bool emptyStore = false;
};

ConsoleOptions optionsOf(const RunArguments& arguments) {
  ConsoleOptions options;
  if (!arguments.connectionString.empty()) options.connectionString = arguments.connectionString;
  options.emptyStore = arguments.emptyStore;
  if (!arguments.now.empty()) {
    options.now = Date::parse(arguments.now);
    if (!options.now) throw CLI::ValidationError("--now", "no date: " + arguments.now);
  }
  return options;
}

constexpr const char* kGlobals =
    "A script is ECMAScript 5 with these globals:\n"
    "  CreateObject(name)    an object of a class, \"OndrelCorpComponents.invoice\"; members in any case\n"
    "  ByRef(value)          a box for an argument by reference; read box.value afterwards\n"
    "  Database              connectionString, execute(sql), query(sql), trace()\n"
    "  arguments             what stands behind the file's name\n"
    "  print(...), quit(code)\n"
    "Shop paths such as C:\\xc lie below the folder that the environment's ONDREL_DRIVES names, a folder for each\n"
    "drive (c/xc), or below ~/.ondrel/drives without it.\n"
    "An error that the script does not catch prints its number, description and position; the status is 1.";

}  // namespace

// What stands behind the script's name is the script's, options of the same name included.
void addRunCommand(CLI::App& app, int& exitCode) {
  CLI::App* run = app.add_subcommand("run", "Run a script: ondrel run [OPTIONS] FILE.js [ARG...]");
  const auto arguments = std::make_shared<RunArguments>();
  auto* database = run->add_option("--db", arguments->connectionString,
                                   "Connection string; without it a private database with the sample store");
  run->add_flag("--empty", arguments->emptyStore, "Leave the private database empty")->excludes(database);
  run->add_option("--now", arguments->now, "Fix the clock: \"2026-11-24 10:30\"");
  run->prefix_command();
  run->footer(kGlobals);
  run->callback([run, arguments, &exitCode] {
    std::vector<std::string> rest = run->remaining();
    if (rest.empty()) throw CLI::RequiredError("FILE.js");
    if (rest.front().size() > 1 && rest.front().front() == '-') throw CLI::ExtrasError(rest);
    ConsoleOptions options = optionsOf(*arguments);
    options.arguments.assign(rest.begin() + 1, rest.end());
    exitCode = runScriptFile(rest.front(), options);
  });
}

}  // namespace ondrel
