#pragma once

#include <functional>
#include <string_view>

#include "data/connection.h"

namespace ondrel {

// The version of the tables that this program knows: the number of tables, columns and indices that the schema
// declares. The schema only grows, so a database with a greater number was made by a newer program.
int schemaVersion();

// Runs the statements of a T-SQL script one after the other, in one transaction unless one is open: all of
// them take effect or none. They are parted by semicolons, "go", or the word that begins the next one.
void runScript(Connection& connection, std::string_view script);

// Enters the tables of a store in an empty database, and the rows of the sample store in an empty store.
void createSchema(Connection& connection);
void loadSampleStore(Connection& connection);

namespace sql {

// The same statements for whoever has no connection yet; the transaction is the caller's.
using StatementRunner = std::function<void(std::string_view)>;
void createSchema(const StatementRunner& run);
void loadSampleStore(const StatementRunner& run);

}  // namespace sql
}  // namespace ondrel
