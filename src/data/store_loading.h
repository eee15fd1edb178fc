#pragma once

#include <cstdint>
#include <string_view>

#include "data/apartment.h"

namespace ondrel {

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

// A column of the department's row, or Empty when the store has no such department (or none is loaded).
// Clears the filter of the table.
Variant departmentValue(Apartment& apartment, const Variant& departmentId, std::string_view column);

}  // namespace ondrel
