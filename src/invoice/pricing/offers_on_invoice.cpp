#include <fmt/ranges.h>

#include <algorithm>

#include "data/query_database.h"
#include "invoice/pricing/discount_lines.h"
#include "invoice/pricing/offers.h"

namespace ondrel {
namespace {

// | step | limit of a coupon, read from its first row                     |
// |------|----------------------------------------------------------------|
// | 1    | its maximum, which each row has been held to already           |
// | 2    | its face value, if it is a fixed amount that counts once       |
// | 3    | what is still payable before tax and surcharge                 |
double cappedOffer(Invoice& invoice, const Recordset& offer, double amount) {
  const Variant most = offer.value(OfferColumn::maxDiscountAmount);
  if (isGreater(most, 0)) amount = std::min(amount, most.toDouble());
  if (!offer.isNull(OfferColumn::discountAmount) && !offer.flag(OfferColumn::appliesPerUnit))
    amount = offer.number(OfferColumn::discountAmount);
  return std::min(amount, invoice.getInvoiceAmountToPayBeforeTaxSurcharge());
}

}  // namespace

OfferQuestion offerQuestion(const Invoice& invoice, const QualifyingTotals& totals,
                            const std::vector<std::int32_t>& ids) {
  return {invoice.priceListId, totals.pieces, totals.amount, fmt::format("{}", fmt::join(ids, ",")),
          std::to_string(invoice.custSeqNumber)};
}

// From the offer table as the last question left it: an offer that is not in it adds nothing. A coupon's
// line then stands without a department until the first finishing; a loyalty offer's too.
bool addOffer(Invoice& invoice, const OfferKind& offer, const Variant& discountId) {
  if (!invoice.state().offers) return false;
  Recordset& offers = *invoice.state().offers;
  offers.setFilter("discountId=" + discountId.joined());
  const bool found = !offers.eof();
  if (found) {
    const Variant id = offers.value(OfferColumn::discountId);
    const Variant name = offers.value(OfferColumn::discountName);
    double amount = 0;
    for (; !offers.eof(); offers.moveNext()) amount += offers.number(OfferColumn::couponAmount);
    offers.moveFirst();
    if (offer.capped) amount = cappedOffer(invoice, offers, amount);
    addGeneratedLine(invoice.lines(), {.itemType = offer.kind,
                                       .deptId = Variant::null(),
                                       .deptName = "",
                                       .lineItemId = id,
                                       .itemName = name,
                                       .amount = amount});
    invoice.lines().log("A", 1, offer.logName, name, offer.logSign * amount);
  }
  offers.clearFilter();
  return found;
}

void adjustOffers(Invoice& invoice, const OfferKind& offer) {
  Lines& lines = invoice.lines();
  std::vector<std::int32_t> ids;
  for (const std::int32_t id : discountIdsOf(lines, offer.kind))
    if (std::find(ids.begin(), ids.end(), id) == ids.end()) ids.push_back(id);
  if (ids.empty()) return;

  const QualifyingTotals totals = discountableTotals(lines, col::couponable);
  const RecordsetRef rows =
      queryDatabase(*invoice.apartment(), offer.adjustQuery(offerQuestion(invoice, totals, ids)));
  lines.remove(ofKind(offer.kind));
  if (rows->eof()) return;
  listOffers(invoice, *rows, totals);
  for (const std::int32_t id : ids) addOffer(invoice, offer, id);
}

}  // namespace ondrel
