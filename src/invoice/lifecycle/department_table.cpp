#include <fmt/format.h>

#include "invoice/invoice.h"

namespace ondrel {
namespace {

using enum LineColumn;

enum class DeptColumn : int {
  deptId,
  splitInvoice,
  maxItemsInReceipt,
  firstLineNumber,
  splitGroup,
  existing
};

// clang-format off
constexpr std::array<ColumnSpec, 6> kDeptLayout = {{
  {"deptId",            FieldType::Long,    0, true},
  {"splitInvoice",      FieldType::Boolean, 0, true},
  {"maxItemsInReceipt", FieldType::Long,    0, true},  // pieces a ticket
  {"firstLineNumber",   FieldType::Long,    0, true},  // originalLineNumber where the run begins
  {"splitGroup",        FieldType::Long,    0, true},  // 0 for none
  {"existing",          FieldType::Long,    0, true},  // 1 when the loaded ticket had the department
}};
// clang-format on

}  // namespace

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
    departments.setFilter("departmentId=" + department.toText());
    invoiceDeptIds->addNew({{DeptColumn::deptId, department},
                            {DeptColumn::splitInvoice, departments.value("splitInvoice")},
                            {DeptColumn::maxItemsInReceipt, departments.value("maxItemsInReceipt")},
                            {DeptColumn::firstLineNumber, lineItems->value(originalLineNumber)},
                            {DeptColumn::splitGroup, departments.value("splitGroup")},
                            {DeptColumn::existing, isDepartmentExisting(department).toBoolean() ? 1 : 0}});
    departments.clearFilter();
  }
  if (invoiceDeptIds->recordCount() > 0) invoiceDeptIds->moveFirst();
}

}  // namespace ondrel
