#pragma once

namespace CLI {
class App;
}

namespace ondrel {

// Enters `upgrade`, `backup`, `export` and `import` below the command `db`.
void addStoreFileCommands(CLI::App& database);

}  // namespace ondrel
