#pragma once

#include <functional>

#include "data/apartment.h"
#include "data/recordset/column.h"
#include "data/recordset/recordset.h"

namespace ondrel {

// The departments of a ticket, which decide how it is split. The quick drop-off has all but the last column.
// clang-format off
#define ONDREL_DEPT_COLUMNS(column) \
  column(deptId,             Long,    0,  true)                                                          \
  column(splitInvoice,       Boolean, 0,  true)                                                          \
  column(maxItemsInReceipt,  Long,    0,  true) /* pieces a ticket */                                    \
  column(firstLineNumber,    Long,    0,  true) /* line where the department, or its run, begins */      \
  column(splitGroup,         Long,    0,  true) /* 0 for none */                                         \
  column(existing,           Long,    0,  true) /* 1 when the loaded ticket had the department */
// clang-format on

ONDREL_COLUMNS(DeptColumn, kDeptLayout, ONDREL_DEPT_COLUMNS)

// The shared table of the store's departments; error 91 before they are loaded.
Recordset& loadedDepartments(const Apartment& apartment, std::string_view askedBy);

// Adds the department's row and makes it current. Error 3021 for one that the store does not have, whose
// filter then stays on the shared table.
void addDepartmentRow(Recordset& table, Recordset& storeDepartments, const Variant& deptId,
                      const Variant& firstLineNumber);
// Whether a row of the table does not ask for a split. Clears its filter.
bool hasDepartmentWithoutSplit(Recordset& table);

using DepartmentTest = std::function<bool(const Variant& deptId)>;
using DepartmentCount = std::function<std::int32_t(const Variant& deptId)>;

// | of the departments on the ticket, in the store's order              | split |
// |---------------------------------------------------------------------|-------|
// | one of a group, the one of a group before it of another             | yes   |
// | more pieces than its ticket takes; exactly as many do not           | yes   |
// | a department of no group, two of one group                          | no    |
bool departmentsAskForSplit(const Recordset& storeDepartments, const DepartmentTest& isPresent,
                            const DepartmentCount& pieces);

// Departments that travel with this one: those of its group and those of none, on its price list. Column
// departmentid.
RecordsetRef travellingDepartments(Apartment& apartment, const Variant& deptId);

}  // namespace ondrel
