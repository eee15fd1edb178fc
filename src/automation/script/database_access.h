#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "data/query_database.h"

namespace ondrel {

// A script's own way to its database, through the door that the library uses: what a script sends stands in
// the trace with the rest, joins an open transaction, and a query drops one. It needs no DBConnectionString.
class DatabaseAccess : public Object {
 public:
  DatabaseAccess(Apartment& apartment, std::string connectionString)
      : apartment_(apartment), connectionString_(std::move(connectionString)) {}
  std::string_view className() const override { return "Database"; }

  // What a script gives to an object as its DBConnectionString.
  const std::string& connectionString() const { return connectionString_; }
  // Runs a statement that gives no rows.
  void execute(std::string_view sql);
  RecordsetRef query(std::string_view sql);
  // What is executed between the two stands or falls together; without the commit nothing of it stands.
  void begin();
  void commit();
  // The statements sent since the last call.
  std::vector<std::string> trace() { return apartment_.trace.take(); }

 private:
  Apartment& apartment_;  // outlives the script that holds this object
  std::string connectionString_;
};

}  // namespace ondrel
