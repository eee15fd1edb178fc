#include "base/text.h"
#include "invoice/invoice.h"
#include "invoice/splitting/department_table.h"
#include "invoice/splitting/line_moves.h"

namespace ondrel {
namespace {

// A number as a page shows it: neither nothing nor 0.
bool isGiven(const std::string& number) {
  return !number.empty() && parseNumber(number).value_or(1) != 0;
}

}  // namespace

// The invoice and what was split off it, each by what `numberOf` answers; joined by commas.
template <class NumberOf>
std::string Invoice::joinNumbers(NumberOf numberOf) {
  std::string numbers;
  const auto add = [&](Invoice& each) {
    const std::string number = numberOf(each);
    if (!isGiven(number) || each.isInvoiceEmpty().toBoolean()) return;
    if (!numbers.empty()) numbers += ",";
    numbers += number;
  };
  add(*this);
  for (const auto& child : splitChildren(*this)) add(*child);
  return numbers;
}

Variant Invoice::getInvoiceNos() {
  return joinNumbers([](const Invoice& each) { return each.invoiceNo; });
}

// The bags of a quick drop-off have their own print.
Variant Invoice::getTicketNosForPrinting() {
  return joinNumbers([](const Invoice& each) {
    return each.isQuickInvoice() ? std::string() : std::to_string(each.ticketNo);
  });
}

Variant Invoice::getNoOfInvoices() {
  Recordset& departments = listedDepartments(*this);
  departments.clearFilter();
  if (departments.eof()) return 0;
  const Column splits = departments.column("splitInvoice");
  int alone = 0, together = 0;
  for (; !departments.eof(); departments.moveNext())
    if (departments.flag(splits))
      ++alone;
    else
      together = 1;
  return alone + together - (isAdd ? 0 : 1);
}

}  // namespace ondrel
