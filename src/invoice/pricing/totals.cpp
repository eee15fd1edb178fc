#include "data/values.h"
#include "invoice/invoice.h"

namespace ondrel {
namespace {

// The lines that a total adds and those that it takes off.
struct TotalFilters {
  std::string added, takenOff;

  explicit TotalFilters(int Signs::*total)
      : added(filterOf([=](const LineKind& kind) { return kind.signs.*total > 0; })),
        takenOff(filterOf([=](const LineKind& kind) { return kind.signs.*total < 0; })) {}
};

const TotalFilters kSubtotal(&Signs::subtotal), kShown(&Signs::shown), kBeforeTax(&Signs::beforeTax),
    kToPay(&Signs::toPay), kDiscount(&Signs::discount);

double exactAmountOf(const Recordset& line) {
  return line.number(col::lineItemTotal);
}

double centsOf(const Recordset& line) {
  return round2(line.number(col::lineItemTotal), 2);
}

double roundedNotBelowZero(double amount) {
  return amount < 0 ? 0 : round2(amount, 2);
}

double difference(Lines& lines, const TotalFilters& total, double (*amountOf)(const Recordset&)) {
  const double added = lines.sum(total.added, amountOf);
  return roundedNotBelowZero(added - lines.sum(total.takenOff, amountOf));
}

}  // namespace

Variant Invoice::liColTotal(const Variant& column, const Variant& filter) {
  const Column summed = lineItems->column(column.toText());
  Variant total = 0;
  lineItems->setFilter(filter);  // as the page gives it
  for (; !lineItems->eof(); lineItems->moveNext())
    if (!lineItems->isNull(summed)) total = total + lineItems->value(summed);
  lineItems->clearFilter();
  return total;
}

// | figure                     | added                      | taken off      | rounded          |
// |----------------------------|----------------------------|----------------|------------------|
// | to pay                     | goods, taxes, surcharges   | CU, PR, VI, RE | each line        |
// | to pay before both         | goods                      | CU, PR, VI, RE | each line        |
// | for display                | goods                      | CU, LY         | the sum          |
// | subtotal                   | goods                      |                | the sum          |
// | discount                   | PR, VI, RE                 |                | no               |
//
// A loyalty discount lowers what is shown and what is taxed, but not what is to pay. None of the first three
// falls below 0.

double Invoice::getInvoiceAmountToPay() {
  return difference(lines_, kToPay, centsOf);
}

double Invoice::getInvoiceAmountToPayBeforeTaxSurcharge() {
  return difference(lines_, kBeforeTax, centsOf);
}

Variant Invoice::getTotalPriceForDisplay() {
  return difference(lines_, kShown, exactAmountOf);
}

Variant Invoice::getInvoiceSubTotal() {
  return ondrel::round2(lines_.sum(kSubtotal.added, exactAmountOf), 2);
}

Variant Invoice::getTotalDiscount() {
  return lines_.sum(kDiscount.added, exactAmountOf);
}

Variant Invoice::getAmountPaid() {
  return amountPaid;
}

}  // namespace ondrel
