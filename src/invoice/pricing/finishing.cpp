// The passes that price an invoice, in their order. Each acts on the taxable amounts that the one before
// left:
//
// | pass       | lines | base                               | taxable amount of the entered lines              |
// |------------|-------|------------------------------------|--------------------------------------------------|
// | reset      |       |                                    | back to the line's amount                        |
// | VIP        | VI    | price of the garment with children | less the rounded share, children in proportion   |
// | coupons    | CU    | price of the garment with children | less the unrounded share, children in proportion |
// | loyalty    | LY    | price of the garment with children | less the rounded share, children in proportion   |
// | promotions | PR    | price of the garment with children | less the unrounded share, children untouched     |
// | surcharges | SU    | taxable amount, or a fixed amount  | untouched; the SU line is taxable by its amount  |
// | taxes      | TA    | taxable amount                     | untouched                                        |
// | prepay     | AC    | prepay setting of the item         | untouched; the charge is taxable, and the taxes  |
// |            |       |                                    | are worked out again                             |
//
// Which discounts run:
//
// | VIP earned | stands beside others | one discount only | coupons, loyalty, promotions                       |
// |------------|----------------------|-------------------|----------------------------------------------------|
// | no         |                      |                   | all run                                            |
// | yes        | yes                  | no                | those that stand beside others                     |
// | yes        | otherwise            |                   | coupons are removed, the other two stay as they are |

#include <fmt/format.h>

#include "data/query_database.h"
#include "data/values.h"
#include "invoice/calendar/due_dates.h"
#include "invoice/invoice.h"
#include "invoice/pricing/offers.h"
#include "invoice/pricing/passes.h"

namespace ondrel {
namespace {

const std::string kDatedAfterGarments = ofKinds({kind::coupon, kind::charge, kind::upcharge});

void removeCouponLines(Lines& lines) {
  lines.each(ofKind(kind::coupon), [&](Recordset& coupon) {
    lines.log("D", coupon, coupon.value(col::quantity), -1 * coupon.number(col::lineItemTotal));
    coupon.deleteRow();
  });
}

void applyDiscounts(Invoice& invoice, bool oneDiscount) {
  const bool vip = applyVipDiscount(invoice);
  if (vip && (oneDiscount || !invoice.isVipValidWithOtherOffer().toBoolean())) {
    removeCouponLines(invoice.lines());
    return;
  }
  const bool coupons = applyOffers(invoice, kCouponOffer, vip);
  const bool loyalty = applyOffers(invoice, kLoyaltyOffer, vip);
  applyPromotions(invoice, coupons || loyalty);
}

// | new ticket                             | its date                                                    |
// |----------------------------------------|-------------------------------------------------------------|
// | dated by hand                          | the latest of its lines                                     |
// | with coupons, charges or upcharges     | the latest of these; upcharges have none                    |
// | otherwise                              | the store's usual days after whatever date was counted last |
void setFinishedDueDate(Invoice& invoice) {
  invoice.calculateInvDueDate();
  if (invoice.state().isDateByHand) return;
  const LineSet dated = invoice.lines().where(kDatedAfterGarments);
  if (dated)
    invoice.InvDueDate = latestDueDate(*dated, col::dueDate, invoice.createdDate);
  else
    invoice.InvDueDate = calendarOf(invoice).usualDate();
}

}  // namespace

void Invoice::invoiceDone2() {
  const Variant oneDiscount = getMiscSetupValue("oneDiscountPerInvoice");
  groupSimilarItems = isOn(getMiscSetupValue("groupSimilarItems"));
  Variant taxes = ObjectRef(queryDatabase(
      *apartment_,
      fmt::format("Select taxCode, description, taxPercent FROM Tax Where storeID = '{}'", storeNumber)));
  // The only place where a rush is charged: pricing again does not.
  Variant merging = groupSimilarItems;
  applyRushUpcharge(merging);
  invoiceDone(oneDiscount, taxes);
}

void Invoice::invoiceDoneAgain() {
  Variant taxes = ObjectRef(taxCodes);
  invoiceDone(state_.oneDiscount, taxes);
  taxCodes = std::dynamic_pointer_cast<Recordset>(taxes.toObject());
}

void Invoice::invoiceDone(const Variant& oneDiscount, Variant& taxesRst) {
  if (!lines_.any("")) return;
  resetLineTaxableAmounts();
  state_.oneDiscount = oneDiscount;
  taxCodes = std::dynamic_pointer_cast<Recordset>(taxesRst.toObject());
  applyDiscounts(*this, isOn(oneDiscount));
  calculateSurcharges();
  calculateTaxes(*this);
  recalculatePrepay();
  if (addOrEdit == "add" && !counterSaleOnly) setFinishedDueDate(*this);
}

Variant Invoice::resetLineTaxableAmounts() {
  lines_.each("", [](Recordset& line) { line.setValue(col::taxableAmt, line.number(col::lineItemTotal)); });
  lines_.leavesAllAtEnd();
  return {};
}

}  // namespace ondrel
