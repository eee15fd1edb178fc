#include <fmt/format.h>

#include <set>

#include "invoice/splitting/child_tickets.h"
#include "invoice/splitting/department_groups.h"
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
  Recordset& departments = loadedDepartments(*apartment_, className());
  for (const RecordsetRef lines = lineItems->clone(); !lines->eof(); lines->moveNext()) {
    departments.setFilter("departmentId=" + lines->value(deptId).toText());
    if (const Variant split = departments.value("splitInvoice"); !split.isNull() && split.toBoolean())
      ++count;
    else
      others = true;
    departments.clearFilter();
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

// The child knows the ticket that was loaded, since its save asks whether garments of that were to be sealed; but
// it is a new ticket, and its invoice number is given by the save.
std::shared_ptr<QuickInvoice> QuickInvoice::createChild() const {
  const ApartmentScope scope(apartment_);
  const auto child = std::make_shared<QuickInvoice>();
  child->currentLineNumber = currentLineNumber;
  handDownTicket(*this, *child);
  child->ticketNo = ticketNo;
  child->createdByEmployeeId = createdByEmployeeId;
  child->createdDate = createdDate;
  child->ticketReadyTime = ticketReadyTime;
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
  return childTickets<QuickInvoice>(invoicesDictionary, className());
}

}  // namespace ondrel
