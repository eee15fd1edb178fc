#pragma once

#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "data/recordset/recordset.h"
#include "invoice/line_columns.h"

namespace ondrel {

// A column of a line and the column of a stored line that fills it.
struct FilledFrom {
  LineColumn line;
  std::string_view stored;
};

// The stored lines of a ticket as a view of it reads them, one at a time. A column that the view does not
// read, or that is Null there, leaves the line's column as a new line has it.
class StoredLines {
 public:
  using Filling = std::vector<std::pair<Column, Column>>;  // line column, stored column

  explicit StoredLines(RecordsetRef rows);

  bool atEnd() const { return rows_->eof(); }
  void next() { rows_->moveNext(); }
  const Recordset& row() const { return *rows_; }

  std::string type() const { return rows_->text(type_); }
  std::int32_t number() const { return rows_->integer(number_); }
  Variant parentNumber() const { return rows_->value(parent_); }
  Variant itemId() const { return rows_->value(item_); }
  double total() const { return rows_->isNull(total_) ? 0 : rows_->number(total_); }

  // The columns that every stored line brings and those of `extra`, as far as the view has them.
  Filling fillingOf(std::span<const FilledFrom> extra) const;
  // Appends a line, which is the current one afterwards.
  void addLine(Recordset& lines, const Filling& filling) const;

 private:
  RecordsetRef rows_;
  Column type_, number_, parent_, item_, total_;
};

}  // namespace ondrel
