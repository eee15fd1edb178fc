#include "invoice/pricing/generated_line.h"

#include "invoice/line_columns.h"
#include "invoice/line_kinds.h"

namespace ondrel {

void addGeneratedLine(Recordset& lines, std::int32_t& nextLineNumber, const GeneratedLine& line) {
  using enum LineColumn;
  const bool isDiscount = line.itemType != kind::tax && line.itemType != kind::surcharge;
  const Variant childSum = isDiscount ? Variant(0) : Variant::null();
  // clang-format off
  lines.addNew({
      {lineNumber,         nextLineNumber},
      {parentLineNumber,   -1},
      {deptId,             line.deptId},
      {deptName,           line.deptName},
      {itemType,           line.itemType},
      {lineItemId,         line.lineItemId},
      {itemName,           line.itemName},
      {originalUnitPrice,  0},
      {unitPrice,          0},
      {quantity,           1},
      {lineItemTotal,      line.amount},
      {totalTax,           0},
      {totalSurcharge,     0},
      {prepay,             0},
      {taxableAmt,         line.taxableAmount},
      {daysToProcess,      0},
      {notes,              Variant::null()},
      {balance,            0},
      {upchargeTotal,      childSum},
      {colorTotal,         childSum},
      {patternTotal,       childSum},
      {dueDate,            line.dueDate},
      {originalLineNumber, nextLineNumber},
  });
  // clang-format on
  ++nextLineNumber;
}

}  // namespace ondrel
