#include <fmt/format.h>

#include "cards/credit_card_processing.h"
#include "data/card_numbers.h"
#include "data/query_database.h"

namespace ondrel {

Variant CreditCardProcessing::AddCardOnFile(const Variant& CustomerSeq, const Variant& CardNumber,
                                            const Variant& ExpDate) {
  const CardCheck check = checkCardNumber(CardNumber.toText());
  if (!check.isValid) return Variant();
  updateCustomerCard(CustomerSeq, check.brand, CardNumber, ExpDate);
  insertXcAccount(CustomerSeq, CardNumber, check.brand, CardNumber, ExpDate);
  return CardNumber;
}

void CreditCardProcessing::UpdateCardOnFile(const Variant& AccountID, const Variant& ExpDate) {
  updateXcAccount(AccountID, ExpDate);
  executeInTransaction(
      *apartment_,
      fmt::format(" update customer set  creditCardExpDate = '{}'  where creditCardNumber = '{}'",
                  escapeSqlValue(ExpDate), escapeSqlValue(AccountID)));
}

void CreditCardProcessing::DeleteCardOnFile(const Variant& AccountID) {
  deleteXcAccount(AccountID);
  executeInTransaction(
      *apartment_, fmt::format(" update customer set   creditCardTypeName = '', creditCardNumber = null, "
                               "creditCardExpDate = null, creditCardInXc = 0  where creditCardNumber = '{}'",
                               escapeSqlValue(AccountID)));
}

void CreditCardProcessing::updateCustomerCard(const Variant& customerSeq, const Variant& type,
                                              const Variant& number, const Variant& expDate) {
  executeInTransaction(
      *apartment_,
      fmt::format(" update customer set   creditCardTypeName = '{}', creditCardNumber = '{}', "
                  "creditCardExpDate = '{}', creditCardInXc = 0  where customersequencenumber = {}",
                  escapeSqlValue(type), escapeSqlValue(number), escapeSqlValue(expDate),
                  customerSeq.joined()));
}

void CreditCardProcessing::insertXcAccount(const Variant& customerSeq, const Variant& accountId,
                                           const Variant& type, const Variant& number,
                                           const Variant& expDate) {
  executeInTransaction(
      *apartment_,
      fmt::format(" insert into xcaccount (xcaccountid, customersequencenumber, recurring, cardtype, "
                  "accountnumber, expiration)  values (  '{}', {}, 1 , '{}', '{}', '{}')",
                  escapeSqlValue(accountId), customerSeq.joined(), escapeSqlValue(type),
                  escapeSqlValue(number), escapeSqlValue(expDate)));
}

void CreditCardProcessing::updateXcAccount(const Variant& accountId, const Variant& expDate) {
  executeInTransaction(*apartment_,
                       fmt::format(" update xcaccount set expiration = '{}' where xcaccountid = '{}'",
                                   escapeSqlValue(expDate), escapeSqlValue(accountId)));
}

void CreditCardProcessing::deleteXcAccount(const Variant& accountId) {
  executeInTransaction(*apartment_,
                       fmt::format(" delete xcaccount where xcaccountid = '{}'", escapeSqlValue(accountId)));
}

}  // namespace ondrel
