#include <fmt/format.h>

#include "invoice/calendar/due_dates.h"
#include "invoice/invoice.h"
#include "invoice/line_access.h"
#include "invoice/line_kinds.h"
#include "invoice/splitting/department_groups.h"

// The pieces of a quick drop-off as text, which a page carries between requests and between the quick entry
// and the full one: a record a line, "department,pieces,date", without a line break at the end.

namespace ondrel {
namespace {

using enum LineColumn;

constexpr std::string_view kRecordEnd = "\r\n", kFieldEnd = ",";

// The pieces between separators. No text has no pieces at all.
std::vector<std::string> cutAt(std::string_view separator, std::string_view text) {
  std::vector<std::string> pieces;
  for (bool more = !text.empty(); more;) {
    const size_t end = text.find(separator);
    pieces.emplace_back(text.substr(0, end));
    more = end != std::string_view::npos;
    if (more) text.remove_prefix(end + separator.size());
  }
  return pieces;
}

const std::string& fieldOf(const std::vector<std::string>& fields, size_t place) {
  if (place >= fields.size())
    throw Error(ErrorNumber::SubscriptOutOfRange, "invoice", "Subscript out of range");
  return fields[place];
}

}  // namespace

Variant Invoice::exportQuickItems() {
  std::string text;
  lineItems->setFilter("itemType='DE' and quantity > 0");
  for (; !lineItems->eof(); lineItems->moveNext())
    text += fmt::format("{}{},{},{}", text.empty() ? "" : kRecordEnd, lineItems->value(deptId).joined(),
                        lineItems->value(quantity).joined(), lineItems->value(dueDate).joined());
  lineItems->clearFilter();
  return text.empty() ? Variant() : Variant(text);
}

Variant Invoice::removeAllQuickItems() {
  deleteLines(*lineItems, "itemType='DE'");
  return {};
}

Variant Invoice::importQuickItems(Variant& desc) {
  removeAllQuickItems();
  for (const std::string& record : cutAt(kRecordEnd, desc.joined())) {
    const std::vector<std::string> fields = cutAt(kFieldEnd, record);
    addQuickLine(*lineItems, kind::department, fieldOf(fields, 0), 0, fieldOf(fields, 1), fieldOf(fields, 2));
  }
  return {};
}

void Invoice::addQuickLine(Recordset& table, std::string_view type, const Variant& department, double amount,
                           const Variant& pieces, const Variant& due) {
  table.clearFilter();
  Recordset& departments = loadedDepartments(*apartment_, className());
  departments.setFilter("departmentID=" + department.toText());
  const Variant name = departments.value("name");
  departments.clearFilter();
  table.addNew({{lineNumber, currentLineNumber},
                {parentLineNumber, -1},
                {deptId, department},
                {deptName, name},
                {itemType, type},
                {lineItemId, 1},
                {itemName, ""},
                {originalUnitPrice, 0},
                {unitPrice, 0},
                {quantity, pieces},
                {lineItemTotal, amount},
                {totalTax, 0},
                {totalSurcharge, 0},
                {prepay, 0},
                {taxableAmt, amount},
                {daysToProcess, calendarOf(*this).daysUntil(due.toDate())},
                {dueDate, due},
                {notes, Variant::null()},
                {balance, 0},
                {originalLineNumber, currentLineNumber}});
  ++currentLineNumber;
}

}  // namespace ondrel
