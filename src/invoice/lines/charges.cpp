#include <fmt/format.h>

#include "data/query_database.h"
#include "data/store_loading.h"
#include "data/values.h"
#include "invoice/invoice.h"
#include "invoice/line_kinds.h"

namespace ondrel {

using enum LineColumn;

// The three ways to add a charge are one; a row tells what each does besides.
struct Invoice::ChargeForm {
  bool keepsUnitPrice;        // otherwise 0, so that a change of quantity brings the charge to 0
  bool uncountedIsOne;        // a count of 0 or less stands for one amount
  bool readsDepartmentTaxes;  // a required read whose result is not used
  bool logged;
  bool takesFromBag;  // of a quick drop-off
};

namespace {

// clang-format off
//                                    unit price  uncounted  taxes  logged  bag
constexpr Invoice::ChargeForm kPlain    = {false, false,     false, false,  false};
constexpr Invoice::ChargeForm kDetailed = {true,  true,      true,  true,   true};
constexpr Invoice::ChargeForm kInternal = {true,  true,      true,  true,   false};
// clang-format on

// Never less than one amount: a negative charge that counts several pieces stays at one.
double chargeTotal(bool uncountedIsOne, std::int32_t count, double amount) {
  const double total = count > 0 || !uncountedIsOne ? count * amount : amount;
  return total < amount ? amount : total;
}

}  // namespace

void Invoice::addChargeLine(const Variant& taxCode, const Variant& Amount, const Variant& chargeDesc,
                            const Variant& countAs, const Variant& chargeDeptId) {
  addCharge(kPlain, storeNumber, taxCode.isEmpty() ? Variant(-1) : taxCode, Amount, chargeDesc, countAs,
            chargeDeptId, 1);
}

Variant Invoice::addChargeLineNew(const Variant& storeid, const Variant&, const Variant& Amount,
                                  const Variant& chargeDesc, const Variant& countAs,
                                  const Variant& chargeDeptId, const Variant& unitQuantity) {
  addCharge(kDetailed, storeid, -1, Amount, chargeDesc, countAs, chargeDeptId, unitQuantity);
  return {};
}

void Invoice::addChargeRow(const Variant& storeid, const Variant&, const Variant& amount,
                           const Variant& chargeDesc, const Variant& countAs, const Variant& chargeDeptId,
                           const Variant& unitQuantity) {
  addCharge(kInternal, storeid, -1, amount, chargeDesc, countAs, chargeDeptId, unitQuantity);
}

void Invoice::addCharge(const ChargeForm& form, const Variant& storeid, const Variant& taxCode,
                        const Variant& given, const Variant& description, const Variant& countAs,
                        const Variant& departmentGiven, const Variant& unitQuantity) {
  if (!given.isNumeric()) return;
  const double amount = ondrel::round2(given.toDouble(), 2);
  const std::int32_t count = countAs.toLong();
  std::int32_t department = departmentGiven.toLong();
  if (department == -1) department = getFirstDeptId().toLong();
  const Variant name = departmentValue(*apartment_, department, "name");
  const Variant days = departmentValue(*apartment_, department, "daysToProcess");
  if (form.readsDepartmentTaxes)
    queryDatabase(
        *apartment_,
        fmt::format("SELECT taxCode FROM DEPARTMENTTAX WHERE storeid = '{}' and departmentid = '{}'",
                    storeid.joined(), department));

  const double total = chargeTotal(form.uncountedIsOne, count, amount);
  const double price = form.keepsUnitPrice ? amount : 0;
  // clang-format off
  lineItems->addNew({
      {lineNumber,         currentLineNumber},
      {parentLineNumber,   -1},
      {deptId,             department},
      {deptName,           name},
      {itemType,           kind::charge},
      {lineItemId,         Variant::null()},
      {itemName,           description},
      {originalUnitPrice,  price},
      {unitPrice,          price},
      {quantity,           count},
      {lineItemTotal,      total},
      {totalTax,           0},
      {totalSurcharge,     0},
      {prepay,             0},
      {taxableAmt,         total},
      {daysToProcess,      days},
      {notes,              Variant::null()},
      {balance,            total},
      {chargeTaxCode,      taxCode},
      {dueDate,            dueDateForDays(days)},
      {pkgQuantity,        unitQuantity},
      {originalLineNumber, currentLineNumber},
  });
  // clang-format on
  ++currentLineNumber;
  if (form.logged) logLine("A", count, name, description, total);
  if (form.takesFromBag && isQuickInvoice()) subtractFromDeptLine(department, count, unitQuantity);
}

}  // namespace ondrel
