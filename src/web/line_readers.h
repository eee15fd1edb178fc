#pragma once

#include "invoice/invoice.h"

namespace ondrel {

// What pages ask of the lines beside their panels.

// Whether a line of the type stands for the id.
Variant lineItemExists(Invoice& invoice, const Variant& itemType, const Variant& lineItemID);
// Pieces of a line, 0 for an unknown one.
Variant getLineItemQuantity(Invoice& invoice, const Variant& lineNumber);
// Department of the first line, Empty without lines.
Variant getDepartmentID(Invoice& invoice);
// Reads all lines, those of the children too, for a developer who watches.
void debugLineItems(Invoice& invoice);

}  // namespace ondrel
