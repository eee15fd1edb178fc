#include <fmt/format.h>

#include <algorithm>

#include "data/query_database.h"
#include "data/values.h"
#include "invoice/pricing/rates.h"

namespace ondrel {
namespace {

constexpr RateColumns kSurchargeColumns = {"surchargeCode", "surchargePercent", "fixedAmount",
                                           "applyPerItem"};

// The rows of every price list come back, and each is charged.
constexpr LineRateSource kLineSurcharges = {
    "SELECT ISC.priceListItemID as 'priceListItemID',  ISC.surchargeCode as 'surchargeCode',  SC.fixedAmount "
    "as 'fixedAmount' , SC.surchargePercent as 'surchargePercent',  SC.[name] as 'description', "
    "SC.applyPerItem FROM ItemSurcharge ISC, Surcharge SC  WHERE ISC.priceListItemID IN ({0})  AND "
    "ISC.priceListId = SC.priceListId  AND ISC.surchargeCode = SC.surchargeCode",
    "SELECT ISC.priceListItemID as 'priceListItemID', ISC.descriptorName as 'descriptorName',  "
    "ISC.descriptorType as 'descriptorType', ISC.surchargeCode as 'surchargeCode',  SC.fixedAmount as "
    "'fixedAmount', SC.surchargePercent as 'surchargePercent',  SC.[name] as 'description', SC.applyPerItem  "
    "FROM ItemDescriptorSurcharge ISC, Surcharge SC  WHERE ISC.priceListItemID IN ({0})  AND "
    "convert(varchar, ISC.priceListItemID) + ISC.descriptorType + ISC.descriptorName  IN ({1})  AND "
    "ISC.priceListId = SC.priceListId  AND ISC.surchargeCode = SC.surchargeCode",
    kSurchargeColumns};

// A flat surcharge is charged once a department, however many lines carry it.
struct Surcharged {
  double amount = 0;
  bool flat = false;
};

// A negative upcharge lowers what a percentage is taken of; a positive one does not raise it.
double surchargeBase(const Recordset& line) {
  const double upcharges = line.isNull(col::upchargeTotal) ? 0 : line.number(col::upchargeTotal);
  return line.number(col::taxableAmt) + std::min(upcharges, 0.0);
}

// | line       | percentage of      | fixed a piece     | fixed once |
// |------------|--------------------|-------------------|------------|
// | garment    | base               | quantity and pack | flat       |
// | descriptor | base               | nothing           | nothing    |
// | charge     | taxable amount     | quantity          | flat       |
Surcharged surchargeOnGarment(const Rate& rate, const Recordset& line) {
  if (!rate.fixedAmount) return {surchargeBase(line) * (rate.percent / 100)};
  if (!rate.perItem) return {*rate.fixedAmount, true};
  return {*rate.fixedAmount * (line.value(col::quantity) * line.value(col::pkgQuantity)).toDouble()};
}

Surcharged surchargeOnDescriptor(const Rate& rate, const Recordset& line) {
  return {rate.fixedAmount ? 0 : surchargeBase(line) * (rate.percent / 100)};
}

Surcharged surchargeOnCharge(const Rate& rate, const Recordset& line) {
  if (!rate.fixedAmount) return {rate.percent / 100 * line.number(col::taxableAmt)};
  if (!rate.perItem) return {*rate.fixedAmount, true};
  return {*rate.fixedAmount * line.value(col::quantity).toDouble()};
}

void addSurchargeLine(GatheredLines& surcharges, const Rate& surcharge, const Surcharged& charged,
                      const Recordset& line, Date written) {
  const Variant deptId = line.value(col::deptId);
  if (!surcharges.find(surcharge.code, deptId)) {
    surcharges.add({.itemType = kind::surcharge,
                    .deptId = deptId,
                    .deptName = line.value(col::deptName),
                    .lineItemId = surcharge.code,
                    .itemName = surcharge.description,
                    .amount = charged.amount,
                    .taxableAmount = charged.amount,
                    .dueDate = written});
  } else if (!charged.flat) {
    for (const LineColumn column : {col::lineItemTotal, col::taxableAmt})
      surcharges.line().setValue(column, surcharges.line().number(column) + charged.amount);
  }
}

void addChargeSurcharges(const Invoice& invoice, const Recordset& charge, GatheredLines& surcharges) {
  const RecordsetRef rows = queryDatabase(
      *invoice.apartment(),
      fmt::format("SELECT ds.surchargeCode as surchargeCode, sc.fixedAmount as fixedAmount, "
                  "sc.surchargePercent as surchargePercent, sc.[name] as description, SC.applyPerItem  from "
                  "departmentsurcharge ds, surcharge sc where ds.departmentid = '{}' and ds.surchargeCode = "
                  "sc.surchargecode  and sc.pricelistId = '{}'",
                  charge.value(col::deptId).joined(), invoice.priceListId));
  Variant lastCode;
  for (const Rate& rate : readRates(rows, kSurchargeColumns)) {
    const Surcharged charged = surchargeOnCharge(rate, charge);
    if (charged.amount <= 0 || (!lastCode.isEmpty() && isEqual(rate.code, lastCode))) continue;
    addSurchargeLine(surcharges, rate, charged, charge, invoice.createdDate);
    lastCode = rate.code;
  }
}

}  // namespace

// | step | acts on    | effect                                                               | sum on the line |
// |------|------------|----------------------------------------------------------------------|-----------------|
// | 1    |            | exempt: ends, the SU lines as they were                              |                 |
// | 2    | SU         | removed; ends here when the invoice comes to nothing                 |                 |
// | 3    | IT         | surcharged by item, once the line's sum is above 0                   | totalSurcharge  |
// | 4    | UP, CO, PA | by descriptor, likewise                                              | totalSurcharge  |
// | 5    | AC         | by department, each amount above 0 whose code is not the last one's  | none            |
// | 6    | SU         | one a code and department, rounded once, on its sum                  |                 |
//
// Amounts are taken of what the discounts left of `taxableAmt`.
void Invoice::calculateSurcharges() {
  if (excludeSurcharges) return;
  lines_.remove(ofKind(kind::surcharge));
  if (getTotalPriceForDisplay().toDouble() <= 0) return;

  GatheredLines surcharges(lines_);
  applyLineRates(*this, kLineSurcharges, col::totalSurcharge,
                 [&](RatedLine kind, const Recordset& line, const Rate& rate, double& sum) {
                   const Surcharged charged = kind == RatedLine::Garment ? surchargeOnGarment(rate, line)
                                                                         : surchargeOnDescriptor(rate, line);
                   sum += charged.amount;
                   if (sum > 0) addSurchargeLine(surcharges, rate, charged, line, createdDate);
                 });
  for (auto charge = lines_.peek(ofKind(kind::charge)); charge; charge.next())
    addChargeSurcharges(*this, *charge, surcharges);
  roundGeneratedLines(lines_, kind::surcharge, {col::lineItemTotal, col::taxableAmt, col::totalTax});
}

}  // namespace ondrel
