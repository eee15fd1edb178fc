#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/date.h"

namespace ondrel {

struct ConsoleOptions {
  // The database; a fresh private one in memory when there is none.
  std::optional<std::string> connectionString;
  // Leaves the tables of the private database empty instead of giving it the sample store.
  bool emptyStore = false;
  // Fixes the clock of the library and of the embedded database.
  std::optional<Date> now;
  // What the script finds in `arguments`.
  std::vector<std::string> arguments;
};

// Runs a script with the globals of the engine (see script_engine.h) and those of the console: `arguments`,
// and `Database` with connectionString, execute(sql), query(sql) and trace(). An error that the script does
// not catch goes to `complain` as a line. Returns the exit status: of quit, 1 after an error, otherwise 0.
int runScript(std::string_view source, std::string_view fileName, const ConsoleOptions& options,
              const std::function<void(std::string_view)>& print,
              const std::function<void(std::string_view)>& complain);

// The same for a file, "-" for the standard input, with the program's own output. Error 53 when the file
// cannot be read.
int runScriptFile(const std::string& fileName, const ConsoleOptions& options);

}  // namespace ondrel
