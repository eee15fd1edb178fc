#pragma once

#include <array>
#include <cstdint>
#include <string>

#include "base/date.h"
#include "data/recordset/recordset.h"
#include "data/store_calendar.h"

namespace ondrel {

// The calendar and the lists of the store that the apartment works for. All objects of the apartment see
// the same; the last load wins, and nothing else resets it.
struct StoreTables {
  std::int32_t defaultProcessingDays = 0;
  // Where the last count of processing days ended, see invoice/calendar/ticket_calendar.h.
  Date lastCounted;
  StoreCalendar calendar;
  // Ready time for a ticket due on a weekday, Monday = 1 to Sunday = 7; empty when none is promised.
  std::array<std::string, 8> defaultPickupTimes;
  // Columns departmentID, name, splitInvoice, maxItemsInReceipt, userMaxItem, daysToProcess, useHeatSeals,
  // splitGroup. Nothing until the first load.
  RecordsetRef storeDepartments;
  // Columns paymentTypeName, doNotOpenCashDrawer. Nothing until the first load.
  RecordsetRef storePaymentTypes;
};

}  // namespace ondrel
