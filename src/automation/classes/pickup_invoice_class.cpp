#include "automation/classes/class_tables.h"
#include "pickup/pickup_invoice.h"

namespace ondrel {

const ClassTable& pickupInvoiceClass() {
  // clang-format off
  static const ClassTable table("pickupInvoice", {
      property("ticketNumber", &PickupInvoice::ticketNumber),
      property("InvoiceNumber", &PickupInvoice::InvoiceNumber),
      property("amountPaid", &PickupInvoice::amountPaid),
      property("invoiceTotal", &PickupInvoice::invoiceTotal),
      property("netTotal", &PickupInvoice::netTotal),
      property("prepayDiscount", &PickupInvoice::prepayDiscount),
      property("invoiceObject", &PickupInvoice::invoiceObject),
      property("DBConnectionString", &PickupInvoice::DBConnectionString, &PickupInvoice::setDBConnectionString),
  });
  // clang-format on
  return table;
}

}  // namespace ondrel
