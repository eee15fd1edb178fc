#pragma once

#include <memory>

#include "data/connection.h"

namespace ondrel {

// A connection by the driver that the connection string chooses: Driver=Embedded, or ODBC for any other.
// It is not open yet; opening raises ProviderFailure when no driver is installed for the string.
std::unique_ptr<Connection> connectToDatabase(const ConnectionSettings& settings);

}  // namespace ondrel
