#include "invoice/invoice.h"

#include <fmt/format.h>

#include "data/query_database.h"
#include "data/values.h"
#include "invoice/line_access.h"

namespace ondrel {
namespace {

const std::string kTicketLines = filterOf(&LineKind::fillsTicket);

}  // namespace

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
    excludeTaxes = excludeSurcharges = invoiceOnDelivery = state_.prepayEnabled = false;
    createdDate = apartment_->clock->now();
    tagsSameAsInvNos = true;
    counterSaleOnly = false;
    invoiceType = "D";
    state_.pendingDeptDays = std::make_shared<Dictionary>();
  }
  state_.newHeatSeals = std::make_shared<Dictionary>();
  transactionchangeDue = 0;
  splitTheInvoice = false;
  state_.isDateByHand = false;
  recalculatePrepay();
}

void Invoice::LoadDefaults() {
  state_.itemSortMethod = getMiscSetupValue("ItemSortMethod");
}

void Invoice::clearInvoice() {
  hasCleared = true;
  if (lineItems->recordCount() > 0) lineItems->moveFirst();
  for (; !lineItems->eof(); lineItems->moveNext())
    lines_.log("D", *lineItems, lineItems->value(col::quantity), -1 * lineItems->number(col::lineItemTotal));
  lineItems = nullptr;
  state_.offers = nullptr;
  initInvoice();
}

Variant Invoice::getFirstDeptId() {
  const LineSet line = lines_.where(kTicketLines);
  return line && !line->isNull(col::deptId) ? line->integer(col::deptId) : 0;
}

bool Invoice::isQuickInvoice() const {
  return invoiceType == "Q";
}

Variant Invoice::getMiscSetupValue(std::string_view column) {
  const RecordsetRef rows = queryDatabase(
      *apartment_, fmt::format("select {} from miscsetup where storeid = '{}'", column, storeNumber));
  return rows->eof() ? Variant() : rows->value(column);
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
