#include "invoice/invoice.h"

#include <fmt/format.h>

#include "data/query_database.h"
#include "data/values.h"
#include "invoice/line_access.h"

namespace ondrel {
using enum LineColumn;

Invoice::Invoice() : apartment_(Apartment::current()) {
  initInvoice();
}

RecordsetRef Invoice::createLineItemsTable() const {
  return Recordset::create(kLineLayout);
}

void Invoice::initInvoice() {
  currentLineNumber = 1;
  lineItems = createLineItemsTable();
  if (!hasCleared) {
    ticketLogItems = Recordset::create(kLogLayout);
    excludeTaxes = excludeSurcharges = invoiceOnDelivery = prepayEnabled_ = false;
    createdDate = apartment_->clock->now();
    tagsSameAsInvNos = true;
    counterSaleOnly = false;
    invoiceType = "D";
    pendingDeptDays_ = std::make_shared<Dictionary>();
  }
  newHeatSeals_ = std::make_shared<Dictionary>();
  transactionchangeDue = 0;
  splitTheInvoice = false;
  dueDateOverridden_ = false;
  recalculatePrepay();
}

void Invoice::LoadDefaults() {
  itemSortMethod_ = getMiscSetupValue("ItemSortMethod");
}

void Invoice::clearInvoice() {
  hasCleared = true;
  if (lineItems->recordCount() > 0) lineItems->moveFirst();
  for (; !lineItems->eof(); lineItems->moveNext())
    logLine("D", lineItems->value(quantity), lineItems->value(deptName), lineItems->value(itemName),
            -1 * lineItems->number(lineItemTotal));
  lineItems = nullptr;
  offers_ = nullptr;
  initInvoice();
}

Variant Invoice::getFirstDeptId() {
  lineItems->setFilter("itemType='IT' or itemType='DE' or itemType='AC'");
  const bool found = !lineItems->eof() && !lineItems->isNull(deptId);
  const std::int32_t first = found ? lineItems->integer(deptId) : 0;
  lineItems->clearFilter();
  return first;
}

bool Invoice::isQuickInvoice() const {
  return invoiceType == "Q";
}

Variant Invoice::getMiscSetupValue(std::string_view column) {
  const RecordsetRef rows = queryDatabase(
      *apartment_, fmt::format("select {} from miscsetup where storeid = '{}'", column, storeNumber));
  return rows->eof() ? Variant() : rows->value(column);
}

void Invoice::logLine(std::string_view logType, const Variant& pieces, const Variant& department,
                      const Variant& name, const Variant& money) {
  // The log takes no Null, and a click must not fail for the want of a department's name.
  ticketLogItems->addNew({{LogColumn::itemLogType, logType},
                          {LogColumn::quantity, pieces.isNull() ? Variant(0) : pieces},
                          {LogColumn::deptName, department.joined()},
                          {LogColumn::itemName, name.joined()},
                          {LogColumn::amount, money}});
}

bool Invoice::findLine(const Variant& number) {
  return ondrel::findLine(*lineItems, number);
}

void Invoice::deleteFilteredLines(std::string_view filter) {
  deleteLines(*lineItems, filter);
  lineItems->clearFilter();
}

// ---------------------------------------------------------------- rounding

Variant Invoice::RoundingDP(const Variant& dblNumber, const Variant& numDP) {
  return roundingDP(dblNumber.toDouble(), numDP.toLong());
}

Variant Invoice::roundTo(const Variant& x, Variant& d) {
  return ondrel::roundTo(x, d);
}

Variant Invoice::round2(Variant& x, const Variant& digits) {
  return ondrel::round2(x, digits.toLong());
}

Variant Invoice::roundDB(const Variant& x, const Variant& digits) {
  return ondrel::roundDB(x, digits.toLong());
}

}  // namespace ondrel
