#include <fmt/format.h>

#include "base/text.h"
#include "data/query_database.h"
#include "invoice/pricing/discount_lines.h"
#include "invoice/pricing/offers.h"
#include "invoice/pricing/passes.h"

namespace ondrel {
namespace {

// Older stores have the procedure without the date of the ticket. A store that answers neither has no
// promotions.
RecordsetRef readProbablePromotions(const Invoice& invoice, const QualifyingTotals& totals) {
  const std::string call =
      fmt::format("GetProbablePromotions  '{}','{}',{},'{}'", invoice.priceListId, numberText(totals.pieces),
                  numberText(totals.amount), invoice.custSeqNumber);
  try {
    return queryDatabase(*invoice.apartment(), fmt::format("{},'{}'", call, invoice.createdDate.text()));
  } catch (const Error&) {
  }
  try {
    return queryDatabase(*invoice.apartment(), call);
  } catch (const Error&) {
    return nullptr;
  }
}

// Whether the line took the amount. The garments' taxable amounts go down unrounded; their children keep
// theirs.
bool addPromotionLine(Lines& lines, const Recordset& rows, double amount) {
  if (amount == 0) return false;
  const Variant deptId = rows.value("departmentId"), id = rows.value("discountId");
  const bool oncePerDepartment = !rows.isNull("discountAmount") && !appliesPerUnit(rows);
  if (oncePerDepartment && hasDiscountLine(lines, kind::promotion, deptId, id)) return false;
  addToDiscountLine(lines, {.itemType = kind::promotion,
                            .deptId = deptId,
                            .deptName = rows.value("departmentName"),
                            .lineItemId = id,
                            .itemName = rows.value("discountName"),
                            .amount = amount});

  const std::string garments =
      fmt::format("{} And deptId='{}' And discountable = '1'", ofKind(kind::garment), deptId.toText());
  const double sum = lines.sum(garments, linePriceOf);
  lines.each(garments, [&](Recordset& garment) {
    const double share = sum != 0 ? amount * linePriceOf(garment) / sum : 0;
    garment.setValue(col::taxableAmt, garment.number(col::taxableAmt) - share);
  });
  return true;
}

bool applyPromotion(Invoice& invoice, const Recordset& rows, bool applied) {
  if (isOfferBlocked(invoice, rows.value("discountId"))) return false;
  if (applied && !rows.flag("validWithOtherOffer")) return false;
  if (rows.isNull("departmentId")) return false;
  const auto department = qualifyingDepartment(invoice.lines(), rows, kDiscountable);
  return department && addPromotionLine(invoice.lines(), rows, offeredAmount(rows, *department));
}

}  // namespace

// | step | acts on                | effect                                                                |
// |------|------------------------|-----------------------------------------------------------------------|
// | 1    | promotion lines        | deleted: they are nobody's choice and are built again each time       |
// | 2    | each row that the      | added when its department qualifies. One that suffers no other offer  |
// |      | store proposes         | beside it lands only while none has been applied; the first that      |
// |      |                        | lands shuts out the others of that kind                               |
//
// A row that cannot be worked out is left out.
void applyPromotions(Invoice& invoice, bool offersApplied) {
  Lines& lines = invoice.lines();
  const QualifyingTotals totals = discountableTotals(lines, col::discountable);
  lines.remove(ofKind(kind::promotion));
  const RecordsetRef rows = readProbablePromotions(invoice, totals);
  if (!rows) return;
  for (; !rows->eof(); rows->moveNext()) {
    try {
      const bool landed = applyPromotion(invoice, *rows, offersApplied);
      offersApplied = offersApplied || landed;
    } catch (const Error&) {
      lines.leavesAll();
    }
  }
}

}  // namespace ondrel
