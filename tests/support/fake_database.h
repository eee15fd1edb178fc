#pragma once

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "data/apartment.h"

namespace ondrel {

// A database of prepared answers, for tests that look at what is sent and in what order. It records every
// statement and step ("<open>", "<timeout 240>", "<begin>", "<commit>", "<close>"). A read without a
// prepared answer gives an empty table of one column.
class FakeDatabase {
 public:
  // Statements that hold `part` are answered with the table; the latest such answer counts.
  void answer(std::string part, RecordsetRef table);
  // The n-th statement from now on (1 is the next) fails.
  void failStatement(int n) { failIn_ = n; }
  // Makes the apartment use this database, which must outlive it.
  void attachTo(Apartment& apartment);
  // What was recorded since the last call.
  std::vector<std::string> take() { return std::exchange(log_, {}); }

 private:
  friend class FakeConnection;
  RecordsetRef run(std::string_view sql);

  std::vector<std::pair<std::string, RecordsetRef>> answers_;
  std::vector<std::string> log_;
  int failIn_ = 0;
};

// A table of nullable columns, each of the type of its first value that is not Null.
RecordsetRef tableOf(const std::vector<std::string>& names, const std::vector<std::vector<Variant>>& rows);

}  // namespace ondrel
