#include <fmt/format.h>

#include "base/text.h"
#include "invoice/calendar/due_dates.h"
#include "invoice/invoice.h"
#include "invoice/line_kinds.h"
#include "invoice/lines/child_kinds.h"
#include "invoice/lines/quick_bags.h"

namespace ondrel {

using enum LineColumn;

// | kind           | log row                                        | then                                       |
// |----------------|------------------------------------------------|--------------------------------------------|
// | garment        | D from the line                                | its children go too, unlogged; the bag of  |
// |                |                                                | a quick drop-off gets the pieces back      |
// | upcharge       | D, always, with the garment's own values       | the garment's sum gives up the amount      |
// | pattern, color | D, if the garment's total is above 0, likewise | the same                                   |
// | any other      | D from the line, if its total is above 0       |                                            |
//
// Coupons are tested again after each; the date and prepay follow at the end.
void Invoice::deleteItem(const Variant& lineNo) {
  const std::int32_t line = lineNo.toLong();
  lineItems->clearFilter();
  if (lineItems->recordCount() > 0) {
    if (findLine(line)) {
      const std::string lineKind = toUpper(lineItems->text(itemType));
      if (lineKind == kind::garment)
        deleteGarment(line);
      else if (const ChildKind* child = childKind(lineKind))
        deleteChild(child->parentSum, child->isUpcharge);
      else
        deletePlainLine();
    }
    if (addOrEdit == "add" && !counterSaleOnly) calculateInvDueDate();
    if (!state_.isDateByHand) recomputeInvDueDate();
  }
  recalculatePrepay();
}

void Invoice::deleteGarment(std::int32_t line) {
  const Variant department = lineItems->value(deptId), pieces = lineItems->value(quantity),
                packed = lineItems->value(pkgQuantity);
  logCurrent("D", pieces, -1 * lineItems->number(lineItemTotal));
  lineItems->deleteRow();
  deleteFilteredLines(fmt::format("parentLineNumber={}", line));
  adjustCoupon();
  if (isQuickInvoice()) changeBag(lines_, department, pieces * packed);
}

void Invoice::deleteChild(LineColumn parentSum, bool alwaysLogged) {
  const double amount = lineItems->number(lineItemTotal);
  const std::int32_t parent = lineItems->integer(parentLineNumber);
  lineItems->deleteRow();
  if (findLine(parent)) {
    lineItems->setValue(parentSum, lineItems->value(parentSum) - amount);
    if (alwaysLogged || lineItems->number(lineItemTotal) > 0)
      logCurrent("D", lineItems->value(quantity), -1 * lineItems->number(lineItemTotal));
  }
  lineItems->clearFilter();
  adjustCoupon();
}

void Invoice::deletePlainLine() {
  if (lineItems->number(lineItemTotal) > 0)
    logCurrent("D", lineItems->value(quantity), -1 * lineItems->number(lineItemTotal));
  lineItems->deleteRow();
  lineItems->clearFilter();
  adjustCoupon();
}

// From the garments and upcharges that are left; upcharges carry no date, so they only keep it from falling
// back to the store's default.
void Invoice::recomputeInvDueDate() {
  lineItems->setFilter("itemType = 'IT' or itemType = 'UP'");
  if (lineItems->eof()) {
    InvDueDate = calendarOf(*this).usualDate();
  } else {
    InvDueDate = latestDueDate(*lineItems, dueDate, createdDate);
  }
  lineItems->clearFilter();
}

}  // namespace ondrel
