#include "invoice/pricing/taxable_amounts.h"

#include <fmt/format.h>

#include "data/values.h"

namespace ondrel {

void reduceTaxable(Recordset& line, double amount) {
  line.setValue(col::taxableAmt, round2(line.number(col::taxableAmt) - amount, 2));
}

void reduceChildTaxable(Lines& lines, const Variant& parentLineNumber, double share, double linePrice) {
  if (linePrice <= 0) return;
  lines.each(fmt::format("parentLineNumber={}", parentLineNumber.toLong()), [&](Recordset& child) {
    reduceTaxable(child, share * (child.number(col::lineItemTotal) / linePrice));
  });
}

}  // namespace ondrel
