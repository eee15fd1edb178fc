#include <random>

#include "cards/card_fixture.h"
#include "data/card_masking.h"
#include "data/card_numbers.h"
#include "data/query_database.h"
#include "platform/delimited_text.h"
#include "platform/xml.h"

namespace ondrel {
namespace {

constexpr const char* kNumber = "4111111111111111";
constexpr const char* kSwipe = "%B4111111111111111^SMITH/JOHN^2812101998877?;4111111111111111=2812101998877?";
// Whatever tells the card: its number, in groups too, the rest of its tracks, its security code.
constexpr const char* kSecrets[] = {
    kNumber,   "4111 1111 1111 1111", "4111.1111", "4111111111111112", "998877", "73591", "B10CB10C",
    "4E1D4E1D"};

using CardData = CardTest;

TEST_F(CardData, IsMaskedInOnePlace) {
  const std::pair<const char*, const char*> cases[] = {
      {"values ('4111111111111111', 1)", "values ('************1111', 1)"},
      {kSwipe, "%B************1111[track]?;************1111[track]?"},
      {"41111111111111112812", "************11112812"},
      {"378282246310005 3782-822463-10005", "************0005 ************0005"},
      {"5555.5555.5555.4444 5555  5555 - 5555/4444", "************4444 ************4444"},
      {"4111 1111 1111 1111 28, 4111-1111-1111-1111 123", "************1111 28, ************1111 123"},
      {"x = '4 1x1.1.1_1 1 11111,1,1,1(1)', '5555:5555:5555:4444'",
       "x = '************1111', '************4444'"},
      // Brands that have no row, and what clerks put between.
      {"6011000990139424 6011.0009.9013.9424 3530-111333-300000 6304  0000  0000  0000  00",
       "************9424 ************9424 ************0000 ************0000"},
      {"4111 1111 1111 111 1, 4 1 1 1 1 1 1 1 1 1 1 1 1 1 1 1", "************1111, ************1111"},
      {"４１１１ １１１１ １１１１ １１１１, on 11/24/2026", "************1111, on 11/24/2026"},
      {"4111-11-11 11:11:11 11", "************1111"},
      {"%B4111111111111112^A/B^2812?;4111111111111112=2812?",
       "%B************1112[track]?;************1112[track]?"},
      // By its column: a wrong check digit, a digit that is missing, a number that is not quoted.
      {"insert into PaymentBatch (BatchID, AccountNumber, Answer) values (1, '4111-1111 11111112', '2'), (2, "
       "411111111111, null)",
       "insert into PaymentBatch (BatchID, AccountNumber, Answer) values (1, '************1112', '2'), (2, "
       "************1111, null)"},
      {"near \"x\": update Customer set creditCardNumber='411111111111111' where [xcaccountid] = '4111111111111112",
       "near \"x\": update Customer set creditCardNumber='************1111' where [xcaccountid] = '************1112'"},
      {"exec dbo.InsertPayment 1, NULL, '4', '11', 'CREDIT CARD', 10, '4111111111111112', 'A1'",
       "exec dbo.InsertPayment 1, NULL, '4', '11', 'CREDIT CARD', 10, '************1112', 'A1'"},
      {"insert into PaymentBatch (BatchID, AccountNumber) values (1, no number(, '4111111111111112')",
       "insert into PaymentBatch (BatchID, AccountNumber) values (1, no number(, '************1112')"},
      {"insert into t (swipedata, cvv2, debitblock, debitkey) values ('%B4', '123', 'B10C', '')",
       "insert into t (swipedata, cvv2, debitblock, debitkey) values ('[masked]', '[masked]', '[masked]', '')"},
  };
  for (const auto& [text, masked] : cases) EXPECT_EQ(maskCardData(text), masked);
  // No card data: amounts, identifiers, dates, numbers of checks and of kept cards.
  for (const char* text :
       {"insert into TerminalPayment (checkOrCardNumber) values('300'), ('XA12345678'), (null)",
        "4.111111111111111, '4.111111111111111', 4187.1111111111111 - 4111.111111111111",
        "'C:\\xc\\{41111111-1111-4111-1111-411111111111}', (4111,1111,1111,1111)", "0.4111111111111111",
        "{12345678-1234-4123-8123-123456789012}", "'2026-11-24 10:30:00', 1001, 1002",
        "'11/24/2026 10:30:04', '2026-11-24T10:30:04', 11/24/2026 11/30/2026", "５５５ １２３"})
    EXPECT_EQ(maskCardData(text), text);
  EXPECT_EQ(maskedCardNumber(" 4111111111111111 "), "************1111");
  EXPECT_EQ(maskedCardNumber("12"), "************12");
}

// A session of every kind of sale, with failures, and then a look at all that it leaves behind but the
// request files and the columns that keep a card on purpose.
TEST_F(CardData, StandsNowhereThatASessionLeavesBehind) {
  startSimulator();
  std::string left;
  const auto attempt = [&](const std::function<void()>& action) {
    try {
      action();
    } catch (const Error& error) {
      left += error.source() + error.description() + "\n";
    }
  };
  Variant code, name, message;
  for (const double amount : {10.0, 10.01, 10.05}) {
    CreditCardFieldsRef keyed = visa(), swiped = cards.FieldsFromSwipe(kSwipe);
    keyed->cvv2 = "73591";
    attempt([&] { cards.ProcessFullTransaction(1, 2, 4, 11, "nothing(", keyed, amount, "", 1, code); });
    attempt([&] { cards.ProcessFullTransaction(1, 2, 4, 11, "nothing(", swiped, amount, "", 1, code); });
    swiped->guid = "";
    attempt([&] {
      cards.ProcessSingleTransactionDebit(2, swiped, "4'", "", amount, 0, "B10CB10C", "4E1D4E1D", code);
    });
  }
  // Statements that the store refuses, with the card in them.
  attempt([&] { cards.AddTransactionToBatch(2, visa(), 11, 1, "no clerk(", 10); });
  attempt([&] { cards.AddTransactionToBatch(2, cards.FieldsFromSwipe(kSwipe), "", 1, 4, 10); });
  for (const char* number : {kNumber, "4111 1111 1111 1111", "4111.1111.1111.1111", "4111x1111/1111  1111"})
    attempt([&] { cards.AddCardOnFile("no customer(", number, "2812"); });
  auto mistyped = visa();
  mistyped->accountnumber = "4111111111111112";
  attempt([&] { cards.AddTransactionToBatch(2, mistyped, "no customer(", 1, 4, 10); });
  attempt([&] { queryDatabase(*apartment, std::string("select nothing( '") + kSwipe + "'"); });
  closeTransaction(*apartment);
  attempt([&] { cards.VerifyCreditCard("4111111111111112", name, message); });
  attempt([&] { cards.AddTransactionToBatch(2, visa(), 11, 1, 4, 10); });
  attempt([&] { cards.CardPurchase("", "", kSwipe, "10.01", ""); });
  EXPECT_GT(left.size(), 200u);
  for (const std::string& statement : statements()) left += statement + "\n";
  for (const char* table : {"TerminalPayment", "Payment", "XChargeTransaction", "TicketLogItem", "ticketlog"})
    for (const std::string& row : rows(std::string("select * from ") + table)) left += row + "\n";
  left += cards.GetLastMessage() + message.toText();
  for (const auto& entry : std::filesystem::recursive_directory_iterator(drives)) {
    left += entry.path().string() + "\n";
    if (entry.path().extension() == ".ans" || entry.path().extension() == ".xca")
      left += content(entry.path());
  }
  for (const char* secret : kSecrets) EXPECT_EQ(left.find(secret), std::string::npos) << secret;
}

// A swipe, an answer or a document with up to three places changed.
std::string damaged(std::mt19937& random) {
  static constexpr std::string_view kWhole[] = {
      kSwipe, "\"YA1\",\"x\"\r\n", "YA1",
      "<XCTRANSACTION><TRANSACTION><RESULT_SUCCESS>T</RESULT_SUCCESS></TRANSACTION></XCTRANSACTION>"};
  static constexpr std::string_view kCharacters = "%B^;=/?\",\r\nY<>&![] \x01\xE9";
  std::string text(kWhole[random() % std::size(kWhole)]);
  for (size_t changes = random() % 4; changes > 0; --changes)
    text.replace(random() % (text.size() + 1), random() % 4, 1, kCharacters[random() % kCharacters.size()]);
  return text;
}

TEST_F(CardData, HostileInputNeitherCrashesNorHangs) {
  std::mt19937 random(20261124);
  cards.setXChargeTimeout(0);
  const CreditCardFieldsRef fields = visa();
  cards.RequestSingleTransaction(2, fields, 4, "", 1);
  const std::string answer = path(fields->guid, ".ans");
  int approvals = 0;
  for (int round = 0; round < 2000; ++round) {
    const std::string text = damaged(random);
    EXPECT_EQ(cards.FieldsFromSwipe(text)->swipedata, text);
    Variant name, message, code;
    const bool isValid = cards.VerifyCreditCard(text, name, message);
    EXPECT_EQ(isValid, message.isEmpty());
    EXPECT_EQ(maskCardData(text + " '" + kNumber).find(kNumber), std::string::npos) << text;
    XmlDocument().loadXML(text);
    size_t values = 0;
    for (DelimitedText reader(text); !reader.atEnd(); ++values) reader.next();
    EXPECT_LE(values, text.size());
    if (round % 5 > 0) continue;
    put(answer, text);
    const bool approved = cards.ReadSingleAnswer(fields->guid, code);
    EXPECT_TRUE(!approved || text.find('Y') != std::string::npos);
    approvals += approved;
  }
  EXPECT_TRUE(approvals > 50 && approvals < 200) << approvals;
  // Long text costs what its length costs: at its square these would take minutes.
  for (const std::string_view piece : {" InsertPayment 1", "(track) values (1 ", ") values ", "' 1"}) {
    std::string text;
    while (text.size() < 1'000'000) text += piece;
    EXPECT_EQ(maskCardData(text).empty(), false);
  }
  std::string deep;
  for (int level = 0; level < 100000; ++level) deep += "<a>";
  for (const char* end : {"", "</a>"}) {
    for (int level = 0; level < 100000; ++level) deep += end;
    EXPECT_FALSE(XmlDocument().loadXML(deep));
  }
}

}  // namespace
}  // namespace ondrel
