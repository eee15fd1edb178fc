#include "data/values.h"
#include "invoice/invoice.h"

namespace ondrel {
namespace {

using enum LineColumn;

constexpr std::string_view kGoods =
    "itemType='IT' OR itemType='UP' OR itemType='CO' OR itemType='PA' OR itemType='AC'";
constexpr std::string_view kGoodsTaxSurcharge =
    "itemType='IT' OR itemType='UP' OR itemType='CO' OR itemType='PA' OR itemType='AC' OR itemType='TA' OR "
    "itemType='SU'";
constexpr std::string_view kDiscountsToPay =
    "itemType='CU' OR itemType='PR' OR itemType='VI' OR itemType='RE'";
constexpr std::string_view kDiscountsShown = "itemType='CU' OR itemType='LY'";
constexpr std::string_view kDiscountsWorkedOut = "itemType='PR' OR itemType='VI' OR itemType='RE'";

double amountOf(const Recordset& line) {
  return line.number(lineItemTotal);
}

double centsOf(const Recordset& line) {
  return ondrel::round2(line.number(lineItemTotal), 2);
}

double roundedNotBelowZero(double amount) {
  return amount < 0 ? 0 : ondrel::round2(amount, 2);
}

}  // namespace

Variant Invoice::liColTotal(const Variant& col, const Variant& filter) {
  const Column column = lineItems->column(col.toText());
  Variant total = 0;
  lineItems->setFilter(filter);
  for (; !lineItems->eof(); lineItems->moveNext())
    if (!lineItems->isNull(column)) total = total + lineItems->value(column);
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
  return roundedNotBelowZero(sumLines(kGoodsTaxSurcharge, centsOf) - sumLines(kDiscountsToPay, centsOf));
}

double Invoice::getInvoiceAmountToPayBeforeTaxSurcharge() {
  return roundedNotBelowZero(sumLines(kGoods, centsOf) - sumLines(kDiscountsToPay, centsOf));
}

Variant Invoice::getTotalPriceForDisplay() {
  return roundedNotBelowZero(sumLines(kGoods, amountOf) - sumLines(kDiscountsShown, amountOf));
}

Variant Invoice::getInvoiceSubTotal() {
  return ondrel::round2(sumLines(kGoods, amountOf), 2);
}

Variant Invoice::getTotalDiscount() {
  return sumLines(kDiscountsWorkedOut, amountOf);
}

Variant Invoice::getAmountPaid() {
  return amountPaid;
}

}  // namespace ondrel
