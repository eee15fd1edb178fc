#include "automation/classes/class_tables.h"
#include "cards/credit_card_processing.h"

namespace ondrel {

const ClassTable& creditCardProcessingClass() {
  using Class = CreditCardProcessing;
  // clang-format off
  static const ClassTable table("creditCardProcessing", {
      // ---- properties
      property("DBConnectionString", &Class::DBConnectionString, &Class::setDBConnectionString),
      property("XChargeDirectory", &Class::XChargeDirectory, &Class::setXChargeDirectory),
      property("XChargeDirectoryKeyed", &Class::XChargeDirectoryKeyed, &Class::setXChargeDirectoryKeyed),
      property("XChargeTimeout", &Class::XChargeTimeout, &Class::setXChargeTimeout),

      // ---- card numbers
      method("VerifyCreditCard", &Class::VerifyCreditCard, {{"Number"}, {"CardName"}, {"ErrorMsg"}}),
      method("VerifyMod10", &Class::VerifyMod10, {{"Number"}}),
      method("FieldsFromSwipe", &Class::FieldsFromSwipe, {{"swipe"}}),
      method("DecipherDUKPT", &Class::DecipherDUKPT, {{"dukpt"}, {"block"}, {"key"}}),
      method("getCreditCardTypeID", &Class::getCreditCardTypeID, {{"storeid"}, {"ccnumber"}}),

      // ---- request and answer files
      method("RequestSingleTransaction", &Class::RequestSingleTransaction, {{"terminalID"}, {"fields"}, {"clerk"}, {"Receipt"}, {"Amount"}}),
      method("RequestSingleTransactionDebit", &Class::RequestSingleTransactionDebit, {{"terminalID"}, {"fields"}, {"clerk"}, {"Receipt"}, {"purchaseamount"}, {"cashbackamount"}, {"debitblock"}, {"debitkey"}}),
      method("ProcessSingleTransaction", &Class::ProcessSingleTransaction, {{"terminalID"}, {"fields"}, {"clerk"}, {"Receipt"}, {"Amount"}, {"code"}}),
      method("ProcessSingleTransactionDebit", &Class::ProcessSingleTransactionDebit, {{"terminalID"}, {"fields"}, {"clerk"}, {"Receipt"}, {"purchaseamount"}, {"cashbackamount"}, {"debitblock"}, {"debitkey"}, {"code"}}),
      method("ProcessFullTransaction", &Class::ProcessFullTransaction, {{"storeid"}, {"terminalID"}, {"employeeid"}, {"customerSequenceNumber"}, {"ticketNumbers"}, {"ccfields"}, {"Amount"}, {"signatureid"}, {"transactionType"}, {"code"}}),
      method("DefaultRequestPath", &Class::DefaultRequestPath, {{"terminalID"}, {"fields"}}),
      method("getCreditCardRequestFilename", &Class::getCreditCardRequestFilename, {{"terminalID"}}),
      method("IsAnswerReady", &Class::IsAnswerReady, {{"guid"}}),
      method("ReadSingleAnswer", &Class::ReadSingleAnswer, {{"guid"}, {"code"}}),
      method("UpdateTransactionAnswer", &Class::UpdateTransactionAnswer, {{"guid"}, {"code"}}),
      method("GetLastMessage", &Class::GetLastMessage),

      // ---- batches
      method("GetNextBatchGroup", &Class::GetNextBatchGroup),
      method("AddTransactionToBatch", &Class::AddTransactionToBatch, {{"terminalID"}, {"fields"}, {"customerSequenceNumber"}, {"BatchID"}, {"clerk"}, {"Amount"}}),
      method("UpdateBatchGroup", &Class::UpdateBatchGroup, {{"BatchID"}}),
      method("CloseBatchGroup", &Class::CloseBatchGroup, {{"BatchID"}, {"storeid"}, {"terminalID"}, {"employeeid"}}),
      method("IsBatchOpen", &Class::IsBatchOpen, {{"BatchID"}}),
      method("IsBatchReadyToClose", &Class::IsBatchReadyToClose, {{"BatchID"}}),

      // ---- XML transactions, cards on file
      method("BeginTransaction", &Class::BeginTransaction, {{"RequestString"}}),
      method("IsTransactionFinished", &Class::IsTransactionFinished, {{"transactionId"}}),
      method("GetTransactionResults", &Class::GetTransactionResults, {{"transactionId"}}),
      method("CompleteTransaction", &Class::CompleteTransaction, {{"RequestString"}, {"transactionId"}}),
      method("CardPurchase", &Class::CardPurchase, {{"CardNumber"}, {"ExpDate"}, {"Track"}, {"Amount"}, {"Receipt"}}),
      method("AddCardOnFile", &Class::AddCardOnFile, {{"CustomerSeq"}, {"CardNumber"}, {"ExpDate"}}),
      method("UpdateCardOnFile", &Class::UpdateCardOnFile, {{"AccountID"}, {"ExpDate"}}),
      method("DeleteCardOnFile", &Class::DeleteCardOnFile, {{"AccountID"}}),
  });
  // clang-format on
  return table;
}

}  // namespace ondrel
