#include "cards/card_fixture.h"
#include "data/query_database.h"

namespace ondrel {
namespace {

class CardBatches : public CardTest {
 protected:
  std::string add(int customer, double amount) {
    const CreditCardFieldsRef fields = visa();
    EXPECT_TRUE(cards.AddTransactionToBatch(2, fields, customer, 1, 4, amount));
    return fields->guid;
  }
  std::string path(const std::string& guid, const char* suffix) { return "C:\\xc\\" + guid + suffix; }
  std::vector<std::string> stages() {
    return rows("select Stage, Answer from PaymentBatch order by paymentBatchId");
  }
};

TEST_F(CardBatches, AddingWritesTheRequestAndTheRow) {
  EXPECT_EQ(cards.GetNextBatchGroup().toLong(), 1);
  const std::string guid = add(11, 12.5);
  EXPECT_EQ(
      reads().back(),
      "insert into PaymentBatch (BatchID, CustomerSequenceNumber, EmployeeInitiated, CustomerName, "
      "AccountNumber, ExpirationDate, TransactionAmount, TransactionGUID) values (1, 11, 4, 'John O''Hara', "
      "'************1111','2812', 12.5, '" +
          guid + "')");
  EXPECT_TRUE(isThere(path(guid, ".req")));
  EXPECT_EQ(scalar("select AccountNumber from PaymentBatch").toText(), "4111111111111111");
  EXPECT_EQ(cards.GetNextBatchGroup().toLong(), 2);
  EXPECT_TRUE(cards.IsBatchOpen(1));
  EXPECT_FALSE(cards.IsBatchReadyToClose(1));
}

TEST_F(CardBatches, StagesFollowTheFiles) {
  const std::string guid = add(11, 10);
  const auto stageWith = [&](const char* from, const char* to) {
    std::filesystem::rename(hostFile(path(guid, from)), hostFile(path(guid, to)));
    cards.UpdateBatchGroup(1);
    return scalar("select Stage from PaymentBatch").toLong();
  };
  EXPECT_EQ(stageWith(".req", ".tmp"), 1);
  EXPECT_EQ(stageWith(".tmp", ".elsewhere"), 2);
  EXPECT_EQ(stageWith(".elsewhere", ".hld"), 1);
  EXPECT_EQ(stageWith(".hld", ".elsewhere"), 2);
  put(path(guid, ".ans"), "\"YA'7\"\r\n");
  cards.UpdateBatchGroup(1);
  EXPECT_EQ(stages(), std::vector<std::string>{"3 | A'7"});
  put(path(guid, ".ans"), "\"NO\"\r\n");
  statements();
  cards.UpdateBatchGroup(1);
  EXPECT_EQ(reads().size(), 1u);
  EXPECT_EQ(stages(), std::vector<std::string>{"3 | A'7"});
}

TEST_F(CardBatches, ClosingBooksApprovedAndWithdrawsPendingCharges) {
  add(11, 10), add(12, 10.01), add(13, 10.02);
  startSimulator();
  for (int k = 0; k < 500 && stages() != std::vector<std::string>{"3 | A100001", "-2 | DECLINED", "1 | NULL"};
       ++k) {
    cards.UpdateBatchGroup(1);
    std::this_thread::sleep_for(std::chrono::milliseconds(2));
  }
  statements();
  cards.CloseBatchGroup(1, 1, 2, 4);
  EXPECT_EQ(stages(), (std::vector<std::string>{"0 | A100001", "-2 | DECLINED", "-3 | NULL"}));
  EXPECT_EQ(
      rows("select storeId, terminalId, employeeId, customerSequenceNumber, ticketNumber, paymentType, "
           "paymentAmount, checkOrCardNumber, approvalCode, transactionNumber, creditCardId, "
           "creditCardExpirydate, signatureId from Payment where paymentAction = 'Batch'"),
      std::vector<std::string>{"1 | 2 | 4 | 11 | NULL | CREDIT CARD | 10 | ************1111 | A100001 | "
                               "XXXXX | 1 | 2812 | NULL"});
  EXPECT_FALSE(cards.IsBatchOpen(1));
  EXPECT_FALSE(cards.IsBatchReadyToClose(1));
}

TEST_F(CardBatches, ABatchOfRefusalsIsClosedAlready) {
  put(path(add(11, 10), ".ans"), "\"NO\"\r\n");
  cards.UpdateBatchGroup(1);
  EXPECT_FALSE(cards.IsBatchOpen(1));
  EXPECT_TRUE(cards.IsBatchReadyToClose(1));
}

TEST_F(CardBatches, AFailedBookingStopsTheClosingWhereItIs) {
  for (const char* answer : {"\"YA1\"\r\n", "\"YA'2\"\r\n", "\"YA3\"\r\n"})
    put(path(add(11, 10), ".ans"), answer);
  cards.UpdateBatchGroup(1);
  EXPECT_NE(errorOf([&] { cards.CloseBatchGroup(1, 1, 2, 4); }), 0);
  EXPECT_EQ(stages(), (std::vector<std::string>{"0 | A1", "3 | A'2", "3 | A3"}));
  closeTransaction(*apartment);  // as at the end of the page
  execute("update PaymentBatch set Answer = 'A2' where Answer like 'A''2'");
  cards.CloseBatchGroup(1, 1, 2, 4);
  EXPECT_EQ(stages(), (std::vector<std::string>{"0 | A1", "0 | A2", "0 | A3"}));
  EXPECT_EQ(scalar("select count(*) from Payment where paymentAction = 'Batch'").toLong(), 3);
}

}  // namespace
}  // namespace ondrel
