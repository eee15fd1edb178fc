#include "base/text.h"
#include "data/dialect/procedures/payment_procedures.h"
#include "data/dialect/procedures/payment_sharing.h"

namespace ondrel::sql {

// (tickets, customer, store, employee, terminal, reason)
RecordsetRef applyPrePayPayment(ProcedureCall& call) {
  std::vector<SharedTicket> tickets = readTickets(call, call.text(0));
  const BookingDetails details{call.text(5), call.sql(1), call.sql(2), call.sql(3), call.sql(4)};
  bookTerminalPayments(call, tickets, details);
  if (equalsIgnoringCase(details.action, "Pickup")) releaseTickets(call, tickets, details, "NULL", "NULL");
  return nullptr;
}

}  // namespace ondrel::sql
