#include <fmt/format.h>

#include "base/text.h"
#include "data/values.h"
#include "invoice/invoice.h"
#include "invoice/line_kinds.h"

namespace ondrel {
using enum LineColumn;

// | line                                   | effect                                              |
// |----------------------------------------|-----------------------------------------------------|
// | garment and its descriptors            | the whole amount is taxable again                   |
// | coupon share of a department           | goes back to the coupon's one line                  |
// | tax, surcharge, VIP, referral, promotion | removed; the next finishing derives them again    |
// | anything else, charges too             | stays as it is                                      |
void Invoice::cancelDoneOperation() {
  mergeSplitInvoices();
  lineItems->clearFilter();
  for (; !lineItems->eof(); lineItems->moveNext()) {
    const std::string lineKind = toUpper(lineItems->text(itemType));
    if (lineKind == kind::garment || kind::isDescriptor(lineKind)) {
      lineItems->setValue(taxableAmt, lineItems->value(lineItemTotal));
    } else if (lineKind == kind::coupon && !lineItems->isNull(deptId)) {
      const Variant place = lineItems->bookmark();
      mergeDepartmentCoupon(lineItems->value(lineItemId), lineItems->value(itemName),
                            lineItems->number(lineItemTotal));
      lineItems->setBookmark(place);
      lineItems->deleteRow();
    } else if (lineKind == kind::tax || lineKind == kind::surcharge || lineKind == kind::vip ||
               lineKind == kind::referral || lineKind == kind::promotion) {
      lineItems->deleteRow();
    }
  }
  lineItems->clearFilter();
}

void Invoice::mergeDepartmentCoupon(const Variant& discountId, const Variant& name, double amount) {
  lineItems->setFilter(fmt::format("lineItemId={} And itemType='CU' And deptId=Null", sqlNumber(discountId)));
  if (!lineItems->eof()) {
    lineItems->setValue(lineItemTotal, lineItems->number(lineItemTotal) + amount);
    lineItems->clearFilter();
    return;
  }
  // clang-format off
  lineItems->addNew({
      {lineNumber,        currentLineNumber},
      {parentLineNumber,  -1},
      {deptId,            Variant::null()},
      {deptName,          ""},
      {itemType,          kind::coupon},
      {lineItemId,        discountId},
      {itemName,          name},
      {originalUnitPrice, 0},
      {unitPrice,         0},
      {quantity,          1},
      {lineItemTotal,     amount},
      {totalTax,          0},
      {totalSurcharge,    0},
      {prepay,            0},
      {taxableAmt,        0},
      {daysToProcess,     0},
      {notes,             Variant::null()},
      {balance,           0},
      {upchargeTotal,     0},
      {colorTotal,        0},
      {patternTotal,      0},
  });
  // clang-format on
  ++currentLineNumber;
  lineItems->clearFilter();
}

}  // namespace ondrel
