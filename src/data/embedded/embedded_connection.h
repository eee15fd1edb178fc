#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "data/connection.h"

namespace ondrel {

// True for "Driver=Embedded;Database=..", keys in any case and order.
bool isEmbeddedConnectionString(std::string_view connectionString);
// The connection string of a database file.
std::string embeddedConnectionString(std::string_view path);
// Value of a key of a connection string ("Database"), without braces around it; nothing when it is not there.
std::optional<std::string> connectionStringValue(std::string_view connectionString, std::string_view key);

// A connection to an embedded database, which is not open yet. The Database of the connection string is the
// path of a file, the name of an EmbeddedStore, or ":memory:", one store that the whole process shares.
// Statements are T-SQL; getdate() asks the clock of the settings.
std::unique_ptr<Connection> connectEmbedded(const ConnectionSettings& settings);

}  // namespace ondrel
