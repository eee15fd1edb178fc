#pragma once

#include <cstdint>
#include <string_view>

#include "data/recordset/recordset.h"

namespace ondrel {

// What differs between the lines that the pricing passes make.
struct GeneratedLine {
  std::string_view itemType;
  Variant deptId, deptName;
  Variant lineItemId;
  Variant itemName;
  double amount = 0;  // positive also where totals subtract it
  double taxableAmount = 0;
  Variant dueDate = Variant::null();
};

// Adds a top-level line of quantity 1 and gives it the next number, which grows by one. A discount starts
// its sums of upcharges, colours and patterns at 0; taxes and surcharges have none.
void addGeneratedLine(Recordset& lines, std::int32_t& nextLineNumber, const GeneratedLine& line);

}  // namespace ondrel
