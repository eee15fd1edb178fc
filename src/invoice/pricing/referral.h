#pragma once

#include "invoice/invoice.h"

namespace ondrel {

// Credits the customer who referred this one, when a newly referred customer's ticket is saved. Reads and writes
// stand in one transaction.
void applyReferralCredit(Invoice& invoice);

}  // namespace ondrel
