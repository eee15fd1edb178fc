#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace ondrel {

// What a server behind the driver of this folder says. The driver is a shared object that the real driver
// manager loads; the server is an object of the test, whose address stands in the connection string.

struct ServerMessage {
  std::string state;  // SQLSTATE
  int number = 0;
  std::string text;
};

using Moment = std::array<int, 6>;  // year, month, day, hour, minute, second
using ServerCell = std::variant<std::monostate, std::int64_t, double, Moment, std::string>;

struct ServerColumn {
  std::string name;
  int sqlType = 0;
  size_t size = 0;
};

// One result of a statement, of which it may have any number.
struct ServerResult {
  std::optional<ServerMessage> error;  // instead of a result
  std::vector<ServerMessage> notes;    // before the error or the result
  std::vector<ServerColumn> columns;   // none: it says a number of rows only
  std::vector<std::vector<ServerCell>> rows;
  std::optional<ServerMessage> fetchError;  // behind the rows
};

using Failure = std::optional<ServerMessage>;

// Of one connection.
class ServerSession {
 public:
  virtual ~ServerSession() = default;
  virtual std::vector<ServerResult> run(std::string_view sql) = 0;
  virtual Failure setAutocommit(bool on) = 0;
  virtual Failure endTransaction(bool commit) = 0;
  virtual void setTimeout(int seconds) = 0;
  virtual void reset() = 0;
  virtual bool isDead() = 0;
};

class ServerDouble {
 public:
  virtual ~ServerDouble() = default;
  // A session, or nothing with the reason.
  virtual std::unique_ptr<ServerSession> connect(std::string_view connectionString,
                                                 ServerMessage& reason) = 0;
};

}  // namespace ondrel
