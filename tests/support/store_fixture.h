#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "data/apartment.h"
#include "data/embedded/embedded_store.h"
#include "platform/clock.h"

namespace ondrel {

// A test's own database, apartment and clock: a fresh copy of the sample store on Tuesday 2026-11-24 at 10:30,
// with the statement trace on. The apartment is the thread's current one for the length of the test.
class StoreTest : public ::testing::Test {
 protected:
  explicit StoreTest(StoreContents contents = StoreContents::Sample);

  // The statements and transaction steps since the last call.
  std::vector<std::string> statements() { return apartment->trace.take(); }
  // The same without the steps.
  std::vector<std::string> reads();
  // First column of the first row, Empty without one; for looking at what was stored. Leaves no trace.
  Variant scalar(const std::string& sql);
  // All rows, each as its values joined by " | ".
  std::vector<std::string> rows(const std::string& sql);
  // Statements that prepare a case. Leaves no trace.
  void execute(const std::string& sql);

  EmbeddedStore store;
  std::shared_ptr<FixedClock> clock = std::make_shared<FixedClock>(Date::of(2026, 11, 24, 10, 30));
  ApartmentRef apartment;

 private:
  ApartmentScope scope_;
};

// True when the environment variable ONDREL_TEST_STORE is "odbc": apartments then reach their store through
// the driver manager, as they would reach a server.
bool testsRunOverOdbc();

// An apartment on the store, with the trace on.
ApartmentRef apartmentOn(const EmbeddedStore& store, std::shared_ptr<Clock> clock);

}  // namespace ondrel
