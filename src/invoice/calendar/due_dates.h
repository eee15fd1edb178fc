#pragma once

#include "invoice/calendar/ticket_dates.h"
#include "invoice/invoice.h"

namespace ondrel {

inline constexpr DateColumns kLineDates{col::daysToProcess, col::dueDate};

TicketCalendar calendarOf(const Invoice& invoice);

}  // namespace ondrel
