#include "invoice/calendar/department_dates.h"

#include <fmt/format.h>

#include <algorithm>
#include <optional>

#include "base/text.h"
#include "data/query_database.h"
#include "data/values.h"
#include "invoice/calendar/due_dates.h"
#include "invoice/splitting/department_groups.h"

namespace ondrel {
namespace {

// Garments and department lines, of one department or of all.
std::string datedLines(std::string_view column, const std::string& department) {
  if (department.empty()) return ofKinds({kind::garment, kind::department});
  return fmt::format("(itemType = '{2}' and {0}='{1}') or (itemType = '{3}' and {0}='{1}')", column,
                     escapeSqlValue(department), kind::garment, kind::department);
}

std::string dayText(Date date) {
  const DateParts parts = date.parts();
  return fmt::format("{}/{}/{}", parts.month, parts.day, parts.year);
}

// ---- days chosen before the department's first line

void rememberDays(Dictionary& chosen, const Variant& department, std::int32_t days) {
  const std::int32_t id = department.toLong();
  if (chosen.exists(id)) chosen.remove(id);
  chosen.add(id, days);
}

// Whatever is no department id has none.
std::optional<Variant> rememberedDays(const Dictionary& chosen, const Variant& department) {
  try {
    if (department.joined().empty()) return std::nullopt;
    const Variant* days = chosen.find(department.toLong());
    return days ? std::optional(*days) : std::nullopt;
  } catch (const Error&) {
    return std::nullopt;
  }
}

// ---- dates set by hand

// On every line that passes the filter, "" for all; whether there was one.
bool setDates(Invoice& invoice, std::string_view filter, Date due, std::int32_t days) {
  const bool found = setLineDates(*invoice.lineItems, filter, kLineDates, due, days);
  invoice.calculateInvDueDate();
  return found;
}

}  // namespace

// ---------------------------------------------------------------- what stands

Variant Invoice::getDeptDaysToProcess(const Variant& department) {
  const LineSet line = lines_.peek(datedLines("deptName", department.joined()));
  if (!line) return calendarOf(*this).daysUntil(InvDueDate);
  std::int32_t days = -1;
  for (; line; line->moveNext())
    if (!line->isNull(col::daysToProcess)) days = std::max(days, line->integer(col::daysToProcess));
  return days;
}

Variant Invoice::getDeptIDDaysToProcess(const Variant& deptID) {
  if (const LineSet line = lines_.peek(datedLines("deptID", deptID.joined())); line) {
    std::int32_t days = -1;
    for (; line; line->moveNext())
      days = std::max(days,
                      line->isNull(col::dueDate) ? 0 : calendarOf(*this).daysUntil(line->date(col::dueDate)));
    return days;
  }
  if (const auto days = rememberedDays(*state_.pendingDeptDays, deptID)) return *days;
  if (deptID.joined().empty()) return calendarOf(*this).daysUntil(InvDueDate);
  Recordset& departments = loadedDepartments(*apartment_, className());
  departments.setFilter("departmentID=" + deptID.toText());
  return departments.value("daysToProcess");
}

Variant Invoice::getDeptDueDate(const Variant& department) {
  const std::string name = department.joined();
  const LineSet line = lines_.peek(name.empty() ? "" : "deptName='" + escapeSqlValue(name) + "'");
  return dayText(line ? latestDueDate(*line, col::dueDate, Date::of(1980, 1, 1)) : InvDueDate);
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

Variant Invoice::isDepartmentExisting(Variant& deptID) {
  return std::any_of(state_.departments.begin(), state_.departments.end(),
                     [&](std::int32_t id) { return isEqual(id, deptID); });
}

Variant Invoice::isDepartmentPresent(Variant& deptID) {
  return static_cast<bool>(lines_.peek("deptID=" + sqlNumber(deptID)));
}

// | the department                          | days                              | date                  |
// |-----------------------------------------|-----------------------------------|-----------------------|
// | was on the loaded ticket                | those of its lines                | that of its lines     |
// | had a date chosen before its first line | the remembered days, used up      | counted from the days |
// | otherwise                               | late drop-off days and the item's | counted from the days |
Promise promiseTo(Invoice& invoice, const Variant& department, const Variant& name, const Variant& itemDays) {
  Variant id = department;
  if (invoice.isDepartmentExisting(id).toBoolean())
    return {invoice.getDeptDaysToProcess(name), invoice.getDeptDueDate(name)};
  Dictionary& chosen = *invoice.state().pendingDeptDays;
  Variant days;
  if (const auto remembered = rememberedDays(chosen, department)) {
    days = *remembered;
    chosen.remove(department.toLong());
  } else {
    days = invoice.getAdditionalDeptDays(id) + itemDays;
  }
  return {days, calendarOf(invoice).dateAfter(days.toLong())};
}

// ---------------------------------------------------------------- dates set by hand

void Invoice::setAllDepartmentDueDates(const Variant& datedue) {
  const Date due = datedue.toDate();
  setDates(*this, "", due, calendarOf(*this).daysUntil(due));
}

void Invoice::setDeptDueDate(const Variant& dept, const Variant& datedue) {
  const Date due = datedue.toDate();
  setDates(*this, "deptName='" + dept.joined() + "'", due, calendarOf(*this).daysUntil(due));
}

void Invoice::setDeptIdDueDate(const Variant& deptID, const Variant& datedue) {
  const Date due = datedue.toDate();
  const std::int32_t days = calendarOf(*this).daysUntil(due);
  if (!setDates(*this, "deptid='" + deptID.joined() + "'", due, days))
    rememberDays(*state_.pendingDeptDays, deptID, days);
}

void Invoice::setLineDueDate(const Variant& lineNumber, const Variant& datedue) {
  const LineSet line = lines_.find(lineNumber);
  // A line that is not there has no kind, which is an error.
  if (lineKindOf(toUpper(line->text(col::itemType))).isArticle)
    setDeptDueDate(escapeSqlValue(line->text(col::deptName)), datedue);
}

}  // namespace ondrel
