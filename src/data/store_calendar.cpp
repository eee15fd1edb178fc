#include "data/store_calendar.h"

#include <algorithm>
#include <limits>

#include "base/error.h"

namespace ondrel {
namespace {

// No search for an open day goes on for longer than a year.
constexpr int kMostRounds = 365;

std::int32_t countedDays(const StoreCalendar& calendar, std::int32_t days) {
  const std::int64_t total = std::int64_t{days} + calendar.cutoffExtraDays;
  if (total < std::numeric_limits<std::int32_t>::min() || total > std::numeric_limits<std::int32_t>::max())
    throw Error(ErrorNumber::Overflow, "basGlobal", "Overflow");
  return static_cast<std::int32_t>(total);
}

// Each closed day between the start and the moving end pushes the end by one.
Date passClosedDays(const StoreCalendar& calendar, Date base, Date due) {
  Date cursor = base;
  for (int round = 1; round <= kMostRounds && cursor <= due; ++round) {
    if (!calendar.isOpen(cursor)) due = due.addDays(1);
    cursor = cursor.addDays(1);
  }
  return due;
}

Date nextOpenDay(const StoreCalendar& calendar, Date due) {
  for (int round = 1; round <= kMostRounds && !calendar.isOpen(due); ++round) due = due.addDays(1);
  return due;
}

// | holiday                                   | effect                                               |
// |-------------------------------------------|------------------------------------------------------|
// | began before the base, or begins after due | none, even if it is still running                    |
// | ends by the due day                       | walked from its first day                            |
// | ends after the due day                    | walked from the due day                              |
// | a walked day that is open                 | due moves on by one; a closed day it lands on counts |
//
// The closed days that were hit are added at the end, then due moves to an open day.
Date passHoliday(const StoreCalendar& calendar, const StoreHoliday& holiday, Date base, Date due) {
  const Date first = holiday.firstDay;
  const Date last = first.addDays(holiday.duration - 1);
  int closedHits = 0;
  if (daysBetween(base, first) >= 0 && daysBetween(first, due) >= 0) {
    for (Date day = daysBetween(last, due) >= 0 ? first : due; daysBetween(day, last) >= 0;
         day = day.addDays(1)) {
      if (!calendar.isOpen(day)) continue;
      due = due.addDays(1);
      if (!calendar.isOpen(due)) ++closedHits;
    }
  }
  return nextOpenDay(calendar, due.addDays(closedHits));
}

long long longestDelay(const StoreCalendar& calendar) {
  long long days = kMostRounds;
  for (const StoreHoliday& holiday : calendar.holidays)
    days += kMostRounds + 2LL * std::max(holiday.duration, 0);
  return days;
}

[[noreturn]] void failUnreachable() {
  throw Error(ErrorNumber::Overflow, "basGlobal", "Overflow: no number of processing days reaches the date");
}

}  // namespace

Date addStoreDays(const StoreCalendar& calendar, Date base, std::int32_t days) {
  const std::int32_t total = countedDays(calendar, days);
  Date due = base.addDays(total);
  // A ticket written on a closed day does not lose that day twice.
  if (!calendar.isOpen(base) && total > 0) due = due.addDays(-1);
  due = passClosedDays(calendar, base, due);
  for (const StoreHoliday& holiday : calendar.holidays) due = passHoliday(calendar, holiday, base, due);
  return daysBetween(base, due) > 0 ? due : base;
}

std::int32_t daysUntilDate(const StoreCalendar& calendar, Date base, Date target) {
  const long long distance = daysBetween(base, target);
  const long long most = std::max<long long>(distance, 0) + std::max(-calendar.cutoffExtraDays, 0) + 1;
  if (most > std::numeric_limits<std::int32_t>::max()) failUnreachable();
  // No count lands further on than this beyond its own days, so smaller counts need no look.
  const long long first =
      std::max<long long>(distance - calendar.cutoffExtraDays - longestDelay(calendar), 0);
  for (auto days = static_cast<std::int32_t>(first); days <= most; ++days)
    if (daysBetween(addStoreDays(calendar, base, days), target) <= 0) return days;
  failUnreachable();
}

}  // namespace ondrel
