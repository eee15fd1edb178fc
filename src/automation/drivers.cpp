#include "automation/drivers.h"

#include "data/embedded/embedded_connection.h"
#include "data/odbc/odbc_connection.h"

namespace ondrel {

std::unique_ptr<Connection> connectToDatabase(const ConnectionSettings& settings) {
  if (isEmbeddedConnectionString(settings.connectionString)) return connectEmbedded(settings);
  return connectOdbc(settings);
}

}  // namespace ondrel
