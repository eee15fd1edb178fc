#include "invoice/lines/charges.h"

#include <fmt/format.h>

#include "data/query_database.h"
#include "data/store_loading.h"
#include "data/values.h"
#include "invoice/calendar/due_dates.h"
#include "invoice/lines/quick_bags.h"

namespace ondrel {
namespace {

// The three ways to add a charge are one; a row tells what each does besides.
struct ChargeForm {
  bool keepsUnitPrice;        // otherwise 0, so that a change of quantity brings the charge to 0
  bool uncountedIsOne;        // a count of 0 or less stands for one amount
  bool readsDepartmentTaxes;  // a required read whose result is not used
  bool logged;
  bool takesFromBag;  // of a quick drop-off
};

// clang-format off
//                               unit price  uncounted  taxes  logged  bag
constexpr ChargeForm kPlain    = {false,     false,     false, false,  false};
constexpr ChargeForm kDetailed = {true,      true,      true,  true,   true};
constexpr ChargeForm kInternal = {true,      true,      true,  true,   false};
// clang-format on

// Never less than one amount: a negative charge that counts several pieces stays at one.
double chargeTotal(bool uncountedIsOne, std::int32_t count, double amount) {
  const double total = count > 0 || !uncountedIsOne ? count * amount : amount;
  return total < amount ? amount : total;
}

// As a page gives it.
struct Charge {
  Variant storeid, taxCode, amount, description, countAs, deptId, unitQuantity;
};

void addCharge(Invoice& invoice, const ChargeForm& form, const Charge& charge) {
  if (!charge.amount.isNumeric()) return;
  Apartment& apartment = *invoice.apartment();
  const double amount = round2(charge.amount.toDouble(), 2);
  const std::int32_t count = charge.countAs.toLong();
  std::int32_t deptId = charge.deptId.toLong();
  if (deptId == -1) deptId = invoice.getFirstDeptId().toLong();
  const Variant name = departmentValue(apartment, deptId, "name");
  const Variant days = departmentValue(apartment, deptId, "daysToProcess");
  if (form.readsDepartmentTaxes)
    queryDatabase(
        apartment,
        fmt::format("SELECT taxCode FROM DEPARTMENTTAX WHERE storeid = '{}' and departmentid = '{}'",
                    charge.storeid.joined(), deptId));

  const double total = chargeTotal(form.uncountedIsOne, count, amount);
  const double price = form.keepsUnitPrice ? amount : 0;
  invoice.lines().begin(kind::charge, {{col::deptId, deptId},
                                       {col::deptName, name},
                                       {col::itemName, charge.description},
                                       {col::originalUnitPrice, price},
                                       {col::unitPrice, price},
                                       {col::quantity, count},
                                       {col::lineItemTotal, total},
                                       {col::taxableAmt, total},
                                       {col::daysToProcess, days},
                                       {col::balance, total},
                                       {col::chargeTaxCode, charge.taxCode},
                                       {col::dueDate, calendarOf(invoice).dateAfter(days.toLong())},
                                       {col::pkgQuantity, charge.unitQuantity}});
  if (form.logged) invoice.lines().log("A", count, name, charge.description, total);
  if (form.takesFromBag && invoice.isQuickInvoice())
    takeFromBag(invoice.lines(), deptId, count, charge.unitQuantity);
}

}  // namespace

void Invoice::addChargeLine(const Variant& taxCode, const Variant& Amount, const Variant& chargeDesc,
                            const Variant& countAs, const Variant& chargeDeptId) {
  addCharge(
      *this, kPlain,
      {storeNumber, taxCode.isEmpty() ? Variant(-1) : taxCode, Amount, chargeDesc, countAs, chargeDeptId, 1});
}

Variant Invoice::addChargeLineNew(const Variant& storeid, const Variant& /*custPriceList*/,
                                  const Variant& Amount, const Variant& chargeDesc, const Variant& countAs,
                                  const Variant& chargeDeptId, const Variant& unitQuantity) {
  addCharge(*this, kDetailed, {storeid, -1, Amount, chargeDesc, countAs, chargeDeptId, unitQuantity});
  return {};
}

void addInternalCharge(Invoice& invoice, double amount, std::string_view description, const Variant& deptId) {
  addCharge(invoice, kInternal, {invoice.storeNumber, -1, amount, description, 0, deptId, 1});
}

}  // namespace ondrel
