#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "invoice/pricing/generated_line.h"

namespace ondrel {

// The lines of discounts, one a discount and department.

bool hasDiscountLine(Lines& lines, std::string_view itemType, const Variant& deptId,
                     const Variant& discountId);
// Into the discount's line of the department, or onto a new one.
void addToDiscountLine(Lines& lines, const GeneratedLine& discount);
// The discounts of a kind in the order of their lines, one a line.
std::vector<std::int32_t> discountIdsOf(Lines& lines, std::string_view itemType);
// Whether a coupon, promotion, loyalty offer or VIP discount is on the invoice.
bool discountExists(Lines& lines);

}  // namespace ondrel
