#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "invoice/invoice.h"

namespace ondrel {

// The invoices of invoicesDictionary, in order. Error 424 for an entry that is none.
std::vector<std::shared_ptr<Invoice>> splitChildren(const Invoice& invoice);

// Garments of several pieces become as many lines of one, until collectLineItems. Leaves the lines sorted by
// quantity. Error 6 for a line of too many pieces, before any is divided.
void flattenLines(Invoice& invoice);

// Adds a copy of the line, of at most 32000 pieces.
void copyLine(Recordset& target, const Recordset& line);
// The line goes to the child; `attached` takes the filter term of what hangs on it, whatever the department of
// that is called.
void moveLine(Recordset& line, Invoice& child, std::string& attached);
// What passes the filter goes to the child, and what hangs on that in turn; its amount.
double moveAttachedLines(Lines& lines, Invoice& child, std::string filter);
// The child's next line number is at least this.
void raiseLineNumber(Invoice& child, std::int32_t number);

// The lines of the children come back, and there are no children any more.
void mergeSplitInvoices(Invoice& invoice);

}  // namespace ondrel
