#pragma once

#include "data/dialect/procedures/procedure.h"

namespace ondrel::sql {

// Book what was tendered at a terminal on tickets; see payment_sharing.h for how it is shared out.
//
// | procedure          | arguments                                          | tickets go out            |
// |--------------------|----------------------------------------------------|---------------------------|
// | pickupPayment      | tickets, customer, store, employee, terminal, 1,   | all, paid or not, also    |
// |                    | signature (-1 none), pickup receipt, claim receipt | without any payment       |
// | applyPrePayPayment | tickets, customer, store, employee, terminal,      | all when the reason is    |
// |                    | reason: 'Pre pay' or 'Pickup'                      | 'Pickup'                  |
//
// Tickets are a number, or a text of numbers joined by commas, each bare or in quotes. A number that is no
// ticket, money without a ticket and a negative payment are errors.
RecordsetRef pickupPayment(ProcedureCall& call);
RecordsetRef applyPrePayPayment(ProcedureCall& call);

}  // namespace ondrel::sql
