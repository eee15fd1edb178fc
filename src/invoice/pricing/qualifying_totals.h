#pragma once

#include <optional>
#include <string_view>

#include "invoice/lines.h"

namespace ondrel {

// Pieces and money that a discount looks at.
struct QualifyingTotals {
  double pieces = 0;
  double amount = 0;
};

// Bits of a line's flags: which of them let its children count for a discount.
inline constexpr int kCouponable = 1;
inline constexpr int kDiscountable = 2;
inline constexpr int kVipDiscountable = 4;
inline constexpr int kAnyDiscount = kCouponable | kDiscountable | kVipDiscountable;

// Price of a garment with its upcharges, colours and patterns, by the sums that it keeps of them.
double linePriceOf(const Recordset& line);
// Amount of the current line of `line`, with its upcharges, colours and patterns when a flag that `asked`, a
// sum of the bits above, names is set on it.
double discountableAmountOf(const Recordset& line, int asked);

// Garments whose `flag` is set, the amount to cents.
QualifyingTotals discountableTotals(Lines& lines, LineColumn flag);
// Garments of the department that are couponable, when just that is asked for, or otherwise discountable; each
// with its discountableAmountOf.
QualifyingTotals departmentTotals(Lines& lines, const Variant& deptId, int asked);
// What the department of an offer's row, or its item, holds; nothing when that does not reach the row's
// minimum.
std::optional<QualifyingTotals> qualifyingDepartment(Lines& lines, const Recordset& rows, int asked);

}  // namespace ondrel
