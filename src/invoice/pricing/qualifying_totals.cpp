#include <fmt/format.h>

#include "data/values.h"
#include "invoice/invoice.h"
#include "invoice/pricing/offers.h"

namespace ondrel {
namespace {

using enum LineColumn;

double numberOrZero(const Recordset& row, Column column) {
  return row.isNull(column) ? 0 : row.number(column);
}

double piecesOf(const Recordset& line) {
  return numberOrZero(line, quantity) * numberOrZero(line, pkgQuantity);
}

}  // namespace

double Invoice::linePriceOf(const Recordset& line) {
  return line.number(lineItemTotal) + numberOrZero(line, upchargeTotal) + numberOrZero(line, colorTotal) +
         numberOrZero(line, patternTotal);
}

// | totals of    | garments              | flagged ones only | amount                                      |
// |--------------|-----------------------|-------------------|---------------------------------------------|
// | the invoice  | all                   | yes               | the line's price, the sum to cents          |
// | a department | of the department     | yes               | its own, with its children where it bears a |
// | an item      | of the item, anywhere | no                | flag that was asked for                     |
template <class Counts, class AmountOf>
Invoice::Totals Invoice::sumDiscountTotals(std::string_view filter, Counts counts, AmountOf amountOf) {
  Totals totals;
  lineItems->setFilter(filter);
  for (; !lineItems->eof(); lineItems->moveNext()) {
    if (!counts(*lineItems)) continue;
    totals.count += piecesOf(*lineItems);
    totals.total += amountOf(lineItems);
  }
  lineItems->clearFilter();
  return totals;
}

Invoice::Totals Invoice::getDiscountableTotals(bool coupon) {
  const LineColumn flag = coupon ? couponable : discountable;
  Totals totals = sumDiscountTotals(
      "itemType='IT'", [flag](const Recordset& line) { return line.flag(flag); },
      [](const RecordsetRef& line) { return linePriceOf(*line); });
  totals.total = roundMoney("total", totals.total);
  return totals;
}

Invoice::Totals Invoice::getItemDiscountTotals(const Recordset& rows, int discountFilter) {
  return sumDiscountTotals(
      fmt::format("lineItemId={} And itemType='IT'", sqlNumber(rows.value("priceListItemId"))),
      [](const Recordset&) { return true; },
      [&](const RecordsetRef& line) {
        return getLineItemTotalDiscountable(line, discountFilter).toDouble();
      });
}

Invoice::Totals Invoice::getDeptDiscountTotals(const Variant& department, bool coupon,
                                               const Variant& priceListItemId, int discountFilter) {
  const LineColumn flag = coupon ? couponable : discountable;
  std::string filter = fmt::format("deptId={} And itemType='IT'", sqlNumber(department));
  if (!priceListItemId.isNull()) filter += fmt::format(" And lineItemId = '{}'", priceListItemId.toText());
  return sumDiscountTotals(
      filter, [flag](const Recordset& line) { return line.flag(flag); },
      [&](const RecordsetRef& line) {
        return getLineItemTotalDiscountable(line, discountFilter).toDouble();
      });
}

Variant Invoice::getLineItemTotalDiscountable(const RecordsetRef& rs, const Variant& discountFilter) {
  if (!rs) throw Error(ErrorNumber::ObjectNotSet, className(), "Object variable not set: rs");
  double total = rs->number(lineItemTotal);
  const int asked = discountFilter.toLong();
  const bool withChildren = ((asked & kCouponable) && rs->flag(couponable)) ||
                            ((asked & kDiscountable) && rs->flag(discountable)) ||
                            ((asked & kVipDiscountable) && rs->flag(VIPDiscountable));
  if (!withChildren) return total;
  const RecordsetRef children = rs->clone();
  children->setFilter(
      fmt::format("deptId={} And parentLineNumber={} And (itemType='CO' Or itemType='UP' Or itemType='PA')",
                  sqlNumber(rs->value(deptId)), rs->integer(lineNumber)));
  for (; !children->eof(); children->moveNext()) total += children->number(lineItemTotal);
  return total;
}

bool Invoice::deptHasItems(const Variant& department) {
  return hasLines(fmt::format("deptId={} And itemType='IT'", sqlNumber(department)));
}

// | the row asks for            | it qualifies by                        |
// |-----------------------------|----------------------------------------|
// | pieces, or pieces and money | the pieces; the money is not looked at |
// | money                       | the money                              |
// | neither                     | any garment in the department          |
std::optional<Invoice::Totals> Invoice::getQualifyingDepartment(const Recordset& rows, int discountFilter) {
  const Variant department = rows.value("departmentId");
  if (!deptHasItems(department)) return std::nullopt;
  const Totals totals =
      rows.isNull("priceListItemId")
          ? getDeptDiscountTotals(department, discountFilter == kCouponable, Variant::null(), discountFilter)
          : getItemDiscountTotals(rows, discountFilter);
  const Variant leastPieces = rows.value("departmentMinPieceCount");
  const Variant leastAmount = rows.value("departmentMinQualAmount");
  const bool qualifies = !leastPieces.isNull()   ? totals.count >= leastPieces.toDouble()
                         : !leastAmount.isNull() ? totals.total >= leastAmount.toDouble()
                                                 : true;
  return qualifies ? std::optional(totals) : std::nullopt;
}

}  // namespace ondrel
