#include "data/dialect/procedures/payment_procedures.h"
#include "data/dialect/procedures/payment_sharing.h"

namespace ondrel::sql {

// (tickets, customer, store, employee, terminal, always 1, signature, pickup receipt, claim receipt)
RecordsetRef pickupPayment(ProcedureCall& call) {
  std::vector<SharedTicket> tickets = readTickets(call, call.text(0));
  const BookingDetails details{"Pickup", call.sql(1), call.sql(2), call.sql(3), call.sql(4), call.sql(8)};
  bookTerminalPayments(call, tickets, details);
  releaseTickets(call, tickets, details, call.sql(6), call.sql(7));
  return nullptr;
}

}  // namespace ondrel::sql
