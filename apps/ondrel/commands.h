#pragma once

namespace CLI {
class App;
}

namespace ondrel {

// Each enters a sub-command of the program. It runs when the command line is parsed and leaves its exit
// status in `exitCode`, which must live as long.
void addRunCommand(CLI::App& app, int& exitCode);
void addDatabaseCommand(CLI::App& app, int& exitCode);
void addDescribeCommand(CLI::App& app, int& exitCode);
void addServeCommand(CLI::App& app, int& exitCode);
void addRegisterCommands(CLI::App& app);

}  // namespace ondrel
