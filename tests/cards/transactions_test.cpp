#include <gmock/gmock.h>

#include "cards/card_fixture.h"
#include "cards/exchange_files.h"
#include "data/query_database.h"
#include "platform/guid.h"

namespace ondrel {
namespace {

using testing::ElementsAre;

constexpr const char* kTimedOut = "TIMED OUT WAITING FOR ANSWER";
constexpr const char* kTransactions =
    "select terminalid, clerk, receipt, amount, customerSequenceNumber, answer from XChargeTransaction";

// The statements of a request from terminal 1 and of its answer.
std::string insertOf(const CreditCardFieldsRef& fields, const char* receipt, const char* amount) {
  return "insert into XChargeTransaction (TransactionGUID, RequestFile, terminalid, clerk, receipt, amount, "
         "customerSequenceNumber)  VALUES ('" +
         fields->guid + "', 'C:\\xc\\FRONT1', null, 4, '" + receipt + "', " + amount + ", null)";
}
std::string answerOf(const CreditCardFieldsRef& fields, const char* code) {
  return std::string(" update xchargetransaction set  dateAnswered = getdate() ,answer = '") + code +
         "' where transactionguid = '" + fields->guid + "'";
}

using CardTransactions = CardTest;

TEST_F(CardTransactions, PropertiesAreKeptInTheirNormalForm) {
  CreditCardProcessing other;
  other.setXChargeDirectory("C:/xc//in");
  EXPECT_EQ(other.XChargeDirectory(), "C:\\xc\\in\\");
  EXPECT_EQ(other.XChargeDirectoryKeyed(), "C:\\xc\\in\\");
  other.setXChargeDirectory("D:");
  EXPECT_EQ(other.XChargeDirectoryKeyed(), "C:\\xc\\in\\");
  other.setXChargeTimeout(-5);
  EXPECT_EQ(other.XChargeTimeout(), 0);
}

TEST_F(CardTransactions, WithoutAFolderNoCardIsWrittenAnywhere) {
  CreditCardProcessing none;
  statements();
  EXPECT_EQ(none.RequestSingleTransaction(2, visa(), 4, "", 1), "");
  Variant code;
  EXPECT_FALSE(none.ProcessFullTransaction(1, 2, 4, 11, "", visa(), 1, "", 0, code));
  EXPECT_EQ(code.toText(), "COULD NOT WRITE REQUEST FILE");
  EXPECT_EQ(none.BeginTransaction("<X/>"), "");
  EXPECT_THAT(statements(), testing::Each(testing::HasSubstr("creditCardRequestFilename")));
}

TEST_F(CardTransactions, DraftsThatASuddenEndLeftAreCleared) {
  const std::string old = "C:\\xc\\" + newGuid(), fresh = "C:\\xc\\" + newGuid(), whole = old + ".req";
  for (const std::string& each : {old, fresh, whole}) put(each, "number");
  for (const std::string& each : {old, whole})
    std::filesystem::last_write_time(hostFile(each),
                                     std::filesystem::file_time_type::clock::now() - std::chrono::hours(1));
  EXPECT_EQ(clearUnfinishedRequests(apartment->files, "C:/xc"), 1);
  EXPECT_TRUE(isThere(fresh) && isThere(whole));
  EXPECT_EQ(clearUnfinishedRequests(apartment->files, "C:/nowhere"), 0);
}

TEST_F(CardTransactions, ARequestClearsTheLastOneAndLeavesItsRow) {
  put("C:\\xc\\FRONT1.req", "old");
  put("C:\\xc\\FRONT1.ans", "\"YOLD\"\r\n");
  const CreditCardFieldsRef fields = visa();
  statements();
  EXPECT_EQ(cards.RequestSingleTransaction(1, fields, 4, "R'1", 12.5), "C:\\xc\\FRONT1.req");
  EXPECT_EQ(content("C:\\xc\\FRONT1.req"), "\"C1\",\"4\",\"R1\",\"4111111111111111\",\"2812\",\"12.50\"\r\n");
  EXPECT_FALSE(isThere("C:\\xc\\FRONT1.ans"));
  EXPECT_EQ(fields->guid.size(), 38u);
  EXPECT_THAT(
      reads(),
      ElementsAre(
          " select isnull(creditCardRequestFilename, '') as filename from terminal where terminalid = '1'",
          insertOf(fields, "R''1", "12.5")));
  EXPECT_FALSE(cards.IsAnswerReady(fields->guid));

  cards.setXChargeDirectoryKeyed("C:/keyed");
  EXPECT_EQ(cards.DefaultRequestPath(2, fields), "C:\\keyed\\" + fields->guid);
  fields->swipedata = "%B1?";
  EXPECT_EQ(cards.DefaultRequestPath(2, fields), "C:\\xc\\" + fields->guid);
  EXPECT_TRUE(cards.getCreditCardRequestFilename(99).isEmpty());
}

TEST_F(CardTransactions, AnAnswerIsOneDelimitedValue) {
  // clang-format off
  const struct {
    const char* text;
    bool approves;
    const char* code;
    int seconds;  // until it is taken
  } cases[] = {
      {"\"YA1,B\",\"x\"\r\n",  true,  "A1,B", 0},
      {"Y1\"2\"\n",            true,  "1\"2\"", 0},
      {"YA1",                  true,  "A1",   2},
      {"\"NDECLINED\"",        false, "DECLINED", 0},
      {" yA1\r\n",             false, "A1",   0},
      {"\xC9t\xE9\n",          false, "t\xC3\xA9", 0},
      {"\r\n",                 false, "",     0},
      {"",                     false, kTimedOut, 61},
      {"\"YA1",                false, kTimedOut, 61},
  };
  // clang-format on
  for (const auto& row : cases) {
    const CreditCardFieldsRef fields = visa();
    cards.RequestSingleTransaction(2, fields, 4, "", 1);
    put(path(fields->guid, ".ans"), row.text);
    const Date start = cardClock->now();
    Variant code;
    EXPECT_EQ(cards.ReadSingleAnswer(fields->guid, code), row.approves) << row.text;
    EXPECT_EQ(code.toText(), row.code);
    EXPECT_NEAR(secondsSince(start), row.seconds, 0.1) << row.text;
    EXPECT_EQ(rows("select answer from XChargeTransaction where TransactionGUID = '" + fields->guid + "'"),
              std::vector<std::string>{row.code});
  }
}

TEST_F(CardTransactions, ATimeOutOfNothingIsOneLook) {
  const CreditCardFieldsRef fields = visa();
  cards.RequestSingleTransaction(2, fields, 4, "", 1);
  Variant code;
  const Date start = cardClock->now();
  cards.setXChargeTimeout(-5);
  EXPECT_FALSE(cards.ReadSingleAnswer(fields->guid, code));
  EXPECT_EQ(secondsSince(start), 0);
  put(path(fields->guid, ".ans"), "\"YA1\"\r\n");
  EXPECT_TRUE(cards.ReadSingleAnswer(fields->guid, code));
  // A request that nobody made has no file, whatever lies in the working folder.
  cards.setXChargeTimeout(1);
  std::ofstream(".ans") << "\"YA2\"\r\n";
  EXPECT_FALSE(cards.ReadSingleAnswer("nobody's", code));
  EXPECT_EQ(code.toText(), kTimedOut);
  std::filesystem::remove(".ans");
}

// What cannot be a request leaves no file and, since an amount that cannot be added up has no row, no row.
TEST_F(CardTransactions, AnAmountThatIsNoNumberIsPassedOver) {
  EXPECT_EQ(cards.RequestSingleTransaction(1, visa(), 4, "", "abc"), "C:\\xc\\FRONT1.req");
  EXPECT_EQ(cards.RequestSingleTransactionDebit(1, visa(), 4, "", 20, "abc", "B", "K"), "C:\\xc\\FRONT1.req");
  EXPECT_TRUE(std::filesystem::is_empty(folder));
  closeTransaction(*apartment);
  EXPECT_TRUE(rows(kTransactions).empty());
}

TEST_F(CardTransactions, SinglesGoThroughTheCardProgram) {
  startSimulator();
  const std::pair<double, const char*> cases[] = {{10, "A100001"},    {10.01, "DECLINED"},
                                                  {10.03, "A100002"}, {10.04, "A100003"},
                                                  {10.05, ""},        {10.02, kTimedOut}};
  for (const auto& [amount, expected] : cases) {
    Variant code;
    const bool approved = cards.ProcessSingleTransaction(2, visa(), 4, "", amount, code);
    EXPECT_EQ(code.toText(), expected) << amount;
    EXPECT_EQ(approved, code.toText().starts_with('A')) << amount;
  }
  Variant code;
  const CreditCardFieldsRef fields = visa();
  statements();
  EXPECT_TRUE(cards.ProcessSingleTransactionDebit(1, fields, 4, "", 20, 5.5, "B", "K", code));
  const std::vector<std::string> sent = reads();
  EXPECT_EQ(sent[1], insertOf(fields, "", "25.5"));
  EXPECT_EQ(sent.back(), answerOf(fields, "A100004"));
}

TEST_F(CardTransactions, ABrandHasAnIdWhereTheShopTakesIt) {
  EXPECT_EQ(cards.getCreditCardTypeID(1, "4111 1111 1111 1111").toLong(), 1);
  statements();
  EXPECT_TRUE(cards.getCreditCardTypeID(1, "4111111111111112").isEmpty());
  EXPECT_TRUE(statements().empty());
  EXPECT_TRUE(cards.getCreditCardTypeID(99, "4111111111111111").isEmpty());
}

class FullSales : public CardTest {
 protected:
  bool sell(const CreditCardFieldsRef& fields, double amount, const char* tickets = "", int type = 2) {
    return cards.ProcessFullTransaction(1, 2, 4, 11, tickets, fields, amount, "", type, code);
  }
  std::vector<std::string> payments() {
    return rows(
        "select paymentNumber, paymentType, paymentAmount, checkOrCardNumber, creditCardId, "
        "creditCardExpirydate, approvalCode, transactionNumber, signatureID from TerminalPayment");
  }
  Variant code;
};

TEST_F(FullSales, EveryOutcomeLeavesRowsThatTellIt) {
  startSimulator();
  EXPECT_TRUE(sell(visa(), 10));
  EXPECT_FALSE(sell(visa(), 10.01));
  EXPECT_FALSE(sell(visa(), 10.02));
  EXPECT_EQ(code.toText(), kTimedOut);
  EXPECT_THAT(rows(kTransactions),
              ElementsAre("2 | 4 |  | 10 | 11 | A100001", "2 | 4 |  | 10.01 | 11 | DECLINED",
                          "2 | 4 |  | 10.02 | 11 | NULL"));
  EXPECT_TRUE(payments().empty());
}

TEST_F(FullSales, APaymentRowStaysWhenItsBookingFails) {
  startSimulator();
  statements();
  // The booking of a ticket that is no number fails behind the payment row.
  EXPECT_NE(errorOf([&] { sell(visa(), 10, " nothing( ", 1); }), 0);
  EXPECT_EQ(payments(), (std::vector<std::string>{
                            "1 | Credit Card | 10 | ************1111 | 1 | 2812 | A100001 | XXXXX | NULL"}));
  EXPECT_EQ(reads().back(), "ApplyPrePayPayment nothing(,11,1,4,2, 'Pickup'");
  auto onFile = visa();
  onFile->accountnumber = "XA12345678";
  EXPECT_NE(errorOf([&] { sell(onFile, 11, "nothing("); }), 0);
  EXPECT_EQ(payments().back(),
            "1 | Credit Card | 11 | ************5678 | NULL | 2812 | A100002 | XXXXX | NULL");
  EXPECT_EQ(reads().back(), "ApplyPrePayPayment nothing(,11,1,4,2, 'Pre pay'");
  for (const int type : {0, -1}) EXPECT_TRUE(sell(visa(), 12, "1001", type));
  EXPECT_EQ(payments().size(), 2u);
}

// Tickets 1007 and 1008 of customer 1, 41.91 and 11.00 to pay, are collected; of 1010 10.00 more is paid ahead.
TEST_F(FullSales, AnApprovedSaleIsBookedOnItsTickets) {
  startSimulator();
  const CreditCardFieldsRef fields = visa();
  statements();
  EXPECT_TRUE(cards.ProcessFullTransaction(1, 2, 4, 1, " '1007,1008' ", fields, 52.91, 77, 1, code));
  const std::vector<std::string> sent = statements();
  // clang-format off
  const std::vector<std::string> booking = {
      "<begin>", answerOf(fields, "A100001"), "<commit>", "<close>",
      "select creditCardTypeID from creditcardtypedomain where storeid = '1' and name = 'Visa'", "<begin>",
      " INSERT INTO TerminalPayment (terminalId, paymentNumber, paymentType,  paymentAmount,checkOrCardNumber, "
      "creditCardId, creditCardExpirydate,  approvalCode, transactionNumber, totalCashPayment, signatureID)  VALUES( "
      "2,1,'Credit Card',52.91,'************1111',1,'2812','A100001','XXXXX',0,77)",
      "<commit>", "<close>", "<begin>", "ApplyPrePayPayment '1007,1008',1,1,4,2, 'Pickup'", "<commit>", "<close>"};
  // clang-format on
  ASSERT_GT(sent.size(), booking.size());
  EXPECT_EQ(std::vector<std::string>(sent.end() - static_cast<long>(booking.size()), sent.end()), booking);
  EXPECT_TRUE(cards.ProcessFullTransaction(1, 2, 4, 16, "1010", visa(), 10, "", 2, code));
  EXPECT_THAT(
      rows("select ticketNumber, paymentAction, paymentType, paymentAmount, checkOrCardNumber, creditCardId, "
           "creditCardExpirydate, approvalCode, transactionNumber, signatureId from Payment where "
           "terminalId = 2 and paymentDate >= '2026-11-24 10:30' order by paymentId"),
      ElementsAre(
          "1007 | Pickup | Credit Card | 41.91 | ************1111 | 1 | 2812 | A100001 | XXXXX | 77",
          "1008 | Pickup | Credit Card | 11 | ************1111 | 1 | 2812 | A100001 | XXXXX | 77",
          "1010 | Pre pay | Credit Card | 10 | ************1111 | 1 | 2812 | A100002 | XXXXX | NULL"));
  EXPECT_THAT(
      rows(
          "select ticketNumber, amountPaid, ticketStatus from Ticket where ticketNumber in (1007, 1008, 1010)"),
      ElementsAre("1007 | 41.91 | FI", "1008 | 11 | FI", "1010 | 30 | AC"));
  EXPECT_TRUE(payments().empty());
}

TEST_F(FullSales, ARetryTakesTheStoredAnswerOrGoesOnWaiting) {
  const CreditCardFieldsRef fields = visa();
  EXPECT_FALSE(sell(fields, 10));
  put(path(fields->guid, ".ans"), "\"YA");
  EXPECT_FALSE(sell(fields, 10));
  EXPECT_EQ(code.toText(), kTimedOut);
  put(path(fields->guid, ".ans"), "\"YA9\"\r\n");
  EXPECT_TRUE(sell(fields, 10));
  EXPECT_EQ(code.toText(), "A9");
  EXPECT_FALSE(sell(fields, 10));  // the stored code has lost its first letter
  EXPECT_EQ(code.toText(), "A9");
  cards.UpdateTransactionAnswer(fields->guid, "Y12");
  EXPECT_TRUE(sell(fields, 10));
  EXPECT_EQ(rows(kTransactions).size(), 1u);

  const CreditCardFieldsRef late = visa();
  cards.RequestSingleTransaction(2, late, 4, "", 10);
  EXPECT_FALSE(cards.ReadSingleAnswer(late->guid, code));
  put(path(late->guid, ".ans"), "\"YA9\"\r\n");
  EXPECT_FALSE(sell(late, 10));
  EXPECT_EQ(code.toText(), kTimedOut);
}

}  // namespace
}  // namespace ondrel
