#include <fmt/format.h>

#include "data/query_database.h"
#include "data/values.h"
#include "invoice/invoice.h"
#include "invoice/line_kinds.h"
#include "invoice/pricing/generated_line.h"

namespace ondrel {
namespace {

using enum LineColumn;

bool isTrue(const Variant& value) {
  return !value.isNull() && value.toBoolean();
}

}  // namespace

// Marked as VIP, and has spent more than the price list asks for on finished tickets of the last months. The
// expiry date is for display: it does not count here.
Variant Invoice::isVIPQualified() {
  loadPriceListSettings();
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
                               custSeqNumber, sqlNumber(priceListSetting("VIPValidNbrOfMonths"))));
  const bool any = !spent->eof() && !spent->isNull("total");
  return isGreater(any ? spent->value("total") : Variant(0), priceListSetting("VIPMinQualAmount"));
}

Variant Invoice::isVipValidWithOtherOffer() {
  return isTrue(priceListSetting("VIPValidWithOtherOffers"));
}

// | form     | set when                       | discount of a line                                          |
// |----------|--------------------------------|-------------------------------------------------------------|
// | straight | VIPStraight and a percentage   | the percentage of its price                                 |
// | smart    | not VIPStraight, an amount and | its share by price in the amount for each whole step that   |
// |          | a step                         | the prices of all such lines come to                        |
//
// Acts on garments open to the VIP discount, after removing the VI lines. Each amount is rounded, lowers the
// taxable amounts of the garment and its children in proportion, and joins the VI line of the department.
bool Invoice::applyVipDiscount() {
  deleteFilteredLines("itemType='VI'");
  if (!isVIPQualified().toBoolean()) return false;

  const Variant straight = priceListSetting("VIPStraight");
  if (straight.isNull()) return false;
  if (straight.toBoolean()) {
    const Variant percent = priceListSetting("VIPStraightPercent");
    if (percent.isNull()) return false;
    return spreadVipDiscount([rate = percent.toDouble() / 100](double price) { return rate * price; });
  }
  const Variant amount = priceListSetting("VIPSmartAmount");
  const Variant step = priceListSetting("VIPSmartForEveryAmount");
  if (amount.isNull() || step.isNull() || step.toDouble() == 0) return false;
  const double total = getVipDiscountableTotals().total;
  const double discount = amount.toDouble() * wholeAmount(total / step.toDouble());
  return spreadVipDiscount([=](double price) { return total == 0 ? 0 : price / total * discount; });
}

bool Invoice::spreadVipDiscount(const std::function<double(double)>& discountOf) {
  bool earned = false;
  const RecordsetRef garments = lineItems->clone();
  garments->setFilter("itemType='IT'");
  garments->setSort(lineItems->sort());
  for (; !garments->eof(); garments->moveNext()) {
    if (!garments->flag(VIPDiscountable)) continue;
    earned = true;
    const double price = linePriceOf(*garments);
    const double amount = ondrel::round2(discountOf(price), 2);
    const double own = price > 0 ? ondrel::round2(amount * garments->number(lineItemTotal) / price, 2) : 0;
    garments->setValue(taxableAmt, ondrel::round2(garments->number(taxableAmt) - own, 2));
    reduceChildTaxable(garments->integer(lineNumber), amount, price, *lineItems);
    addVipLine(*lineItems, garments->value(deptId), garments->value(deptName), amount);
  }
  return earned;
}

Invoice::Totals Invoice::getVipDiscountableTotals() {
  Totals totals;
  totals.total = sumLines("itemType='IT'", [&](const Recordset& line) {
    if (!line.flag(VIPDiscountable)) return 0.0;
    totals.count += line.isNull(quantity) ? 0 : line.number(quantity);
    return linePriceOf(line);
  });
  return totals;
}

void Invoice::addVipLine(Recordset& lines, const Variant& department, const Variant& name, double amount) {
  lines.setFilter(fmt::format("itemType='VI' AND deptId={}", sqlNumber(department)));
  const bool found = !lines.eof();
  if (found) lines.setValue(lineItemTotal, lines.number(lineItemTotal) + amount);
  lines.clearFilter();
  if (found) return;
  addGeneratedLine(lines, currentLineNumber,
                   {.itemType = kind::vip,
                    .deptId = department,
                    .deptName = name,
                    .lineItemId = Variant::null(),
                    .itemName = "VIP",
                    .amount = amount});
}

}  // namespace ondrel
