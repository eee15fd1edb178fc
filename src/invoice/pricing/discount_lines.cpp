#include <fmt/format.h>

#include "data/values.h"
#include "invoice/invoice.h"
#include "invoice/pricing/generated_line.h"

namespace ondrel {

using enum LineColumn;

void Invoice::addDiscountLine(std::string_view lineKind, const Variant& department,
                              const Variant& departmentName, const Variant& id, const Variant& name,
                              double amount) {
  addGeneratedLine(*lineItems, currentLineNumber, {lineKind, department, departmentName, id, name, amount});
}

bool Invoice::findDiscountLine(std::string_view lineKind, const Variant& department, const Variant& id) {
  lineItems->setFilter(fmt::format("lineItemId={} And deptId={} And itemType='{}'", sqlNumber(id),
                                   sqlNumber(department), lineKind));
  return !lineItems->eof();
}

void Invoice::addToDiscountLine(std::string_view lineKind, const Variant& department,
                                const Variant& departmentName, const Variant& id, const Variant& name,
                                double amount) {
  const bool found = findDiscountLine(lineKind, department, id);
  if (found) lineItems->setValue(lineItemTotal, lineItems->number(lineItemTotal) + amount);
  lineItems->clearFilter();
  if (!found) addDiscountLine(lineKind, department, departmentName, id, name, amount);
}

bool Invoice::hasLines(std::string_view filter) {
  lineItems->setFilter(filter);
  const bool found = !lineItems->eof();
  lineItems->clearFilter();
  return found;
}

std::vector<std::int32_t> Invoice::getDiscountIds(std::string_view lineKind) {
  std::vector<std::int32_t> ids;
  lineItems->setFilter(fmt::format("itemType='{}'", lineKind));
  for (; !lineItems->eof(); lineItems->moveNext())
    if (!lineItems->isNull(lineItemId)) ids.push_back(lineItems->integer(lineItemId));
  lineItems->clearFilter();
  return ids;
}

bool Invoice::discountExists() {
  return hasLines("itemType='CU' OR itemType='PR' OR itemType='LY' OR itemType='VI'");
}

}  // namespace ondrel
