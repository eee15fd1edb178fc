#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <string_view>
#include <vector>

#include "data/recordset/filter.h"
#include "data/recordset/sort_order.h"
#include "data/recordset/table.h"

namespace ondrel {

// A filter, a sort and a position over the rows of a table.
//
// What the view shows follows the table at these moments:
//
// | moment                               | effect on the view                                          |
// |--------------------------------------|-------------------------------------------------------------|
// | filter or sort assigned, clearFilter | rows collected and sorted anew                              |
// | moveFirst, moveLast                  | the same, when rows came or changed since then              |
// | moveNext, movePrevious, bookmark     | changed rows that no longer pass leave; the current row     |
// |                                      | enters when it passes now                                   |
// | a row is deleted through any view    | it leaves at once                                           |
//
// So a loop sees its rows in a fixed order while it changes them, and the row that follows one that
// left is the one that stood behind it.
class View final : private TableObserver {
 public:
  explicit View(std::shared_ptr<Table> table);
  ~View();
  View(const View&) = delete;
  View& operator=(const View&) = delete;

  Table& table() const { return *table_; }

  // ---- what is shown
  bool isFiltered() const { return filter_ != nullptr; }
  const std::string& filterText() const { return filter_->text(); }
  void setFilter(std::string_view text);
  void clearFilter();
  const std::string& sortText() const { return sort_.text(); }
  void setSort(std::string_view text);
  int count() const { return count_; }

  // ---- position
  // Place of the current row in the table; negative when there is none.
  std::int32_t row() const { return row_; }
  bool atEnd() const { return row_ < 0 && (count_ == 0 || (place_ >= count_ && !onDeleted_)); }
  bool atStart() const { return row_ < 0 && (count_ == 0 || place_ < 0); }
  void moveFirst();
  void moveLast();
  void moveNext() {
    if (unsettled_) settle();
    goTo(place_ + step_);
  }
  void movePrevious() {
    if (unsettled_) settle();
    goTo(place_ - 1);
  }
  // False when the row does not pass the filter; the position is then as it was.
  bool moveTo(size_t row);
  // Makes the row that was just added current; it enters at the next move.
  void moveToNew(size_t row);
  // Lets the current row enter now.
  void settle();
  void removeShown();

  // How the table knows the view.
  TableObserver* observer() { return this; }

 private:
  void goTo(int place) {
    onDeleted_ = isNew_ = false;
    if (place >= 0 && place < count_) {
      place_ = place;
      row_ = rows_[static_cast<size_t>(place)];
      step_ = 1;
    } else {
      row_ = -1;
      place_ = place < 0 ? -1 : count_;
      step_ = place < 0 ? 1 : 0;
    }
  }
  void collect();
  void collectPassing();
  bool passes(std::int32_t row) const;
  int find(std::int32_t row) const;
  int placeFor(std::int32_t row) const;
  void erase(int place);
  void insert(int place, std::int32_t row);

  void noteRowRemoved(size_t row) override;
  void noteRowsMoved(std::span<const std::int32_t> places) override;
  void noteChange(size_t row) override;

  std::shared_ptr<Table> table_;
  std::unique_ptr<Filter> filter_;  // the one in force; none when all rows show
  std::unique_ptr<Filter> spare_;   // the next one is made here, so that an error leaves the other alone
  SortOrder sort_;

  // Rows shown, in order: the first count_ of rows_, which has room for one more block.
  std::vector<std::int32_t> rows_;
  int count_ = 0;

  std::int32_t row_ = -1;
  int place_ = 0;  // of the current row in rows_; without one, of the row that follows
  int step_ = 0;   // from place_ to the next row: 1 on a shown row, 0 between rows
  bool onDeleted_ = false;
  bool isNew_ = false;      // the current row was added and has not been shown yet
  bool unsettled_ = false;  // a move has work to do first
  std::vector<std::int32_t> changed_;
};

}  // namespace ondrel
