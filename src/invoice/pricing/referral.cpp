#include <fmt/format.h>

#include "data/query_database.h"
#include "data/values.h"
#include "invoice/invoice.h"

namespace ondrel {
namespace {

// The money of the whole steps that the ticket crosses: the remainder of the last step counts along.
double creditFor(double usable, double toDate, double step) {
  if (step <= 0) return 0;
  // Added up in this order: taking the steps off first loses cents, and with them whole credits.
  return wholeAmount((usable + toDate - wholeAmount(toDate / step) * step) / step) * step;
}

}  // namespace

// When a newly referred customer's ticket is saved. Reads and writes stand in one transaction.
void Invoice::applyReferralCredit() {
  loadPriceListSettings();
  for (const auto column :
       {"referralValidNbrOfDays", "referralIncrement", "referralLimit", "referralDiscountAmount"})
    if (priceListSetting(column).isNull()) return;
  if (!referralQualified) return;

  openTransaction(*apartment_);
  const RecordsetRef referral = queryInTransaction(
      *apartment_,
      fmt::format(" select customerreferral.referredby, customer.customername, customerreferral.amountToDate "
                  "from customerreferral inner join customer on  customerreferral.customersequencenumber = "
                  "customer.customersequencenumber  where customerreferral.customersequencenumber = {} and "
                  "datediff(day, customer.createdDate, '{}') <= {}",
                  custSeqNumber, createdDate.text(), priceListSetting("referralValidNbrOfDays").toText()));
  if (!referral->eof()) buildUpReferral(*referral);
  commitTransaction(*apartment_);
}

// The credit stops at the limit, what is built up goes on beyond it.
void Invoice::buildUpReferral(const Recordset& referral) {
  const double earned =
      priceListSetting("referralDiscountAmount").toDouble() / 100 * getDiscountableTotals(false).total;
  const double limit = priceListSetting("referralLimit").toDouble();
  const Variant toDate = referral.value("amountToDate");
  if (isLess(toDate, limit)) {
    const double before = toDate.toDouble();
    const double usable = before + earned > limit ? limit - before : earned;
    const double credit = creditFor(usable, before, priceListSetting("referralIncrement").toDouble());
    if (credit > 0)
      insertReferralCharge(referral.value("referredby"), credit,
                           "Referral Credit From " + referral.value("customername").joined());
  }
  executeInTransaction(*apartment_,
                       fmt::format(" update customerreferral set amountToDate = amountToDate + {} where "
                                   "customerreferral.customersequencenumber = '{}'",
                                   ondrel::roundDB(earned, 2).toText(), custSeqNumber));
}

void Invoice::insertReferralCharge(const Variant& referredBy, double amount, const std::string& description) {
  executeInTransaction(
      *apartment_, "update customer set temporaryaccount = (case permanentaccount when 1 then 0 else 1 end)");
  executeInTransaction(
      *apartment_,
      fmt::format("execute InsertMiscCharge '{}' ,'{}' ,'{}' ,'C' ,{} ,'{}' ,'{}' ,'C' ,'{}',1", storeNumber,
                  createdByEmployeeId, escapeSqlValue(referredBy), ondrel::roundDB(amount, 2).toText(),
                  createdDate.text(), escapeSqlValue(description), terminalID));
}

}  // namespace ondrel
