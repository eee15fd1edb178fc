#pragma once

#include <sqlite3.h>

#include <memory>
#include <string>

#include "data/dialect/schema.h"
#include "data/embedded/database.h"

namespace ondrel::sql {

// Marks a file as one of this program; stands in its header.
inline constexpr int kApplicationId = 0x4F4E4453;

// The schema that stands in an open file. Raises ErrorNumber::ConnectionFailed when the file is not a
// database of this program.
std::shared_ptr<const Schema> readSchema(sqlite3* handle, const std::string& path);

// Makes an empty file a database of this program, without tables.
void markDatabase(Session& session);

// Closes what this process has open of a file that is about to be made anew.
void forgetDatabaseFile(const std::string& path);

// Databases in memory, by the name that a connection string gives.
void enterMemoryDatabase(const std::string& name, DatabaseRef database);
void removeMemoryDatabase(const std::string& name);

}  // namespace ondrel::sql
