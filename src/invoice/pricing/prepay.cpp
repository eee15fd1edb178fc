#include <fmt/format.h>

#include "data/values.h"
#include "invoice/invoice.h"

namespace ondrel {
namespace {

using enum LineColumn;

double prepayDiscountOf(const Recordset& line) {
  return (line.value(prepay) * line.value(quantity)).toDouble();
}

}  // namespace

Variant Invoice::getMinimumPrepay() {
  return sumLines("itemType='IT'", [](const Recordset& line) {
    return line.isNull(minimumPrepay) ? 0 : (line.value(minimumPrepay) * line.value(quantity)).toDouble();
  });
}

Variant Invoice::getPrepayDiscount() {
  if (!allowFurtherDiscounts().toBoolean()) return 0;
  return sumLines("(itemType='IT' and redo = 0) or (itemType = 'UP' and redo = 0)", prepayDiscountOf);
}

// Looks at the one-discount setting only, unlike the figure of the whole invoice, which also asks whether the
// offers on it stand beside others.
Variant Invoice::getDepartmentPrepayDiscount(Variant& departmentID) {
  const Variant oneDiscount = getMiscSetupValue("oneDiscountPerInvoice");
  if (discountExists() && !oneDiscount.isNull() && oneDiscount.toBoolean()) return 0;
  return sumLines(
      fmt::format(
          "(itemType='IT' and deptId = {0} and redo = 0) or (itemType='UP' and deptId = {0} and redo = 0)",
          departmentID.toText()),
      prepayDiscountOf);
}

// | step | acts on                    | effect                                                             |
// |------|----------------------------|--------------------------------------------------------------------|
// | 1    | "Prepay Discount" charges  | removed                                                            |
// | 2    | each department, if the    | a negative charge of what its garments and upcharges give back     |
// |      | customer takes the offer   |                                                                    |
// | 3    | taxes                      | worked out again, since the charge lowers its department's tax     |
void Invoice::recalculatePrepay() {
  removePrepayLines();
  const RecordsetRef& departments = apartment_->store.storeDepartments;
  if (prepayEnabled_ && allowFurtherDiscounts().toBoolean() && departments) {
    const RecordsetRef each = departments->clone();
    for (; !each->eof(); each->moveNext()) {
      Variant department = each->value("departmentID");
      const double amount = getDepartmentPrepayDiscount(department).toDouble();
      if (amount > 0) addPrepayLine(amount, department);
    }
  }
  calculateTaxes();
}

void Invoice::removePrepayLines() {
  deleteFilteredLines("itemType = 'AC' and itemName = 'Prepay Discount'");
}

void Invoice::addPrepayLine(double amount, const Variant& department) {
  addChargeRow(storeNumber, priceListId, -amount, "Prepay Discount", 0, department, 1);
}

void Invoice::applyPrepay(Variant& val) {
  prepayEnabled_ = val.toBoolean();
  recalculatePrepay();
}

Variant Invoice::isPrepayEnabled() {
  return prepayEnabled_;
}

}  // namespace ondrel
