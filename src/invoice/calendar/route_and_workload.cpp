#include <fmt/format.h>

#include <algorithm>

#include "data/query_database.h"
#include "invoice/calendar/ticket_dates.h"
#include "invoice/invoice.h"
#include "invoice/splitting/department_table.h"

namespace ondrel {
namespace {

using enum LineColumn;

constexpr double kNoThreshold = 10000;

}  // namespace

// ---------------------------------------------------------------- route

void Invoice::adjustDueDatesForRoute(Variant& CustomerSeq) {
  const auto delivery = nextDeliveryDay(*apartment_, storeNumber, CustomerSeq, createdDate);
  if (!delivery) return;
  moveToDeliveryDay(*apartment_, *lineItems, {daysToProcess, dueDate}, createdDate, *delivery);
  calculateInvDueDate();
}

// ---------------------------------------------------------------- workload

// Pieces above which a day counts as full: a percentage of the department's quota.
double Invoice::getWorkloadThreshold(const std::string& department) {
  const RecordsetRef rows = queryDatabase(
      *apartment_,
      fmt::format("select (ms.RollOverDueDateAbove * dq.PiecesDue) / 100 as threshold from miscsetup ms, "
                  "departmentquota dq where ms.storeid = '{}' and dq.DepartmentName = '{}'",
                  storeNumber, escapeSqlValue(department)));
  return rows->eof() || rows->isNull("threshold") ? kNoThreshold : rows->number("threshold");
}

// Pieces that the department has promised for the day, without this ticket's.
double Invoice::getPiecesDue(const std::string& department, Date date) {
  const RecordsetRef rows = queryDatabase(
      *apartment_, fmt::format("select isnull(PiecesDue, 0) as PiecesDue from dailystatistics where Date = "
                               "convert(varchar, '{}', 110) and DepartmentName = '{}'",
                               date.text(), escapeSqlValue(department)));
  return rows->eof() ? 0 : rows->number("PiecesDue");
}

void Invoice::adjustDueDatesForWorkload() {
  listDepartments(*this);
  for (; !invoiceDeptIds->eof(); invoiceDeptIds->moveNext()) {
    Recordset& departments = storeDepartments();
    departments.setFilter("departmentID=" + invoiceDeptIds->value("deptId").toText());
    rollOverDepartment(departments.text("name"));
  }
}

// Walks calendar days, closed ones too; a day without a count has room, whatever the threshold.
void Invoice::rollOverDepartment(const std::string& department) {
  const double threshold = std::max(getWorkloadThreshold(department), 0.0);
  const Date promised = getDeptDueDate(department).toDate();
  Date date = promised;
  while (getPiecesDue(department, date) > threshold) date = date.addDays(1);
  if (date != promised) setDeptDueDate(escapeSqlValue(department), date);
}

}  // namespace ondrel
