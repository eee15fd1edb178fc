#pragma once

#include <memory>
#include <mutex>
#include <utility>
#include <vector>

#include "data/dialect/catalogue.h"
#include "data/embedded/session.h"

namespace ondrel::sql {

// One embedded database as this process knows it: what it declares, and the sessions that no connection has at
// the moment. Safe to share between threads; a session is used by one at a time.
class Database {
 public:
  explicit Database(DatabaseFile file) : file_(std::move(file)) {}

  // A session that nobody else has, the one returned last first. The declarations are read from the file with the
  // first one.
  std::unique_ptr<Session> borrow();
  // Takes a session back; a transaction that is open in it is discarded.
  void giveBack(std::unique_ptr<Session> session);
  // Closes the sessions that wait here.
  void closeSessions();

  const DatabaseFile& file() const { return file_; }
  Catalogue& catalogue() { return catalogue_; }

 private:
  DatabaseFile file_;
  Catalogue catalogue_;
  std::mutex mutex_;
  std::vector<std::unique_ptr<Session>> idle_;
};

using DatabaseRef = std::shared_ptr<Database>;

}  // namespace ondrel::sql
