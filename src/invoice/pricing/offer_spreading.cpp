#include <fmt/format.h>

#include <optional>

#include "data/query_database.h"
#include "data/values.h"
#include "invoice/pricing/discount_lines.h"
#include "invoice/pricing/offers.h"
#include "invoice/pricing/taxable_amounts.h"

namespace ondrel {
namespace {

void skipDiscount(Recordset& rows) {
  const Column id = rows.column("discountId");
  const Variant discount = rows.value(id);
  while (!rows.eof() && isEqual(rows.value(id), discount)) rows.moveNext();
}

// A garment that an offer is spread over.
struct CoveredGarment {
  Variant lineNumber;
  double price;
  double pieces;
};

struct Covered {
  std::vector<CoveredGarment> garments;
  double price = 0, pieces = 0;  // of all
};

// A discount on its way onto the garments.
struct Spread {
  const OfferKind* offer;
  bool perUnit;
  double total;  // what is spread
  double sumPrice, sumQuantity;

  double rounded(double amount) const { return offer->rounded ? round2(amount, 2) : amount; }

  double shareOf(double price, double pieces) const {
    if (sumPrice <= 0) return 0;
    if (!perUnit) return rounded(price / sumPrice * total);
    return sumQuantity > 0 ? rounded(total * (pieces / sumQuantity)) : 0;
  }

  // The part of a garment's share that falls on the garment itself rather than on its children.
  double ownPart(double share, double price, double pieces, const Recordset& line) const {
    if (price <= 0) return 0;
    const double own = line.number(col::lineItemTotal);
    if (!perUnit) return offer->rounded ? round2(share * own / price, 2) : share * (own / price);
    return pieces != 0 ? rounded(share * (line.value(col::quantity).toDouble() / pieces)) : 0;
  }
};

// | row of the discount    | garments                               | couponable     |
// |------------------------|----------------------------------------|----------------|
// | no department          | all                                    | asked for      |
// | department             | of the department                      | asked for      |
// | department and item    | of the item in the department          | not            |
//
// Leaves `rows` behind the discount's last row. A garment that two rows name is covered twice.
Covered coveredGarments(Lines& lines, Recordset& rows) {
  const Column id = rows.column("discountId"), department = rows.column("departmentId"),
               item = rows.column("priceListItemId");
  const Variant discount = rows.value(id);
  Covered covered;
  for (; !rows.eof() && isEqual(rows.value(id), discount); rows.moveNext()) {
    const bool forItem = !rows.isNull(department) && !rows.isNull(item);
    std::string filter = ofKind(kind::garment);
    if (forItem) filter += fmt::format(" And lineItemId='{}'", rows.value(item).toText());
    if (!rows.isNull(department)) filter += fmt::format(" And deptId={}", rows.value(department).toText());
    lines.each(filter, [&](const Recordset& garment) {
      if (!forItem && !garment.flag(col::couponable)) return;
      const double price = linePriceOf(garment);
      const double pieces = garment.isNull(col::quantity) ? 0 : garment.integer(col::quantity);
      covered.garments.push_back({garment.value(col::lineNumber), price, pieces});
      covered.price += price;
      covered.pieces += pieces;
    });
  }
  return covered;
}

// Deletes the offer's lines to be spread anew and gives their sum; nothing when there is none.
std::optional<double> collectOffer(Lines& lines, const OfferKind& offer, const Variant& id) {
  std::optional<double> total;
  for (auto line = lines.where(fmt::format("lineItemId={} And {}", id.toText(), ofKind(offer.kind)));
       line && (offer.collectsAll || !total); line.next()) {
    total = total.value_or(0) + line->number(col::lineItemTotal);
    line->deleteRow();
  }
  return total;
}

void spreadOffer(Lines& lines, const OfferKind& offer, Recordset& rows) {
  const bool perUnit = offer.perUnit && appliesPerUnit(rows);
  const Variant id = rows.value("discountId"), name = rows.value("discountName");
  const Covered covered = coveredGarments(lines, rows);
  const std::optional<double> total = collectOffer(lines, offer, id);
  if (!total) return;

  const Spread spread{&offer, perUnit, *total, covered.price, covered.pieces};
  for (const auto& [number, price, pieces] : covered.garments) {
    const double share = spread.shareOf(price, pieces);
    {
      const LineSet garment = lines.find(number);
      addToDiscountLine(lines, {.itemType = offer.kind,
                                .deptId = garment->value(col::deptId),
                                .deptName = garment->value(col::deptName),
                                .lineItemId = id,
                                .itemName = name,
                                .amount = share});
      reduceTaxable(*garment, spread.ownPart(share, price, pieces, *garment));
    }
    reduceChildTaxable(lines, number, share, price);
  }
}

}  // namespace

// | step | acts on                           | effect                                                      |
// |------|-----------------------------------|-------------------------------------------------------------|
// | 1    | the offers on the invoice         | read again, in the order of their numbers                   |
// | 2    | one that a VIP discount shuts out | passed over                                                 |
// | 3    | each other                        | its lines are collected and spread over its garments, one   |
// |      |                                   | line a department; taxable amounts go down with it          |
// | 4    | lines without a department        | deleted: what found no garment to spread on is lost         |
//
// The store may say that an offer applies without one of its lines being here.
bool applyOffers(Invoice& invoice, const OfferKind& offer, bool vipApplied) {
  Lines& lines = invoice.lines();
  if (!lines.any("")) return false;
  bool applied = false;
  if (const std::vector<std::int32_t> ids = discountIdsOf(lines, offer.kind); !ids.empty()) {
    const OfferQuestion question = offerQuestion(invoice, discountableTotals(lines, col::couponable), ids);
    const RecordsetRef rows = queryDatabase(*invoice.apartment(), offer.passQuery(question));
    while (!rows->eof()) {
      if (vipApplied && !rows->flag("validWithOtherOffer")) {
        skipDiscount(*rows);
        continue;
      }
      applied = true;
      spreadOffer(lines, offer, *rows);
      if (offer.skipsRow && !rows->eof()) rows->moveNext();
    }
  }
  lines.remove(fmt::format("{} AND deptId=NULL", ofKind(offer.kind)));
  return applied;
}

}  // namespace ondrel
