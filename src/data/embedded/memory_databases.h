#pragma once

#include <string>

#include "data/embedded/database.h"

namespace ondrel::sql {

enum class StoreContents { Empty, Sample };

// Databases in memory with the tables of a store. Making one copies a template, which takes far less than a
// millisecond. No connection finds it before it is entered (database_files.h).
DatabaseRef newMemoryDatabase(StoreContents contents);
DatabaseRef newMemoryDatabase(StoreContents contents, const std::string& name);
// Another one with the rows that are committed in `database`.
DatabaseRef copyMemoryDatabase(Database& database);
// Takes one back that nobody uses any more.
void recycleMemoryDatabase(DatabaseRef database);

}  // namespace ondrel::sql
