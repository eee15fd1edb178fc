#include <fmt/format.h>

#include "data/query_database.h"
#include "data/values.h"
#include "invoice/pricing/generated_line.h"
#include "invoice/pricing/passes.h"
#include "invoice/pricing/price_list_settings.h"
#include "invoice/pricing/qualifying_totals.h"
#include "invoice/pricing/taxable_amounts.h"

namespace ondrel {
namespace {

double vipDiscountableAmount(Lines& lines) {
  return lines.sum(ofKind(kind::garment), [](const Recordset& garment) {
    return garment.flag(col::VIPDiscountable) ? linePriceOf(garment) : 0;
  });
}

// Into the VIP line of the garment's department, or onto a new one.
void addToVipLine(Lines& lines, const Recordset& garment, double amount) {
  const Variant deptId = garment.value(col::deptId);
  {
    const LineSet line = lines.where(fmt::format("{} AND deptId={}", ofKind(kind::vip), sqlNumber(deptId)));
    if (line) {
      line->setValue(col::lineItemTotal, line->number(col::lineItemTotal) + amount);
      return;
    }
  }
  addGeneratedLine(lines, {.itemType = kind::vip,
                           .deptId = deptId,
                           .deptName = garment.value(col::deptName),
                           .lineItemId = Variant::null(),
                           .itemName = "VIP",
                           .amount = amount});
}

// `discountOf(price)` is what a garment of that price gets. Whether there was one.
template <class DiscountOf>
bool spreadVipDiscount(Lines& lines, DiscountOf discountOf) {
  bool earned = false;
  lines.each(ofKind(kind::garment), [&](Recordset& garment) {
    if (!garment.flag(col::VIPDiscountable)) return;
    earned = true;
    const double price = linePriceOf(garment);
    const double amount = round2(discountOf(price), 2);
    const double own = price > 0 ? round2(amount * garment.number(col::lineItemTotal) / price, 2) : 0;
    reduceTaxable(garment, own);
    reduceChildTaxable(lines, garment.integer(col::lineNumber), amount, price);
    addToVipLine(lines, garment, amount);
  });
  return earned;
}

}  // namespace

// Marked as VIP, and has spent more than the price list asks for on finished tickets of the last months. The
// expiry date is for display: it does not count here.
Variant Invoice::isVIPQualified() {
  loadPriceListSettings(*this);
  const RecordsetRef customer = queryDatabase(
      *apartment_,
      fmt::format("select isnull(vipEligible, 0) as vipEligible, isnull(vipExpiryDate, getdate()) as "
                  "vipExpiryDate, defaultPriceListId from customer where customersequencenumber = '{}'",
                  custSeqNumber));
  if (!customer->eof()) {
    vipExpiryDate = customer->date("vipExpiryDate");
    if (!customer->flag("vipEligible")) return false;
  }
  const RecordsetRef spent = queryDatabase(
      *apartment_, fmt::format("select sum(invoiceTotal) as total from Ticket where ticketStatus='FI'  and "
                               "customerSequenceNumber = {} and datediff(mm, createdDate, getdate()) < {}",
                               custSeqNumber, sqlNumber(priceListSetting(*this, "VIPValidNbrOfMonths"))));
  const bool any = !spent->eof() && !spent->isNull("total");
  return isGreater(any ? spent->value("total") : Variant(0), priceListSetting(*this, "VIPMinQualAmount"));
}

Variant Invoice::isVipValidWithOtherOffer() {
  return isOn(priceListSetting(*this, "VIPValidWithOtherOffers"));
}

// | form     | set when                       | discount of a line                                          |
// |----------|--------------------------------|-------------------------------------------------------------|
// | straight | VIPStraight and a percentage   | the percentage of its price                                 |
// | smart    | not VIPStraight, an amount and | its share by price in the amount for each whole step that   |
// |          | a step                         | the prices of all such lines come to                        |
//
// Acts on garments open to the VIP discount, after removing the VI lines. Each amount is rounded, lowers the
// taxable amounts of the garment and its children in proportion, and joins the VI line of the department.
bool applyVipDiscount(Invoice& invoice) {
  Lines& lines = invoice.lines();
  lines.remove(ofKind(kind::vip));
  if (!invoice.isVIPQualified().toBoolean()) return false;

  const Variant straight = priceListSetting(invoice, "VIPStraight");
  if (straight.isNull()) return false;
  if (straight.toBoolean()) {
    const Variant percent = priceListSetting(invoice, "VIPStraightPercent");
    if (percent.isNull()) return false;
    return spreadVipDiscount(lines, [rate = percent.toDouble() / 100](double price) { return rate * price; });
  }
  const Variant amount = priceListSetting(invoice, "VIPSmartAmount");
  const Variant step = priceListSetting(invoice, "VIPSmartForEveryAmount");
  if (amount.isNull() || step.isNull() || step.toDouble() == 0) return false;
  const double total = vipDiscountableAmount(lines);
  const double discount = amount.toDouble() * wholeAmount(total / step.toDouble());
  return spreadVipDiscount(lines, [=](double price) { return total == 0 ? 0 : price / total * discount; });
}

}  // namespace ondrel
