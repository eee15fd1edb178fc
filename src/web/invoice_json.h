#pragma once

#include "invoice/invoice.h"

namespace ondrel {

// The invoice, or a line of it, as JSON, every value a text. jsonItem is Empty for an unknown line. Quotes,
// backslashes and line ends are escaped, other control characters go out as they are: a page that takes a tab in
// a note cleans it first.
Variant toJSON(Invoice& invoice);
Variant jsonItem(Invoice& invoice, const Variant& lineNumber);

}  // namespace ondrel
