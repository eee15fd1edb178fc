#pragma once

#include <sqlite3.h>

#include <memory>
#include <string>
#include <string_view>

#include "data/dialect/schema.h"

namespace ondrel::sql {

// The statements that make an empty file a database of this program, without tables.
std::string markStatements();

// The schema that stands in an open file. Raises ErrorNumber::ConnectionFailed when the file is not a
// database of this program, or one of a newer program.
std::shared_ptr<const Schema> readSchema(sqlite3* handle, const std::string& path);

// Raises ErrorNumber::ConnectionFailed with the path and the reason.
[[noreturn]] void failOpen(const std::string& path, std::string_view reason);

}  // namespace ondrel::sql
