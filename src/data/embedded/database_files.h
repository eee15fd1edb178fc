#pragma once

#include <string>

#include "data/embedded/database.h"

namespace ondrel::sql {

// The database that a connection string names: a path, ":memory:", or the name of an EmbeddedStore. Raises
// ErrorNumber::ConnectionFailed when there is none of that name or the file is not a store's.
DatabaseRef findDatabase(const std::string& name);

// Closes what this process has open of a file that is about to be made anew.
void forgetDatabaseFile(const std::string& path);

// Databases in memory, by the name that a connection string gives.
void enterMemoryDatabase(const std::string& name, DatabaseRef database);
void removeMemoryDatabase(const std::string& name);

}  // namespace ondrel::sql
