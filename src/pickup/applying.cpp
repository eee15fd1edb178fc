#include <fmt/format.h>

#include "base/text.h"
#include "data/query_database.h"
#include "data/values.h"
#include "pickup/pickup.h"
#include "pickup/pickup_columns.h"
#include "pickup/ticket_store_tables.h"

namespace ondrel {
namespace {

using enum PaymentColumn;

constexpr std::int32_t kNoSignature = -1;

std::int32_t signatureNumber(const Variant& signatureid) {
  return trim(signatureid.joined()).empty() ? kNoSignature : signatureid.toLong();
}

}  // namespace

// | step | prepay                                      | pickup                              | committed      |
// |------|---------------------------------------------|-------------------------------------|----------------|
// | 1    | the prepay discount, where anything is paid |                                     | ticket by      |
// |      |                                             |                                     | ticket         |
// | 2    |                                             | the claim receipt                   | by itself      |
// | 3    | the payments of the session                 | the payments of the session         | with 4         |
// | 4    | the procedure that books them; none without | the procedure that books them and   |                |
// |      | a payment                                   | releases the tickets, in any case   |                |
void Pickup::applyPayments(const Variant& employeeid, const Variant& terminalID, const Variant& ticketNos,
                           const Variant& signatureid) {
  if (userAction == "prepay") {
    if (isGreater(getAmountPaid(), 0)) {
      Variant employee = employeeid, terminal = terminalID;
      enableTicketsPrepayDiscount(employee, terminal);
    }
    payments->clearFilter();
    if (payments->recordCount() > 0)
      applyPrepayPayments(employeeid, terminalID, ticketNos.joined(), signatureNumber(signatureid));
  } else if (userAction == "pickup") {
    applyPickupPayments(employeeid, terminalID, signatureNumber(signatureid));
  }
}

// An unsaved invoice is left to its own page.
Variant Pickup::enableTicketsPrepayDiscount(Variant& employeeid, Variant& terminalID) {
  const std::vector<PickupInvoiceRef> all = tickets();
  const std::vector<Variant> keys = pickupInvoices ? pickupInvoices->keys() : std::vector<Variant>();
  for (size_t place = 0; place < all.size(); ++place) {
    if (all[place]->prepayDiscount <= 0 || all[place]->invoiceObject) continue;
    const std::shared_ptr<Invoice> invoice = newInvoice();
    invoice->storeNumber = storeid;
    invoice->getExistingDetails(keys[place]);
    const TicketStoreTables tables(*apartment_, *invoice);
    if (invoice->isPrepayEnabled().toBoolean()) continue;
    Variant enabled = true;
    invoice->applyPrepay(enabled);
    invoice->invoiceDone2();
    invoice->saveInvoice("edit", employeeid, terminalID, 0, "", "", false);
  }
  return {};
}

void Pickup::applyPrepayPayments(const Variant& employeeid, const Variant& terminalID,
                                 const std::string& ticketNos, std::int32_t signatureid) {
  openTransaction(*apartment_);
  insertTerminalPayments(terminalID.toLong(), signatureid);
  executeInTransaction(*apartment_,
                       fmt::format("ApplyPrePayPayment {},{},{},{},{}, 'Pre pay'", ticketNos, custSeqNumber,
                                   storeid, employeeid.joined(), terminalID.joined()));
  commitTransaction(*apartment_);
}

// The payments keep the signature that came in; the procedure is told of one only where the store asks for it.
void Pickup::applyPickupPayments(const Variant& employeeid, const Variant& terminalID,
                                 std::int32_t signatureid) {
  const Variant claim = saveClaimReceipt();
  const std::string numbers = constructTicketNosString();
  openTransaction(*apartment_);
  insertTerminalPayments(terminalID.toLong(), signatureid);
  executeInTransaction(
      *apartment_,
      fmt::format("PickupPayment {}, {} ,{} ,{} ,{} ,1 ,{} ,{} ,{}", numbers, custSeqNumber, storeid,
                  employeeid.joined(), terminalID.joined(), getPickUpSignature ? signatureid : kNoSignature,
                  pickupReceipt, claim.isEmpty() ? "NULL" : claim.toText()));
  commitTransaction(*apartment_);
}

// | type          | card sale marked as used | terminal's payment | gift card charged |
// |---------------|--------------------------|--------------------|-------------------|
// | "Credit Card" | yes                      | yes                |                   |
// | "Prepay"      |                          | no                 |                   |
// | "GiftCard"    |                          | yes                | yes               |
// | others        |                          | yes                |                   |
//
// The terminal's payment holds the approval code twice, and never the card transaction's number.
void Pickup::insertTerminalPayments(std::int32_t terminalID, std::int32_t signatureid) {
  for (payments->clearFilter(); !payments->eof(); payments->moveNext()) {
    const auto text = [&](PaymentColumn column) { return payments->text(column); };
    const std::string given = text(paymentType), amount = payments->value(amountPaid).toText();
    const std::string_view type = trim(given);
    if (type == "Credit Card")
      addCardAmountApplied(payments->value(transactionNo), payments->value(amountPaid));
    if (type == "Prepay") continue;
    executeInTransaction(
        *apartment_,
        fmt::format(" INSERT INTO TerminalPayment (terminalId, paymentNumber, paymentType,  "
                    "paymentAmount,checkOrCardNumber, creditCardType, creditCardExpirydate,  approvalCode, "
                    "transactionNumber, totalCashPayment, signatureID)  "
                    "VALUES({},{},'{}',{},'{}',{},'{}','{}','{}',{},{})",
                    terminalID, payments->integer(paymentNumber), given, amount, text(checkCardNo),
                    sqlQuotedOrNull(payments->value(creditCardType)), text(creditCardExpDate),
                    text(approvalCode), text(approvalCode), sqlNumber(payments->value(totalCashPayment)),
                    sqlNumber(signatureid)));
    if (given == "GiftCard")
      executeInTransaction(*apartment_,
                           fmt::format("UPDATE GIFTCARD SET giftValue = giftValue - {} , lastUsedDate = "
                                       "getDate() where giftCardId = {}",
                                       amount, text(checkCardNo)));
  }
}

void Pickup::addCardAmountApplied(const Variant& transactionNo, const Variant& amount) {
  executeInTransaction(
      *apartment_, fmt::format(" update cardpayment set amountapplied =  isnull(amountapplied, 0) + {} where "
                               "transactionid = '{}'",
                               amount.toText(), replaceAll(transactionNo.joined(), "'", "''")));
}

Variant Pickup::saveClaimReceipt() {
  if (!claimReceipt || claimReceipt->name.empty()) return {};
  const ClaimReceiptFields& claim = *claimReceipt;
  const std::string statement = fmt::format(
      " insert into claimReceipt  (name, relationship, identificationType, identification, phoneNumber, "
      "note)  values  (   '{}', {}, {}, {}, {}, {} ) ",
      escapeSql(claim.name), sqlString(claim.relationship), sqlString(claim.identificationType),
      sqlString(claim.identification), sqlString(claim.phoneNumber), sqlString(claim.note));
  openTransaction(*apartment_);
  queryInTransaction(*apartment_, statement);
  const Variant number = queryInTransaction(*apartment_, " select @@identity as newID ")->value("newID");
  commitTransaction(*apartment_);
  return number;
}

}  // namespace ondrel
