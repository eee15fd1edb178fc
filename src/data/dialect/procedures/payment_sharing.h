#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "data/dialect/procedures/procedure.h"

namespace ondrel::sql {

// What the ledger says of every part that is booked; all but the action as SQL text.
struct BookingDetails {
  std::string action;
  std::string customer, store, employee, terminal;
  std::string claimReceipt = "NULL";
};

// A ticket of a call and its money, in units of 0.0001, the store's smallest.
struct SharedTicket {
  std::int32_t number = 0;
  std::int64_t paid = 0;
  std::int64_t balance = 0;  // still open, 0 at least
  std::int64_t booked = 0;   // of what is paid, with this call
  bool isOut = false;
};

// The tickets of a list, each once, in its order.
std::vector<SharedTicket> readTickets(ProcedureCall& call, std::string_view list);

// Shares out the payments of the terminal in the order in which they were tendered, each over the tickets in
// their order up to what is still open on them; every part is a row of the ledger. What is left over is
// booked nowhere: of cash and checks it went back over the counter as change, but a card or a gift card has been
// charged in full by then (cardpayment.amountapplied, GIFTCARD.giftValue) and its excess is in no row of the
// ledger. The terminal is empty afterwards.
void bookTerminalPayments(ProcedureCall& call, std::vector<SharedTicket>& tickets,
                          const BookingDetails& details);

// Hands out the tickets that are not out yet. `signature` and `receipt` are SQL text.
void releaseTickets(ProcedureCall& call, const std::vector<SharedTicket>& tickets,
                    const BookingDetails& details, const std::string& signature, const std::string& receipt);

}  // namespace ondrel::sql
