#include <fmt/format.h>

#include <array>
#include <limits>

#include "base/whole_number.h"
#include "invoice/calendar/due_dates.h"
#include "web/html_writer.h"
#include "web/line_views.h"
#include "web/panels.h"

namespace ondrel {
namespace {

// A page of the day picker; its last day is the first of the next.
constexpr std::int32_t kDaysOnPage = 12, kDaysToNextPage = kDaysOnPage - 1;

constexpr std::array<std::string_view, 12> kMonths = {"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                                      "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};
constexpr std::array<std::string_view, 7> kWeekdays = {"Mon", "Tue", "Wed", "Thu", "Fri", "Sat", "Sun"};

bool isWholeFromZero(const Variant& days) {
  return days.isNumeric() && days.toDouble() >= 0 && isEqual(days, days.toLong());
}

// The first page that shows the day.
std::int32_t pageOf(std::int32_t day) {
  return day < kDaysOnPage ? 0 : (day - 1) / kDaysToNextPage;
}

std::int32_t firstDayOf(std::int32_t page) {
  const auto first = wholeNumber<std::int32_t>(double{kDaysToNextPage} * page);
  if (!first || *first > std::numeric_limits<std::int32_t>::max() - kDaysOnPage)
    throw Error(ErrorNumber::Overflow, "invoice", "Overflow: no page of days is that far");
  return *first;
}

void writeTurn(HtmlWriter& html, std::string_view turn, const Variant& department, std::string_view note) {
  html.raw("<div class=\"button dept-due\"")
      .attribute("date", turn)
      .attribute("deptid", department)
      .content();
  html.raw("<span class=\"day\"></span><span class=\"dow-short\"></span>");
  html.raw("<span class=\"note\">").raw(note).raw("</span></div>");
}

void writeDay(HtmlWriter& html, std::int32_t days, bool isDue, Date date, const Variant& department) {
  const DateParts parts = date.parts();
  std::string classes = "button dept-due", note;
  if (days == 0) {
    classes += " created-date";
    note = "Created";
  }
  if (isDue) {
    classes += " due-date";
    note += note.empty() ? "Due" : ", Due";
  }
  html.tag("div").attribute("class", classes);
  html.attribute("date", fmt::format("{:04}-{:02}-{:02}", parts.year, parts.month, parts.day));
  html.attribute("deptid", department).content();
  html.raw("<span class=\"day\">").raw(kMonths[static_cast<size_t>(parts.month - 1)]).raw("-").raw(parts.day);
  html.raw("</span><span class=\"dow-short\">").raw(kWeekdays[static_cast<size_t>(date.weekday() - 1)]);
  html.raw("</span><span class=\"note\">").raw(note).raw("</span></div>");
}

}  // namespace

Variant htmlDueDates(Invoice& invoice) {
  HtmlWriter html;
  invoice.lineItems->clearFilter();
  for (const LineDepartment& department : departmentsOf(*invoice.lineItems)) {
    if (department.id.isNull()) continue;
    html.raw("<div class=\"dept_duedate\"><div class=\"duedate_label\"><span>").encoded(department.name);
    html.raw("</span></div><input class=\"duedate_dept\"").escaped("deptid", department.id);
    html.escaped("value", invoice.getDeptDueDate(department.name)).raw(" /></div>");
  }
  return html.take();
}

Variant htmlDeptsDueDate(Invoice& invoice) {
  HtmlWriter html;
  invoice.lineItems->setFilter("itemType='IT' or itemType='DE' or itemType='AC'");
  const std::vector<LineDepartment> departments = departmentsOf(*invoice.lineItems);
  invoice.lineItems->clearFilter();
  for (const LineDepartment& department : departments) {
    Variant dueDayPage = "";
    html.raw("<div class=\"dept-details\"><h3>").encoded(department.name).raw("</h3>");
    html.raw(htmlDeptDueDate(invoice, department.id, dueDayPage)).raw("</div>");
  }
  return html.take();
}

Variant htmlInvoiceDueDate(Invoice& invoice) {
  Variant dueDayPage = "";
  HtmlWriter html;
  html.raw("<div class=\"dept-details\"><h3>Invoice</h3>")
      .raw(htmlDeptDueDate(invoice, "", dueDayPage))
      .raw("</div>");
  return html.take();
}

// | page given | page shown                       | first button |
// |------------|----------------------------------|--------------|
// | ""         | the first that has the due day   | Prev         |
// | 0          | 0                                | stop         |
// | any other  | that page                        | Prev         |
Variant htmlDeptDueDate(Invoice& invoice, const Variant& departmentID, Variant& page) {
  const Variant target = invoice.getDeptIDDaysToProcess(departmentID);
  const bool isSearch = page.joined().empty();
  if (isSearch && !isWholeFromZero(target))
    throw Error(ErrorNumber::InvalidCall, invoice.className(),
                "No page has the due day: the department's days are not a whole number from 0 on");
  const std::int32_t shown = isSearch ? pageOf(target.toLong()) : page.toLong();

  const std::int32_t first = firstDayOf(shown);
  const TicketCalendar calendar = calendarOf(invoice);
  HtmlWriter html;
  html.raw("<div").attribute("page", shown).content();
  if (!isSearch && isEqual(page, 0))
    writeTurn(html, "stop", departmentID, "");
  else
    writeTurn(html, "prev", departmentID, "Prev");
  for (std::int32_t cell = 0; cell < kDaysOnPage; ++cell) {
    const std::int32_t days = first + cell;
    writeDay(html, days, isEqual(days, target), calendar.dateAfter(days), departmentID);
  }
  page = shown;
  writeTurn(html, "next", departmentID, "Next");
  html.raw("</div>");
  return html.take();
}

}  // namespace ondrel
