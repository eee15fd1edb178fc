#include <fmt/format.h>

#include "data/query_database.h"
#include "data/values.h"
#include "invoice/invoice.h"
#include "invoice/pricing/offers.h"

namespace ondrel {
namespace {

using enum LineColumn;

void skipDiscount(Recordset& rows) {
  const Column id = rows.column("discountId");
  const Variant discount = rows.value(id);
  while (!rows.eof() && isEqual(rows.value(id), discount)) rows.moveNext();
}

// A discount on its way onto the garments.
struct Spread {
  const OfferKind* offer;
  bool perUnit;
  double total;  // what is spread
  double sumPrice, sumQuantity;

  double rounded(double amount) const { return offer->rounded ? ondrel::round2(amount, 2) : amount; }

  double shareOf(double price, double pieces) const {
    if (sumPrice <= 0) return 0;
    if (!perUnit) return rounded(price / sumPrice * total);
    return sumQuantity > 0 ? rounded(total * (pieces / sumQuantity)) : 0;
  }

  // The part of a garment's share that falls on the garment itself rather than on its children.
  double ownPart(double share, double price, double pieces, const Recordset& line) const {
    if (price <= 0) return 0;
    const double own = line.number(lineItemTotal);
    if (!perUnit) return offer->rounded ? ondrel::round2(share * own / price, 2) : share * (own / price);
    return pieces != 0 ? rounded(share * (line.value(quantity).toDouble() / pieces)) : 0;
  }
};

void reduceTaxable(Recordset& line, double amount) {
  line.setValue(taxableAmt, ondrel::round2(line.number(taxableAmt) - amount, 2));
}

}  // namespace

// | row of the discount    | garments                               | flag asked for |
// |------------------------|----------------------------------------|----------------|
// | no department          | all                                    | yes            |
// | department             | of the department                      | yes            |
// | department and item    | of the item in the department          | no             |
//
// Leaves `rows` behind the discount's last row. A garment that two rows name stands in the table twice.
RecordsetRef Invoice::getDiscountLineTable(Recordset& rows, bool coupon) {
  const LineColumn flag = coupon ? couponable : discountable;
  const Column id = rows.column("discountId"), department = rows.column("departmentId"),
               item = rows.column("priceListItemId");
  const Variant discount = rows.value(id);
  const RecordsetRef table = Recordset::create(kDiscountLineLayout);
  double sumPrice = 0, sumQuantity = 0;
  for (; !rows.eof() && isEqual(rows.value(id), discount); rows.moveNext()) {
    const bool forItem = !rows.isNull(department) && !rows.isNull(item);
    std::string filter = "itemType='IT'";
    if (forItem) filter += fmt::format(" And lineItemId='{}'", rows.value(item).toText());
    if (!rows.isNull(department)) filter += fmt::format(" And deptId={}", rows.value(department).toText());
    lineItems->setFilter(filter);
    for (; !lineItems->eof(); lineItems->moveNext()) {
      if (!forItem && !lineItems->flag(flag)) continue;
      const double price = linePriceOf(*lineItems);
      const std::int32_t pieces = lineItems->isNull(quantity) ? 0 : lineItems->integer(quantity);
      table->addNew({{DiscountLineColumn::lineNumber, lineItems->value(lineNumber)},
                     {DiscountLineColumn::totalPrice, price},
                     {DiscountLineColumn::totalQuantity, pieces}});
      sumPrice += price;
      sumQuantity += pieces;
    }
    lineItems->clearFilter();
  }
  if (sumPrice > 0)
    table->addNew({{DiscountLineColumn::lineNumber, Variant::null()},
                   {DiscountLineColumn::totalPrice, sumPrice},
                   {DiscountLineColumn::totalQuantity, sumQuantity}});
  table->clearFilter();
  return table;
}

bool Invoice::applyCoupons(bool vipApplied) {
  return applyOffers(kCouponOffer, vipApplied);
}

// | step | acts on                           | effect                                                      |
// |------|-----------------------------------|-------------------------------------------------------------|
// | 1    | the offers on the invoice         | read again, in the order of their numbers                   |
// | 2    | one that a VIP discount shuts out | passed over                                                 |
// | 3    | each other                        | its lines are collected and spread over its garments, one   |
// |      |                                   | line a department; taxable amounts go down with it          |
// | 4    | lines without a department        | deleted: what found no garment to spread on is lost         |
//
// Whether an offer applied, which the store may say without one of its lines being here.
bool Invoice::applyOffers(const OfferKind& offer, bool vipApplied) {
  lineItems->clearFilter();
  if (lineItems->recordCount() == 0) return false;
  bool applied = false;
  if (const std::vector<std::int32_t> ids = getDiscountIds(offer.kind); !ids.empty()) {
    const RecordsetRef rows =
        queryDatabase(*apartment_, offer.passQuery(offerQuestion(getDiscountableTotals(true), ids)));
    while (!rows->eof()) {
      if (vipApplied && !rows->flag("validWithOtherOffer")) {
        skipDiscount(*rows);
        continue;
      }
      applied = true;
      spreadOffer(offer, *rows);
      if (offer.skipsRow && !rows->eof()) rows->moveNext();
    }
  }
  deleteFilteredLines(fmt::format("itemType='{}' AND deptId=NULL", offer.kind));
  return applied;
}

void Invoice::spreadOffer(const OfferKind& offer, Recordset& rows) {
  const bool perUnit = offer.perUnit && appliesPerUnit(rows);
  const Variant id = rows.value("discountId"), name = rows.value("discountName");
  const RecordsetRef table = getDiscountLineTable(rows, true);
  const std::optional<double> total = collectOffer(offer, id);
  if (!total) return;

  Spread spread{&offer, perUnit, *total, 0, 0};
  table->setFilter("lineNumber=Null");
  if (!table->eof()) {
    spread.sumPrice = table->number(DiscountLineColumn::totalPrice);
    spread.sumQuantity = table->number(DiscountLineColumn::totalQuantity);
  }
  table->setFilter("lineNumber<>Null");
  for (; !table->eof(); table->moveNext()) {
    const std::int32_t garment = table->integer(DiscountLineColumn::lineNumber);
    const double price = table->number(DiscountLineColumn::totalPrice);
    const double pieces = table->number(DiscountLineColumn::totalQuantity);
    const double share = spread.shareOf(price, pieces);
    findLine(garment);
    const Variant department = lineItems->value(deptId), departmentName = lineItems->value(deptName);
    addToDiscountLine(offer.kind, department, departmentName, id, name, share);
    findLine(garment);
    reduceTaxable(*lineItems, spread.ownPart(share, price, pieces, *lineItems));
    lineItems->clearFilter();
    reduceChildTaxable(garment, share, price, *lineItems);
  }
}

std::optional<double> Invoice::collectOffer(const OfferKind& offer, const Variant& id) {
  std::optional<double> total;
  lineItems->setFilter(fmt::format("lineItemId={} And itemType='{}'", id.toText(), offer.kind));
  for (; !lineItems->eof() && (offer.collectsAll || !total); lineItems->moveNext()) {
    total = total.value_or(0) + lineItems->number(lineItemTotal);
    lineItems->deleteRow();
  }
  lineItems->clearFilter();
  return total;
}

void Invoice::reduceChildTaxable(std::int32_t parent, double share, double linePrice, Recordset& lines) {
  lines.setFilter(fmt::format("parentLineNumber={}", parent));
  if (linePrice > 0)
    for (; !lines.eof(); lines.moveNext())
      reduceTaxable(lines, share * (lines.number(lineItemTotal) / linePrice));
  lines.clearFilter();
}

}  // namespace ondrel
