#include <fmt/format.h>

#include <algorithm>

#include "base/text.h"
#include "data/query_database.h"
#include "data/store_loading.h"
#include "data/values.h"
#include "invoice/calendar/ticket_dates.h"
#include "invoice/invoice.h"
#include "invoice/pricing/price_list_settings.h"
#include "invoice/splitting/department_groups.h"

namespace ondrel {
namespace {

using enum LineColumn;

// Garments and department lines, of one department or of all.
std::string garmentFilter(std::string_view column, const std::string& value) {
  if (value.empty()) return "itemType = 'IT' or itemType = 'DE'";
  return fmt::format("(itemType = 'IT' and {0}='{1}') or (itemType = 'DE' and {0}='{1}')", column,
                     escapeSqlValue(value));
}

std::string dayText(Date date) {
  const DateParts parts = date.parts();
  return fmt::format("{}/{}/{}", parts.month, parts.day, parts.year);
}

}  // namespace

// ---------------------------------------------------------------- counting days

Date Invoice::dueDateForDays(const Variant& days) {
  return ondrel::dueDateForDays(*apartment_, createdDate, days.toLong());
}

std::int32_t Invoice::daysUntilDate(Date target) {
  return ondrel::daysUntilDate(*apartment_, createdDate, target);
}

Variant Invoice::getAdditionalDeptDays(Variant& departmentID) {
  // Late drop-off days are a courtesy of the store's set-up: a failure to read them must not stop a garment.
  try {
    const RecordsetRef rows = queryDatabase(
        *apartment_,
        fmt::format(
            " select isnull(sum(isnull(adddays, 0)), 0) as tmod from departmentdays where  departmentid "
            "= '{}' and hour <= {}",
            departmentID.joined(), createdDate.parts().hour));
    return rows->eof() ? Variant(0) : rows->value("tmod");
  } catch (const Error&) {
    return 0;
  }
}

// ---------------------------------------------------------------- the invoice's date

void Invoice::setStoreDays(const Variant& storeid) {
  storeNumber = storeid.toLong();
  loadStoreDays(*apartment_, storeid, createdDate);
  loadDepartments(*apartment_, storeNumber, priceListId);
  loadPriceListSettings(*this);
  // A first promise only, counted from whatever date the last calculation left.
  if (isAdd && !counterSaleOnly)
    InvDueDate = addStoreDays(*apartment_, apartment_->store.defaultProcessingDays);
}

void Invoice::setInvoiceDueDate(const Variant& NewValue) {
  const Date due = NewValue.toDate();
  if (daysBetween(InvDueDate, due) == 0) return;
  InvDueDate = due;
  state_.isDateByHand = true;
}

void Invoice::calculateInvDueDate() {
  lineItems->clearFilter();
  raiseInvDueDate();
}

void Invoice::raiseInvDueDate() {
  InvDueDate = latestDueDate(*lineItems, dueDate, createdDate);
}

// ---------------------------------------------------------------- dates of a department

Variant Invoice::getDeptDaysToProcess(const Variant& department) {
  const RecordsetRef lines = lineItems->clone();
  lines->setFilter(garmentFilter("deptName", department.joined()));
  if (lines->eof()) return daysUntilDate(InvDueDate);
  std::int32_t days = -1;
  for (; !lines->eof(); lines->moveNext())
    if (!lines->isNull(daysToProcess)) days = std::max(days, lines->integer(daysToProcess));
  return days;
}

Variant Invoice::getDeptIDDaysToProcess(const Variant& deptID) {
  const RecordsetRef lines = lineItems->clone();
  lines->setFilter(garmentFilter("deptID", deptID.joined()));
  if (!lines->eof()) {
    std::int32_t days = -1;
    for (; !lines->eof(); lines->moveNext())
      days = std::max(days, lines->isNull(dueDate) ? 0 : daysUntilDate(lines->date(dueDate)));
    return days;
  }
  if (hasRememberedDeptDays(deptID)) return rememberedDeptDays(deptID);
  if (deptID.joined().empty()) return daysUntilDate(InvDueDate);
  Recordset& departments = storeDepartments();
  departments.setFilter("departmentID=" + deptID.toText());
  return departments.value("daysToProcess");
}

Variant Invoice::getDeptDueDate(const Variant& department) {
  const RecordsetRef lines = lineItems->clone();
  if (const std::string name = department.joined(); !name.empty())
    lines->setFilter("deptName='" + escapeSqlValue(name) + "'");
  if (lines->eof()) return dayText(InvDueDate);
  return dayText(latestDueDate(*lines, dueDate, Date::of(1980, 1, 1)));
}

// ---------------------------------------------------------------- dates set by hand

bool Invoice::setDates(std::string_view filter, Date due, std::int32_t days) {
  const bool found = setLineDates(*lineItems, filter, {daysToProcess, dueDate}, due, days);
  calculateInvDueDate();
  return found;
}

void Invoice::setAllDepartmentDueDates(const Variant& datedue) {
  const Date due = datedue.toDate();
  setDates("", due, daysUntilDate(due));
}

void Invoice::setDeptDueDate(const Variant& dept, const Variant& datedue) {
  const Date due = datedue.toDate();
  setDates("deptName='" + dept.joined() + "'", due, daysUntilDate(due));
}

void Invoice::setDeptIdDueDate(const Variant& deptID, const Variant& datedue) {
  const Date due = datedue.toDate();
  const std::int32_t days = daysUntilDate(due);
  if (!setDates("deptid='" + deptID.joined() + "'", due, days)) rememberDeptDays(deptID, days);
}

void Invoice::setLineDueDate(const Variant& line, const Variant& datedue) {
  findLine(line);
  const std::string kindOfLine = toUpper(lineItems->text(itemType));  // fails on a line that is not there
  if (kindOfLine == "AC" || kindOfLine == "IT")
    setDeptDueDate(escapeSqlValue(lineItems->text(deptName)), datedue);
  lineItems->clearFilter();
}

// ---------------------------------------------------------------- departments of the invoice

Variant Invoice::isDepartmentExisting(Variant& deptID) {
  return std::any_of(state_.departments.begin(), state_.departments.end(),
                     [&](std::int32_t id) { return isEqual(id, deptID); });
}

Variant Invoice::isDepartmentPresent(Variant& deptID) {
  const RecordsetRef lines = lineItems->clone();
  lines->setFilter("deptID=" + sqlNumber(deptID));
  return !lines->eof();
}

Recordset& Invoice::storeDepartments() const {
  return loadedDepartments(*apartment_, className());
}

void Invoice::rememberDeptDays(const Variant& department, std::int32_t days) {
  forgetDeptDays(department);
  state_.pendingDeptDays->add(department.toLong(), days);
}

void Invoice::forgetDeptDays(const Variant& department) {
  const std::int32_t id = department.toLong();
  if (state_.pendingDeptDays->exists(id)) state_.pendingDeptDays->remove(id);
}

bool Invoice::hasRememberedDeptDays(const Variant& department) const {
  // Whatever is no department id has none.
  try {
    return !department.joined().empty() && state_.pendingDeptDays->exists(department.toLong());
  } catch (const Error&) {
    return false;
  }
}

Variant Invoice::rememberedDeptDays(const Variant& department) const {
  const Variant* days = state_.pendingDeptDays->find(department.toLong());
  return days ? *days : Variant(0);
}

}  // namespace ondrel
