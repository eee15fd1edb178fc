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
  statements();
  EXPECT_TRUE(cards.IsBatchOpen("1"));
  EXPECT_FALSE(cards.IsBatchReadyToClose("1"));
  EXPECT_EQ(reads(), (std::vector<std::string>{
                         "select * from paymentbatch where stage in (1, 2, 3) and batchid = '1'",
                         "select * from paymentbatch where stage in (0, 1, 2) and batchid = '1'"}));
}

// The path is too long for its column: the request's row fails and is passed over, its transaction stays open,
// the batch row joins it, and the next read drops both. The request is on its way all the same.
TEST_F(CardBatches, ARequestRowThatFailsTakesTheBatchRowWithIt) {
  const CreditCardFieldsRef fields = visa();
  const std::string deep = std::string(120, 'd') + "\\" + std::string(120, 'd');
  std::filesystem::create_directories(hostFile("C:\\xc\\" + deep));
  cards.setXChargeDirectoryKeyed("C:\\xc\\" + deep);
  EXPECT_TRUE(cards.AddTransactionToBatch(2, fields, 11, 1, 4, 10));
  EXPECT_TRUE(isThere(path(deep + "\\" + fields->guid, ".req")));
  EXPECT_FALSE(cards.IsBatchOpen(1));
  EXPECT_TRUE(stages().empty());
}

TEST_F(CardBatches, StagesFollowTheFiles) {
  const std::string guid = add(11, 10);
  std::string file = ".req";
  const auto stage = [&] {
    cards.UpdateBatchGroup(1);
    return scalar("select Stage from PaymentBatch").toLong();
  };
  for (const char* state : {".tmp", ".req", ".xch", ".hld"}) {
    for (const auto& [next, expected] : {std::pair{".elsewhere", 2}, {state, 1}}) {
      std::filesystem::rename(hostFile(path(guid, file.c_str())), hostFile(path(guid, next)));
      file = next;
      EXPECT_EQ(stage(), expected) << state;
    }
  }
  std::filesystem::remove(hostFile(path(guid, ".hld")));
  EXPECT_EQ(stage(), 2);
  const Date start = cardClock->now();
  for (const char* half : {"", "\"", "\"YA'7"}) {
    put(path(guid, ".ans"), half);
    EXPECT_EQ(stage(), 1) << half;
  }
  EXPECT_EQ(secondsSince(start), 0) << "an answer that is still being written keeps nobody waiting";
  put(path(guid, ".ans"), "\"YA'7\"\r\n");
  statements();
  EXPECT_EQ(stage(), 3);
  EXPECT_EQ(reads().back(),
            "update PaymentBatch set  stage = 3,  Answer = 'A''7'  where TransactionGUID = '" + guid + "'");
  put(path(guid, ".ans"), "\"NO\"\r\n");
  EXPECT_EQ(stage(), 3) << "it is not looked at again";
  EXPECT_EQ(reads(), std::vector<std::string>{"select * from PaymentBatch where BatchID = '1'"});
  execute("update PaymentBatch set Stage = 2");
  EXPECT_EQ(stage(), -2);
  EXPECT_FALSE(cards.IsBatchOpen(1));
  EXPECT_TRUE(cards.IsBatchReadyToClose(1)) << "a batch of refusals";
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
  const std::vector<std::string> sent = reads();
  ASSERT_EQ(sent.size(), 6u);
  EXPECT_EQ(
      sent[4],
      "execute dbo.InsertPayment '1', '2', '4', '11', 'CREDIT CARD', 10, '************1111', 'A100001', "
      "'XXXXX', '1', '2812', NULL");
  EXPECT_EQ(
      rows("select storeId, terminalId, employeeId, customerSequenceNumber, ticketNumber, paymentAmount, "
           "checkOrCardNumber, approvalCode, creditCardId from Payment where paymentAction = 'Batch'"),
      std::vector<std::string>{"1 | 2 | 4 | 11 | NULL | 10 | ************1111 | A100001 | 1"});
  EXPECT_FALSE(cards.IsBatchOpen(1));
  EXPECT_FALSE(cards.IsBatchReadyToClose(1));
}

TEST_F(CardBatches, AWithdrawnChargeLosesTheFilesThatTheCardProgramHasNotTaken) {
  const std::string guid = add(11, 10);
  for (const char* suffix : {".ans", ".xch"}) put(path(guid, suffix), "");
  statements();
  cards.CloseBatchGroup(1, 1, 2, 4);
  EXPECT_EQ(reads().back(), "update PaymentBatch set Stage = -3 where TransactionGUID = '" + guid + "'");
  EXPECT_FALSE(isThere(path(guid, ".req")) || isThere(path(guid, ".ans")));
  EXPECT_TRUE(isThere(path(guid, ".xch")));
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
