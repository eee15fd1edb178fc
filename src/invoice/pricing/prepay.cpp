#include <fmt/format.h>

#include "data/values.h"
#include "invoice/invoice.h"
#include "invoice/lines/charges.h"
#include "invoice/pricing/discount_lines.h"
#include "invoice/pricing/passes.h"

namespace ondrel {
namespace {

constexpr std::string_view kPrepayCharge = "Prepay Discount";

double prepayDiscountOf(const Recordset& line) {
  return (line.value(col::prepay) * line.value(col::quantity)).toDouble();
}

}  // namespace

Variant Invoice::getMinimumPrepay() {
  return lines_.sum(ofKind(kind::garment), [](const Recordset& line) {
    return line.isNull(col::minimumPrepay)
               ? 0
               : (line.value(col::minimumPrepay) * line.value(col::quantity)).toDouble();
  });
}

Variant Invoice::getPrepayDiscount() {
  if (!allowFurtherDiscounts().toBoolean()) return 0;
  return lines_.sum(fmt::format("({} and redo = 0) or (itemType = '{}' and redo = 0)", ofKind(kind::garment),
                                kind::upcharge),
                    prepayDiscountOf);
}

// Looks at the one-discount setting only, unlike the figure of the whole invoice, which also asks whether the
// offers on it stand beside others.
Variant Invoice::getDepartmentPrepayDiscount(Variant& departmentID) {
  const Variant oneDiscount = getMiscSetupValue("oneDiscountPerInvoice");
  if (discountExists(lines_) && isOn(oneDiscount)) return 0;
  return lines_.sum(fmt::format("({1} and deptId = {0} and redo = 0) or ({2} and deptId = {0} and redo = 0)",
                                departmentID.toText(), ofKind(kind::garment), ofKind(kind::upcharge)),
                    prepayDiscountOf);
}

// | step | acts on                    | effect                                                             |
// |------|----------------------------|--------------------------------------------------------------------|
// | 1    | "Prepay Discount" charges  | removed                                                            |
// | 2    | each department, if the    | a negative charge of what its garments and upcharges give back     |
// |      | customer takes the offer   |                                                                    |
// | 3    | taxes                      | worked out again, since the charge lowers its department's tax     |
void Invoice::recalculatePrepay() {
  lines_.remove(fmt::format("{} and itemName = '{}'", ofKind(kind::charge), kPrepayCharge));
  const RecordsetRef& departments = apartment_->store.storeDepartments;
  if (state_.prepayEnabled && allowFurtherDiscounts().toBoolean() && departments) {
    const RecordsetRef each = departments->clone();
    for (; !each->eof(); each->moveNext()) {
      Variant department = each->value("departmentID");
      const double amount = getDepartmentPrepayDiscount(department).toDouble();
      if (amount > 0) addInternalCharge(*this, -amount, kPrepayCharge, department);
    }
  }
  calculateTaxes(*this);
}

void Invoice::applyPrepay(Variant& val) {
  state_.prepayEnabled = val.toBoolean();
  recalculatePrepay();
}

Variant Invoice::isPrepayEnabled() {
  return state_.prepayEnabled;
}

}  // namespace ondrel
