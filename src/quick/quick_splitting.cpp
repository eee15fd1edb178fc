#include <fmt/format.h>

#include <set>

#include "data/values.h"
#include "invoice/lifecycle/department_groups.h"
#include "quick/quick_invoice.h"

namespace ondrel {
using enum QuickColumn;

// ---------------------------------------------------------------- whether, and how many

bool QuickInvoice::isSplitInvoice() {
  const auto isPresent = [this](const Variant& department) {
    return isDepartmentPresent(department).toBoolean();
  };
  const auto pieces = [this](const Variant& department) {
    return getDepartmentPieceCount(department).toLong();
  };
  return departmentsAskForSplit(loadedDepartments(*apartment_, className()), isPresent, pieces);
}

// Each line of a department that asks for a split is a ticket, all others together are one. A loaded ticket
// does not count itself.
Variant QuickInvoice::getNoOfInvoices() {
  std::int32_t count = isNewQuickInvoice_ ? 0 : -1;
  bool others = false;
  const RecordsetRef lines = lineItems->clone();
  for (; !lines->eof(); lines->moveNext()) {
    const Variant split = departmentValue(*apartment_, lines->value(deptId), "splitInvoice");
    if (!split.isNull() && split.toBoolean())
      ++count;
    else
      others = true;
  }
  return count + (others ? 1 : 0);
}

Variant QuickInvoice::getTicketNosForPrinting() {
  std::string numbers = std::to_string(ticketNo);
  for (const auto& child : children()) numbers += "," + std::to_string(child->ticketNo);
  return numbers;
}

bool QuickInvoice::oneDeptWithNoSplitExists(const RecordsetRef& cloneRst) {
  if (!cloneRst) throw Error(ErrorNumber::ObjectNotSet, className(), "There is no table of departments");
  return hasDepartmentWithoutSplit(*cloneRst);
}

// ---------------------------------------------------------------- the split

// | step | acts on         | effect                                                              |
// |------|-----------------|---------------------------------------------------------------------|
// | 1    | the departments | listed in the order of the lines                                    |
// | 2    | each of them,   | its lines and those of all that travel with it become a child; for  |
// |      | higher groups   | one that travelled already there is none                            |
// |      | before lower    |                                                                     |
//
// Pieces are not counted out: a department with more than a ticket takes stays together.
DictionaryRef QuickInvoice::splitInvoice() {
  initDeptTable();
  fillDeptTable();
  if (!isSplitInvoice()) return invoicesDictionary;
  isQuickSplit_ = true;
  invoicesDictionary = std::make_shared<Dictionary>();
  invoiceDeptIds->setSort("splitGroup desc");
  for (; !invoiceDeptIds->eof(); invoiceDeptIds->moveNext())
    splitQuickDepartment(invoiceDeptIds->value(DeptColumn::deptId));
  return invoicesDictionary;
}

void QuickInvoice::initDeptTable() {
  invoiceDeptIds = Recordset::create(std::span(kDeptLayout).first<kDeptLayout.size() - 1>());
}

void QuickInvoice::fillDeptTable() {
  Recordset& departments = loadedDepartments(*apartment_, className());
  std::set<std::int32_t> listed;
  lineItems->clearFilter();
  lineItems->setSort("lineNumber");
  for (; !lineItems->eof(); lineItems->moveNext())
    if (const std::int32_t department = lineItems->integer(deptId); listed.insert(department).second)
      addDepartmentRow(*invoiceDeptIds, departments, department, lineItems->value(lineNumber));
  if (invoiceDeptIds->recordCount() > 0) invoiceDeptIds->moveFirst();
}

void QuickInvoice::splitQuickDepartment(const Variant& department) {
  std::string filter;
  const RecordsetRef travelling = travellingDepartments(*apartment_, department);
  for (; !travelling->eof(); travelling->moveNext())
    filter += fmt::format("{}(deptId = '{}')", filter.empty() ? "" : " OR ",
                          travelling->value("departmentid").toText());
  lineItems->setFilter(filter);
  const bool found = !lineItems->eof();
  const auto child = moveFilteredLines();
  lineItems->clearFilter();
  child->recalculateInvDueDate();
  if (found) invoicesDictionary->add(invoicesDictionary->count() + 1, ObjectRef(child));
}

std::shared_ptr<QuickInvoice> QuickInvoice::createChild() const {
  const ApartmentScope scope(apartment_);
  const auto child = std::make_shared<QuickInvoice>();
  child->currentLineNumber = currentLineNumber;
  child->custSeqNumber = custSeqNumber;
  child->starchPref = starchPref;
  child->finishPref = finishPref;
  child->priceListId = priceListId;
  child->storeNumber = storeNumber;
  child->routeNumber = routeNumber;
  child->createdByEmployeeId = createdByEmployeeId;
  child->createdDate = createdDate;
  child->ticketReadyTime = ticketReadyTime;
  child->preferences = preferences;
  return child;
}

// Line numbers stay those of the parent.
std::shared_ptr<QuickInvoice> QuickInvoice::moveFilteredLines() {
  const auto child = createChild();
  std::vector<Variant> cells(kQuickLayout.size());
  for (; !lineItems->eof(); lineItems->moveNext()) {
    for (size_t k = 0; k < cells.size(); ++k) cells[k] = lineItems->value(Column(static_cast<int>(k)));
    child->lineItems->appendRow(cells);
    lineItems->deleteRow();
  }
  return child;
}

std::vector<std::shared_ptr<QuickInvoice>> QuickInvoice::children() const {
  std::vector<std::shared_ptr<QuickInvoice>> result;
  if (!invoicesDictionary) return result;
  for (const Variant& item : invoicesDictionary->items()) {
    result.push_back(std::dynamic_pointer_cast<QuickInvoice>(item.toObject()));
    if (!result.back())
      throw Error(ErrorNumber::ObjectRequired, className(),
                  "invoicesDictionary holds something that is no quick invoice");
  }
  return result;
}

}  // namespace ondrel
