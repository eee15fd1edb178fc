#include "invoice/pricing/offers.h"

#include <fmt/format.h>

#include <set>

#include "base/text.h"
#include "data/query_database.h"
#include "data/store_loading.h"
#include "data/values.h"
#include "invoice/invoice.h"

namespace ondrel {
namespace {

constexpr double kLeastOffer = 0.01;

Variant cut(const Variant& text, size_t length) {
  return text.isNull() ? text : Variant(leftCharacters(text.toText(), length));
}

}  // namespace

void Invoice::initOfferTable() {
  offers_ = Recordset::create(kOfferLayout);
}

// A row without a department is for the whole invoice; any other is for what its department, or its item,
// holds.
void Invoice::fillOfferTable(Recordset& rows, double total, double count) {
  for (; !rows.eof(); rows.moveNext()) {
    if (rows.isNull("departmentId"))
      addOfferRow(rows, getDiscountAmount(rows, total, count));
    else if (const auto department = getQualifyingDepartment(rows, kCouponable))
      addOfferRow(rows, getDiscountAmount(rows, department->total, department->count));
  }
}

// | discount          | amount                                  | then                            |
// |-------------------|-----------------------------------------|---------------------------------|
// | percentage        | of the price that the offer looks at    | to cents, at most the discount's |
// | fixed, per unit   | for each piece                          | maximum                         |
// | fixed             | once                                    |                                 |
double Invoice::getDiscountAmount(const Recordset& rows, double base, double count) {
  const Variant percent = rows.value("discountPercent");
  const Variant fixed = rows.value("discountAmount");
  const double share = percent.isNull() ? 0 : percent.toDouble() / 100;
  double amount = fixed.isNull() ? share * base : fixed.toDouble();
  if (percent.isNull() && appliesPerUnit(rows)) amount *= count;
  amount = ondrel::round2(amount, 2);
  const Variant most = rows.value("maxDiscountAmount");
  return !most.isNull() && most.toDouble() >= 0 && amount > most.toDouble() ? most.toDouble() : amount;
}

// A fixed amount that does not count by the piece sums into one row, whatever its departments; by the piece,
// into one a department. A percentage keeps its rows apart.
void Invoice::addOfferRow(const Recordset& rows, double amount) {
  if (amount > -kLeastOffer && amount < kLeastOffer) return;
  const Variant id = rows.value("discountId");
  if (isDiscountRuleBlocked(id)) return;

  std::string sameOffer = fmt::format("discountId = {} and discountAmount <> null ", sqlNumber(id));
  if (isGreater(rows.value("discountPercent"), 0) || appliesPerUnit(rows))
    sameOffer += fmt::format("and deptId = {}", sqlNumber(rows.value("departmentId")));
  offers_->setFilter(sameOffer);
  const bool found = !offers_->eof();
  if (found)
    offers_->setValue(OfferColumn::couponAmount, offers_->number(OfferColumn::couponAmount) + amount);
  offers_->clearFilter();
  if (found) return;

  using enum OfferColumn;
  // clang-format off
  offers_->addNew({
      {discountId,          id},
      {discountName,        cut(rows.value("discountName"), 50)},
      {discountSubType,     cut(rows.value("discountSubType").joined(), 10)},
      {minPieceCount,       rows.value("minPieceCount")},
      {maxPieceCount,       rows.value("maxPieceCount")},
      {minQualAmount,       rows.value("minQualAmount")},
      {maxQualAmount,       rows.value("maxQualAmount")},
      {discountPercent,     rows.value("discountPercent")},
      {discountAmount,      rows.value("discountAmount")},
      {validWithOtherOffer, rows.flag("validWithOtherOffer")},
      {deptId,              rows.value("departmentId")},
      {deptMinPieceCount,   rows.value("departmentMinPieceCount")},
      {deptMinQualAmount,   rows.value("departmentMinQualAmount")},
      {couponAmount,        amount},
      {maxDiscountAmount,   rows.value("maxDiscountAmount")},
      {OfferColumn::appliesPerUnit, ondrel::appliesPerUnit(rows)},
  });
  // clang-format on
}

// A discount may ask for pieces or money in departments before it is offered at all. Once it stands on the
// saved ticket it is not asked again.
bool Invoice::isDiscountRuleBlocked(const Variant& id) {
  if (isDiscountOnTicket(id)) return false;
  const RecordsetRef rules = queryDatabase(
      *apartment_, fmt::format("select * from DiscountDepartmentRule where discountid = '{}'", id.joined()));
  for (; !rules->eof(); rules->moveNext()) {
    const Variant department = rules->value("departmentid");
    if (departmentValue(*apartment_, department, "departmentID").isEmpty()) return true;
    const Totals totals = getDeptDiscountTotals(department, false, Variant::null(), kAnyDiscount);
    if (isGreater(rules->value("MinPieceCount"), totals.count) ||
        isGreater(rules->value("MinQualAmount"), totals.total))
      return true;
  }
  return false;
}

bool Invoice::isDiscountOnTicket(const Variant& id) {
  const RecordsetRef found = queryDatabase(
      *apartment_, fmt::format("select count(*) as nrows from ticketlineitem  where ticketlinetype in ('PR', "
                               "'CU')  and ticketnumber = '{}' and lineitemid = '{}'",
                               ticketNo, id.joined()));
  return !found->eof() && isGreater(found->value("nrows"), 0);
}

RecordsetRef Invoice::getDisplayCouponRst() {
  const RecordsetRef choices = Recordset::create(kOfferChoiceLayout);
  if (!offers_) return choices;
  std::set<std::int32_t> seen;
  offers_->clearFilter();
  for (; !offers_->eof(); offers_->moveNext()) {
    const std::int32_t id = offers_->integer(OfferColumn::discountId);
    if (seen.insert(id).second)
      choices->addNew({{OfferChoiceColumn::discountId, id},
                       {OfferChoiceColumn::discountName, offers_->value(OfferColumn::discountName)}});
  }
  choices->clearFilter();
  return choices;
}

}  // namespace ondrel
