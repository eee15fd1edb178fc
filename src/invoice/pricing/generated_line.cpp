#include "invoice/pricing/generated_line.h"

namespace ondrel {

Recordset& addGeneratedLine(Lines& lines, const GeneratedLine& line) {
  const bool isDiscount = line.itemType != kind::tax && line.itemType != kind::surcharge;
  const Variant childSum = isDiscount ? Variant(0) : Variant::null();
  return lines.begin(line.itemType, {{col::deptId, line.deptId},
                                     {col::deptName, line.deptName},
                                     {col::lineItemId, line.lineItemId},
                                     {col::itemName, line.itemName},
                                     {col::quantity, 1},
                                     {col::lineItemTotal, line.amount},
                                     {col::taxableAmt, line.taxableAmount},
                                     {col::daysToProcess, 0},
                                     {col::upchargeTotal, childSum},
                                     {col::colorTotal, childSum},
                                     {col::patternTotal, childSum},
                                     {col::dueDate, line.dueDate}});
}

}  // namespace ondrel
