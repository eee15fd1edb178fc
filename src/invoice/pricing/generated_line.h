#pragma once

#include <string_view>

#include "invoice/lines.h"

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

// Adds the line with quantity 1 and returns the page's view, on it. A discount starts its sums of upcharges,
// colours and patterns at 0; taxes and surcharges have none.
Recordset& addGeneratedLine(Lines& lines, const GeneratedLine& line);

}  // namespace ondrel
