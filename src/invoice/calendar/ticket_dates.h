#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "data/apartment.h"
#include "data/recordset/recordset.h"
#include "invoice/calendar/ticket_calendar.h"

namespace ondrel {

// What a ticket promises, for every table of lines: which columns hold it is an argument.
struct DateColumns {
  Column daysToProcess, dueDate;
};

// ---- the lines

// The latest calendar day from `earliest` and the lines from the current one on; a line without a date does
// not count. Leaves the table at its end.
Date latestDueDate(Recordset& lines, Column dueDate, Date earliest);
// One date on every line that passes the filter ("" for all), which is cleared; whether there was one.
bool setLineDates(Recordset& lines, std::string_view filter, const DateColumns& columns, Date due,
                  std::int32_t days);

// ---- route and ready time

// The first of the seven days after the day of writing on which the customer's route passes. Closed days and
// holidays play no part: the route decides.
std::optional<Date> nextDeliveryDay(Apartment& apartment, std::int32_t store, const Variant& customer,
                                    Date written);
// The route's date on all lines that take less than five days.
void moveToDeliveryDay(const TicketCalendar& calendar, Recordset& lines, const DateColumns& columns,
                       Date delivery);
// The ready time of a ticket due on the day, "" when none is promised.
std::string readyTimeOn(const Apartment& apartment, Date due);

}  // namespace ondrel
