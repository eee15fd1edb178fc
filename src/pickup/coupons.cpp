#include <fmt/format.h>

#include "base/text.h"
#include "data/query_database.h"
#include "pickup/pickup.h"
#include "pickup/pickup_columns.h"

namespace ondrel {
namespace {

constexpr std::int32_t kFlat = 1, kPercentage = 2, kUnknown = -1;

// Whether the offers on the ticket leave room for a coupon.
bool mayTakeCoupon(Invoice& invoice, bool oneDiscount) {
  if (oneDiscount) return invoice.isFirstCoupon().toBoolean() && !invoice.vipQualified;
  return !invoice.vipQualified || invoice.isVipValidWithOtherOffer().toBoolean();
}

}  // namespace

struct Pickup::CouponSave {
  const Variant &coupon, &oneDiscount, &employee, &terminal, &employeeName, &storeName;
};

Variant Pickup::getDiscountType(const Variant& discountID) const {
  const RecordsetRef row =
      queryDatabase(*apartment_,
                    " select  discountpercent as percentage,   discountamount as flat  from discount where "
                    "discountid = '" +
                        escapeSqlValue(discountID) + "'");
  if (row->eof()) return kUnknown;
  return row->isNull("flat") ? kPercentage : kFlat;
}

// ---------------------------------------------------------------- onto the tickets

void Pickup::addCoupon(const Variant& id, const Variant& oneDiscount, const Variant& employeeid,
                       const Variant& terminalID, const Variant& empName, const Variant& storeName) {
  addCouponTo(tickets(), {id, oneDiscount, employeeid, terminalID, empName, storeName});
}

void Pickup::addInvoiceCoupon(const Variant& InvoiceNumber, const Variant& id, const Variant& oneDiscount,
                              const Variant& employeeid, const Variant& terminalID, const Variant& empName,
                              const Variant& storeName) {
  addCouponTo(ticketsOfInvoice(InvoiceNumber), {id, oneDiscount, employeeid, terminalID, empName, storeName});
}

// Once a ticket could take the coupon, all later ones count as able to.
void Pickup::addCouponTo(const std::vector<PickupInvoiceRef>& chosen, const CouponSave& save) {
  const bool isFlat = getDiscountType(save.coupon).toLong() == kFlat;
  const RecordsetRef taxes = queryDatabase(
      *apartment_,
      fmt::format("Select taxCode, description, taxPercent FROM Tax Where storeID = '{}'", storeid));
  bool may = false;
  int added = 0;
  for (const PickupInvoiceRef& ticket : chosen) {
    const std::shared_ptr<Invoice> invoice = loadForCoupon(*ticket);
    may = may || mayTakeCoupon(*invoice, save.oneDiscount.toBoolean());
    if (may) {
      invoice->getQualifyingCoupons();
      if (invoice->addCoupon(save.coupon).toBoolean()) {
        ++added;
        Variant rates = taxes;
        invoice->invoiceDone(save.oneDiscount, rates);
        invoice->saveInvoice("edit", save.employee, save.terminal, 0, save.employeeName, save.storeName,
                             true);
      }
    }
    if (isFlat && added > 0) break;
  }
  taxes->close();
  populateLineItemsToDisplay();
}

std::shared_ptr<Invoice> Pickup::loadForCoupon(const PickupInvoice& ticket) const {
  const std::shared_ptr<Invoice> invoice = newInvoice();
  invoice->getExistingDetails(ticket.ticketNumber);
  invoice->setStoreDays(storeid);
  invoice->getQualifyingCoupons();
  return invoice;
}

std::vector<PickupInvoiceRef> Pickup::ticketsOfInvoice(const Variant& invoiceNumber) const {
  const std::string wanted = invoiceNumber.joined();
  std::vector<PickupInvoiceRef> result = tickets();
  std::erase_if(result,
                [&](const PickupInvoiceRef& ticket) { return trim(ticket->InvoiceNumber) != trim(wanted); });
  return result;
}

// ---------------------------------------------------------------- to choose from

RecordsetRef Pickup::getInvoiceCouponRst(const Variant& InvoiceNumber) {
  return couponsOf(ticketsOfInvoice(InvoiceNumber));
}

RecordsetRef Pickup::getDisplayCouponRst() {
  return couponsOf(tickets());
}

RecordsetRef Pickup::couponsOf(const std::vector<PickupInvoiceRef>& chosen) const {
  RecordsetRef result = Recordset::create(kCouponLayout);
  Dictionary seen;
  for (const PickupInvoiceRef& ticket : chosen) {
    const RecordsetRef offers = loadForCoupon(*ticket)->getDisplayCouponRst();
    for (; !offers->eof(); offers->moveNext()) {
      const Variant id = offers->value("discountId");
      if (seen.exists(id)) continue;
      seen.add(id, id);
      result->addNew(
          {{CouponColumn::discountId, id}, {CouponColumn::discountName, offers->value("discountName")}});
    }
  }
  result->clearFilter();  // on its first row
  return result;
}

}  // namespace ondrel
