#pragma once

#include <cstdint>
#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

#include "data/recordset/recordset.h"
#include "invoice/line_columns.h"
#include "invoice/line_kinds.h"

namespace ondrel {

class Lines;

// The lines of a number. Error 13 for what is no number.
std::string ofNumber(const Variant& number);

// Some lines of an invoice, one of them current, seen through a view of their own until it goes out of scope.
// So lines can be walked while others are found, added or deleted.
//
//   for (auto line = lines.where(ofKind(kind::tax)); line; line.next()) line->deleteRow();
class LineSet {
 public:
  LineSet(const LineSet&) = delete;
  LineSet& operator=(const LineSet&) = delete;
  ~LineSet();

  // Whether there is a current line: the first of the set at the start, none at its end.
  explicit operator bool() const { return !view_->eof(); }
  void next() { view_->moveNext(); }
  void restart() { view_->moveFirst(); }
  Recordset& operator*() const { return *view_; }
  Recordset* operator->() const { return view_.get(); }

 private:
  friend class Lines;
  enum class Page { follows, stays };  // what becomes of the page's view at the end
  LineSet(Lines& lines, RecordsetRef view, Page page);

  Lines& lines_;
  RecordsetRef view_;
  Page page_;
  int errors_;  // under way when the set was made
};

// The table of an invoice's lines and its vocabulary. A page sees the same rows as `lineItems`, with a filter,
// a sort and a position that are part of the contract:
//
// | operation                   | the page's view afterwards                                       |
// |-----------------------------|------------------------------------------------------------------|
// | where, find and what they   | all lines, on the first                                          |
// | serve: each, any, sum,      |                                                                  |
// | remove                      |                                                                  |
// | the same, left by an error  | the lines of the innermost set, on the line of the error         |
// | peek                        | as it was                                                        |
// | begin                       | filter as it was, on the new line                                |
// | leaves                      | as told: for an operation that ends otherwise than the first row |
//
// Sets are walked in the order of the page's sort, those of peek in the order of insertion.
class Lines {
 public:
  // The members of an invoice; a page may put another table into the first.
  Lines(RecordsetRef& lineItems, RecordsetRef& ticketLogItems, std::int32_t& currentLineNumber)
      : page_(lineItems), log_(ticketLogItems), nextNumber_(currentLineNumber) {}
  Lines(const Lines&) = delete;
  Lines& operator=(const Lines&) = delete;

  // ---- some lines; a filter of "" is all
  LineSet where(std::string_view filter);
  // The lines of a number, the first of them current. Error 13 for what is no number.
  LineSet find(const Variant& number);
  LineSet peek(std::string_view filter);

  template <class Work>
  void each(std::string_view filter, Work work) {
    for (const LineSet line = where(filter); line; line->moveNext()) work(*line);
  }
  bool any(std::string_view filter) { return static_cast<bool>(where(filter)); }
  // Adds up `amountOf(line)`, in the order of the lines.
  template <class Amount>
  double sum(std::string_view filter, Amount amountOf) {
    double total = 0;
    each(filter, [&](const Recordset& line) { total += amountOf(line); });
    return total;
  }
  void remove(std::string_view filter);

  // ---- new lines
  std::int32_t nextNumber() const { return nextNumber_; }
  // Adds a line of the kind at top level with the next number, which grows by one; the cells are its own. What
  // neither names is Null, or 0, False or "" where the column takes no Null. Returns the page's view, on the
  // line.
  Recordset& begin(std::string_view kind, std::initializer_list<CellValue> cells);

  // ---- the log of the counter
  // `type` as LogColumn::itemLogType. A Null quantity is logged as 0, a Null name as "".
  void log(std::string_view type, const Variant& quantity, const Variant& deptName, const Variant& itemName,
           const Variant& amount);
  // With the names of a line.
  void log(std::string_view type, const Recordset& line, const Variant& quantity, const Variant& amount);

  // ---- what a page sees
  void leaves(std::string_view filter);
  void leavesAll();
  void leavesAllAtEnd();

 private:
  friend class LineSet;
  RecordsetRef takeView(std::string_view filter, std::string_view sort);
  void hold();
  void giveBack(RecordsetRef view, LineSet::Page page, bool failed);
  void showError(const Recordset& view);

  RecordsetRef& page_;
  RecordsetRef& log_;
  std::int32_t& nextNumber_;
  RecordsetRef table_;              // whose views the idle ones are
  std::vector<RecordsetRef> idle_;  // to be used again
  int held_ = 0;                    // sets that somebody walks
  bool showsError_ = false;         // the page's view shows where an error left the innermost set
};

}  // namespace ondrel
