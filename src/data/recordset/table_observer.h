#pragma once

#include <cstdint>
#include <span>

namespace ondrel {

// Who is told what happens to the rows of a table.
class TableObserver {
 public:
  void noteRowAdded() { stale_ = true; }
  void noteWrite(size_t row, int column) {
    if (watched_ >> (column % 64) & 1) noteChange(row);
  }
  virtual void noteRowRemoved(size_t row) = 0;
  // `places` has the new place of each row by its old one.
  virtual void noteRowsMoved(std::span<const std::int32_t> places) = 0;

 protected:
  ~TableObserver() = default;
  // A cell of a watched column was written to.
  virtual void noteChange(size_t row) = 0;

  std::uint64_t watched_ = 0;  // columns, as in FilterExpression
  bool stale_ = false;         // rows came or changed
};

}  // namespace ondrel
