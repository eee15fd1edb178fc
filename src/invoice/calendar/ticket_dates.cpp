#include "invoice/calendar/ticket_dates.h"

#include <fmt/format.h>

#include <array>

#include "base/text.h"
#include "data/query_database.h"

namespace ondrel {
namespace {

// Weekdays of a route from Sunday.
constexpr std::array kCustomerDays = {"deliverSun", "deliverMon", "deliverTue", "deliverWed",
                                      "deliverThu", "deliverFri", "deliverSat"};
constexpr std::array kRouteDays = {"deliverySun", "deliveryMon", "deliveryTue", "deliveryWed",
                                   "deliveryThu", "deliveryFri", "deliverySat"};

// A line that takes this long goes on a date of its own, not on the next round.
constexpr int kLongDays = 5;

bool usesRouteVersion2(Apartment& apartment, std::int32_t store) {
  return !queryDatabase(
              apartment,
              fmt::format(" select routeVersion from miscsetup where routeVersion = 2 and storeid = '{}'",
                          store))
              ->eof();
}

bool isDeliveryDay(Apartment& apartment, const Variant& customer, Date day, bool routeVersion2) {
  const auto fromSunday = static_cast<size_t>(day.weekday() % 7);
  const std::string who = escapeSqlValue(customer.joined());
  const std::string sql =
      routeVersion2
          ? fmt::format(
                " select id from customerdelivery where customersequencenumber = '{}' and {} in (1, "
                "3)  and active = 1 ",
                who, kCustomerDays[fromSunday])
          : fmt::format(
                " select 1 from customer  inner join route on customer.routenumber = "
                "route.routenumber  where customer.customersequencenumber = '{}' and route.{} = 1",
                who, kRouteDays[fromSunday]);
  return !queryDatabase(apartment, sql)->eof();
}

void setDates(Recordset& line, const DateColumns& columns, Date due, std::int32_t days) {
  line.setValue(columns.daysToProcess, days);
  line.setValue(columns.dueDate, due);
}

}  // namespace

// ---------------------------------------------------------------- the lines

Date latestDueDate(Recordset& lines, Column dueDate, Date earliest) {
  Date latest = earliest;
  for (; !lines.eof(); lines.moveNext())
    if (!lines.isNull(dueDate) && daysBetween(latest, lines.date(dueDate)) > 0) latest = lines.date(dueDate);
  return latest;
}

bool setLineDates(Recordset& lines, std::string_view filter, const DateColumns& columns, Date due,
                  std::int32_t days) {
  if (filter.empty())
    lines.clearFilter();
  else
    lines.setFilter(filter);
  const bool found = !lines.eof();
  for (; !lines.eof(); lines.moveNext()) setDates(lines, columns, due, days);
  lines.clearFilter();
  return found;
}

// ---------------------------------------------------------------- route and ready time

std::optional<Date> nextDeliveryDay(Apartment& apartment, std::int32_t store, const Variant& customer,
                                    Date written) {
  const bool version2 = usesRouteVersion2(apartment, store);
  for (int ahead = 1; ahead <= 7; ++ahead) {
    const Date day = written.addDays(ahead);
    if (isDeliveryDay(apartment, customer, day, version2)) return day;
  }
  return std::nullopt;
}

void moveToDeliveryDay(const TicketCalendar& calendar, Recordset& lines, const DateColumns& columns,
                       Date delivery) {
  const std::int32_t days = calendar.daysUntil(delivery);
  lines.clearFilter();
  for (; !lines.eof(); lines.moveNext())
    if (!lines.isNull(columns.daysToProcess) && lines.integer(columns.daysToProcess) < kLongDays)
      setDates(lines, columns, delivery, days);
}

std::string readyTimeOn(const Apartment& apartment, Date due) {
  const auto weekday = static_cast<size_t>(due.weekday());
  return std::string(trim(apartment.store.defaultPickupTimes[weekday]));
}

}  // namespace ondrel
