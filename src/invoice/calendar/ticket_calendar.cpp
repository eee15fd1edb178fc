#include "invoice/calendar/ticket_calendar.h"

namespace ondrel {

Date TicketCalendar::dateAfter(std::int32_t days) const {
  return countFrom(written_, days);
}

std::int32_t TicketCalendar::daysUntil(Date target) const {
  const std::int32_t days = daysUntilDate(store_.calendar, written_, target);
  dateAfter(days);
  return days;
}

Date TicketCalendar::usualDate() const {
  return countFrom(store_.lastCounted, store_.defaultProcessingDays);
}

Date TicketCalendar::countFrom(Date start, std::int32_t days) const {
  return store_.lastCounted = addStoreDays(store_.calendar, start, days);
}

}  // namespace ondrel
