#include <fmt/format.h>

#include <chrono>

#include "base/ignore_errors.h"
#include "cards/credit_card_processing.h"
#include "cards/exchange_files.h"
#include "platform/delimited_text.h"
#include "platform/xml.h"

namespace ondrel {
namespace {

using std::chrono::milliseconds;

constexpr std::string_view kXmlRequest = ".xcr";
constexpr std::string_view kXmlAnswer = ".xca";
constexpr milliseconds kRound{5000};
constexpr milliseconds kFirstWait{2000};
constexpr int kLooks = 30;
constexpr int kLooksAtNothing = 4;  // at an answer file that is still empty

// clang-format off
constexpr const char* kSuccess      = "//XCTRANSACTION/TRANSACTION/RESULT_SUCCESS";
constexpr const char* kDescription  = "//XCTRANSACTION/TRANSACTION/RESULT_DESCRIPTION";
constexpr const char* kApprovalCode = "//XCTRANSACTION/TRANSACTION/RESULT_APPROVALCODE";
// clang-format on

bool isWholeDocument(std::string_view text) {
  return XmlDocument().loadXML(text);
}

std::string joinedValues(std::string_view text) {
  std::string result;
  for (DelimitedText values(text); !values.atEnd();) result += values.next();
  return result;
}

std::string element(std::string_view name, const Variant& value) {
  return fmt::format("<{0}>{1}</{0}>", name, value.joined());
}

}  // namespace

std::string CreditCardProcessing::BeginTransaction(const Variant& RequestString) {
  std::string id;
  if (directory_.empty()) return id;
  ignoreErrors([&] {
    const Files& files = apartment_->files;
    const std::string newId = newTransactionGuid();
    const std::string base = directory_ + newId;
    const std::string request = base + std::string(kXmlRequest);
    if (!waitUntilGone(*apartment_, request)) return;
    files.remove(base);
    writeThenRename(files, RequestString.toText(), base, request);
    id = newId;
  });
  return id;
}

bool CreditCardProcessing::IsTransactionFinished(const Variant& transactionId) const {
  return apartment_->files.exists(directory_ + transactionId.joined() + std::string(kXmlAnswer));
}

std::string CreditCardProcessing::GetTransactionResults(const Variant& transactionId) {
  if (!IsTransactionFinished(transactionId)) return "";
  const std::string path = directory_ + transactionId.joined() + std::string(kXmlAnswer);
  const auto never = [](std::string_view) { return false; };
  int looks = 0;
  const auto waitForNextLook = [&] {
    apartment_->clock->sleep(kLookEvery);
    return ++looks < kLooksAtNothing;
  };
  const auto text = readSettledFile(*apartment_, path, {isWholeDocument, never}, waitForNextLook);
  ignoreErrors([&] { apartment_->files.remove(path); });
  return joinedValues(textOfBytes(text.value_or("")));
}

std::string CreditCardProcessing::CompleteTransaction(const Variant& RequestString, Variant& transactionId) {
  transactionId = BeginTransaction(RequestString);
  apartment_->clock->sleep(kFirstWait);
  for (int tries = kLooks; !IsTransactionFinished(transactionId) && tries > 0; --tries)
    apartment_->clock->sleep(kRound);
  return GetTransactionResults(transactionId);
}

// True on success. An answer, whatever it is, sets the last message; none leaves it.
bool CreditCardProcessing::sendXml(std::string_view type, const std::string& elements, XmlDocument& answer) {
  Variant transactionId;
  const std::string text = CompleteTransaction(
      fmt::format(R"(<?xml version="1.0" standalone="yes"?><XCTRANSACTION><TRANSACTION>{}{}</TRANSACTION>)"
                  "</XCTRANSACTION>",
                  element("TRANSACTIONTYPE", type), elements),
      transactionId);
  if (text.empty()) return false;
  answer.loadXML(text);
  lastMessage_ = answer.textOf(kDescription).value_or("Unknown");
  return answer.textOf(kSuccess).value_or("F") == "T";
}

Variant CreditCardProcessing::CardPurchase(const Variant& CardNumber, const Variant& ExpDate,
                                           const Variant& Track, const Variant& Amount,
                                           const Variant& Receipt) {
  const bool isKeyed = Track.joined().empty();
  const std::string card =
      isKeyed ? element("ACCOUNT", CardNumber) + element("EXPIRATION", ExpDate) : element("TRACK", Track);
  XmlDocument answer;
  if (!sendXml("XC_SALE", element("RECEIPT", Receipt) + card + element("AMOUNT", Amount), answer))
    return Variant();
  const auto code = answer.textOf(kApprovalCode);
  return code ? Variant(*code) : Variant();
}

// ---------------------------------------------------------------- the card program's archive

Variant CreditCardProcessing::addCardToArchive(const Variant& customerSeq, const Variant& cardNumber,
                                               const Variant& expDate) {
  XmlDocument answer;
  if (!sendXml("XC_CCARCHIVE_ADD", element("ACCOUNT", cardNumber) + element("EXPIRATION", expDate), answer))
    return Variant();
  const auto result = [&](const char* path) { return answer.textOf(path).value_or(""); };
  const std::string id = result("//XCTRANSACTION/TRANSACTION/RESULT_XCACCOUNTID");
  const std::string masked = result("//XCTRANSACTION/TRANSACTION/RESULT_XACCOUNT");
  const std::string type = result("//XCTRANSACTION/TRANSACTION/RESULT_ACCOUNTTYPE");
  insertXcAccount(customerSeq, id, type, masked, expDate);
  updateCustomerCard(customerSeq, type, id, expDate);
  return id;
}

bool CreditCardProcessing::updateCardInArchive(const Variant& accountId, const Variant& expDate) {
  XmlDocument answer;
  const bool succeeded = sendXml("XC_CCARCHIVE_UPDATE",
                                 element("XCACCOUNTID", accountId) + element("EXPIRATION", expDate), answer);
  if (succeeded) updateXcAccount(accountId, expDate);
  return succeeded;
}

bool CreditCardProcessing::deleteCardFromArchive(const Variant& accountId) {
  XmlDocument answer;
  const bool succeeded = sendXml("XC_CCARCHIVE_DELETE", element("XCACCOUNTID", accountId), answer);
  if (succeeded) deleteXcAccount(accountId);
  return succeeded;
}

}  // namespace ondrel
