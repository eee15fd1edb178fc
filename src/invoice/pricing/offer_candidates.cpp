#include <fmt/format.h>

#include <set>

#include "base/text.h"
#include "data/query_database.h"
#include "data/store_loading.h"
#include "data/values.h"
#include "invoice/pricing/offers.h"

namespace ondrel {
namespace {

constexpr double kLeastOffer = 0.01;

Variant cut(const Variant& text, size_t length) {
  return text.isNull() ? text : Variant(leftCharacters(text.toText(), length));
}

// A fixed amount that does not count by the piece sums into one row, whatever its departments; by the piece,
// into one a department. A percentage keeps its rows apart.
void addOfferRow(Invoice& invoice, const Recordset& rows, double amount) {
  if (amount > -kLeastOffer && amount < kLeastOffer) return;
  const Variant id = rows.value("discountId");
  if (isOfferBlocked(invoice, id)) return;

  std::string sameOffer = fmt::format("discountId = {} and discountAmount <> null ", sqlNumber(id));
  if (isGreater(rows.value("discountPercent"), 0) || appliesPerUnit(rows))
    sameOffer += fmt::format("and deptId = {}", sqlNumber(rows.value("departmentId")));
  Recordset& offers = *invoice.state().offers;
  offers.setFilter(sameOffer);
  const bool found = !offers.eof();
  if (found) offers.setValue(OfferColumn::couponAmount, offers.number(OfferColumn::couponAmount) + amount);
  offers.clearFilter();
  if (found) return;

  // clang-format off
  offers.addNew({
      {OfferColumn::discountId,          id},
      {OfferColumn::discountName,        cut(rows.value("discountName"), 50)},
      {OfferColumn::discountSubType,     cut(rows.value("discountSubType").joined(), 10)},
      {OfferColumn::minPieceCount,       rows.value("minPieceCount")},
      {OfferColumn::maxPieceCount,       rows.value("maxPieceCount")},
      {OfferColumn::minQualAmount,       rows.value("minQualAmount")},
      {OfferColumn::maxQualAmount,       rows.value("maxQualAmount")},
      {OfferColumn::discountPercent,     rows.value("discountPercent")},
      {OfferColumn::discountAmount,      rows.value("discountAmount")},
      {OfferColumn::validWithOtherOffer, rows.flag("validWithOtherOffer")},
      {OfferColumn::deptId,              rows.value("departmentId")},
      {OfferColumn::deptMinPieceCount,   rows.value("departmentMinPieceCount")},
      {OfferColumn::deptMinQualAmount,   rows.value("departmentMinQualAmount")},
      {OfferColumn::couponAmount,        amount},
      {OfferColumn::maxDiscountAmount,   rows.value("maxDiscountAmount")},
      {OfferColumn::appliesPerUnit,      appliesPerUnit(rows)},
  });
  // clang-format on
}

bool isDiscountOnTicket(Invoice& invoice, const Variant& discountId) {
  const RecordsetRef found = queryDatabase(
      *invoice.apartment(),
      fmt::format("select count(*) as nrows from ticketlineitem  where ticketlinetype in ('PR', 'CU')  and "
                  "ticketnumber = '{}' and lineitemid = '{}'",
                  invoice.ticketNo, discountId.joined()));
  return !found->eof() && isGreater(found->value("nrows"), 0);
}

}  // namespace

// A row without a department is for the whole invoice; any other is for what its department, or its item,
// holds.
void listOffers(Invoice& invoice, Recordset& rows, const QualifyingTotals& totals) {
  invoice.state().offers = Recordset::create(kOfferLayout);
  for (; !rows.eof(); rows.moveNext()) {
    if (rows.isNull("departmentId"))
      addOfferRow(invoice, rows, offeredAmount(rows, totals));
    else if (const auto department = qualifyingDepartment(invoice.lines(), rows, kCouponable))
      addOfferRow(invoice, rows, offeredAmount(rows, *department));
  }
}

// | discount          | amount                                  | then                            |
// |-------------------|-----------------------------------------|---------------------------------|
// | percentage        | of the price that the offer looks at    | to cents, at most the discount's |
// | fixed, per unit   | for each piece                          | maximum                         |
// | fixed             | once                                    |                                 |
double offeredAmount(const Recordset& rows, const QualifyingTotals& base) {
  const Variant percent = rows.value("discountPercent");
  const Variant fixed = rows.value("discountAmount");
  const double share = percent.isNull() ? 0 : percent.toDouble() / 100;
  double amount = fixed.isNull() ? share * base.amount : fixed.toDouble();
  if (percent.isNull() && appliesPerUnit(rows)) amount *= base.pieces;
  amount = round2(amount, 2);
  const Variant most = rows.value("maxDiscountAmount");
  return !most.isNull() && most.toDouble() >= 0 && amount > most.toDouble() ? most.toDouble() : amount;
}

// A discount may ask for pieces or money in departments before it is offered at all. Once it stands on the
// saved ticket it is not asked again.
bool isOfferBlocked(Invoice& invoice, const Variant& discountId) {
  if (isDiscountOnTicket(invoice, discountId)) return false;
  const RecordsetRef rules = queryDatabase(
      *invoice.apartment(),
      fmt::format("select * from DiscountDepartmentRule where discountid = '{}'", discountId.joined()));
  for (; !rules->eof(); rules->moveNext()) {
    const Variant department = rules->value("departmentid");
    if (departmentValue(*invoice.apartment(), department, "departmentID").isEmpty()) return true;
    const QualifyingTotals totals = departmentTotals(invoice.lines(), department, kAnyDiscount);
    if (isGreater(rules->value("MinPieceCount"), totals.pieces) ||
        isGreater(rules->value("MinQualAmount"), totals.amount))
      return true;
  }
  return false;
}

RecordsetRef Invoice::getDisplayCouponRst() {
  const RecordsetRef choices = Recordset::create(kOfferChoiceLayout);
  if (!state_.offers) return choices;
  Recordset& offers = *state_.offers;
  std::set<std::int32_t> seen;
  offers.clearFilter();
  for (; !offers.eof(); offers.moveNext()) {
    const std::int32_t id = offers.integer(OfferColumn::discountId);
    if (seen.insert(id).second)
      choices->addNew({{OfferChoiceColumn::discountId, id},
                       {OfferChoiceColumn::discountName, offers.value(OfferColumn::discountName)}});
  }
  choices->clearFilter();
  return choices;
}

}  // namespace ondrel
