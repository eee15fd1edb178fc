#pragma once

#include <array>
#include <string>

#include "data/apartment.h"
#include "data/store_loading.h"
#include "invoice/invoice.h"

namespace ondrel {

// The store's tables for the work on a ticket of another moment. Hours and cut-off are the ticket's own for that long:
// those of the ticket before would make it a rush, or not. They are given back at the end, so that a ticket that is
// being written beside it is promised as before; holidays and departments stay loaded.
class TicketStoreTables {
 public:
  TicketStoreTables(Apartment& apartment, const Invoice& invoice)
      : store_(apartment.store),
        defaultProcessingDays_(store_.defaultProcessingDays),
        cutoffExtraDays_(store_.calendar.cutoffExtraDays),
        dayOpen_(store_.calendar.dayOpen),
        defaultPickupTimes_(store_.defaultPickupTimes) {
    loadStoreDays(apartment, invoice.storeNumber, invoice.createdDate);
    loadDepartments(apartment, invoice.storeNumber, invoice.priceListId);
  }
  ~TicketStoreTables() {
    store_.defaultProcessingDays = defaultProcessingDays_;
    store_.calendar.cutoffExtraDays = cutoffExtraDays_;
    store_.calendar.dayOpen = dayOpen_;
    store_.defaultPickupTimes = std::move(defaultPickupTimes_);
  }
  TicketStoreTables(const TicketStoreTables&) = delete;
  TicketStoreTables& operator=(const TicketStoreTables&) = delete;

 private:
  StoreTables& store_;
  std::int32_t defaultProcessingDays_, cutoffExtraDays_;
  std::array<bool, 8> dayOpen_;
  std::array<std::string, 8> defaultPickupTimes_;
};

}  // namespace ondrel
