#include <fmt/format.h>

#include "base/text.h"
#include "data/values.h"
#include "invoice/splitting/line_moves.h"

namespace ondrel {
namespace {

// Into the coupon's one line without a department, or onto a new one.
void giveBackToCoupon(Lines& lines, const Variant& discountId, const Variant& name, double amount) {
  {
    const LineSet coupon = lines.where(
        fmt::format("lineItemId={} And {} And deptId=Null", sqlNumber(discountId), ofKind(kind::coupon)));
    if (coupon) {
      coupon->setValue(col::lineItemTotal, coupon->number(col::lineItemTotal) + amount);
      return;
    }
  }
  lines.begin(kind::coupon, {{col::deptName, ""},
                             {col::lineItemId, discountId},
                             {col::itemName, name},
                             {col::quantity, 1},
                             {col::lineItemTotal, amount},
                             {col::daysToProcess, 0},
                             {col::upchargeTotal, 0},
                             {col::colorTotal, 0},
                             {col::patternTotal, 0},
                             {col::originalLineNumber, 0}});
}

}  // namespace

// | line                                   | effect                                              |
// |----------------------------------------|-----------------------------------------------------|
// | garment and its descriptors            | the whole amount is taxable again                   |
// | coupon share of a department           | goes back to the coupon's one line                  |
// | tax, surcharge, VIP, referral, promotion | removed; the next finishing derives them again    |
// | anything else, charges too             | stays as it is                                      |
void Invoice::cancelDoneOperation() {
  mergeSplitInvoices(*this);
  for (auto line = lines_.where(""); line; line.next()) {
    switch (lineKindOf(toUpper(line->text(col::itemType))).undo) {
      case Undo::taxableAgain:
        line->setValue(col::taxableAmt, line->value(col::lineItemTotal));
        break;
      case Undo::backToCoupon:
        if (line->isNull(col::deptId)) break;
        giveBackToCoupon(lines_, line->value(col::lineItemId), line->value(col::itemName),
                         line->number(col::lineItemTotal));
        line->deleteRow();
        break;
      case Undo::removed:
        line->deleteRow();
        break;
      case Undo::stays:
        break;
    }
  }
}

}  // namespace ondrel
