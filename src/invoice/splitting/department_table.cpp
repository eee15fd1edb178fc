#include "invoice/invoice.h"
#include "invoice/splitting/department_groups.h"

namespace ondrel {

using enum LineColumn;

void Invoice::createDeptTable() {
  invoiceDeptIds = Recordset::create(kDeptLayout);
}

Recordset& Invoice::listedDepartments() const {
  if (!invoiceDeptIds)
    throw Error(ErrorNumber::ObjectNotSet, className(), "The departments are not listed: call splitInvoice");
  return *invoiceDeptIds;
}

void Invoice::fillDeptTable() {
  Recordset& departments = storeDepartments();
  Variant previous;
  lineItems->clearFilter();
  lineItems->setSort("lineNumber");
  for (; !lineItems->eof(); lineItems->moveNext()) {
    // A line of no department, such as a coupon not spread yet, neither makes a row nor ends a run.
    Variant department = lineItems->value(deptId);
    if (department.isNull() || department.identicalTo(previous)) continue;
    previous = department;
    addDepartmentRow(*invoiceDeptIds, departments, department, lineItems->value(originalLineNumber));
    invoiceDeptIds->setValue(DeptColumn::existing, isDepartmentExisting(department).toBoolean() ? 1 : 0);
  }
  if (invoiceDeptIds->recordCount() > 0) invoiceDeptIds->moveFirst();
}

}  // namespace ondrel
