#include "invoice/pricing/referral.h"

#include <fmt/format.h>

#include "data/query_database.h"
#include "data/values.h"
#include "invoice/pricing/price_list_settings.h"
#include "invoice/pricing/qualifying_totals.h"

namespace ondrel {
namespace {

// The money of the whole steps that the ticket crosses: the remainder of the last step counts along.
double creditFor(double usable, double toDate, double step) {
  if (step <= 0) return 0;
  // Added up in this order: taking the steps off first loses cents, and with them whole credits.
  return wholeAmount((usable + toDate - wholeAmount(toDate / step) * step) / step) * step;
}

void insertReferralCharge(const Invoice& invoice, const Variant& referredBy, double amount,
                          const std::string& description) {
  executeInTransaction(
      *invoice.apartment(),
      "update customer set temporaryaccount = (case permanentaccount when 1 then 0 else 1 end)");
  executeInTransaction(
      *invoice.apartment(),
      fmt::format("execute InsertMiscCharge '{}' ,'{}' ,'{}' ,'C' ,{} ,'{}' ,'{}' ,'C' ,'{}',1",
                  invoice.storeNumber, invoice.createdByEmployeeId, escapeSqlValue(referredBy),
                  roundDB(amount, 2).toText(), invoice.createdDate.text(), escapeSqlValue(description),
                  invoice.terminalID));
}

// The credit stops at the limit, what is built up goes on beyond it.
void buildUpReferral(Invoice& invoice, const Recordset& referral) {
  const double earned = priceListSetting(invoice, "referralDiscountAmount").toDouble() / 100 *
                        discountableTotals(invoice.lines(), col::discountable).amount;
  const double limit = priceListSetting(invoice, "referralLimit").toDouble();
  const Variant toDate = referral.value("amountToDate");
  if (isLess(toDate, limit)) {
    const double before = toDate.toDouble();
    const double usable = before + earned > limit ? limit - before : earned;
    const double credit =
        creditFor(usable, before, priceListSetting(invoice, "referralIncrement").toDouble());
    if (credit > 0)
      insertReferralCharge(invoice, referral.value("referredby"), credit,
                           "Referral Credit From " + referral.value("customername").joined());
  }
  executeInTransaction(*invoice.apartment(),
                       fmt::format(" update customerreferral set amountToDate = amountToDate + {} where "
                                   "customerreferral.customersequencenumber = '{}'",
                                   roundDB(earned, 2).toText(), invoice.custSeqNumber));
}

}  // namespace

void applyReferralCredit(Invoice& invoice) {
  loadPriceListSettings(invoice);
  for (const auto column :
       {"referralValidNbrOfDays", "referralIncrement", "referralLimit", "referralDiscountAmount"})
    if (priceListSetting(invoice, column).isNull()) return;
  if (!invoice.referralQualified) return;

  openTransaction(*invoice.apartment());
  const RecordsetRef referral = queryInTransaction(
      *invoice.apartment(),
      fmt::format(" select customerreferral.referredby, customer.customername, customerreferral.amountToDate "
                  "from customerreferral inner join customer on  customerreferral.customersequencenumber = "
                  "customer.customersequencenumber  where customerreferral.customersequencenumber = {} and "
                  "datediff(day, customer.createdDate, '{}') <= {}",
                  invoice.custSeqNumber, invoice.createdDate.text(),
                  priceListSetting(invoice, "referralValidNbrOfDays").toText()));
  if (!referral->eof()) buildUpReferral(invoice, *referral);
  commitTransaction(*invoice.apartment());
}

}  // namespace ondrel
