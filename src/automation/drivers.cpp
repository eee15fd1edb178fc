#include "automation/drivers.h"

#include "data/embedded/embedded_connection.h"

namespace ondrel {

std::unique_ptr<Connection> connectToDatabase(const ConnectionSettings& settings) {
  if (isEmbeddedConnectionString(settings.connectionString)) return connectEmbedded(settings);
  throw Error(ErrorNumber::ProviderFailure, "QueryDatabase",
              settings.connectionString.empty()
                  ? "DBConnectionString is not set"
                  : "Provider cannot be found: this build reaches databases by Driver=Embedded only");
}

}  // namespace ondrel
