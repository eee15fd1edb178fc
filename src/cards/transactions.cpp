#include <fmt/format.h>

#include "base/ignore_errors.h"
#include "base/text.h"
#include "cards/credit_card_processing.h"
#include "cards/exchange_files.h"
#include "cards/request_lines.h"
#include "data/card_numbers.h"
#include "data/query_database.h"
#include "data/values.h"
#include "platform/delimited_text.h"
#include "platform/guid.h"

namespace ondrel {
namespace {

constexpr std::string_view kRequest = ".req";
constexpr std::string_view kAnswer = ".ans";
constexpr std::string_view kLineEnd = "\r\n";
constexpr std::string_view kTimedOut = "TIMED OUT WAITING FOR ANSWER";
constexpr std::string_view kNotWritten = "COULD NOT WRITE REQUEST FILE";

const CreditCardFieldsRef& given(const CreditCardFieldsRef& fields) {
  if (!fields)
    throw Error(ErrorNumber::ObjectNotSet, "creditCardProcessing",
                "Object variable or With block variable not set");
  return fields;
}

bool isApproval(std::string_view answer) {
  return answer.starts_with('Y');
}

bool isWholeAnswer(std::string_view text) {
  DelimitedText values(text);
  values.next();
  return values.wasEnded();
}

bool lacksClosingQuote(std::string_view text) {
  const size_t start = text.find_first_not_of(" \t");
  return start == std::string_view::npos || (text[start] == '"' && !isWholeAnswer(text));
}

// What the store asks for and the procedure's word for it.
constexpr std::string_view bookedAs(bool isPickup) {
  return isPickup ? "Pickup" : "Pre pay";
}

}  // namespace

// ---------------------------------------------------------------- requests

std::string CreditCardProcessing::newTransactionGuid() const {
  return newGuid();
}

Variant CreditCardProcessing::getCreditCardRequestFilename(const Variant& terminalID) const {
  const RecordsetRef terminal = queryDatabase(
      *apartment_,
      fmt::format(
          " select isnull(creditCardRequestFilename, '') as filename from terminal where terminalid = '{}'",
          escapeSqlValue(terminalID)));
  return terminal->eof() ? Variant() : terminal->value("filename");
}

std::string CreditCardProcessing::DefaultRequestPath(const Variant& terminalID,
                                                     const CreditCardFieldsRef& fields) const {
  const std::string fixedName = getCreditCardRequestFilename(terminalID).joined();
  const bool isKeyed = trim(given(fields)->swipedata).empty();
  return (isKeyed ? directoryKeyed_ : directory_) + (fixedName.empty() ? fields->guid : fixedName);
}

// | step                            | after a crash behind it there is                          |
// |---------------------------------|-----------------------------------------------------------|
// | line made                       |                                                           |
// | old request and answer go       | nothing of the last sale under this name                  |
// | line to the name without suffix | a file that the card program does not look at             |
// | renamed to .req in one step     | a whole request, and perhaps a charge, without a row      |
// | row                             | the request and its row                                   |
//
// Each step goes on when the one before failed, but a request that is not whole is never renamed. Without a folder
// there is no request: the number would lie in whatever folder the program works in.
Variant CreditCardProcessing::dropRequest(const std::string& path,
                                          const std::function<std::string()>& makeLine,
                                          const std::function<RequestRow()>& makeRow) {
  if (path.find('\\') == std::string::npos) return {};
  const Files& files = apartment_->files;
  const std::string request = path + std::string(kRequest);
  std::string line;
  ignoreErrors([&] { line = makeLine().append(kLineEnd); });
  for (const std::string& old : {request, path + std::string(kAnswer), path})
    ignoreErrors([&] { files.remove(old); });
  if (!line.empty()) ignoreErrors([&] { writeThenRename(files, line, path, request); });
  ignoreErrors([&] { insertTransactionRow(path, makeRow()); });
  return request;
}

Variant CreditCardProcessing::writeRequestFile(const std::string& path, const CreditCardFields& fields,
                                               const Variant& terminalID, const Variant& clerk,
                                               const Variant& customerSequenceNumber, const Variant& receipt,
                                               const Variant& amount) {
  return dropRequest(
      path, [&] { return makeRequestString(fields, clerk, receipt, amount); },
      [&] { return RequestRow{fields.guid, terminalID, clerk, receipt, amount, customerSequenceNumber}; });
}

Variant CreditCardProcessing::writeRequestFileDebit(const std::string& path, const CreditCardFields& fields,
                                                    const Variant& clerk, const Variant& receipt,
                                                    const Variant& purchaseAmount,
                                                    const Variant& cashBackAmount, const Variant& block,
                                                    const Variant& key) {
  const auto debit = [&] {
    return DebitDetails{purchaseAmount.toDouble(), cashBackAmount.toDouble(), block.joined(), key.joined()};
  };
  return dropRequest(
      path, [&] { return makeRequestStringDebit(fields, clerk, receipt, debit()); },
      [&] {
        return RequestRow{fields.guid, Variant::null(), clerk, receipt, debit().total(), Variant::null()};
      });
}

void CreditCardProcessing::insertTransactionRow(const std::string& path, const RequestRow& row) {
  executeInTransaction(
      *apartment_,
      fmt::format("insert into XChargeTransaction (TransactionGUID, RequestFile, terminalid, clerk, receipt, "
                  "amount, customerSequenceNumber)  VALUES ('{}', {}, {}, {}, {}, {}, {})",
                  row.guid.toText(), sqlQuotedOrNull(path),
                  row.terminalID.isNull() ? "null" : row.terminalID.toText(), row.clerk.joined(),
                  sqlQuotedOrNull(row.receipt), row.amount.joined(),
                  sqlQuotedOrNull(row.customerSequenceNumber)));
}

std::string CreditCardProcessing::RequestSingleTransaction(const Variant& terminalID,
                                                           const CreditCardFieldsRef& fields,
                                                           const Variant& clerk, const Variant& Receipt,
                                                           const Variant& Amount) {
  if (given(fields)->guid.empty()) fields->guid = newTransactionGuid();
  return writeRequestFile(DefaultRequestPath(terminalID, fields), *fields, Variant::null(), clerk,
                          Variant::null(), Receipt, Amount)
      .toText();
}

std::string CreditCardProcessing::RequestSingleTransactionDebit(
    const Variant& terminalID, const CreditCardFieldsRef& fields, const Variant& clerk,
    const Variant& Receipt, const Variant& purchaseamount, const Variant& cashbackamount,
    const Variant& debitblock, const Variant& debitkey) {
  if (given(fields)->guid.empty()) fields->guid = newTransactionGuid();
  return writeRequestFileDebit(DefaultRequestPath(terminalID, fields), *fields, clerk, Receipt,
                               purchaseamount, cashbackamount, debitblock, debitkey)
      .toText();
}

// ---------------------------------------------------------------- answers

std::string CreditCardProcessing::getRequestFile(const Variant& guid) const {
  const RecordsetRef row =
      queryDatabase(*apartment_, "select RequestFile from XChargeTransaction where TransactionGUID = '" +
                                     escapeSqlValue(guid) + "'");
  return row->eof() ? "" : row->text("RequestFile");
}

// A request without a row has no files.
bool CreditCardProcessing::hasFile(const std::string& path, std::string_view suffix) const {
  return !path.empty() && apartment_->files.exists(path + std::string(suffix));
}

// A folder on another host may tell late; a second look at once often sees the file.
bool CreditCardProcessing::hasAnswer(const std::string& path) const {
  return hasFile(path, kAnswer) || hasFile(path, kAnswer);
}

bool CreditCardProcessing::IsAnswerReady(const Variant& guid) const {
  return hasAnswer(getRequestFile(guid));
}

// An answer that is still being written would be stored as a time-out.
bool CreditCardProcessing::mayHaveWholeAnswer(const std::string& path) const {
  return hasAnswer(path) && !lacksClosingQuote(readAnswer(*apartment_, path + std::string(kAnswer)));
}

// A time-out of 0 is one look.
bool CreditCardProcessing::readAnswerFile(const std::string& path, Variant& code) {
  const Date start = apartment_->clock->now();
  const auto waitForNextLook = [&] {
    if (timeout_ == 0) return false;
    apartment_->clock->sleep(kLookEvery);
    return secondsSince(start, *apartment_) <= timeout_;
  };
  const std::string file = path.empty() ? "" : path + std::string(kAnswer);
  const auto text = readSettledFile(*apartment_, file, {isWholeAnswer, lacksClosingQuote}, waitForNextLook);
  if (!text) {
    code = kTimedOut;
    return false;
  }
  const std::string answer = textOfBytes(DelimitedText(*text).next());
  code = std::string_view(answer).substr(leftCharacters(answer, 1).size());
  return isApproval(answer);
}

bool CreditCardProcessing::ReadSingleAnswer(const Variant& guid, Variant& code) {
  const bool approved = readAnswerFile(getRequestFile(guid), code);
  UpdateTransactionAnswer(guid, code);
  return approved;
}

void CreditCardProcessing::UpdateTransactionAnswer(const Variant& guid, const Variant& code) {
  executeInTransaction(
      *apartment_,
      fmt::format(
          " update xchargetransaction set  dateAnswered = getdate() ,answer = {} where transactionguid = {}",
          sqlQuotedOrNull(code), sqlQuotedOrNull(guid)));
}

// The table has two columns named answer; the last is the one that is never Null.
bool CreditCardProcessing::getStoredAnswer(const Variant& guid, Variant& code) const {
  const RecordsetRef row = queryDatabase(
      *apartment_,
      "select *, isnull(answer, '') as answer from xchargetransaction where transactionGUID = '" +
          escapeSqlValue(guid) + "'");
  if (row->eof()) return false;
  code = row->value(Column(row->fieldCount() - 1));
  return true;
}

bool CreditCardProcessing::ProcessSingleTransaction(const Variant& terminalID,
                                                    const CreditCardFieldsRef& fields, const Variant& clerk,
                                                    const Variant& Receipt, const Variant& Amount,
                                                    Variant& code) {
  RequestSingleTransaction(terminalID, fields, clerk, Receipt, Amount);
  return ReadSingleAnswer(fields->guid, code);
}

bool CreditCardProcessing::ProcessSingleTransactionDebit(
    const Variant& terminalID, const CreditCardFieldsRef& fields, const Variant& clerk,
    const Variant& Receipt, const Variant& purchaseamount, const Variant& cashbackamount,
    const Variant& debitblock, const Variant& debitkey, Variant& code) {
  RequestSingleTransactionDebit(terminalID, fields, clerk, Receipt, purchaseamount, cashbackamount,
                                debitblock, debitkey);
  return ReadSingleAnswer(fields->guid, code);
}

// ---------------------------------------------------------------- a whole sale

// A time-out here leaves the row without an answer, so that a retry goes on waiting.
bool CreditCardProcessing::awaitAnswer(const Variant& guid, Variant& code) {
  for (const Date start = apartment_->clock->now();; apartment_->clock->sleep(kLookEvery)) {
    if (secondsSince(start, *apartment_) > timeout_) {
      code = kTimedOut;
      return false;
    }
    if (mayHaveWholeAnswer(getRequestFile(guid))) return true;
  }
}

bool CreditCardProcessing::ProcessFullTransaction(
    const Variant& storeid, const Variant& terminalID, const Variant& employeeid,
    const Variant& customerSequenceNumber, const Variant& ticketNumbers, const CreditCardFieldsRef& ccfields,
    const Variant& Amount, const Variant& signatureid, const Variant& transactionType, Variant& code) {
  code = "";
  bool approved = false;
  if (!given(ccfields)->guid.empty()) {
    approved = getStoredAnswer(ccfields->guid, code) && isApproval(code.toText());
  } else {
    ccfields->guid = newTransactionGuid();
    const Variant request = writeRequestFile(DefaultRequestPath(terminalID, ccfields), *ccfields, terminalID,
                                             employeeid, customerSequenceNumber, "", Amount);
    if (request.isEmpty()) code = kNotWritten;
  }
  if (!code.text().empty()) return approved;
  if (!awaitAnswer(ccfields->guid, code)) return false;
  approved = ReadSingleAnswer(ccfields->guid, code);

  const std::string tickets(trim(ticketNumbers.joined()));
  if (approved && !tickets.empty() && isGreater(transactionType, 0)) {
    insertCardTerminalPayment(*ccfields, storeid, terminalID, code, Amount, signatureid);
    applyCardPayment(storeid, terminalID, employeeid, customerSequenceNumber, tickets, transactionType);
  }
  return approved;
}

void CreditCardProcessing::insertCardTerminalPayment(const CreditCardFields& ccfields, const Variant& storeid,
                                                     const Variant& terminalID, const Variant& code,
                                                     const Variant& amount, const Variant& signatureid) {
  const auto numberOrNull = [](const Variant& value) {
    const std::string text = sqlNumber(value);
    return text.empty() ? std::string("NULL") : text;
  };
  const Variant typeId = getCreditCardTypeID(storeid, ccfields.accountnumber);
  executeInTransaction(
      *apartment_,
      fmt::format(" INSERT INTO TerminalPayment (terminalId, paymentNumber, paymentType,  "
                  "paymentAmount,checkOrCardNumber, creditCardId, creditCardExpirydate,  approvalCode, "
                  "transactionNumber, totalCashPayment, signatureID)  VALUES( {},1,'Credit "
                  "Card',{},'{}',{},'{}',{},'XXXXX',0,{})",
                  terminalID.joined(), amount.joined(), escapeSql(maskedCardNumber(ccfields.accountnumber)),
                  numberOrNull(typeId), expirationText(ccfields), sqlQuotedOrNull(code),
                  numberOrNull(signatureid)));
}

void CreditCardProcessing::applyCardPayment(const Variant& storeid, const Variant& terminalID,
                                            const Variant& employeeid, const Variant& customerSequenceNumber,
                                            const std::string& ticketNumbers,
                                            const Variant& transactionType) {
  executeInTransaction(*apartment_,
                       fmt::format("ApplyPrePayPayment {},{},{},{},{}, '{}'", ticketNumbers,
                                   customerSequenceNumber.joined(), storeid.joined(), employeeid.joined(),
                                   terminalID.joined(), bookedAs(isEqual(transactionType, 1))));
}

}  // namespace ondrel
