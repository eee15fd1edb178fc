#include <fmt/format.h>

#include "base/text.h"
#include "data/query_database.h"
#include "data/values.h"
#include "invoice/invoice.h"
#include "invoice/line_kinds.h"
#include "invoice/pricing/offers.h"

namespace ondrel {

using enum LineColumn;

// Older stores have the procedure without the date of the ticket. A store that answers neither has no
// promotions.
RecordsetRef Invoice::readProbablePromotions(const Totals& totals) {
  const std::string call = fmt::format("GetProbablePromotions  '{}','{}',{},'{}'", priceListId,
                                       numberText(totals.count), numberText(totals.total), custSeqNumber);
  try {
    return queryDatabase(*apartment_, fmt::format("{},'{}'", call, createdDate.text()));
  } catch (const Error&) {
  }
  try {
    return queryDatabase(*apartment_, call);
  } catch (const Error&) {
    return nullptr;
  }
}

// | step | acts on                | effect                                                                |
// |------|------------------------|-----------------------------------------------------------------------|
// | 1    | promotion lines        | deleted: they are nobody's choice and are built again each time       |
// | 2    | each row that the      | added when its department qualifies. One that suffers no other offer  |
// |      | store proposes         | beside it lands only while none has been applied; the first that      |
// |      |                        | lands shuts out the others of that kind                               |
//
// A row that cannot be worked out is left out. VIP has been heard before and changes nothing here.
void Invoice::applyPromotions(bool, bool applied) {
  const Totals totals = getDiscountableTotals(false);
  deleteFilteredLines("itemType='PR'");
  const RecordsetRef rows = readProbablePromotions(totals);
  if (!rows) return;
  for (; !rows->eof(); rows->moveNext()) {
    try {
      const bool landed = applyPromotion(*rows, applied);
      applied = applied || landed;
    } catch (const Error&) {
      lineItems->clearFilter();
    }
  }
}

bool Invoice::applyPromotion(const Recordset& rows, bool applied) {
  if (isDiscountRuleBlocked(rows.value("discountId"))) return false;
  if (applied && !rows.flag("validWithOtherOffer")) return false;
  if (rows.isNull("departmentId")) return false;
  const auto department = getQualifyingDepartment(rows, kDiscountable);
  return department && addPromotionLine(rows, getDiscountAmount(rows, department->total, department->count));
}

// Whether the line took the amount. The garments' taxable amounts go down unrounded; their children keep
// theirs.
bool Invoice::addPromotionLine(const Recordset& rows, double amount) {
  if (amount == 0) return false;
  const Variant department = rows.value("departmentId"), id = rows.value("discountId");
  const bool oncePerDepartment = !rows.isNull("discountAmount") && !appliesPerUnit(rows);
  if (oncePerDepartment && findDiscountLine(kind::promotion, department, id)) {
    lineItems->clearFilter();
    return false;
  }
  addToDiscountLine(kind::promotion, department, rows.value("departmentName"), id, rows.value("discountName"),
                    amount);

  const std::string garments =
      fmt::format("itemType='IT' And deptId='{}' And discountable = '1'", department.toText());
  const double sum = sumLines(garments, linePriceOf);
  lineItems->setFilter(garments);
  for (; !lineItems->eof(); lineItems->moveNext()) {
    const double share = sum != 0 ? amount * linePriceOf(*lineItems) / sum : 0;
    lineItems->setValue(taxableAmt, lineItems->number(taxableAmt) - share);
  }
  lineItems->clearFilter();
  return true;
}

}  // namespace ondrel
