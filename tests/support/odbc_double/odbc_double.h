#pragma once

#include <string>

#include "data/embedded/embedded_store.h"
#include "support/odbc_double/server_double.h"

namespace ondrel {

// The connection string of a server double, a new one at each call. It holds the server's address.
std::string connectionStringOf(ServerDouble& server);

// A server over an embedded store, which must outlive it: statements through the driver manager reach the
// store as they would reach one on a real server, results come back in the server's types. As with FreeTDS
// a transaction opens when autocommit goes off, and ending one opens the next.
class StoreServer : public ServerDouble {
 public:
  StoreServer(const EmbeddedStore& store, std::shared_ptr<Clock> clock);
  std::unique_ptr<ServerSession> connect(std::string_view connectionString, ServerMessage& reason) override;

 private:
  const EmbeddedStore& store_;
  std::shared_ptr<Clock> clock_;
};

}  // namespace ondrel
