#pragma once

#include <initializer_list>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "base/variant.h"
#include "data/recordset/column.h"

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
// 3021, an unknown column 3265. A value that does not fit the type of its column raises 13, one that does
// not fit its size, or Null for a column that takes none, DataOverflow; the row is then as it was.
class Recordset : public Object {
 public:
  // A table without columns that is not open yet: appendField, then open.
  static RecordsetRef create();
  // An open, empty table of the given layout.
  static RecordsetRef create(std::span<const ColumnSpec> layout);

  ~Recordset() override;
  std::string_view className() const override { return "Recordset"; }

  // ---- structure
  void appendField(std::string_view name, FieldType type, int size = 0, int attributes = 0);
  void open();
  void close();
  bool isOpen() const;
  int fieldCount() const;
  std::string_view fieldName(Column column) const;
  FieldType fieldType(Column column) const;
  int fieldSize(Column column) const;
  bool fieldNullable(Column column) const;
  // Position of a column by name; error 3265 when the table has none of that name.
  Column column(std::string_view name) const;
  bool hasColumn(std::string_view name) const;
  // Kept because pages set it; 3, client side, is the only place where rows are.
  int cursorLocation() const;
  void setCursorLocation(int location);

  // ---- position, inside the rows that pass the filter, in the order of the sort
  int recordCount() const;  // rows that pass the filter
  bool eof() const;
  bool bof() const;
  void moveFirst();
  void moveLast();
  void moveNext();
  void movePrevious();
  // A token of the current row, usable as long as the row exists and passes the filter.
  Variant bookmark() const;
  void setBookmark(const Variant& bookmark);

  // ---- view
  // 0 or a filter text. Assigning moves to the first visible row; reading returns what was assigned.
  //
  //   filter     = either { "or" either }       either = both { "and" both }
  //   comparison = column ( "=" | "<>" | ">" | "<" ) value
  //   value      = number | 'text' | true | false | null
  //
  // A text that does not parse raises error 3001, which names the text, the position and the word; the
  // filter then stays as it was.
  Variant filter() const;
  void setFilter(const Variant& filter);
  void setFilter(std::string_view text);
  void setFilter(const char* text) { setFilter(std::string_view(text)); }
  void setFilter(const std::string& text) { setFilter(std::string_view(text)); }
  void clearFilter();
  // "column [desc], ...": ascending unless told; equal rows keep the order of insertion. The empty text
  // restores that order. Assigning keeps the filter and moves to the first visible row.
  const std::string& sort() const;
  void setSort(std::string_view text);
  // A second view of the same rows, without filter and sort, on the first row.
  RecordsetRef clone() const;

  // ---- rows
  // Appends a row and makes it current; it takes part in the view at the next move or assignment of
  // filter or sort. Columns not named read Null, or 0, False, "" where they take no Null.
  void addNew();
  void addNew(std::initializer_list<CellValue> cells);
  void addNew(std::span<const Column> columns, std::span<const Variant> values);
  void addNew(std::span<const std::string> names, std::span<const Variant> values);
  // Appends a complete row, one value a column, and leaves view and position alone until the next
  // assignment or moveFirst: for filling a table.
  void appendRow(std::span<const Variant> values);
  // Removes the current row; the position stays on its place and the next move goes on from there.
  void deleteRow();
  // Removes all rows that pass the filter.
  void deleteVisibleRows();

  // ---- the current row
  Variant value(Column column) const;
  Variant value(std::string_view name) const { return value(column(name)); }
  void setValue(Column column, const Variant& value);
  void setValue(std::string_view name, const Variant& newValue) { setValue(column(name), newValue); }

  // Typed reads. Null raises error 94 in integer, number and date; it reads False in flag and the empty
  // text in text.
  bool isNull(Column column) const;
  std::int32_t integer(Column column) const;
  double number(Column column) const;
  bool flag(Column column) const;
  Date date(Column column) const;
  std::string text(Column column) const;

  std::int32_t integer(std::string_view name) const { return integer(column(name)); }
  double number(std::string_view name) const { return number(column(name)); }
  bool flag(std::string_view name) const { return flag(column(name)); }
  Date date(std::string_view name) const { return date(column(name)); }
  std::string text(std::string_view name) const { return text(column(name)); }
  bool isNull(std::string_view name) const { return isNull(column(name)); }

 private:
  struct Impl;
  explicit Recordset(std::unique_ptr<Impl> impl);
  std::unique_ptr<Impl> impl_;
};

}  // namespace ondrel
