#pragma once

#include <cstdint>

#include "base/date.h"
#include "data/store_tables.h"

namespace ondrel {

// The store's calendar from the moment at which a ticket was written: what turns processing days into a promised
// date and back. A value, made where it is needed; every count is remembered in the store's tables, for usualDate.
class TicketCalendar {
 public:
  TicketCalendar(StoreTables& store, Date written) : store_(store), written_(written) {}

  Date written() const { return written_; }
  // The date `days` processing days after the writing, never before it. Error 6 when the days overflow 32 bits.
  Date dateAfter(std::int32_t days) const;
  // The least days that lead to `target` or beyond. Error 6 when that many do not fit 32 bits.
  std::int32_t daysUntil(Date target) const;
  // The store's usual days after the date that the last count gave, whichever ticket of the apartment that was for.
  Date usualDate() const;

 private:
  Date countFrom(Date start, std::int32_t days) const;

  StoreTables& store_;
  Date written_;
};

}  // namespace ondrel
