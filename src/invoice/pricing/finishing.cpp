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
#include "data/store_loading.h"
#include "data/values.h"
#include "invoice/invoice.h"

namespace ondrel {
namespace {

using enum LineColumn;

bool isOn(const Variant& setting) {
  return !setting.isNull() && setting.toBoolean();
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
  invoiceDone(oneDiscount_, taxes);
  taxCodes = std::dynamic_pointer_cast<Recordset>(taxes.toObject());
}

void Invoice::invoiceDone(const Variant& oneDiscount, Variant& taxesRst) {
  lineItems->clearFilter();
  if (lineItems->recordCount() == 0) return;
  resetLineTaxableAmounts();
  oneDiscount_ = oneDiscount;
  taxCodes = std::dynamic_pointer_cast<Recordset>(taxesRst.toObject());
  applyDiscounts(isOn(oneDiscount));
  calculateSurcharges();
  calculateTaxes();
  recalculatePrepay();
  if (addOrEdit == "add" && !counterSaleOnly) setFinishedDueDate();
}

void Invoice::applyDiscounts(bool oneDiscount) {
  const bool vip = applyVipDiscount();
  if (vip && (oneDiscount || !isVipValidWithOtherOffer().toBoolean())) {
    removeCouponLines();
    return;
  }
  const bool coupons = applyCoupons(vip);
  const bool loyalty = applyLoyalty(vip);
  applyPromotions(vip, coupons || loyalty);
}

Variant Invoice::resetLineTaxableAmounts() {
  lineItems->clearFilter();
  for (; !lineItems->eof(); lineItems->moveNext())
    lineItems->setValue(taxableAmt, lineItems->number(lineItemTotal));
  return {};
}

void Invoice::removeCouponLines() {
  lineItems->setFilter("itemType='CU'");
  for (; !lineItems->eof(); lineItems->moveNext()) {
    logLine("D", lineItems->value(quantity), lineItems->value(deptName), lineItems->value(itemName),
            -1 * lineItems->number(lineItemTotal));
    lineItems->deleteRow();
  }
  lineItems->clearFilter();
}

// | new ticket                             | its date                                                    |
// |----------------------------------------|-------------------------------------------------------------|
// | dated by hand                          | the latest of its lines                                     |
// | with coupons, charges or upcharges     | the latest of these; upcharges have none                    |
// | otherwise                              | the store's usual days after whatever date was counted last |
void Invoice::setFinishedDueDate() {
  calculateInvDueDate();
  if (dueDateOverridden_) return;
  lineItems->setFilter("itemType='CU' or itemType = 'AC' or itemType = 'UP'");
  if (lineItems->eof())
    InvDueDate = addStoreDays(*apartment_, apartment_->store.defaultProcessingDays);
  else
    raiseInvDueDate();
  lineItems->clearFilter();
}

}  // namespace ondrel
