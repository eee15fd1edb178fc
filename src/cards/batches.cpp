#include <fmt/format.h>

#include <algorithm>

#include "base/ignore_errors.h"
#include "base/text.h"
#include "cards/credit_card_processing.h"
#include "cards/request_lines.h"
#include "data/query_database.h"
#include "data/values.h"

namespace ondrel {
namespace {

// | from    | to | when                                                   |
// |---------|----|--------------------------------------------------------|
// | new     | 1  | added to the batch                                     |
// | 1, 2    | 3  | an answer is there and approves                        |
// | 1, 2    | -2 | an answer is there and refuses                         |
// | 1, 2    | 1  | no whole answer, but a file of the request             |
// | 1, 2    | 2  | no file at all                                         |
// | 3       | 0  | the batch is closed: booked                            |
// | 1, 2    | -3 | the batch is closed: request and answer deleted        |
namespace stage {
constexpr std::int32_t kBooked = 0;
constexpr std::int32_t kPending = 1;
constexpr std::int32_t kLost = 2;
constexpr std::int32_t kApproved = 3;
constexpr std::int32_t kRefused = -2;
constexpr std::int32_t kWithdrawn = -3;
}  // namespace stage

// Names under which the card program keeps a request that has no answer.
constexpr std::string_view kTaken = ".tmp";
constexpr std::string_view kOtherStates[] = {".req", ".hld", ".xch", ".ans"};

bool isPending(std::int32_t value) {
  return value > stage::kBooked && value < stage::kApproved;
}

}  // namespace

Variant CreditCardProcessing::GetNextBatchGroup() const {
  return queryDatabase(*apartment_, "select isnull(max(BatchID), 0) + 1 as NextBatchID from PaymentBatch")
      ->value("NextBatchID");
}

bool CreditCardProcessing::AddTransactionToBatch(const Variant& terminalID, const CreditCardFieldsRef& fields,
                                                 const Variant& customerSequenceNumber,
                                                 const Variant& BatchID, const Variant& clerk,
                                                 const Variant& Amount) {
  if (!fields)
    throw Error(ErrorNumber::ObjectNotSet, className(), "Object variable or With block variable not set");
  if (fields->guid.empty()) {
    fields->guid = newTransactionGuid();
    const Variant request = writeRequestFile(DefaultRequestPath(terminalID, fields), *fields, terminalID,
                                             clerk, customerSequenceNumber, "", Amount);
    if (request.isEmpty()) return false;
  }
  const std::string both = std::string(trim(fields->firstname)) + " " + std::string(trim(fields->lastname));
  executeInTransaction(
      *apartment_,
      fmt::format("insert into PaymentBatch (BatchID, CustomerSequenceNumber, EmployeeInitiated, "
                  "CustomerName, AccountNumber, ExpirationDate, TransactionAmount, TransactionGUID) values "
                  "({}, {}, {}, {}, {},{}, {}, '{}')",
                  BatchID.joined(), customerSequenceNumber.joined(), clerk.joined(),
                  sqlQuotedOrNull(trim(both)), sqlQuotedOrNull(trim(fields->accountnumber)),
                  sqlQuotedOrNull(expirationText(*fields)), Amount.joined(), escapeSql(fields->guid)));
  return true;
}

RecordsetRef CreditCardProcessing::batchRows(const Variant& batchID) const {
  return queryDatabase(*apartment_,
                       "select * from PaymentBatch where BatchID = '" + escapeSqlValue(batchID) + "'");
}

std::int32_t CreditCardProcessing::stageOf(const Variant& guid, std::int32_t stage, Variant& answer) {
  if (!isPending(stage)) return stage;
  const std::string path = getRequestFile(guid);
  if (mayHaveWholeAnswer(path)) return ReadSingleAnswer(guid, answer) ? stage::kApproved : stage::kRefused;
  if (hasFile(path, kTaken)) return stage::kPending;
  const bool isKnown = std::any_of(std::begin(kOtherStates), std::end(kOtherStates),
                                   [&](std::string_view suffix) { return hasFile(path, suffix); });
  return isKnown ? stage::kPending : stage::kLost;
}

void CreditCardProcessing::updateBatchStage(const Variant& guid, std::int32_t stage) {
  Variant answer = "";
  const std::int32_t now = stageOf(guid, stage, answer);
  if (now == stage) return;
  executeInTransaction(
      *apartment_,
      fmt::format("update PaymentBatch set  stage = {},  Answer = {}  where TransactionGUID = '{}'", now,
                  sqlQuotedOrNull(answer), escapeSqlValue(guid)));
}

void CreditCardProcessing::UpdateBatchGroup(const Variant& BatchID) {
  for (const RecordsetRef row = batchRows(BatchID); !row->eof(); row->moveNext())
    updateBatchStage(row->value("TransactionGUID"), row->integer("Stage"));
}

bool CreditCardProcessing::IsBatchOpen(const Variant& BatchID) const {
  return !queryDatabase(*apartment_, "select * from paymentbatch where stage in (1, 2, 3) and batchid = '" +
                                         escapeSqlValue(BatchID) + "'")
              ->eof();
}

bool CreditCardProcessing::IsBatchReadyToClose(const Variant& BatchID) const {
  return queryDatabase(*apartment_, "select * from paymentbatch where stage in (0, 1, 2) and batchid = '" +
                                        escapeSqlValue(BatchID) + "'")
      ->eof();
}

// What the card program has taken already stays with it.
void CreditCardProcessing::deleteBatchFiles(const Variant& guid) {
  const std::string path = getRequestFile(guid);
  for (const std::string_view suffix : {".req", ".ans"})
    if (hasFile(path, suffix)) apartment_->files.remove(path + std::string(suffix));
}

bool CreditCardProcessing::insertBatchPayment(const Recordset& row, const Variant& storeid,
                                              const Variant& terminalID, const Variant& employeeid) {
  const Variant account = row.value("AccountNumber");
  const Variant typeId = account.isNull() ? Variant() : getCreditCardTypeID(storeid, account);
  executeInTransaction(
      *apartment_,
      fmt::format(
          "execute dbo.InsertPayment {}, {}, {}, {}, 'CREDIT CARD', {}, {}, '{}', 'XXXXX', {}, {}, NULL",
          sqlString(storeid), sqlString(terminalID), sqlString(employeeid),
          sqlString(row.value("CustomerSequenceNumber")), row.value("TransactionAmount").joined(),
          sqlString(account), row.value("Answer").joined(), sqlString(typeId),
          sqlString(row.value("ExpirationDate"))));
  return true;
}

void CreditCardProcessing::CloseBatchGroup(const Variant& BatchID, const Variant& storeid,
                                           const Variant& terminalID, const Variant& employeeid) {
  for (const RecordsetRef row = batchRows(BatchID); !row->eof(); row->moveNext()) {
    const Variant guid = row->value("TransactionGUID");
    const std::int32_t stage = row->integer("Stage");
    std::int32_t now = stage;
    if (isPending(stage)) {
      deleteBatchFiles(guid);
      now = stage::kWithdrawn;
    } else if (stage == stage::kApproved && insertBatchPayment(*row, storeid, terminalID, employeeid)) {
      now = stage::kBooked;
    }
    if (now == stage) continue;
    executeInTransaction(*apartment_,
                         fmt::format("update PaymentBatch set Stage = {} where TransactionGUID = '{}'", now,
                                     escapeSqlValue(guid)));
  }
}

}  // namespace ondrel
