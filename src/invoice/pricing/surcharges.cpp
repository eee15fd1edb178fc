#include <fmt/format.h>

#include <algorithm>

#include "data/query_database.h"
#include "data/values.h"
#include "invoice/invoice.h"
#include "invoice/line_kinds.h"
#include "invoice/pricing/generated_line.h"
#include "invoice/pricing/rates.h"

namespace ondrel {
namespace {

using enum LineColumn;

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
  const double upcharges = line.isNull(upchargeTotal) ? 0 : line.number(upchargeTotal);
  return line.number(taxableAmt) + std::min(upcharges, 0.0);
}

// | line       | percentage of      | fixed a piece     | fixed once |
// |------------|--------------------|-------------------|------------|
// | garment    | base               | quantity and pack | flat       |
// | descriptor | base               | nothing           | nothing    |
// | charge     | taxable amount     | quantity          | flat       |
Surcharged surchargeOnGarment(const Rate& rate, const Recordset& line) {
  if (!rate.fixedAmount) return {surchargeBase(line) * (rate.percent / 100)};
  if (!rate.perItem) return {*rate.fixedAmount, true};
  return {*rate.fixedAmount * (line.value(quantity) * line.value(pkgQuantity)).toDouble()};
}

Surcharged surchargeOnDescriptor(const Rate& rate, const Recordset& line) {
  return {rate.fixedAmount ? 0 : surchargeBase(line) * (rate.percent / 100)};
}

Surcharged surchargeOnCharge(const Rate& rate, const Recordset& line) {
  if (!rate.fixedAmount) return {rate.percent / 100 * line.number(taxableAmt)};
  if (!rate.perItem) return {*rate.fixedAmount, true};
  return {*rate.fixedAmount * line.value(quantity).toDouble()};
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
  removeSurchargeLines();
  if (getTotalPriceForDisplay().toDouble() <= 0) return;

  GatheredLines surcharges(*lineItems);
  applyLineRates(kLineSurcharges, totalSurcharge, [&](RatedLine kindOfLine, const Rate& rate, double& sum) {
    const auto [amount, flat] = kindOfLine == RatedLine::Garment ? surchargeOnGarment(rate, *lineItems)
                                                                 : surchargeOnDescriptor(rate, *lineItems);
    sum += amount;
    if (sum > 0)
      addSurchargeLine(rate, amount, flat, lineItems->value(deptId), lineItems->value(deptName), surcharges);
  });
  addChargeSurcharges(surcharges);
  roundSurchargeLines();
}

void Invoice::removeSurchargeLines() {
  deleteFilteredLines("itemType='SU'");
}

void Invoice::addChargeSurcharges(GatheredLines& surcharges) {
  if (excludeSurcharges) return;
  const RecordsetRef charges = lineItems->clone();
  charges->setFilter("itemType='AC'");
  for (; !charges->eof(); charges->moveNext()) addChargeLineSurcharges(*charges, surcharges);
}

void Invoice::addChargeLineSurcharges(const Recordset& charge, GatheredLines& surcharges) {
  const RecordsetRef rows = queryDatabase(
      *apartment_,
      fmt::format("SELECT ds.surchargeCode as surchargeCode, sc.fixedAmount as fixedAmount, "
                  "sc.surchargePercent as surchargePercent, sc.[name] as description, SC.applyPerItem  from "
                  "departmentsurcharge ds, surcharge sc where ds.departmentid = '{}' and ds.surchargeCode = "
                  "sc.surchargecode  and sc.pricelistId = '{}'",
                  charge.value(deptId).joined(), priceListId));
  Variant lastCode;
  for (const Rate& rate : readRates(rows, kSurchargeColumns)) {
    const auto [amount, flat] = surchargeOnCharge(rate, charge);
    if (amount <= 0 || (!lastCode.isEmpty() && isEqual(rate.code, lastCode))) continue;
    addSurchargeLine(rate, amount, flat, charge.value(deptId), charge.value(deptName), surcharges);
    lastCode = rate.code;
  }
}

void Invoice::addSurchargeLine(const Rate& surcharge, double amount, bool flat, const Variant& department,
                               const Variant& name, GatheredLines& surcharges) {
  Recordset& lines = surcharges.lines();
  if (!surcharges.find(surcharge.code, department)) {
    addGeneratedLine(lines, currentLineNumber,
                     {.itemType = kind::surcharge,
                      .deptId = department,
                      .deptName = name,
                      .lineItemId = surcharge.code,
                      .itemName = surcharge.description,
                      .amount = amount,
                      .taxableAmount = amount,
                      .dueDate = createdDate});
    surcharges.keep(surcharge.code, department);
  } else if (!flat) {
    lines.setValue(lineItemTotal, lines.number(lineItemTotal) + amount);
    lines.setValue(taxableAmt, lines.number(taxableAmt) + amount);
  }
}

void Invoice::roundSurchargeLines() {
  roundGeneratedLines("itemType='SU'", {lineItemTotal, taxableAmt, totalTax});
}

}  // namespace ondrel
