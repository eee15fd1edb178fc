#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "data/recordset/recordset.h"
#include "platform/clock.h"

namespace ondrel {

// A connection to a database. Statements are complete texts. A failure raises Error with the number of
// the store and its description; passwords never stand in one.
class Connection {
 public:
  virtual ~Connection() = default;  // closes

  // Seconds that a statement may take, 30 unless told; set before open.
  virtual void setCommandTimeout(int seconds) = 0;
  // Nothing is left open when this fails.
  virtual void open() = 0;
  virtual void begin() = 0;
  virtual void commit() = 0;
  // Runs a statement that gives no rows.
  virtual void execute(std::string_view sql) = 0;
  // Runs a statement and fetches its whole first result: a table of its own, on the first row. A statement
  // without a result gives a table that is not open.
  virtual RecordsetRef query(std::string_view sql) = 0;
  // Discards a transaction that is still open.
  virtual void close() = 0;
};

// What a driver needs to make a connection, which is not open yet.
struct ConnectionSettings {
  std::string connectionString;
  std::string user;
  std::string password;
  std::shared_ptr<Clock> clock;  // for a store that runs inside this process
};

using ConnectionFactory = std::function<std::unique_ptr<Connection>(const ConnectionSettings&)>;

}  // namespace ondrel
