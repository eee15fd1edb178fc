#include <fmt/format.h>

#include "base/text.h"
#include "data/values.h"
#include "invoice/invoice.h"
#include "invoice/lines/child_kinds.h"

namespace ondrel {

using enum LineColumn;

// | kind           | the line's total            | log row O                                      | coupons |
// |----------------|-----------------------------|------------------------------------------------|---------|
// | garment        | price x quantity, to cents  | from the line, by how much it changed          | again   |
// | upcharge       | the same; the garment's sum | with the garment's values: its total less the  | again   |
// |                | follows                     | child's old one                                |         |
// | pattern, color | the same, not rounded       | the same, if those two differ                  | again   |
// | charge         | the price alone             | from the line                                  | no      |
// | coupon         | the price alone             | from whatever line comes first in the table    | no      |
// | any other      | stays, and the filter stays | none                                           | no      |
void Invoice::overRidePrice(const Variant& newPrice, const Variant& lineNo) {
  if (!newPrice.isNumeric()) return;
  const double price = ondrel::round2(newPrice.toDouble(), 2);
  if (!findLine(lineNo)) return;
  const std::string lineKind = toUpper(lineItems->text(itemType));
  const ChildKind* child = childKind(lineKind);
  if (lineKind == kind::garment)
    overrideGarment(price);
  else if (child)
    overrideChild(child->parentSum, child->isUpcharge, price);
  else if (lineKind == kind::charge)
    overrideCharge(price);
  else if (lineKind == kind::coupon)
    overrideCoupon(price);
}

void Invoice::writeUnitPrice(double price, bool rounded) {
  lineItems->setValue(unitPrice, price);
  const double exact = (price * lineItems->value(quantity)).toDouble();
  lineItems->setValue(lineItemTotal, rounded ? ondrel::round2(exact, 2) : exact);
  lineItems->setValue(taxableAmt, lineItems->value(lineItemTotal));
}

void Invoice::logOverride(double oldTotal) {
  logCurrent("O", lineItems->value(quantity), lineItems->number(lineItemTotal) - oldTotal);
}

void Invoice::overrideGarment(double price) {
  const double oldTotal = lineItems->number(lineItemTotal);
  if (lineItems->flag(priceLater) && lineItems->number(unitPrice) < price)
    lineItems->setValue(priceLater, false);
  writeUnitPrice(price, true);
  logOverride(oldTotal);
  lineItems->clearFilter();
  adjustCoupon();
}

void Invoice::overrideChild(LineColumn parentSum, bool isUpcharge, double price) {
  const double oldTotal = lineItems->number(lineItemTotal);
  const std::int32_t parent = lineItems->integer(parentLineNumber);
  writeUnitPrice(price, isUpcharge);
  const double newTotal = lineItems->number(lineItemTotal);
  if (findLine(parent)) {
    lineItems->setValue(parentSum, lineItems->value(parentSum) + (newTotal - oldTotal));
    if (isUpcharge || lineItems->number(lineItemTotal) != oldTotal) logOverride(oldTotal);
  }
  lineItems->clearFilter();
  adjustCoupon();
}

void Invoice::overrideCharge(double price) {
  const double oldTotal = lineItems->number(lineItemTotal);
  lineItems->setValue(unitPrice, price);
  lineItems->setValue(lineItemTotal, price);
  lineItems->setValue(taxableAmt, price);
  logOverride(oldTotal);
  lineItems->clearFilter();
}

void Invoice::overrideCoupon(double price) {
  const double oldTotal = lineItems->number(lineItemTotal);
  lineItems->setValue(lineItemTotal, price);
  lineItems->clearFilter();
  logOverride(oldTotal);
}

void Invoice::setLineToRedo(const Variant& lineNo) {
  if (findLine(lineNo)) lineItems->setValue(redo, true);
  const RecordsetRef children = lineItems->clone();
  children->setFilter("parentLineNumber=" + lineNo.toText());
  overRidePrice(0, lineNo);
  for (; !children->eof(); children->moveNext()) overRidePrice(0, children->value(lineNumber));
  lineItems->clearFilter();
  recalculatePrepay();
}

}  // namespace ondrel
