#include <gmock/gmock.h>

#include "cards/card_fixture.h"
#include "cards/exchange_files.h"

namespace ondrel {

// The operations on the card program's archive are the class's own.
struct CardArchive {
  CreditCardProcessing& cards;
  Variant add(int customer, const char* number) { return cards.addCardToArchive(customer, number, "2812"); }
  bool update(const Variant& id) { return cards.updateCardInArchive(id, "3001"); }
  bool remove(const Variant& id) { return cards.deleteCardFromArchive(id); }
};

namespace {

using testing::ElementsAre;

constexpr const char* kDocument =
    "<?xml version=\"1.0\" standalone=\"yes\"?><XCTRANSACTION><TRANSACTION><TRANSACTIONTYPE>XC_SALE"
    "</TRANSACTIONTYPE><RECEIPT>R1</RECEIPT>";
const std::string kFrame = "<XCTRANSACTION><TRANSACTION>", kFrameEnd = "</TRANSACTION></XCTRANSACTION>";
constexpr const char* kAccounts =
    "select xcaccountid, cardtype, accountnumber, expiration, recurring from xcaccount where customersequencenumber = 12";
constexpr const char* kCustomer =
    "select creditCardTypeName, creditCardNumber, creditCardExpDate from Customer where customerSequenceNumber = 12";

class XmlCards : public CardTest {
 protected:
  // Answers the only request in the folder, and gives its text.
  std::string answer(const std::string& text) {
    for (const auto& entry : std::filesystem::directory_iterator(folder)) {
      if (entry.path().extension() != ".xcr") continue;
      std::ifstream file(entry.path());
      const std::string request(std::istreambuf_iterator<char>(file), {});
      std::filesystem::path path = entry.path();
      std::filesystem::remove(path);
      std::ofstream(path.replace_extension(".xca")) << text;
      return request;
    }
    return "";
  }
};

// Leaves an answer, half of it first, while the library sleeps.
class AnsweringClock : public FixedClock {
 public:
  AnsweringClock(Date now, std::function<void(int)> onSleep)
      : FixedClock(now), onSleep_(std::move(onSleep)) {}
  void sleep(std::chrono::milliseconds duration) override {
    FixedClock::sleep(duration);
    onSleep_(++sleeps_);
  }

 private:
  std::function<void(int)> onSleep_;
  int sleeps_ = 0;
};

TEST_F(XmlCards, APurchaseSendsOneDocumentAndReadsItsAnswer) {
  struct Case {
    const char* track;
    std::string answer;  // within its frame
    const char* code;    // Empty where it is nothing
    const char* message;
  };
  const std::string success = "<RESULT_SUCCESS>T</RESULT_SUCCESS>";
  const std::string approved = success +
                               "<RESULT_DESCRIPTION>OK, fine</RESULT_DESCRIPTION>"
                               "<RESULT_APPROVALCODE> A7 </RESULT_APPROVALCODE>";
  const Case cases[] = {
      {"", approved, "A7", "OKfine"},
      {"%B1?", approved, "A7", "OKfine"},
      {"", success, nullptr, "Unknown"},
      {"", "<RESULT_DESCRIPTION>NO</RESULT_DESCRIPTION><RESULT_APPROVALCODE>A8</RESULT_APPROVALCODE>",
       nullptr, "NO"},
      {"", "<a><b></a>", nullptr, "Unknown"},
      {"", "", nullptr, "Unknown"},
      {"",
       success + "<RESULT_DESCRIPTION>A&B</RESULT_DESCRIPTION><RESULT_APPROVALCODE>A9</RESULT_APPROVALCODE>",
       nullptr, "Unknown"},
  };
  for (const Case& row : cases) {
    std::string request;
    apartment->clock = std::make_shared<AnsweringClock>(cardClock->now(), [&](int sleeps) {
      if (sleeps == 2) request = answer(row.answer.empty() ? "" : kFrame + row.answer + kFrameEnd);
    });
    const Variant code = cards.CardPurchase("4111", "2812", row.track, "12.50", "R1");
    const std::string card =
        *row.track ? "<TRACK>%B1?</TRACK>" : "<ACCOUNT>4111</ACCOUNT><EXPIRATION>2812</EXPIRATION>";
    EXPECT_EQ(request, kDocument + card + "<AMOUNT>12.50</AMOUNT></TRANSACTION></XCTRANSACTION>");
    EXPECT_TRUE(row.code ? code.toText() == row.code : code.isEmpty()) << row.answer;
    EXPECT_EQ(cards.GetLastMessage(), row.message);
  }
}

TEST_F(XmlCards, NobodyAnsweringEndsAfter152SecondsAndKeepsTheMessage) {
  const Date start = cardClock->now();
  EXPECT_TRUE(cards.CardPurchase("4111", "2812", "", "1.00", "").isEmpty());
  EXPECT_EQ(cards.GetLastMessage(), "");
  EXPECT_NEAR(secondsSince(start), 152, 0.01);
  EXPECT_NE(answer(""), "") << "the request is still there";
}

TEST_F(XmlCards, HalfAnAnswerIsNotTaken) {
  const std::string whole =
      kFrame + "<RESULT_SUCCESS>T</RESULT_SUCCESS><RESULT_APPROVALCODE>A7</RESULT_APPROVALCODE>" + kFrameEnd;
  for (const size_t half : {size_t{0}, size_t{30}, size_t{82}}) {
    const std::string id = cards.BeginTransaction("<a/>");
    put(path(id, ".xca"), whole.substr(0, half));
    apartment->clock = std::make_shared<AnsweringClock>(cardClock->now(), [&](int sleeps) {
      if (sleeps == 2) put(path(id, ".xca"), whole);
    });
    EXPECT_TRUE(cards.IsTransactionFinished(id));
    EXPECT_EQ(cards.GetTransactionResults(id), whole);
    EXPECT_FALSE(cards.IsTransactionFinished(id));
    EXPECT_EQ(cards.GetTransactionResults(id), "");
  }
}

TEST_F(XmlCards, ARequestThatCannotBeWrittenLeavesNothing) {
  put("C:\\xc\\a.xcr", "old");
  const Date start = cardClock->now();
  EXPECT_FALSE(waitUntilGone(*apartment, "C:\\xc\\a.xcr"));
  EXPECT_NEAR(secondsSince(start), 55, 0.01);
  // A folder of its name stands in the way.
  std::filesystem::create_directories(folder / "b.xcr" / "full");
  EXPECT_EQ(errorOf([&] { writeThenRename(apartment->files, "4111", "C:\\xc\\b", "C:\\xc\\b.xcr"); }), 75);
  EXPECT_FALSE(isThere("C:\\xc\\b"));

  cards.setXChargeDirectory("Q:/none");
  EXPECT_EQ(cards.BeginTransaction("<a/>"), "");
  Variant transactionId = "old";
  EXPECT_EQ(cards.CompleteTransaction("<a/>", transactionId), "");
  EXPECT_EQ(transactionId.toText(), "");
  EXPECT_NEAR(secondsSince(start), 55 + 152, 0.01);
}

TEST_F(XmlCards, TheArchiveGoesThroughTheCardProgram) {
  startSimulator();
  execute("delete from xcaccount");
  CardArchive archive{cards};
  const Variant id = archive.add(12, "4111111111111111");
  const std::string kept = id.toText() + " | VISA | XXXXXXXXXXXX1111 | ";
  EXPECT_THAT(rows(kAccounts), ElementsAre(kept + "2812 | True"));
  EXPECT_THAT(rows(kCustomer), ElementsAre("VISA | " + id.toText() + " | 2812"));
  EXPECT_TRUE(archive.update(id));
  EXPECT_THAT(rows(kAccounts), ElementsAre(kept + "3001 | True"));
  EXPECT_TRUE(archive.remove(id));
  EXPECT_TRUE(rows(kAccounts).empty());
}

TEST_F(XmlCards, CardsOnFileStandWithTheCustomer) {
  execute("delete from xcaccount");
  const std::vector<std::string> before = rows(kCustomer);
  statements();
  EXPECT_TRUE(cards.AddCardOnFile(12, "4111111111111112", "2812").isEmpty());
  EXPECT_TRUE(statements().empty());
  EXPECT_EQ(rows(kCustomer), before);
  const std::string row = "5555555555554444 | MasterCard | 5555555555554444 | 2812 | True";
  for (int times = 0; times < 2; ++times)
    EXPECT_EQ(cards.AddCardOnFile(12, "5555555555554444", "2812").toText(), "5555555555554444");
  EXPECT_THAT(rows(kAccounts), ElementsAre(row, row));
  statements();
  cards.AddCardOnFile(12, "5555555555554444", "2812");
  cards.UpdateCardOnFile("5555555555554444", "3001");
  EXPECT_THAT(rows(kCustomer), ElementsAre("MasterCard | 5555555555554444 | 3001"));
  cards.DeleteCardOnFile("5555555555554444");
  EXPECT_TRUE(rows(kAccounts).empty());
  EXPECT_THAT(rows(kCustomer), ElementsAre(" | NULL | NULL"));
  EXPECT_THAT(
      reads(),
      ElementsAre(
          " update customer set   creditCardTypeName = 'MasterCard', creditCardNumber = '************4444', "
          "creditCardExpDate = '2812', creditCardInXc = 0  where customersequencenumber = 12",
          " insert into xcaccount (xcaccountid, customersequencenumber, recurring, cardtype, accountnumber, "
          "expiration)  values (  '************4444', 12, 1 , 'MasterCard', '************4444', '2812')",
          " update xcaccount set expiration = '3001' where xcaccountid = '************4444'",
          " update customer set  creditCardExpDate = '3001'  where creditCardNumber = '************4444'",
          " delete xcaccount where xcaccountid = '************4444'",
          " update customer set   creditCardTypeName = '', creditCardNumber = null, creditCardExpDate = null, "
          "creditCardInXc = 0  where creditCardNumber = '************4444'"));
}

}  // namespace
}  // namespace ondrel
