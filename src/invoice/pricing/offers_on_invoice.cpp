#include <fmt/ranges.h>

#include <algorithm>

#include "data/query_database.h"
#include "invoice/invoice.h"
#include "invoice/pricing/offers.h"

namespace ondrel {

OfferQuestion Invoice::offerQuestion(const Totals& totals, const std::vector<std::int32_t>& ids) const {
  return {priceListId, totals.count, totals.total, fmt::format("{}", fmt::join(ids, ",")),
          std::to_string(custSeqNumber)};
}

// From the offer table as the last question left it: an offer that is not in it adds nothing. A coupon's
// line then stands without a department until the first finishing; a loyalty offer's too.
bool Invoice::addOffer(const OfferKind& offer, const Variant& id) {
  if (!offers_) return false;
  offers_->setFilter("discountId=" + id.joined());
  const bool found = !offers_->eof();
  if (found) {
    const Variant discount = offers_->value(OfferColumn::discountId);
    const Variant name = offers_->value(OfferColumn::discountName);
    double amount = 0;
    for (; !offers_->eof(); offers_->moveNext()) amount += offers_->number(OfferColumn::couponAmount);
    offers_->moveFirst();
    if (offer.capped) amount = cappedOffer(amount);
    addDiscountLine(offer.kind, Variant::null(), "", discount, name, amount);
    logLine("A", 1, offer.logName, name, offer.logSign * amount);
  }
  offers_->clearFilter();
  return found;
}

// | step | limit of a coupon, read from its first row                     |
// |------|----------------------------------------------------------------|
// | 1    | its maximum, which each row has been held to already           |
// | 2    | its face value, if it is a fixed amount that counts once       |
// | 3    | what is still payable before tax and surcharge                 |
double Invoice::cappedOffer(double amount) {
  const Variant most = offers_->value(OfferColumn::maxDiscountAmount);
  if (isGreater(most, 0)) amount = std::min(amount, most.toDouble());
  if (!offers_->isNull(OfferColumn::discountAmount) && !offers_->flag(OfferColumn::appliesPerUnit))
    amount = offers_->number(OfferColumn::discountAmount);
  return std::min(amount, getInvoiceAmountToPayBeforeTaxSurcharge());
}

// The invoice has changed: offers on it that still qualify are worked out again, the others fall off.
void Invoice::adjustOffers(const OfferKind& offer) {
  std::vector<std::int32_t> ids;
  for (const std::int32_t id : getDiscountIds(offer.kind))
    if (std::find(ids.begin(), ids.end(), id) == ids.end()) ids.push_back(id);
  if (ids.empty()) return;

  const Totals totals = getDiscountableTotals(true);
  const RecordsetRef rows = queryDatabase(*apartment_, offer.adjustQuery(offerQuestion(totals, ids)));
  deleteFilteredLines(fmt::format("itemType='{}'", offer.kind));
  if (rows->eof()) return;
  initOfferTable();
  fillOfferTable(*rows, totals.total, totals.count);
  for (const std::int32_t id : ids) addOffer(offer, id);
}

}  // namespace ondrel
