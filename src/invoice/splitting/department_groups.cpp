#include "invoice/splitting/department_groups.h"

#include <fmt/format.h>

#include "data/query_database.h"

namespace ondrel {

Recordset& loadedDepartments(const Apartment& apartment, std::string_view askedBy) {
  if (!apartment.store.storeDepartments)
    throw Error(ErrorNumber::ObjectNotSet, askedBy,
                "The store's departments are not loaded: call setStoreDays first");
  return *apartment.store.storeDepartments;
}

void addDepartmentRow(Recordset& table, Recordset& storeDepartments, const Variant& deptId,
                      const Variant& firstLineNumber) {
  storeDepartments.setFilter("departmentId=" + deptId.toText());
  table.addNew({{DeptColumn::deptId, deptId},
                {DeptColumn::splitInvoice, storeDepartments.value("splitInvoice")},
                {DeptColumn::maxItemsInReceipt, storeDepartments.value("maxItemsInReceipt")},
                {DeptColumn::firstLineNumber, firstLineNumber},
                {DeptColumn::splitGroup, storeDepartments.value("splitGroup")}});
  storeDepartments.clearFilter();
}

bool hasDepartmentWithoutSplit(Recordset& table) {
  table.setFilter("splitInvoice=false");
  const bool found = !table.eof();
  table.clearFilter();
  return found;
}

bool departmentsAskForSplit(const Recordset& storeDepartments, const DepartmentTest& isPresent,
                            const DepartmentCount& pieces) {
  bool split = false;
  std::int32_t previousGroup = -1;
  const RecordsetRef departments = storeDepartments.clone();
  for (; !departments->eof() && !split; departments->moveNext()) {
    const Variant department = departments->value("departmentID");
    if (!isPresent(department)) continue;
    if (const std::int32_t group = departments->integer("splitGroup"); group > 0) {
      split = previousGroup > -1 && previousGroup != group;
      previousGroup = group;
    }
    if (pieces(department) > departments->integer("maxItemsInReceipt")) split = true;
  }
  return split;
}

RecordsetRef travellingDepartments(Apartment& apartment, const Variant& deptId) {
  return queryDatabase(
      apartment,
      fmt::format(" select d1.departmentid from  department d1  inner join department d2 on (d2.splitgroup = "
                  "d1.splitgroup or d1.splitGroup = 0) and d2.pricelistid = d1.pricelistid  where "
                  "d2.departmentID = {}",
                  deptId.toText()));
}

}  // namespace ondrel
