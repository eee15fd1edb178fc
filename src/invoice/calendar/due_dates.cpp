#include "invoice/calendar/due_dates.h"

#include "data/store_loading.h"
#include "data/values.h"
#include "invoice/pricing/price_list_settings.h"

namespace ondrel {

TicketCalendar calendarOf(const Invoice& invoice) {
  return {invoice.apartment()->store, invoice.createdDate};
}

void Invoice::setStoreDays(const Variant& storeid) {
  storeNumber = storeid.toLong();
  loadStoreDays(*apartment_, storeid, createdDate);
  loadDepartments(*apartment_, storeNumber, priceListId);
  loadPriceListSettings(*this);
  // A first promise only.
  if (isAdd && !counterSaleOnly) InvDueDate = calendarOf(*this).usualDate();
}

void Invoice::setInvoiceDueDate(const Variant& NewValue) {
  const Date due = NewValue.toDate();
  if (daysBetween(InvDueDate, due) == 0) return;
  InvDueDate = due;
  state_.isDateByHand = true;
}

void Invoice::calculateInvDueDate() {
  lines_.leavesAll();
  InvDueDate = latestDueDate(*lineItems, col::dueDate, createdDate);  // on the page's view, which ends there
}

}  // namespace ondrel
