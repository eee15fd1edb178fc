#include <CLI/CLI.hpp>
#include <cstdio>
#include <exception>
#include <iostream>

#include "base/error.h"
#include "commands.h"

namespace {

constexpr int kFailureExitCode = 1;
constexpr int kUsageExitCode = 2;

void complain(const std::string& text) {
  std::fflush(stdout);
  std::fprintf(stderr, "%s\n", text.c_str());
}

}  // namespace

int main(int argc, char** argv) {
  CLI::App app(
      "The counter components at work: scripts, the counter in a browser, and the database of a store.",
      "ondrel");
  app.set_version_flag("--version", "ondrel " ONDREL_VERSION, "Print the version and exit");
  app.require_subcommand(1);
  int exitCode = 0;
  ondrel::addRunCommand(app, exitCode);
  ondrel::addDatabaseCommand(app, exitCode);
  ondrel::addDescribeCommand(app, exitCode);
  ondrel::addServeCommand(app, exitCode);
  ondrel::addRegisterCommands(app);
  try {
    app.parse(argc, argv);
  } catch (const CLI::RequiredError& error) {
    // An unknown sub-command is told as if there were none.
    if (argc == 2 && argv[1][0] != '-' && app.get_subcommands().empty()) {
      complain(std::string("There is no command ") + argv[1] + "\nRun with --help for more information.");
      return kUsageExitCode;
    }
    app.exit(error);
    return kUsageExitCode;
  } catch (const CLI::ParseError& error) {
    return app.exit(error) == 0 ? 0 : kUsageExitCode;
  } catch (const ondrel::Error& error) {
    complain("error " + std::to_string(error.number()) + ": " + error.description());
    return kFailureExitCode;
  } catch (const std::exception& exception) {
    complain(std::string("error: ") + exception.what());
    return kFailureExitCode;
  }
  // Results that found no room, on a full disk say, are no success.
  if (std::fflush(stdout) != 0 || std::ferror(stdout) != 0 || !std::cout.flush()) {
    complain("error 61: The output cannot be written");
    return kFailureExitCode;
  }
  return exitCode;
}
