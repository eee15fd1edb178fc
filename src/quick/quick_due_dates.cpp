#include <fmt/format.h>

#include "data/store_loading.h"
#include "invoice/calendar/ticket_dates.h"
#include "quick/quick_invoice.h"

namespace ondrel {
namespace {

constexpr DateColumns kDates{QuickColumn::daysToProcess, QuickColumn::dueDate};

}  // namespace

Date QuickInvoice::dueDateForDays(std::int32_t days) {
  return ondrel::dueDateForDays(*apartment_, createdDate, days);
}

void QuickInvoice::setStoreDays(const Variant& storeid) {
  storeNumber = storeid.toLong();
  loadStoreDays(*apartment_, storeid, createdDate);
  loadDepartments(*apartment_, storeNumber, priceListId);
  if (isNewQuickInvoice_) InvDueDate = dueDateForDays(apartment_->store.defaultProcessingDays);
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
  const std::int32_t days = daysUntilDate(*apartment_, createdDate, datedue.toDate());
  const Date reached = dueDateForDays(days);
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
  moveToDeliveryDay(*apartment_, *lineItems, kDates, createdDate, *delivery);
  recalculateInvDueDate();
}

}  // namespace ondrel
