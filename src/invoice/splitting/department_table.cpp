#include "invoice/splitting/department_table.h"

#include "invoice/splitting/department_groups.h"

namespace ondrel {

void listDepartments(Invoice& invoice) {
  const RecordsetRef listed = invoice.invoiceDeptIds = Recordset::create(kDeptLayout);
  Recordset& departments = loadedDepartments(*invoice.apartment(), invoice.className());
  Variant previous;
  invoice.lineItems->setSort("lineNumber");
  invoice.lines().each("", [&](const Recordset& line) {
    // A line of no department, such as a coupon not spread yet, neither makes a row nor ends a run.
    Variant department = line.value(col::deptId);
    if (department.isNull() || department.identicalTo(previous)) return;
    previous = department;
    addDepartmentRow(*listed, departments, department, line.value(col::originalLineNumber));
    listed->setValue(DeptColumn::existing, invoice.isDepartmentExisting(department).toBoolean() ? 1 : 0);
  });
  invoice.lines().leavesAllAtEnd();
  if (listed->recordCount() > 0) listed->moveFirst();
}

Recordset& listedDepartments(const Invoice& invoice) {
  if (!invoice.invoiceDeptIds)
    throw Error(ErrorNumber::ObjectNotSet, invoice.className(),
                "The departments are not listed: call splitInvoice");
  return *invoice.invoiceDeptIds;
}

}  // namespace ondrel
