#include <CLI/CLI.hpp>
#include <cstdio>
#include <memory>

#include "automation/reference.h"
#include "commands.h"

namespace ondrel {

void addDescribeCommand(CLI::App& app, int& exitCode) {
  CLI::App* describe = app.add_subcommand("describe", "Print the classes with their members and arguments");
  const auto name = std::make_shared<std::string>();
  describe->add_option("CLASS", *name, "One class, such as invoice; without it all of them");
  describe->callback([name, &exitCode] {
    std::fputs((name->empty() ? describeClasses() : describeClass(*name)).c_str(), stdout);
    exitCode = 0;
  });
}

}  // namespace ondrel
