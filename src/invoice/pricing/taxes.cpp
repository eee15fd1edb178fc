#include <fmt/format.h>

#include "data/query_database.h"
#include "data/values.h"
#include "invoice/invoice.h"
#include "invoice/line_kinds.h"
#include "invoice/pricing/generated_line.h"
#include "invoice/pricing/rates.h"

namespace ondrel {
namespace {

using enum LineColumn;

constexpr RateColumns kTaxColumns = {"taxCode", "taxPercent", "", ""};

// The rows of every store come back, and each is charged.
constexpr LineRateSource kLineTaxes = {
    "SELECT IT.priceListItemID as 'priceListItemID',  IT.taxCode as 'taxCode', T.taxPercent as 'taxPercent', "
    " T.[description] as 'description' FROM ItemTax IT, Tax T  WHERE IT.priceListItemID IN ({0}) AND "
    "IT.storeID = T.storeID  AND IT.taxCode = T.taxCode",
    "SELECT IT.priceListItemID as 'priceListItemID', IT.descriptorName as 'descriptorName',  "
    "IT.descriptorType as 'descriptorType', IT.taxCode as 'taxCode',  T.taxPercent as 'taxPercent', "
    "T.[description] as 'description'  FROM ItemDescriptorTax IT, Tax T WHERE IT.priceListItemID IN ({0}) "
    "AND  convert(varchar, IT.priceListItemID) +  IT.descriptorType  + IT.descriptorName IN ({1}) AND "
    "IT.storeID = T.storeID  AND IT.taxCode = T.taxCode ",
    kTaxColumns};

double taxOn(const Rate& tax, const Recordset& line) {
  return tax.percent / 100 * line.number(taxableAmt);
}

}  // namespace

// | step | acts on                      | taxed by                   | rounded            | sum on the line |
// |------|------------------------------|----------------------------|--------------------|-----------------|
// | 1    | TA                           | removed, also when exempt  |                    |                 |
// | 2    | IT                           | the item's taxes           | no                 | totalTax        |
// | 3    | UP, CO, PA                   | the descriptor's taxes     | no                 | totalTax        |
// | 4    | SU                           | the surcharge's taxes      | no                 | none            |
// | 5    | AC                           | the department's taxes     | each               | totalTax        |
// | 6    | TA, one a code and department | all of the above          | once, on its sum   |                 |
//
// Steps 2 and 3 fall away without garments. An exempt invoice ends after step 1, its sums as they were.
void Invoice::calculateTaxes() {
  removeTaxLines();
  if (excludeTaxes) return;
  GatheredLines taxes(*lineItems);
  applyLineRates(kLineTaxes, totalTax, [&](RatedLine, const Rate& tax, double& sum) {
    const double amount = taxOn(tax, *lineItems);
    sum += amount;
    addTaxLine(tax, amount, lineItems->value(deptId), lineItems->value(deptName), taxes);
  });
  addSurchargeTaxes(taxes);
  addChargeTaxes(taxes);
  if (taxCodes) taxCodes->setFilter("");
  roundTaxLines();
}

void Invoice::removeTaxLines() {
  deleteFilteredLines("itemType='TA'");
}

void Invoice::addSurchargeTaxes(GatheredLines& taxes) {
  lineItems->setFilter("itemType='SU'");
  for (; !lineItems->eof(); lineItems->moveNext()) {
    const RecordsetRef rows = queryDatabase(
        *apartment_,
        fmt::format(
            "select tax.taxcode, tax.taxpercent, tax.description from surcharge inner join surchargetax on "
            "surcharge.surchargecode = surchargetax.surchargecode and surcharge.priceListID = "
            "surchargeTax.priceListId inner join tax on surchargetax.taxcode = tax.taxcode where "
            "surcharge.surchargecode = '{}' and surchargetax.pricelistid = '{}'",
            lineItems->value(lineItemId).joined(), priceListId));
    for (const Rate& tax : readRates(rows, kTaxColumns))
      addTaxLine(tax, taxOn(tax, *lineItems), lineItems->value(deptId), lineItems->value(deptName), taxes);
  }
  lineItems->clearFilter();
}

void Invoice::addChargeTaxes(GatheredLines& taxes) {
  lineItems->setFilter("itemType='AC'");
  for (; !lineItems->eof(); lineItems->moveNext())
    lineItems->setValue(totalTax,
                        addDepartmentTaxes(taxes, lineItems->value(deptId), lineItems->value(deptName),
                                           lineItems->number(taxableAmt)));
  lineItems->clearFilter();
}

double Invoice::addDepartmentTaxes(GatheredLines& taxes, const Variant& department, const Variant& name,
                                   double taxableAmount) {
  const RecordsetRef rows = queryDatabase(
      *apartment_, fmt::format(" SELECT tax.* FROM departmenttax INNER JOIN tax ON  departmenttax.taxcode = "
                               "tax.taxcode  WHERE departmenttax.storeId = '{}' AND "
                               "departmenttax.departmentID = '{}'",
                               storeNumber, department.joined()));
  double sum = 0;
  for (const Rate& tax : readRates(rows, kTaxColumns)) {
    const double amount = roundMoney("itemtax", tax.percent / 100 * taxableAmount);
    sum += amount;
    addTaxLine(tax, amount, department, name, taxes);
  }
  return sum;
}

// A line that later amounts bring to 0 or below goes away; one that starts below 0 stands until then.
void Invoice::addTaxLine(const Rate& tax, double amount, const Variant& department, const Variant& name,
                         GatheredLines& taxes) {
  if (amount == 0) return;
  if (!taxes.find(tax.code, department)) {
    addGeneratedLine(taxes.lines(), currentLineNumber,
                     {.itemType = kind::tax,
                      .deptId = department,
                      .deptName = name,
                      .lineItemId = tax.code,
                      .itemName = tax.description,
                      .amount = amount});
    taxes.keep(tax.code, department);
    return;
  }
  const double total = taxes.lines().number(lineItemTotal) + amount;
  taxes.lines().setValue(lineItemTotal, total);
  if (total <= 0) taxes.remove();
}

void Invoice::roundTaxLines() {
  roundGeneratedLines("itemType='TA'", {lineItemTotal, totalTax});
}

}  // namespace ondrel
