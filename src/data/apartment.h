#pragma once

#include <memory>
#include <string>

#include "data/connection.h"
#include "data/statement_trace.h"
#include "data/store_tables.h"
#include "platform/clock.h"
#include "platform/files.h"

namespace ondrel {

// The state that all objects of one page share, and no others: a page runs on one thread and has its
// apartment to itself for the length of a call. A host that serves many pages makes an apartment for
// each session and enters it around every call.
struct Apartment {
  // The connection string of all objects of the apartment; a page sets it first.
  std::string DBConnectionString;
  // The open transaction; nothing between transactions.
  std::shared_ptr<Connection> sharedConnection;
  // Text of the latest statement sent through executeInTransaction; empty when there is none.
  std::string sharedCommand;

  // The store that the apartment's objects work for.
  StoreTables store;

  std::shared_ptr<Clock> clock = std::make_shared<SystemClock>();
  // Where the folders that a page names lie on this host.
  Files files;
  // Makes the connections; the host sets it, since the drivers stand above this room.
  ConnectionFactory connect;
  StatementTrace trace;

  // The calling thread's apartment: the one entered last, or the thread's own.
  static std::shared_ptr<Apartment> current();
};

using ApartmentRef = std::shared_ptr<Apartment>;

// Makes an apartment the calling thread's current one for as long as the scope lives.
class ApartmentScope {
 public:
  explicit ApartmentScope(ApartmentRef apartment);
  ~ApartmentScope();
  ApartmentScope(const ApartmentScope&) = delete;
  ApartmentScope& operator=(const ApartmentScope&) = delete;

 private:
  ApartmentRef previous_;
};

}  // namespace ondrel
