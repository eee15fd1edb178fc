#pragma once

#include "data/apartment.h"

namespace ondrel {

// Lets a chosen statement fail before it reaches the database, as if the server had gone for a moment.
class StatementFaults {
 public:
  // Stands before the apartment's database; must outlive the apartment's use of it.
  void attachTo(Apartment& apartment);
  // The n-th statement from now on (1 is the next) fails, and none after it; 0 for none.
  void failStatement(int n) {
    failAt_ = n;
    seen_ = 0;
  }
  // Statements and commits since failStatement.
  int seen() const { return seen_; }

 private:
  friend class FaultyConnection;
  void pass();

  int failAt_ = 0;
  int seen_ = 0;
};

}  // namespace ondrel
