#include "invoice/invoice.h"

namespace ondrel {

Variant Invoice::liColTotal(const Variant& col, const Variant& filter) {
  const Column column = lineItems->column(col.toText());
  Variant total = 0;
  lineItems->setFilter(filter);
  for (; !lineItems->eof(); lineItems->moveNext())
    if (!lineItems->isNull(column)) total = total + lineItems->value(column);
  lineItems->clearFilter();
  return total;
}

}  // namespace ondrel
