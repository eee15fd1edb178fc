#include <fmt/format.h>

#include "base/text.h"
#include "invoice/invoice.h"
#include "invoice/lines/child_kinds.h"
#include "invoice/lines/quick_bags.h"

namespace ondrel {

using enum LineColumn;

// | kind      | new quantity           | totals        | log row C                           | coupons |
// |-----------|------------------------|---------------|-------------------------------------|---------|
// | garment   | as given, children     | yes           | always, from the line               | again   |
// |           | first, by their share  |               |                                     |         |
// | upcharge  | its share times it     | yes, and the  | always, from the child              | again   |
// | pattern,  | the same               | garment's sum | when money moved, with the garment's | no      |
// | color     |                        |               | names                               |         |
// | charge    | as given               | yes           | when money moved, the sign turned   | no      |
// | any other | as given               | no            | the same                            | no      |
void Invoice::changeQuantity(const Variant& newQuantity, const Variant& lineNo) {
  if (findLine(lineNo)) {
    const std::string lineKind = toUpper(lineItems->text(itemType));
    if (lineKind == kind::garment)
      changeGarmentQuantity(newQuantity, lineNo);
    else if (const ChildKind* child = childKind(lineKind))
      changeChildQuantity(child->parentSum, child->isUpcharge, newQuantity);
    else
      changePlainQuantity(lineKind == kind::charge, newQuantity);
  }
  recalculatePrepay();
}

void Invoice::writeQuantity(const Variant& pieces) {
  lineItems->setValue(quantity, pieces);
  lineItems->setValue(lineItemTotal, pieces * lineItems->value(unitPrice));
  lineItems->setValue(taxableAmt, lineItems->value(lineItemTotal));
}

void Invoice::changeGarmentQuantity(const Variant& newQuantity, const Variant& lineNo) {
  // Children first: they take their share from the garment's old quantity.
  changeChildQuantities(newQuantity, lineNo);
  findLine(lineNo);
  const Variant old = lineItems->value(quantity), packed = lineItems->value(pkgQuantity),
                department = lineItems->value(deptId);
  const Variant delta = newQuantity - old;
  const Variant amount = delta * lineItems->value(unitPrice);
  writeQuantity(newQuantity);
  logCurrent("C", delta, amount);
  lineItems->clearFilter();
  adjustCoupon();
  if (isQuickInvoice()) changeBag(lines_, department, (newQuantity - old) * packed);
}

void Invoice::changeChildQuantity(LineColumn parentSum, bool isUpcharge, const Variant& newQuantity) {
  const Variant old = lineItems->value(quantity);
  const double oldTotal = lineItems->number(lineItemTotal);
  const std::int32_t parent = lineItems->integer(parentLineNumber);
  const std::int32_t perUnit = (old / getLineQuantity(parent)).toLong();
  const Variant pieces = perUnit * newQuantity;
  const Variant delta = pieces - old;
  const Variant amount = delta * lineItems->value(unitPrice);
  writeQuantity(pieces);
  if (isUpcharge) logCurrent("C", delta, amount);
  const double newTotal = lineItems->number(lineItemTotal);

  if (findLine(parent)) {
    lineItems->setValue(parentSum, lineItems->value(parentSum) + (newTotal - oldTotal));
    if (!isUpcharge && !isEqual(amount, 0)) logCurrent("C", delta, amount);
  }
  lineItems->clearFilter();
  if (isUpcharge) adjustCoupon();
}

void Invoice::changePlainQuantity(bool isCharge, const Variant& newQuantity) {
  const Variant delta = newQuantity - lineItems->value(quantity);
  const Variant amount = delta * lineItems->value(unitPrice);
  if (!isEqual(amount, 0)) logCurrent("C", delta, -1 * amount);
  if (isCharge)
    writeQuantity(newQuantity);
  else
    lineItems->setValue(quantity, newQuantity);
  lineItems->clearFilter();
}

void Invoice::changeChildQuantities(const Variant& newQuantity, const Variant& lineNo) {
  const RecordsetRef children = lineItems->clone();
  children->setFilter("parentLineNumber=" + lineNo.toText());
  for (; !children->eof(); children->moveNext()) changeQuantity(newQuantity, children->value(lineNumber));
}

}  // namespace ondrel
