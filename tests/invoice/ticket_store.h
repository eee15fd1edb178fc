#pragma once

#include <memory>
#include <string>

#include "invoice/invoice.h"
#include "support/store_fixture.h"

namespace ondrel {

// Tickets of the sample store, made and saved as the counter does it.
class TicketTest : public StoreTest {
 protected:
  static std::shared_ptr<Invoice> invoiceOf(int customer) {
    const auto made = std::make_shared<Invoice>();
    made->storeNumber = 1;
    made->priceListId = 1;
    made->custSeqNumber = customer;
    made->routeNumber = -1;
    made->isAdd = true;
    made->addOrEdit = "add";
    made->setStoreDays(1);
    Variant customerSeq = customer, noTicket = "";
    made->loadCustomerPreferences(customerSeq, noTicket);
    return made;
  }
  static std::shared_ptr<Invoice> loaded(int ticket) {
    const auto made = std::make_shared<Invoice>();
    made->getExistingDetails(ticket);
    made->addOrEdit = "edit";
    made->setStoreDays(1);
    return made;
  }
  static void save(Invoice& invoice, const char* action, const char* onHold = "0") {
    invoice.saveInvoice(action, 4, 3, onHold, "Ann O'Hara", "Fernhill Cleaners", true);
  }
  std::string one(const std::string& sql) { return scalar(sql).joined(); }
};

}  // namespace ondrel
