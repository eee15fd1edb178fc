#pragma once

#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "data/dialect/procedures/procedure.h"
#include "data/dialect/schema.h"
#include "data/embedded/session.h"

namespace ondrel::sql {

// One embedded database as this process knows it: its schema, its procedures and the sessions that no
// connection has at the moment. Safe to share between threads; a session is used by one at a time.
class Database {
 public:
  explicit Database(DatabaseFile file) : file_(std::move(file)) {}

  // A session that nobody else has, the one returned last first.
  std::unique_ptr<Session> borrow();
  // Takes a session back; a transaction that is open in it is discarded.
  void giveBack(std::unique_ptr<Session> session);
  // Closes the sessions that wait here.
  void closeSessions();

  const DatabaseFile& file() const { return file_; }
  // Whether the declared tables have been read.
  bool isKnown() const;
  // The declared tables, read from the file with the first session.
  std::shared_ptr<const Schema> schema() const;
  void setSchema(std::shared_ptr<const Schema> schema);
  // The next session reads the declarations again.
  void forgetSchema();
  // Enters a declaration; sessions drop what they have prepared before.
  void addTable(TableDefinition table);
  void removeTable(std::string_view name);

  // The procedure of that name: one put in its place here, else the store's. Nothing when there is none.
  std::shared_ptr<const Procedure> procedure(std::string_view name) const;
  void replaceProcedure(Procedure procedure);
  void restoreProcedures();

 private:
  DatabaseFile file_;
  mutable std::mutex mutex_;
  std::vector<std::unique_ptr<Session>> idle_;
  std::shared_ptr<const Schema> schema_ = std::make_shared<Schema>();
  bool schemaRead_ = false;
  std::map<std::string, std::shared_ptr<const Procedure>> replaced_;
};

using DatabaseRef = std::shared_ptr<Database>;

// The database that a connection string names: a path, ":memory:", or the name of an EmbeddedStore. Raises
// ErrorNumber::ConnectionFailed when there is none of that name or the file is not a store's.
DatabaseRef findDatabase(const std::string& name);

}  // namespace ondrel::sql
