#include "web/line_readers.h"

#include <fmt/format.h>

#include <array>

#include "data/values.h"
#include "invoice/line_access.h"
#include "invoice/splitting/child_tickets.h"
#include "web/line_views.h"

namespace ondrel {

Variant lineItemExists(Invoice& invoice, const Variant& itemType, const Variant& lineItemID) {
  invoice.lineItems->setFilter(fmt::format("itemType='{}' and lineItemID={}",
                                           escapeSqlValue(itemType.joined()), sqlNumber(lineItemID)));
  const bool found = !invoice.lineItems->eof();
  invoice.lineItems->clearFilter();
  return found;
}

Variant getLineItemQuantity(Invoice& invoice, const Variant& lineNumber) {
  const Variant found =
      findLine(*invoice.lineItems, lineNumber) ? invoice.lineItems->value(col::quantity) : Variant(0);
  invoice.lineItems->clearFilter();
  return found;
}

Variant getDepartmentID(Invoice& invoice) {
  invoice.lineItems->clearFilter();
  return invoice.lineItems->eof() ? Variant() : invoice.lineItems->value(col::deptId);
}

void debugLineItems(Invoice& invoice) {
  static constexpr std::array kLooked = {
      col::redo,          col::lineItemId,    col::lineNumber, col::originalLineNumber,
      col::lineItemTotal, col::taxableAmt,    col::deptName,   col::quantity,
      col::itemName,      col::daysToProcess, col::dueDate,    col::deptId};
  for (const RecordsetRef lines = invoice.lineItems->clone(); !lines->eof(); lines->moveNext())
    for (const LineColumn column : kLooked) static_cast<void>(lines->value(column));
  for (const auto& child : childTickets<Invoice>(invoice.invoicesDictionary, invoice.className()))
    debugLineItems(*child);
}

}  // namespace ondrel
