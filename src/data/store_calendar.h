#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "base/date.h"

namespace ondrel {

struct StoreHoliday {
  Date firstDay;
  int duration = 0;  // days
};

// When a store works: what turns processing days into a promised date.
struct StoreCalendar {
  // By weekday from Monday = 1 to Sunday = 7; index 0 is not used.
  std::array<bool, 8> dayOpen{};
  // In the order in which the store keeps them, which is the order in which they move a date.
  std::vector<StoreHoliday> holidays;
  // Added to every count of days, because the ticket was written after the store's cut-off.
  std::int32_t cutoffExtraDays = 0;

  bool isOpen(Date day) const { return dayOpen[static_cast<size_t>(day.weekday())]; }
};

// The date that stands `days` processing days after `base`, never earlier than `base`. Error 6 when the
// days overflow 32 bits.
Date addStoreDays(const StoreCalendar& calendar, Date base, std::int32_t days);

// The least number of processing days after which `target` is reached, 0 for a date at or before the
// first that can be. Error 6 when no number of days within the reach of the calendar leads there, so that
// a page never waits for ever.
std::int32_t daysUntilDate(const StoreCalendar& calendar, Date base, Date target);

}  // namespace ondrel
