#include "invoice/lines.h"

#include <exception>
#include <utility>

#include "base/text.h"

namespace ondrel {

// ---------------------------------------------------------------- a set of lines

LineSet::LineSet(Lines& lines, RecordsetRef view, Page page)
    : lines_(lines), view_(std::move(view)), page_(page), errors_(std::uncaught_exceptions()) {
  lines_.hold();
}

LineSet::~LineSet() {
  lines_.giveBack(std::move(view_), page_, std::uncaught_exceptions() > errors_);
}

// ---------------------------------------------------------------- some lines

std::string ofNumber(const Variant& number) {
  return "lineNumber=" + numberText(number.toDouble());
}

LineSet Lines::where(std::string_view filter) {
  return {*this, takeView(filter, page_->sort()), LineSet::Page::follows};
}

LineSet Lines::find(const Variant& number) {
  return where(ofNumber(number));
}

LineSet Lines::peek(std::string_view filter) {
  return {*this, takeView(filter, ""), LineSet::Page::stays};
}

void Lines::remove(std::string_view filter) {
  each(filter, [](Recordset& line) { line.deleteRow(); });
}

RecordsetRef Lines::takeView(std::string_view filter, std::string_view sort) {
  if (table_ != page_) {
    idle_.clear();
    table_ = page_;
  }
  RecordsetRef view;
  if (idle_.empty()) {
    view = table_->clone();
  } else {
    view = std::move(idle_.back());
    idle_.pop_back();
  }
  if (view->sort() != sort) view->setSort(sort);
  if (filter.empty())
    view->clearFilter();
  else
    view->setFilter(filter);
  return view;
}

void Lines::hold() {
  if (held_++ == 0) showsError_ = false;
}

void Lines::giveBack(RecordsetRef view, LineSet::Page page, bool failed) {
  --held_;
  if (page == LineSet::Page::follows) {
    if (failed)
      showError(*view);
    else
      page_->clearFilter();
  }
  if (table_ == page_) idle_.push_back(std::move(view));
}

void Lines::showError(const Recordset& view) {
  if (showsError_) return;
  showsError_ = true;
  page_->setFilter(view.filter());
  try {
    page_->setBookmark(view.bookmark());
  } catch (const Error&) {  // the line is gone
  }
}

// ---------------------------------------------------------------- new lines, the log

Recordset& Lines::begin(std::string_view kind, std::initializer_list<CellValue> cells) {
  page_->addNew({{col::lineNumber, nextNumber_},
                 {col::parentLineNumber, -1},
                 {col::itemType, kind},
                 {col::originalLineNumber, nextNumber_}},
                cells);
  ++nextNumber_;
  return *page_;
}

void Lines::log(std::string_view type, const Variant& quantity, const Variant& deptName,
                const Variant& itemName, const Variant& amount) {
  // The log takes no Null, and a click must not fail for the want of a department's name.
  log_->addNew({{LogColumn::itemLogType, type},
                {LogColumn::quantity, quantity.isNull() ? Variant(0) : quantity},
                {LogColumn::deptName, deptName.joined()},
                {LogColumn::itemName, itemName.joined()},
                {LogColumn::amount, amount}});
}

void Lines::log(std::string_view type, const Recordset& line, const Variant& quantity,
                const Variant& amount) {
  log(type, quantity, line.value(col::deptName), line.value(col::itemName), amount);
}

// ---------------------------------------------------------------- what a page sees

void Lines::leaves(std::string_view filter) {
  page_->setFilter(filter);
}

void Lines::leavesAll() {
  page_->clearFilter();
}

void Lines::leavesAllAtEnd() {
  page_->clearFilter();
  page_->moveLast();
  page_->moveNext();
}

}  // namespace ondrel
