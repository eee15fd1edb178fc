#include "automation/script/database_access.h"

#include <utility>

namespace ondrel {
namespace {

// Another connection string for as long as the scope lives; the objects of the apartment keep theirs.
class ConnectionStringScope {
 public:
  ConnectionStringScope(Apartment& apartment, const std::string& connectionString)
      : apartment_(apartment), previous_(std::exchange(apartment.DBConnectionString, connectionString)) {}
  ~ConnectionStringScope() { apartment_.DBConnectionString = std::move(previous_); }
  ConnectionStringScope(const ConnectionStringScope&) = delete;
  ConnectionStringScope& operator=(const ConnectionStringScope&) = delete;

 private:
  Apartment& apartment_;
  std::string previous_;
};

}  // namespace

void DatabaseAccess::execute(std::string_view sql) {
  const ConnectionStringScope scope(apartment_, connectionString_);
  executeInTransaction(apartment_, sql);
}

RecordsetRef DatabaseAccess::query(std::string_view sql) {
  const ConnectionStringScope scope(apartment_, connectionString_);
  return queryDatabase(apartment_, sql);
}

void DatabaseAccess::begin() {
  const ConnectionStringScope scope(apartment_, connectionString_);
  openTransaction(apartment_);
}

void DatabaseAccess::commit() {
  const ConnectionStringScope scope(apartment_, connectionString_);
  commitTransaction(apartment_);
}

}  // namespace ondrel
