#pragma once

#include <memory>

#include "data/connection.h"
#include "data/odbc/odbc_pool.h"

namespace ondrel {

// A connection through ODBC, which is not open yet; the connection string is read when it opens. While it is
// open it borrows a session of the pool.
std::unique_ptr<Connection> connectOdbc(const ConnectionSettings& settings);
std::unique_ptr<Connection> connectOdbc(const ConnectionSettings& settings, std::shared_ptr<OdbcPool> pool);

}  // namespace ondrel
