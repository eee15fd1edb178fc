#include <fmt/format.h>

#include <algorithm>

#include "data/query_database.h"
#include "invoice/calendar/due_dates.h"
#include "invoice/splitting/department_groups.h"
#include "invoice/splitting/department_table.h"

namespace ondrel {
namespace {

constexpr double kNoThreshold = 10000;

// Pieces above which a day counts as full: a percentage of the department's quota.
double workloadThreshold(const Invoice& invoice, const std::string& department) {
  const RecordsetRef rows = queryDatabase(
      *invoice.apartment(),
      fmt::format("select (ms.RollOverDueDateAbove * dq.PiecesDue) / 100 as threshold from miscsetup ms, "
                  "departmentquota dq where ms.storeid = '{}' and dq.DepartmentName = '{}'",
                  invoice.storeNumber, escapeSqlValue(department)));
  return rows->eof() || rows->isNull("threshold") ? kNoThreshold : rows->number("threshold");
}

// Pieces that the department has promised for the day, without this ticket's.
double piecesDue(const Invoice& invoice, const std::string& department, Date date) {
  const RecordsetRef rows =
      queryDatabase(*invoice.apartment(),
                    fmt::format("select isnull(PiecesDue, 0) as PiecesDue from dailystatistics where Date = "
                                "convert(varchar, '{}', 110) and DepartmentName = '{}'",
                                date.text(), escapeSqlValue(department)));
  return rows->eof() ? 0 : rows->number("PiecesDue");
}

// Walks calendar days, closed ones too; a day without a count has room, whatever the threshold.
void rollOver(Invoice& invoice, const std::string& department) {
  const double threshold = std::max(workloadThreshold(invoice, department), 0.0);
  const Date promised = invoice.getDeptDueDate(department).toDate();
  Date date = promised;
  while (piecesDue(invoice, department, date) > threshold) date = date.addDays(1);
  if (date != promised) invoice.setDeptDueDate(escapeSqlValue(department), date);
}

}  // namespace

void Invoice::adjustDueDatesForRoute(Variant& CustomerSeq) {
  const auto delivery = nextDeliveryDay(*apartment_, storeNumber, CustomerSeq, createdDate);
  if (!delivery) return;
  moveToDeliveryDay(calendarOf(*this), *lineItems, kLineDates, *delivery);
  calculateInvDueDate();
}

void Invoice::adjustDueDatesForWorkload() {
  listDepartments(*this);
  for (; !invoiceDeptIds->eof(); invoiceDeptIds->moveNext()) {
    Recordset& departments = loadedDepartments(*apartment_, className());
    departments.setFilter("departmentID=" + invoiceDeptIds->value("deptId").toText());
    rollOver(*this, departments.text("name"));
  }
}

}  // namespace ondrel
