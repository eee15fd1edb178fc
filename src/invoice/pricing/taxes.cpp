#include <fmt/format.h>

#include "data/query_database.h"
#include "data/values.h"
#include "invoice/pricing/passes.h"
#include "invoice/pricing/rates.h"

namespace ondrel {
namespace {

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
  return tax.percent / 100 * line.number(col::taxableAmt);
}

// A line that later amounts bring to 0 or below goes away; one that starts below 0 stands until then.
void addTaxLine(GatheredLines& taxes, const Rate& tax, double amount, const Variant& deptId,
                const Variant& deptName) {
  if (amount == 0) return;
  if (!taxes.find(tax.code, deptId)) {
    taxes.add({.itemType = kind::tax,
               .deptId = deptId,
               .deptName = deptName,
               .lineItemId = tax.code,
               .itemName = tax.description,
               .amount = amount});
    return;
  }
  const double total = taxes.line().number(col::lineItemTotal) + amount;
  taxes.line().setValue(col::lineItemTotal, total);
  if (total <= 0) taxes.remove();
}

void addSurchargeTaxes(Invoice& invoice, GatheredLines& taxes) {
  invoice.lines().each(ofKind(kind::surcharge), [&](const Recordset& line) {
    const RecordsetRef rows = queryDatabase(
        *invoice.apartment(),
        fmt::format(
            "select tax.taxcode, tax.taxpercent, tax.description from surcharge inner join surchargetax on "
            "surcharge.surchargecode = surchargetax.surchargecode and surcharge.priceListID = "
            "surchargeTax.priceListId inner join tax on surchargetax.taxcode = tax.taxcode where "
            "surcharge.surchargecode = '{}' and surchargetax.pricelistid = '{}'",
            line.value(col::lineItemId).joined(), invoice.priceListId));
    for (const Rate& tax : readRates(rows, kTaxColumns))
      addTaxLine(taxes, tax, taxOn(tax, line), line.value(col::deptId), line.value(col::deptName));
  });
}

// Each amount is rounded; their sum.
double addDepartmentTaxes(Invoice& invoice, GatheredLines& taxes, const Recordset& charge) {
  const Variant deptId = charge.value(col::deptId), deptName = charge.value(col::deptName);
  const RecordsetRef rows = queryDatabase(
      *invoice.apartment(),
      fmt::format(" SELECT tax.* FROM departmenttax INNER JOIN tax ON  departmenttax.taxcode = tax.taxcode  "
                  "WHERE departmenttax.storeId = '{}' AND departmenttax.departmentID = '{}'",
                  invoice.storeNumber, deptId.joined()));
  double sum = 0;
  for (const Rate& tax : readRates(rows, kTaxColumns)) {
    const double amount = roundMoney("itemtax", taxOn(tax, charge));
    sum += amount;
    addTaxLine(taxes, tax, amount, deptId, deptName);
  }
  return sum;
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
void calculateTaxes(Invoice& invoice) {
  Lines& lines = invoice.lines();
  lines.remove(ofKind(kind::tax));
  if (invoice.excludeTaxes) return;
  GatheredLines taxes(lines);
  applyLineRates(invoice, kLineTaxes, col::totalTax,
                 [&](RatedLine, const Recordset& line, const Rate& tax, double& sum) {
                   const double amount = taxOn(tax, line);
                   sum += amount;
                   addTaxLine(taxes, tax, amount, line.value(col::deptId), line.value(col::deptName));
                 });
  addSurchargeTaxes(invoice, taxes);
  lines.each(ofKind(kind::charge), [&](Recordset& charge) {
    charge.setValue(col::totalTax, addDepartmentTaxes(invoice, taxes, charge));
  });
  if (invoice.taxCodes) invoice.taxCodes->setFilter("");
  roundGeneratedLines(lines, kind::tax, {col::lineItemTotal, col::totalTax});
}

}  // namespace ondrel
