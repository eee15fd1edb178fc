#include "data/recordset/view.h"

#include <algorithm>
#include <cstring>
#include <numeric>
#include <utility>

#include "data/recordset/words.h"

namespace ondrel {

View::View(std::shared_ptr<Table> table) : table_(std::move(table)) {
  table_->attach(this);
  collect();
}

View::~View() {
  table_->giveBack(std::move(filter_));
  table_->giveBack(std::move(spare_));
  table_->detach(this);
}

void View::setFilter(std::string_view text) {
  if (!spare_) spare_ = table_->takeFilter();
  spare_->bind(text, *table_, table_->filters());
  filter_.swap(spare_);
  collect();
}

void View::clearFilter() {
  if (!filter_) return moveFirst();
  spare_ = std::move(filter_);
  collect();
}

void View::setSort(std::string_view text) {
  sort_.set(text, *table_);
  collect();
}

void View::collect() {
  const size_t room = (table_->blocks() + 1) * Table::kBlock;
  if (rows_.size() < room) rows_.resize(room);
  if (filter_ || table_->hasGaps()) {
    collectPassing();
  } else {
    count_ = static_cast<int>(table_->places());
    std::iota(rows_.begin(), rows_.begin() + count_, 0);
  }
  if (!sort_.isEmpty()) sort_.sort(*table_, std::span(rows_).first(static_cast<size_t>(count_)));
  watched_ = (filter_ ? filter_->columns() : 0) | sort_.columns();
  changed_.clear();
  unsettled_ = stale_ = false;
  goTo(0);
}

// Writes each row and counts it only if it passes: no branch that the processor could guess wrong.
void View::collectPassing() {
  const std::uint8_t* alive = table_->alive();
  const std::uint8_t* passing = filter_ ? filter_->run(*table_, 0, table_->blocks()) : alive;
  const size_t end = table_->blocks() * Table::kBlock;
  std::int32_t* next = rows_.data();
  for (size_t row = 0; row < end; row += kWordBytes) {
    TextWord passes, lives;
    std::memcpy(&passes, passing + row, kWordBytes);
    std::memcpy(&lives, alive + row, kWordBytes);
    passes &= lives;
    if (passes == 0) continue;
    for (size_t k = 0; k < kWordBytes; ++k, passes >>= 8) {
      *next = static_cast<std::int32_t>(row + k);
      next += passes & 1;
    }
  }
  count_ = static_cast<int>(next - rows_.data());
}

void View::moveFirst() {
  if (unsettled_ || stale_)
    collect();
  else
    goTo(0);
}

void View::moveLast() {
  if (unsettled_ || stale_) collect();
  goTo(count_ - 1);
}

bool View::moveTo(size_t row) {
  settle();
  const auto wanted = static_cast<std::int32_t>(row);
  int place = find(wanted);
  if (place < 0) {
    if (!passes(wanted)) return false;
    collect();
    place = find(wanted);
  }
  goTo(place);
  return true;
}

void View::moveToNew(size_t row) {
  settle();
  row_ = static_cast<std::int32_t>(row);
  place_ = count_;
  step_ = 0;
  onDeleted_ = false;
  isNew_ = unsettled_ = true;
}

void View::settle() {
  for (const std::int32_t row : changed_) {
    const int place = find(row);
    if (place >= 0 && !passes(row)) erase(place);
  }
  changed_.clear();
  if (row_ >= 0 && step_ == 0) {
    if (isNew_) place_ = placeFor(row_);
    if (passes(row_)) {
      insert(place_, row_);
      step_ = 1;
    }
  }
  unsettled_ = row_ >= 0 && step_ == 0;
}

void View::removeShown() {
  settle();
  while (count_ > 0) table_->removeRow(static_cast<size_t>(rows_[static_cast<size_t>(count_ - 1)]));
  goTo(0);
}

bool View::passes(std::int32_t row) const {
  if (!table_->alive()[row]) return false;
  if (!filter_) return true;
  const size_t place = static_cast<size_t>(row) % Table::kBlock;
  return filter_->run(*table_, static_cast<size_t>(row) - place, 1)[place] != 0;
}

int View::find(std::int32_t row) const {
  const auto end = rows_.begin() + count_;
  const auto found =
      sort_.isEmpty() ? std::lower_bound(rows_.begin(), end, row) : std::find(rows_.begin(), end, row);
  return found != end && *found == row ? static_cast<int>(found - rows_.begin()) : -1;
}

int View::placeFor(std::int32_t row) const {
  const auto end = rows_.begin() + count_;
  const auto place = sort_.isEmpty() ? std::lower_bound(rows_.begin(), end, row)
                                     : std::find_if(rows_.begin(), end, [&](std::int32_t other) {
                                         return sort_.comesBefore(*table_, row, other);
                                       });
  return static_cast<int>(place - rows_.begin());
}

void View::erase(int place) {
  const auto at = rows_.begin() + place;
  std::copy(at + 1, rows_.begin() + count_, at);
  --count_;
  if (place < place_)
    --place_;
  else if (place == place_)
    step_ = 0;
}

void View::insert(int place, std::int32_t row) {
  if (static_cast<size_t>(count_) == rows_.size()) rows_.resize(rows_.size() + Table::kBlock);
  const auto at = rows_.begin() + place;
  std::copy_backward(at, rows_.begin() + count_, rows_.begin() + count_ + 1);
  *at = row;
  ++count_;
}

void View::noteRowRemoved(size_t row) {
  const auto removed = static_cast<std::int32_t>(row);
  std::erase(changed_, removed);
  const int place = find(removed);
  if (place >= 0) erase(place);
  if (row_ != removed) return;
  row_ = -1;
  step_ = 0;
  onDeleted_ = true;
}

void View::noteRowsMoved(std::span<const std::int32_t> places) {
  const auto follow = [&](std::int32_t& row) { row = places[static_cast<size_t>(row)]; };
  std::for_each(rows_.begin(), rows_.begin() + count_, follow);
  std::for_each(changed_.begin(), changed_.end(), follow);
  if (row_ >= 0) follow(row_);
}

void View::noteChange(size_t row) {
  const auto changed = static_cast<std::int32_t>(row);
  stale_ = unsettled_ = true;
  if (changed_.empty() || changed_.back() != changed) changed_.push_back(changed);
}

}  // namespace ondrel
