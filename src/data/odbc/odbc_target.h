#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "data/connection.h"

namespace ondrel {

// How connections to one database are kept for the next user.
struct PoolSettings {
  bool pooled = true;
  int size = 20;         // connections at most, those in use included
  int idleSeconds = 60;  // after which one that nobody uses is closed
  int waitSeconds = 15;  // for one to come back when all are in use

  bool operator==(const PoolSettings&) const = default;
};

// What the driver manager is to be told.
struct OdbcTarget {
  std::string text;          // for the driver manager; holds the password
  std::string password;      // which must not be shown
  bool isSqlServer = false;  // transactions begin and end by statements of its language
  bool isRemote = true;      // there is a server, which may fall silent
  int loginSeconds = 15;
  PoolSettings pool;
};

// What the mapping asks of the machine.
struct OdbcMachine {
  std::vector<std::string> drivers;  // installed, by name
  // Value of a key of a data source; empty when there is none.
  std::function<std::string(std::string_view source, std::string_view key)> sourceValue;
  // Library of an installed driver; empty when there is none.
  std::function<std::string(std::string_view driver)> driverLibrary;
};

// What a connection string comes to, as shops have them: of OLE DB ("Provider=SQLOLEDB;Data Source=..;Initial
// Catalog=.."), of ODBC ("Driver={FreeTDS};Server=..;UID=.."), or a data source ("DSN=shop" or "shop").
// "Data Source" without a provider is one where the machine has it, else a server.
// A user and password of the settings that are not empty go before those of the string.
//
// | keyword                        | effect                                                              |
// |--------------------------------|---------------------------------------------------------------------|
// | Pooling                        | no: each connection is opened and closed (yes)                      |
// | Max Pool Size, Pool Idle Time  | the settings above; seconds                                         |
// | Connect Timeout                | seconds to wait for the server, and for a free connection           |
//
// Error ProviderFailure for a provider or a server without a driver, InvalidArgument for a string that does
// not parse or a switch that is neither on nor off, ConnectionFailed for an option that writes traffic to a file, since card numbers
// pass, or that keeps settings in one. No value of the string stands in an error.
OdbcTarget odbcTarget(const ConnectionSettings& settings, const OdbcMachine& machine);

}  // namespace ondrel
