#pragma once

#include <concepts>
#include <initializer_list>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "base/variant.h"
#include "data/recordset/column.h"
#include "data/recordset/table.h"
#include "data/recordset/view.h"

namespace ondrel {

class Recordset;
using RecordsetRef = std::shared_ptr<Recordset>;

// A column and the value that a new row takes there.
struct CellValue {
  Column column;
  Variant value;
};

// A disconnected table: rows with named, typed columns, seen through a filter, a sort and a position.
// A clone is a second view of the same rows.
//
// What a page calls `RecordCount`, `MoveFirst`, `Filter` and so on are the operations below. Column names
// match without regard to case. Reading or writing a row on BOF, on EOF or on a deleted row raises error
// 3021, an unknown column 3265, any use of rows before open or after close 3704. A value converts to the
// type of its column as Variant does; one that cannot raises 13, a number that an integer column does not
// hold 6, a text longer than its column, or Null for a column that takes none, DataOverflow. The row is
// then as it was; an addNew that fails adds none.
//
// While a loop runs over a view, its rows stand fast: a row that stops passing the filter, or was written
// to in a column of the sort, leaves or moves only later (see View), and the next move goes on with the
// row that stood behind it.
class Recordset : public Object {
 public:
  // A table without columns that is not open yet: appendField, then open.
  static RecordsetRef create();
  // An open, empty table of the given layout.
  static RecordsetRef create(std::span<const ColumnSpec> layout);

  std::string_view className() const override { return "Recordset"; }

  // ---- structure
  void appendField(std::string_view name, FieldType type, int size = 0, int attributes = 0);
  void open();
  void close();
  bool isOpen() const { return view_.has_value(); }
  int fieldCount() const;
  std::string_view fieldName(Column column) const;
  FieldType fieldType(Column column) const;
  int fieldSize(Column column) const;
  bool fieldNullable(Column column) const;
  // Position of a column by name; error 3265 when the table has none of that name.
  Column column(std::string_view name) const {
    const int index = table_->find(name);
    if (index < 0) failColumn(name);
    return Column(index);
  }
  bool hasColumn(std::string_view name) const { return table_->find(name) >= 0; }
  // Kept because pages set it; 3, client side, is the only place where rows are.
  int cursorLocation() const { return cursorLocation_; }
  void setCursorLocation(int location) { cursorLocation_ = location; }

  // ---- position, inside the rows that pass the filter, in the order of the sort
  int recordCount() const { return view().count(); }  // rows that pass the filter
  // Behind the last row; before the first. Both are true when no row passes the filter.
  bool eof() const { return view().atEnd(); }
  bool bof() const { return view().atStart(); }
  // Moves beyond either end stay there.
  void moveFirst() { view().moveFirst(); }
  void moveLast() { view().moveLast(); }
  void moveNext() { view().moveNext(); }
  void movePrevious() { view().movePrevious(); }
  // A token of the current row, usable in every clone, as long as the row exists and passes the filter;
  // assigning another raises 3021 and leaves the position as it was.
  Variant bookmark() const;
  void setBookmark(const Variant& bookmark);

  // ---- view
  // 0 or a filter text. Assigning moves to the first visible row; reading returns what was assigned.
  //
  //   filter     = either { "or" either }       either = both { "and" both }
  //   comparison = column ( "=" | "<>" | ">" | "<" | ">=" | "<=" ) value
  //   value      = number | 'text' | #date# | true | false | null
  //
  // A blank text is no filter. A text that does not parse raises error 3001, which names the text, the
  // position and the word; the filter then stays as it was.
  Variant filter() const;
  void setFilter(const Variant& filter);
  void setFilter(std::string_view text);
  void setFilter(int none) { setFilter(Variant(none)); }
  void setFilter(const char* text) { setFilter(std::string_view(text)); }
  void setFilter(const std::string& text) { setFilter(std::string_view(text)); }
  void clearFilter() {
    view().clearFilter();
    blankFilter_.reset();
  }
  // "column [desc], ...": ascending unless told; equal rows keep the order of insertion. The empty text
  // restores that order. Assigning keeps the filter and moves to the first visible row.
  const std::string& sort() const { return view().sortText(); }
  void setSort(std::string_view text) { view().setSort(text); }
  // A second view of the same rows, without filter and sort, on the first row.
  RecordsetRef clone() const;

  // ---- rows
  // Appends a row and makes it current. It takes part in the view at the next move or assignment of
  // filter or sort, one made with its values at once; in the view of a clone at the clone's next
  // assignment or moveFirst. Columns not named read Null, or 0, False, "" where they take no Null.
  void addNew();
  void addNew(std::initializer_list<CellValue> cells, std::initializer_list<CellValue> more = {});
  void addNew(std::span<const Column> columns, std::span<const Variant> values);
  void addNew(std::span<const std::string> names, std::span<const Variant> values);
  // Appends a complete row, one value a column, and leaves view and position alone until the next
  // assignment or moveFirst: for filling a table.
  void appendRow(std::span<const Variant> values);
  // The same with a row whose cells `fill` writes: it is given the table and the row.
  template <class Fill>
  void appendRowBy(Fill fill) {
    view();
    addRow(nullptr, [&](size_t row) { fill(*table_, row); });
  }
  // Makes room for so many more rows at once.
  void reserveRows(size_t rows) { table_->reserveRows(rows); }
  // Turns a column of Doubles, which hold whole numbers, into one of Longs.
  void makeLong(Column column) { cells(column).becomeLong(); }
  // Removes the current row; the position stays on its place and the next move goes on from there.
  void deleteRow();
  // Removes all rows that pass the filter.
  void deleteVisibleRows();

  // ---- the current row
  Variant value(Column column) const { return cells(column).read(currentRow()); }
  Variant value(std::string_view name) const { return value(column(name)); }
  void setValue(Column column, const Variant& value) { write(column, value); }
  template <std::same_as<double> Number>
  void setValue(Column column, Number value) {
    write(column, value);
  }
  template <std::same_as<double> Number>
  void setValue(std::string_view name, Number value) {
    write(column(name), value);
  }
  void setValue(std::string_view name, const Variant& newValue) { setValue(column(name), newValue); }

  // Typed reads. Null raises error 94 in integer, number and date; it reads False in flag and the empty
  // text in text.
  bool isNull(Column column) const { return !cells(column).present[currentRow()]; }
  std::int32_t integer(Column column) const { return cells(column).readInteger(currentRow()); }
  double number(Column column) const { return cells(column).readNumber(currentRow()); }
  bool flag(Column column) const;
  Date date(Column column) const;
  std::string text(Column column) const;
  // Without a copy, until the row is written to; for a column of texts alone.
  std::string_view textView(Column column) const {
    const ColumnStore& store = cells(column);
    const size_t row = currentRow();
    return store.present[row] ? std::string_view(store.texts[row]) : std::string_view();
  }

  std::int32_t integer(std::string_view name) const { return integer(column(name)); }
  double number(std::string_view name) const { return number(column(name)); }
  bool flag(std::string_view name) const { return flag(column(name)); }
  Date date(std::string_view name) const { return date(column(name)); }
  std::string text(std::string_view name) const { return text(column(name)); }
  bool isNull(std::string_view name) const { return isNull(column(name)); }

 private:
  struct Key {};

 public:
  Recordset(Key, std::shared_ptr<Table> table) : table_(std::move(table)) {}

 private:
  View& view() {
    if (!view_) failClosed();
    return *view_;
  }
  const View& view() const { return const_cast<Recordset*>(this)->view(); }
  const ColumnStore& cells(Column column) const { return table_->column(known(column)); }
  ColumnStore& cells(Column column) { return table_->column(known(column)); }
  int known(Column column) const {
    if (static_cast<unsigned>(column.index) >= static_cast<unsigned>(table_->columnCount()))
      failPosition(column);
    return column.index;
  }
  size_t currentRow() const {
    const std::int32_t row = view().row();
    if (row < 0) failNoRow();
    return static_cast<size_t>(row);
  }
  template <class Value>
  void write(Column column, const Value& value) {
    ColumnStore& store = cells(column);
    const size_t row = currentRow();
    store.write(row, value);
    table_->noteWrite(row, column.index);
  }
  template <class Fill>
  size_t addRow(View* maker, Fill fill) {
    const size_t row = table_->prepareRow();
    try {
      fill(row);
    } catch (...) {
      table_->abandonRow();
      throw;
    }
    table_->completeRow(maker ? maker->observer() : nullptr);
    return row;
  }
  [[noreturn]] void failClosed() const;
  [[noreturn]] static void failNoRow();
  [[noreturn]] static void failPosition(Column column);

  std::shared_ptr<Table> table_;
  std::optional<View> view_;                // while open
  std::optional<std::string> blankFilter_;  // the blank text that was assigned to show all rows
  int cursorLocation_ = 3;
};

}  // namespace ondrel
