#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "data/apartment.h"
#include "invoice/invoice.h"

namespace ondrel {

// A ticket in a pickup session and what it costs.
class PickupInvoice : public Object {
 public:
  PickupInvoice() : apartment_(Apartment::current()) {}
  std::string_view className() const override { return "pickupInvoice"; }

  std::int32_t ticketNumber = 0;  // 0 for an invoice that is not saved yet
  std::string InvoiceNumber;
  double amountPaid = 0;
  double invoiceTotal = 0;  // before the prepay discount
  double netTotal = 0;      // held for the page
  double prepayDiscount = 0;
  std::shared_ptr<Invoice> invoiceObject;  // of an invoice that is not saved yet

  const std::string& DBConnectionString() const { return apartment_->DBConnectionString; }
  void setDBConnectionString(const std::string& value) { apartment_->DBConnectionString = value; }

 private:
  ApartmentRef apartment_;
};

using PickupInvoiceRef = std::shared_ptr<PickupInvoice>;

}  // namespace ondrel
