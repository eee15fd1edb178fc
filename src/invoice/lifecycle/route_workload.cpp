#include <fmt/format.h>

#include <algorithm>
#include <array>

#include "data/query_database.h"
#include "invoice/invoice.h"

namespace ondrel {
namespace {

using enum LineColumn;

// Weekdays of a route from Sunday.
constexpr std::array kCustomerDays = {"deliverSun", "deliverMon", "deliverTue", "deliverWed",
                                      "deliverThu", "deliverFri", "deliverSat"};
constexpr std::array kRouteDays = {"deliverySun", "deliveryMon", "deliveryTue", "deliveryWed",
                                   "deliveryThu", "deliveryFri", "deliverySat"};

// A line that takes this long goes on a date of its own, not on the next round.
constexpr int kLongDays = 5;

constexpr double kNoThreshold = 10000;

}  // namespace

// ---------------------------------------------------------------- route

bool Invoice::usesRouteVersion2() {
  return !queryDatabase(
              *apartment_,
              fmt::format(" select routeVersion from miscsetup where routeVersion = 2 and storeid = '{}'",
                          storeNumber))
              ->eof();
}

// `dayIndex` from Sunday = 1 to Saturday = 7.
bool Invoice::isDeliveryDay(const Variant& customerSeq, int dayIndex, bool routeVersion2) {
  const size_t day = static_cast<size_t>(dayIndex - 1);
  const std::string sql =
      routeVersion2
          ? fmt::format(
                " select id from customerdelivery where customersequencenumber = '{}' and {} in (1, "
                "3)  and active = 1 ",
                escapeSqlValue(customerSeq.joined()), kCustomerDays[day])
          : fmt::format(
                " select 1 from customer  inner join route on customer.routenumber = "
                "route.routenumber  where customer.customersequencenumber = '{}' and route.{} = 1",
                escapeSqlValue(customerSeq.joined()), kRouteDays[day]);
  return !queryDatabase(*apartment_, sql)->eof();
}

// The first of the seven days after the day of writing on which the route passes. Closed days and holidays
// play no part: the route decides.
void Invoice::adjustDueDatesForRoute(Variant& CustomerSeq) {
  const bool version2 = usesRouteVersion2();
  for (int ahead = 1; ahead <= 7; ++ahead) {
    const Date day = createdDate.addDays(ahead);
    const int fromSunday = day.weekday() % 7 + 1;
    if (!isDeliveryDay(CustomerSeq, fromSunday, version2)) continue;
    setRouteDueDate(day);
    return;
  }
}

void Invoice::setRouteDueDate(Date date) {
  const std::int32_t days = daysUntilDate(date);
  lineItems->clearFilter();
  for (; !lineItems->eof(); lineItems->moveNext()) {
    if (lineItems->isNull(daysToProcess) || lineItems->integer(daysToProcess) >= kLongDays) continue;
    lineItems->setValue(daysToProcess, days);
    lineItems->setValue(dueDate, date);
  }
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
  createDeptTable();
  fillDeptTable();
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
  if (date != promised) setDeptDueDate(department, date);
}

}  // namespace ondrel
