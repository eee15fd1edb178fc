#pragma once

#include <array>
#include <cstdint>
#include <string>

#include "base/date.h"
#include "data/recordset/recordset.h"
#include "data/store_calendar.h"

namespace ondrel {

struct Apartment;

// The calendar and the lists of the store that the apartment works for. All objects of the apartment see
// the same; the last load wins, and nothing else resets it.
struct StoreTables {
  std::int32_t defaultProcessingDays = 0;
  // The date from which addStoreDays counts; callers set it just before, and a call leaves its result here.
  Date dueDateBase;
  StoreCalendar calendar;
  // Ready time for a ticket due on a weekday, Monday = 1 to Sunday = 7; empty when none is promised.
  std::array<std::string, 8> defaultPickupTimes;
  // Columns departmentID, name, splitInvoice, maxItemsInReceipt, userMaxItem, daysToProcess, useHeatSeals,
  // splitGroup. Nothing until the first load.
  RecordsetRef storeDepartments;
  // Columns paymentTypeName, doNotOpenCashDrawer. Nothing until the first load.
  RecordsetRef storePaymentTypes;
};

// `maxItemsInReceipt` of a department without a limit.
inline constexpr std::int32_t kNoPieceLimit = 4000000;

// Each replaces the part of the tables that it names. Store numbers go into the statements as they are.
void loadStoreHolidays(Apartment& apartment, const Variant& storeId);
void loadStoreHours(Apartment& apartment, const Variant& storeId);
// `written` is the moment of the ticket: later than the cut-off of its weekday it is given extra days. A
// ticket written in the very minute of the cut-off is not.
void loadStoreDays(Apartment& apartment, const Variant& storeId, Date written);
void loadDepartments(Apartment& apartment, const Variant& storeId, const Variant& priceListId);
void loadStorePaymentTypes(Apartment& apartment, const Variant& storeId);

// addStoreDays of the store's calendar from `dueDateBase`, which takes the result.
Date addStoreDays(Apartment& apartment, std::int32_t days);

// A column of the department's row, or Empty when the store has no such department (or none is loaded).
// Clears the filter of the table.
Variant departmentValue(Apartment& apartment, const Variant& departmentId, std::string_view column);

}  // namespace ondrel
