#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "base/variant.h"
#include "cards/credit_card_fields.h"
#include "data/apartment.h"
#include "data/recordset/recordset.h"

namespace ondrel {

class XmlDocument;
struct CardArchive;

// Card transactions through the outside card program, which takes request files from a folder and leaves
// answer files in it. Operations that wait hold the calling thread. docs/cards.md tells the exchange.
//
// A `fields` argument that is nothing raises error 91. Errors of the database pass to the caller unless an
// operation says otherwise.
class CreditCardProcessing : public Object {
 public:
  CreditCardProcessing() : apartment_(Apartment::current()) {}
  std::string_view className() const override { return "creditCardProcessing"; }

  // ---------------------------------------------------------------- properties
  // One value for all objects of the apartment.
  std::string DBConnectionString() const { return apartment_->DBConnectionString; }
  void setDBConnectionString(const std::string& connectionString);
  // Folders for swiped and keyed requests, kept with "\" between the folders and at the end. Setting the
  // first sets the second too while that is blank.
  std::string XChargeDirectory() const { return directory_; }
  void setXChargeDirectory(const std::string& directory);
  std::string XChargeDirectoryKeyed() const { return directoryKeyed_; }
  void setXChargeDirectoryKeyed(const std::string& directory);
  // Seconds to wait for an answer; less than 0 is kept as 0.
  std::int32_t XChargeTimeout() const { return timeout_; }
  void setXChargeTimeout(std::int32_t seconds) { timeout_ = seconds < 0 ? 0 : seconds; }

  // ---------------------------------------------------------------- card numbers
  // True for a number of a known brand with the right length and check digit. `CardName` is set when the
  // brand is known, `ErrorMsg` when the number is refused; both stay as they are otherwise.
  bool VerifyCreditCard(const Variant& Number, Variant& CardName, Variant& ErrorMsg) const;
  // The check digit alone. Error 13 for anything but digits, 6 beyond 255 of them.
  bool VerifyMod10(const Variant& Number) const;
  // A new record from what a reader sends: track 1, ";", track 2. Only `swipedata` is set when that is no
  // track 1 or the tracks carry different numbers. An expiration that cannot be read stays 0.
  CreditCardFieldsRef FieldsFromSwipe(const Variant& swipe) const;
  // Parts the tail of a PIN reader's output into `key` and `block`. False, with both left alone, when
  // it is shorter than 32 characters.
  bool DecipherDUKPT(const Variant& dukpt, Variant& block, Variant& key) const;
  // The shop's id of the number's brand; Empty for an invalid number or a brand that it does not take.
  Variant getCreditCardTypeID(const Variant& storeid, const Variant& ccnumber) const;

  // ---------------------------------------------------------------- request and answer files
  // Write a request and give the path of its ".req" file. `fields` gets a guid when it has none. What
  // fails on the way is passed over: an unwritten request shows itself by its missing answer.
  std::string RequestSingleTransaction(const Variant& terminalID, const CreditCardFieldsRef& fields,
                                       const Variant& clerk, const Variant& Receipt, const Variant& Amount);
  std::string RequestSingleTransactionDebit(const Variant& terminalID, const CreditCardFieldsRef& fields,
                                            const Variant& clerk, const Variant& Receipt,
                                            const Variant& purchaseamount, const Variant& cashbackamount,
                                            const Variant& debitblock, const Variant& debitkey);
  // Request, then wait and store the answer. True when approved; `code` becomes the approval code, the
  // reason of a refusal, or "TIMED OUT WAITING FOR ANSWER".
  bool ProcessSingleTransaction(const Variant& terminalID, const CreditCardFieldsRef& fields,
                                const Variant& clerk, const Variant& Receipt, const Variant& Amount,
                                Variant& code);
  bool ProcessSingleTransactionDebit(const Variant& terminalID, const CreditCardFieldsRef& fields,
                                     const Variant& clerk, const Variant& Receipt,
                                     const Variant& purchaseamount, const Variant& cashbackamount,
                                     const Variant& debitblock, const Variant& debitkey, Variant& code);
  // A whole sale: request, wait, and for an approved one with ticket numbers and a `transactionType`
  // above 0 (1 pickup, others pre pay) the payment row and its booking. A `ccfields` with a guid is a
  // retry: the stored answer counts, and without one the wait goes on. `code` as above, or "COULD
  // NOT WRITE REQUEST FILE".
  bool ProcessFullTransaction(const Variant& storeid, const Variant& terminalID, const Variant& employeeid,
                              const Variant& customerSequenceNumber, const Variant& ticketNumbers,
                              const CreditCardFieldsRef& ccfields, const Variant& Amount,
                              const Variant& signatureid, const Variant& transactionType, Variant& code);
  // Folder and name of a request without a suffix: the terminal's file name, or the guid.
  std::string DefaultRequestPath(const Variant& terminalID, const CreditCardFieldsRef& fields) const;
  // The terminal's fixed file name; Empty for an unknown terminal.
  Variant getCreditCardRequestFilename(const Variant& terminalID) const;
  bool IsAnswerReady(const Variant& guid) const;
  // Waits for the answer of a request and stores it, a time-out's text included. True when approved.
  bool ReadSingleAnswer(const Variant& guid, Variant& code);
  void UpdateTransactionAnswer(const Variant& guid, const Variant& code);
  // Description of the last XML answer, "Unknown" when it had none or was no XML.
  std::string GetLastMessage() const { return lastMessage_; }

  // ---------------------------------------------------------------- batches
  // One above the highest batch number; nothing reserves it.
  Variant GetNextBatchGroup() const;
  // Writes the request, unless `fields` has a guid and so a request already, and adds it to the batch.
  bool AddTransactionToBatch(const Variant& terminalID, const CreditCardFieldsRef& fields,
                             const Variant& customerSequenceNumber, const Variant& BatchID,
                             const Variant& clerk, const Variant& Amount);
  // Brings the stages of the batch up to date with the files.
  void UpdateBatchGroup(const Variant& BatchID);
  // Books the approved charges and withdraws the pending ones. After an error the rows that are not done
  // stay as they were, and the batch can be closed again.
  void CloseBatchGroup(const Variant& BatchID, const Variant& storeid, const Variant& terminalID,
                       const Variant& employeeid);
  bool IsBatchOpen(const Variant& BatchID) const;
  bool IsBatchReadyToClose(const Variant& BatchID) const;

  // ---------------------------------------------------------------- XML transactions, cards on file
  // Leaves a request in XChargeDirectory and gives its id, "" when that failed.
  std::string BeginTransaction(const Variant& RequestString);
  bool IsTransactionFinished(const Variant& transactionId) const;
  // Reads and deletes the answer; "" when there is none.
  std::string GetTransactionResults(const Variant& transactionId);
  // Both with a wait of at most 152 seconds between; `transactionId` is written back.
  std::string CompleteTransaction(const Variant& RequestString, Variant& transactionId);
  // The approval code of a sale, Empty when there is none. With a Track number and date are not sent.
  Variant CardPurchase(const Variant& CardNumber, const Variant& ExpDate, const Variant& Track,
                       const Variant& Amount, const Variant& Receipt);
  // Keeps a valid card with the customer; the result is its account id, the number itself. An invalid
  // one changes nothing and gives Empty.
  Variant AddCardOnFile(const Variant& CustomerSeq, const Variant& CardNumber, const Variant& ExpDate);
  void UpdateCardOnFile(const Variant& AccountID, const Variant& ExpDate);
  void DeleteCardOnFile(const Variant& AccountID);

 private:
  // The same operations on the card program's own archive; no page uses them.
  friend struct CardArchive;

  struct RequestRow {
    Variant guid, terminalID, clerk, receipt, amount, customerSequenceNumber;
  };

  std::string newTransactionGuid() const;
  Variant writeRequestFile(const std::string& path, const CreditCardFields& fields, const Variant& terminalID,
                           const Variant& clerk, const Variant& customerSequenceNumber,
                           const Variant& receipt, const Variant& amount);
  Variant writeRequestFileDebit(const std::string& path, const CreditCardFields& fields, const Variant& clerk,
                                const Variant& receipt, const Variant& purchaseAmount,
                                const Variant& cashBackAmount, const Variant& block, const Variant& key);
  Variant dropRequest(const std::string& path, const std::function<std::string()>& makeLine,
                      const std::function<RequestRow()>& makeRow);
  void insertTransactionRow(const std::string& path, const RequestRow& row);
  std::string getRequestFile(const Variant& guid) const;
  bool readAnswerFile(const std::string& path, Variant& code);
  bool getStoredAnswer(const Variant& guid, Variant& code) const;
  bool awaitAnswer(const Variant& guid, Variant& code);
  void insertCardTerminalPayment(const CreditCardFields& ccfields, const Variant& storeid,
                                 const Variant& terminalID, const Variant& code, const Variant& amount,
                                 const Variant& signatureid);
  void applyCardPayment(const Variant& storeid, const Variant& terminalID, const Variant& employeeid,
                        const Variant& customerSequenceNumber, const std::string& ticketNumbers,
                        const Variant& transactionType);

  RecordsetRef batchRows(const Variant& batchID) const;
  bool hasFile(const std::string& path, std::string_view suffix) const;
  bool hasAnswer(const std::string& path) const;
  bool mayHaveWholeAnswer(const std::string& path) const;
  std::int32_t stageOf(const Variant& guid, std::int32_t stage, Variant& answer);
  void updateBatchStage(const Variant& guid, std::int32_t stage);
  void deleteBatchFiles(const Variant& guid);
  bool insertBatchPayment(const Recordset& row, const Variant& storeid, const Variant& terminalID,
                          const Variant& employeeid);

  bool sendXml(std::string_view type, const std::string& elements, XmlDocument& answer);
  void updateCustomerCard(const Variant& customerSeq, const Variant& type, const Variant& number,
                          const Variant& expDate);
  void insertXcAccount(const Variant& customerSeq, const Variant& accountId, const Variant& type,
                       const Variant& number, const Variant& expDate);
  void updateXcAccount(const Variant& accountId, const Variant& expDate);
  void deleteXcAccount(const Variant& accountId);
  Variant addCardToArchive(const Variant& customerSeq, const Variant& cardNumber, const Variant& expDate);
  bool updateCardInArchive(const Variant& accountId, const Variant& expDate);
  bool deleteCardFromArchive(const Variant& accountId);

  ApartmentRef apartment_;
  std::string directory_, directoryKeyed_;
  std::int32_t timeout_ = 0;
  std::string lastMessage_;
};

}  // namespace ondrel
