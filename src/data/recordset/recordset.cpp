#include "data/recordset/recordset.h"

#include <fmt/format.h>

#include <cassert>

#include "base/text.h"

namespace ondrel {

RecordsetRef Recordset::create() {
  return std::make_shared<Recordset>(Key(), std::make_shared<Table>());
}

RecordsetRef Recordset::create(std::span<const ColumnSpec> layout) {
  RecordsetRef result = create();
  result->table_->reserveColumns(layout.size());
  for (const ColumnSpec& column : layout)
    result->table_->addColumn(column.name, column.type, column.size, column.nullable);
  result->open();
  return result;
}

void Recordset::appendField(std::string_view name, FieldType type, int size, int attributes) {
  if (isOpen())
    throw Error(ErrorNumber::ObjectOpen, "Recordset", "Columns are added before the table is opened");
  table_->addColumn(name, type, size, (attributes & kNullableColumn) != 0);
}

void Recordset::open() {
  if (isOpen()) throw Error(ErrorNumber::ObjectOpen, "Recordset", "The table is open already");
  view_.emplace(table_);
}

void Recordset::close() {
  if (!isOpen()) failClosed();
  view_.reset();
  table_ = std::make_shared<Table>();
  blankFilter_.reset();
}

int Recordset::fieldCount() const {
  return table_->columnCount();
}
std::string_view Recordset::fieldName(Column column) const {
  return cells(column).name;
}
FieldType Recordset::fieldType(Column column) const {
  return cells(column).type;
}
int Recordset::fieldSize(Column column) const {
  return cells(column).size;
}
bool Recordset::fieldNullable(Column column) const {
  return cells(column).nullable;
}

Variant Recordset::bookmark() const {
  return table_->serial(currentRow());
}

void Recordset::setBookmark(const Variant& bookmark) {
  View& rows = view();
  const auto row = table_->rowOfSerial(bookmark.toLong());
  if (!row || !rows.moveTo(*row))
    throw Error(ErrorNumber::NoCurrentRecord, "Recordset", "The row of the bookmark is not in the view");
}

Variant Recordset::filter() const {
  if (view().isFiltered()) return view().filterText();
  if (blankFilter_) return *blankFilter_;
  return 0;
}

void Recordset::setFilter(const Variant& filter) {
  if (filter.isText()) return setFilter(std::string_view(filter.text()));
  if (filter.isNull() || filter.toDouble() != 0)
    throw Error(ErrorNumber::InvalidArgument, "Recordset", "A filter is 0 or a text");
  clearFilter();
}

void Recordset::setFilter(std::string_view text) {
  if (!text.empty() && text.front() != ' ') return view().setFilter(text);
  if (!trim(text).empty()) return view().setFilter(text);
  clearFilter();
  blankFilter_ = text;
}

RecordsetRef Recordset::clone() const {
  view();
  RecordsetRef result = std::make_shared<Recordset>(Key(), table_);
  result->open();
  return result;
}

void Recordset::addNew() {
  View& rows = view();
  rows.moveToNew(addRow(&rows, [](size_t) {}));
}

void Recordset::addNew(std::initializer_list<CellValue> cells, std::initializer_list<CellValue> more) {
  View& rows = view();
  rows.moveToNew(addRow(&rows, [&](size_t row) {
    for (const auto& each : {cells, more})
      for (const CellValue& cell : each) this->cells(cell.column).write(row, cell.value);
  }));
  rows.settle();
}

void Recordset::addNew(std::span<const Column> columns, std::span<const Variant> values) {
  assert(columns.size() == values.size());
  View& rows = view();
  rows.moveToNew(addRow(&rows, [&](size_t row) {
    for (size_t k = 0; k < columns.size(); ++k) cells(columns[k]).write(row, values[k]);
  }));
  rows.settle();
}

void Recordset::addNew(std::span<const std::string> names, std::span<const Variant> values) {
  if (names.size() != values.size())
    throw Error(ErrorNumber::InvalidArgument, "Recordset",
                fmt::format("A new row with {} names and {} values", names.size(), values.size()));
  View& rows = view();
  rows.moveToNew(addRow(&rows, [&](size_t row) {
    int index = -1;
    for (size_t k = 0; k < names.size(); ++k) {
      index = table_->find(names[k], index + 1);  // names often come in the order of the columns
      if (index < 0) failColumn(names[k]);
      table_->column(index).write(row, values[k]);
    }
  }));
  rows.settle();
}

void Recordset::appendRow(std::span<const Variant> values) {
  assert(static_cast<int>(values.size()) == fieldCount());
  view();
  addRow(nullptr, [&](size_t row) {
    for (int index = 0; index < fieldCount(); ++index)
      table_->column(index).write(row, values[static_cast<size_t>(index)]);
  });
}

void Recordset::deleteRow() {
  table_->removeRow(currentRow());
}

void Recordset::deleteVisibleRows() {
  view().removeShown();
}

bool Recordset::flag(Column column) const {
  const ColumnStore& store = cells(column);
  const size_t row = currentRow();
  if (!store.present[row]) return false;
  return store.storage == Storage::Flag ? store.flags[row] != 0 : store.read(row).toBoolean();
}

Date Recordset::date(Column column) const {
  const ColumnStore& store = cells(column);
  const size_t row = currentRow();
  if (store.storage == Storage::Date && store.present[row]) return Date(store.numbers[row]);
  return store.read(row).toDate();
}

std::string Recordset::text(Column column) const {
  const ColumnStore& store = cells(column);
  const size_t row = currentRow();
  if (!store.present[row]) return {};
  return store.storage == Storage::Text ? store.texts[row] : store.read(row).toText();
}

void Recordset::failClosed() const {
  throw Error(ErrorNumber::ObjectClosed, "Recordset", "The table is not open");
}

void Recordset::failNoRow() {
  throw Error(ErrorNumber::NoCurrentRecord, "Recordset",
              "There is no current row: BOF, EOF or a deleted row");
}

void Recordset::failPosition(Column column) {
  throw Error(ErrorNumber::ItemNotFound, "Recordset",
              fmt::format("The table has no column at position {}", column.index));
}

}  // namespace ondrel
