#include "invoice/pricing/qualifying_totals.h"

#include <fmt/format.h>

#include "data/values.h"
#include "invoice/invoice.h"

namespace ondrel {
namespace {

const std::string kPricedChildren = filterOf(&LineKind::isPricedChild);

double numberOrZero(const Recordset& row, Column column) {
  return row.isNull(column) ? 0 : row.number(column);
}

double packedPiecesOf(const Recordset& garment) {
  return numberOrZero(garment, col::quantity) * numberOrZero(garment, col::pkgQuantity);
}

std::string garmentsOf(const Variant& deptId) {
  return fmt::format("deptId={} And {}", sqlNumber(deptId), ofKind(kind::garment));
}

// An item counts wherever it is and whatever its flags.
QualifyingTotals itemTotals(Lines& lines, const Variant& priceListItemId, int asked) {
  QualifyingTotals totals;
  lines.each(fmt::format("lineItemId={} And {}", sqlNumber(priceListItemId), ofKind(kind::garment)),
             [&](const Recordset& garment) {
               totals.pieces += packedPiecesOf(garment);
               totals.amount += discountableAmountOf(garment, asked);
             });
  return totals;
}

}  // namespace

double linePriceOf(const Recordset& line) {
  return line.number(col::lineItemTotal) + numberOrZero(line, col::upchargeTotal) +
         numberOrZero(line, col::colorTotal) + numberOrZero(line, col::patternTotal);
}

double discountableAmountOf(const Recordset& line, int asked) {
  const bool withChildren = ((asked & kCouponable) && line.flag(col::couponable)) ||
                            ((asked & kDiscountable) && line.flag(col::discountable)) ||
                            ((asked & kVipDiscountable) && line.flag(col::VIPDiscountable));
  double amount = line.number(col::lineItemTotal);
  if (!withChildren) return amount;
  const RecordsetRef children = line.clone();
  children->setFilter(fmt::format("deptId={} And parentLineNumber={} And ({})",
                                  sqlNumber(line.value(col::deptId)), line.integer(col::lineNumber),
                                  kPricedChildren));
  for (; !children->eof(); children->moveNext()) amount += children->number(col::lineItemTotal);
  return amount;
}

QualifyingTotals discountableTotals(Lines& lines, LineColumn flag) {
  QualifyingTotals totals;
  lines.each(ofKind(kind::garment), [&](const Recordset& garment) {
    if (!garment.flag(flag)) return;
    totals.pieces += packedPiecesOf(garment);
    totals.amount += linePriceOf(garment);
  });
  totals.amount = roundMoney("total", totals.amount);
  return totals;
}

QualifyingTotals departmentTotals(Lines& lines, const Variant& deptId, int asked) {
  const LineColumn flag = asked == kCouponable ? col::couponable : col::discountable;
  QualifyingTotals totals;
  lines.each(garmentsOf(deptId), [&](const Recordset& garment) {
    if (!garment.flag(flag)) return;
    totals.pieces += packedPiecesOf(garment);
    totals.amount += discountableAmountOf(garment, asked);
  });
  return totals;
}

// | the row asks for            | it qualifies by                        |
// |-----------------------------|----------------------------------------|
// | pieces, or pieces and money | the pieces; the money is not looked at |
// | money                       | the money                              |
// | neither                     | any garment in the department          |
std::optional<QualifyingTotals> qualifyingDepartment(Lines& lines, const Recordset& rows, int asked) {
  const Variant deptId = rows.value("departmentId");
  if (!lines.any(garmentsOf(deptId))) return std::nullopt;
  const QualifyingTotals totals = rows.isNull("priceListItemId")
                                      ? departmentTotals(lines, deptId, asked)
                                      : itemTotals(lines, rows.value("priceListItemId"), asked);
  const Variant leastPieces = rows.value("departmentMinPieceCount");
  const Variant leastAmount = rows.value("departmentMinQualAmount");
  const bool qualifies = !leastPieces.isNull()   ? totals.pieces >= leastPieces.toDouble()
                         : !leastAmount.isNull() ? totals.amount >= leastAmount.toDouble()
                                                 : true;
  return qualifies ? std::optional(totals) : std::nullopt;
}

Variant Invoice::getLineItemTotalDiscountable(const RecordsetRef& rs, const Variant& discountFilter) {
  if (!rs) throw Error(ErrorNumber::ObjectNotSet, className(), "Object variable not set: rs");
  return discountableAmountOf(*rs, discountFilter.toLong());
}

}  // namespace ondrel
