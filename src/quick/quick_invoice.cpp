#include "quick/quick_invoice.h"

#include <fmt/format.h>

#include "data/query_database.h"
#include "invoice/line_access.h"
#include "invoice/line_kinds.h"

namespace ondrel {
using enum QuickColumn;

QuickInvoice::QuickInvoice() : apartment_(Apartment::current()) {
  initInvoice();
}

void QuickInvoice::initInvoice() {
  createdDate = apartment_->clock->now();
  startLines();
}

void QuickInvoice::clearInvoice() {
  startLines();
}

void QuickInvoice::startLines() {
  currentLineNumber = 1;
  lineItems = Recordset::create(kQuickLayout);
  isQuickSplit_ = dueDateOverridden_ = false;
  isNewQuickInvoice_ = true;
}

// ---------------------------------------------------------------- lines

bool QuickInvoice::findDeptLine(std::int32_t department) {
  lineItems->setFilter(fmt::format("deptId={}", department));
  return !lineItems->eof();
}

void QuickInvoice::addLineItem(const Variant& pieces, const Variant& deptID) {
  const std::int32_t department = deptID.toLong();
  if (findDeptLine(department)) {
    lineItems->setValue(quantity, lineItems->value(quantity) + pieces);
    lineItems->clearFilter();
    return;
  }
  lineItems->clearFilter();
  const RecordsetRef row = queryDatabase(
      *apartment_,
      fmt::format(
          "Select IsNull(daysToProcess,0) as daysToProcess, name, notes from Department where departmentid={}",
          department));
  if (row->eof()) return;
  const std::int32_t days = row->integer("daysToProcess");
  lineItems->addNew({{lineNumber, currentLineNumber},
                     {lineItemId, Variant::null()},
                     {itemName, row->value("name")},
                     {itemType, kind::department},
                     {quantity, pieces},
                     {deptId, department},
                     {deptName, row->value("name")},
                     {daysToProcess, days},
                     {notes, Variant::null()},
                     {peNotes, row->value("notes")},
                     {dueDate, calendar().dateAfter(days)}});
  ++currentLineNumber;
}

void QuickInvoice::deleteLineItem(const Variant& lineNo) {
  deleteLine(*lineItems, lineNo);
}

void QuickInvoice::attachNotes(const Variant& lineNo, const Variant& text) {
  setLineValue(*lineItems, lineNo, notes, text);
}

void QuickInvoice::updateNotes(const Variant& lineNo, const Variant& text) {
  setLineValue(*lineItems, lineNo, notes, text);
}

Variant QuickInvoice::getItemNotes(const Variant& lineNo) {
  return lineText(*lineItems, lineNo, notes);
}

// ---------------------------------------------------------------- counts

Variant QuickInvoice::getTotalItemCount() {
  return sumOfLines(*lineItems, "", quantity);
}

Variant QuickInvoice::getDepartmentPieceCount(const Variant& departmentID) {
  return sumOfLines(*lineItems, fmt::format("(deptID={} and itemType = 'DE' )", departmentID.toLong()),
                    quantity);
}

Variant QuickInvoice::isDepartmentPresent(const Variant& deptID) {
  const bool found = findDeptLine(deptID.toLong());
  lineItems->clearFilter();
  return found;
}

}  // namespace ondrel
