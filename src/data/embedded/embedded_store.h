#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "data/connection.h"
#include "data/dialect/procedures/procedure.h"
#include "data/dialect/store_scripts.h"
#include "data/embedded/memory_databases.h"

namespace ondrel {

using sql::StoreContents;

// A database in memory with the tables of a store, for tests, consoles and demonstrations. It lives as long
// as this object and is private to whoever knows its connection string; any number of connections of this
// process share it. Making one copies a template, which takes far less than a millisecond.
class EmbeddedStore {
 public:
  explicit EmbeddedStore(StoreContents contents = StoreContents::Empty);
  // Under a name of its own instead of a made-up one, ":memory:name".
  EmbeddedStore(StoreContents contents, const std::string& name);
  ~EmbeddedStore();
  EmbeddedStore(EmbeddedStore&&) noexcept;
  EmbeddedStore& operator=(EmbeddedStore&&) = delete;

  const std::string& connectionString() const { return connectionString_; }
  // A connection that is open.
  std::unique_ptr<Connection> connect(std::shared_ptr<Clock> clock = nullptr) const;
  // Another store with the rows that are committed in this one. No transaction may be open.
  EmbeddedStore clone() const;
  // Puts a body of one's own in place of a procedure, or makes a new one.
  void replaceProcedure(std::string_view name, int least, int most, sql::ProcedureBody body);

 private:
  explicit EmbeddedStore(std::shared_ptr<sql::Database> database);

  std::string connectionString_;
  std::shared_ptr<sql::Database> database_;
};

// Makes a database file with the tables of a store. Raises error 58 when the file is there already.
void createDatabaseFile(const std::string& path, StoreContents contents);

// What a database lacks that the library asks of it, a sentence each; nothing when it lacks nothing.
//
// | store    | tables and columns                      | procedures and functions     |
// |----------|-----------------------------------------|------------------------------|
// | Embedded | all of the schema                       | are built in                 |
// | Server   | all but those with the note "own"       | those of the server's catalogue |
enum class CheckedStore { Embedded, Server };
std::vector<std::string> checkDatabase(Connection& connection, CheckedStore store = CheckedStore::Embedded);

}  // namespace ondrel
