#include <fmt/format.h>

#include "data/store_loading.h"
#include "invoice/calendar/ticket_dates.h"
#include "quick/quick_invoice.h"

namespace ondrel {
namespace {

constexpr DateColumns kDates{QuickColumn::daysToProcess, QuickColumn::dueDate};

}  // namespace

TicketCalendar QuickInvoice::calendar() const {
  return {apartment_->store, createdDate};
}

void QuickInvoice::setStoreDays(const Variant& storeid) {
  storeNumber = storeid.toLong();
  loadStoreDays(*apartment_, storeid, createdDate);
  loadDepartments(*apartment_, storeNumber, priceListId);
  if (isNewQuickInvoice_) InvDueDate = calendar().dateAfter(apartment_->store.defaultProcessingDays);
}

void QuickInvoice::calculateInvDueDate() {
  recalculateInvDueDate();
}

void QuickInvoice::recalculateInvDueDate() {
  lineItems->clearFilter();
  InvDueDate = latestDueDate(*lineItems, kDates.dueDate, createdDate);
}

// Unlike an invoice, a drop-off promises the working day that the walk reaches and not the date as chosen.
Date QuickInvoice::promise(std::string_view filter, const Variant& datedue) {
  const std::int32_t days = calendar().daysUntil(datedue.toDate());
  const Date reached = calendar().dateAfter(days);
  setLineDates(*lineItems, filter, kDates, reached, days);
  return reached;
}

void QuickInvoice::setInvoiceDueDate(const Variant& datedue) {
  const Date reached = promise("", datedue);
  if (daysBetween(InvDueDate, reached) != 0) {
    InvDueDate = reached;
    dueDateOverridden_ = true;
  }
  recalculateInvDueDate();
}

void QuickInvoice::setAllDepartmentDueDates(const Variant& datedue) {
  promise("", datedue);
  recalculateInvDueDate();
}

void QuickInvoice::setDeptDueDate(const Variant& dept, const Variant& datedue) {
  promise("deptName='" + dept.joined() + "'", datedue);
  recalculateInvDueDate();
}

void QuickInvoice::adjustDueDatesForRoute(const Variant& CustomerSeq) {
  const auto delivery = nextDeliveryDay(*apartment_, storeNumber, CustomerSeq, createdDate);
  if (!delivery) return;
  moveToDeliveryDay(calendar(), *lineItems, kDates, *delivery);
  recalculateInvDueDate();
}

}  // namespace ondrel
