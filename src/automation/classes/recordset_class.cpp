#include <utility>

#include "automation/classes/class_tables.h"
#include "automation/classes/recordset_fields.h"

namespace ondrel {
namespace {

// What `Delete` takes, as the platform numbers it.
constexpr int kCurrentRow = 1;
constexpr int kVisibleRows = 2;

constexpr int kStateClosed = 0;
constexpr int kStateOpen = 1;

constexpr const char* kSource = "Recordset";

[[noreturn]] void failArgument(const char* description) {
  throw Error(ErrorNumber::InvalidArgument, kSource, description);
}

// A column of the current row, or several of them, with their values.
struct RowCells {
  std::vector<std::string> names;
  std::vector<Variant> values;
};

RowCells cellsOf(const Variant& fieldList, const Variant& values) {
  RowCells cells;
  for (const Variant& name : listOf(fieldList)) cells.names.push_back(name.toText());
  cells.values = listOf(values);
  if (cells.names.size() != cells.values.size())
    failArgument("The lists of columns and of values differ in length");
  return cells;
}

void addNew(Recordset& table, const Variant& fieldList, const Variant& values) {
  if (fieldList.isEmpty()) return table.addNew();
  const RowCells cells = cellsOf(fieldList, values);
  table.addNew(std::span<const std::string>(cells.names), std::span<const Variant>(cells.values));
}

// Rows are complete as they are written, so an update without columns has nothing left to do.
void update(Recordset& table, const Variant& fieldList, const Variant& values) {
  if (fieldList.isEmpty()) return;
  const RowCells cells = cellsOf(fieldList, values);
  for (size_t k = 0; k < cells.names.size(); ++k) table.setValue(cells.names[k], cells.values[k]);
}

void deleteRows(Recordset& table, int affected) {
  if (affected == kCurrentRow) return table.deleteRow();
  if (affected == kVisibleRows) return table.deleteVisibleRows();
  failArgument("Delete takes 1, the current row, or 2, the rows that pass the filter");
}

// Tables are disconnected from the start: only a table built field by field is opened, from no source.
void open(Recordset& table, const Variant& source) {
  if (!source.isEmpty() && !source.isNull()) failArgument("A table is opened without a source");
  table.open();
}

void detach(Recordset&, const ObjectRef& connection) {
  if (connection) failArgument("A table takes no connection");
}

}  // namespace

const ClassTable& recordsetClass() {
  // clang-format off
  static const ClassTable table("Recordset", {
      property("Fields", [](const RecordsetRef& self) { return std::make_shared<RecordsetFields>(self); }),
      property("RecordCount", &Recordset::recordCount),
      property("EOF", &Recordset::eof),
      property("BOF", &Recordset::bof),
      property("State", [](Recordset& self) { return self.isOpen() ? kStateOpen : kStateClosed; }),
      property("Filter", &Recordset::filter, [](Recordset& self, const Variant& filter) { self.setFilter(filter); }),
      property("Sort", [](Recordset& self) { return self.sort(); }, &Recordset::setSort),
      property("Bookmark", &Recordset::bookmark, &Recordset::setBookmark),
      property("CursorLocation", &Recordset::cursorLocation, &Recordset::setCursorLocation),
      property("ActiveConnection", [](Recordset&) { return ObjectRef(); }, detach),
      method("Open", open, {{"Source", Variant()}}),
      method("Close", &Recordset::close),
      method("MoveFirst", &Recordset::moveFirst),
      method("MoveLast", &Recordset::moveLast),
      method("MoveNext", &Recordset::moveNext),
      method("MovePrevious", &Recordset::movePrevious),
      method("AddNew", addNew, {{"FieldList", Variant()}, {"Values", Variant()}}),
      method("Update", update, {{"Fields", Variant()}, {"Values", Variant()}}),
      method("Delete", deleteRows, {{"AffectRecords", kCurrentRow}}),
      method("Clone", [](Recordset& self, int) { return self.clone(); }, {{"LockType", -1}}),
  }, "Fields");
  // clang-format on
  return table;
}

}  // namespace ondrel
