#include <fmt/format.h>

#include "data/card_numbers.h"
#include "data/dialect/procedures/account_procedures.h"
#include "data/query_database.h"

namespace ondrel::sql {

// (store, terminal, employee, customer, type, amount, card number, approval code, transaction number, card
// type, expiration, signature): books a charge to the customer's account. The ledger keeps the last four
// digits of the card.
RecordsetRef insertPayment(ProcedureCall& call) {
  const std::string card = call.isNull(6) ? "NULL" : "'" + escapeSql(maskedCardNumber(call.text(6))) + "'";
  call.execute(fmt::format(
      "insert into Payment (paymentDate, paymentAction, storeId, terminalId, employeeId, "
      "customerSequenceNumber, paymentType, paymentAmount, checkOrCardNumber, approvalCode, "
      "transactionNumber, creditCardId, creditCardExpirydate, signatureId) values (getdate(), 'Batch', {}, {}, "
      "{}, {}, {}, {}, {}, {}, {}, {}, {}, {})",
      call.sql(0), call.sql(1), call.sql(2), call.sql(3), call.sql(4), call.sql(5), card, call.sql(7),
      call.sql(8), call.sql(9), call.sql(10), call.sql(11)));
  return nullptr;
}

}  // namespace ondrel::sql
