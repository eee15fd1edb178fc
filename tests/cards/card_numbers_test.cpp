#include <gtest/gtest.h>

#include "cards/credit_card_processing.h"
#include "cards/request_lines.h"
#include "support/error_of.h"

namespace ondrel {
namespace {

constexpr const char* kTracks = "%B4111111111111111^SMITH/JOHN^2812101000?;4111111111111111=2812101000?";

TEST(CardNumbers, AreJudgedByBrandLengthAndCheckDigit) {
  // clang-format off
  const struct {
    const char* number;
    bool isValid;
    const char* brand;  // "unset" where it stays as it was
    const char* message;
  } cases[] = {
      {"4111 1111 1111 1111", true,  "Visa",                "unset"},
      {"4111-1111-1111-1112", false, "Visa",                "Invalid Credit Card Number."},
      {"4222222222222",       false, "Visa",                "Invalid Visa.  Number has 13 Digits and Needs 16."},
      {"3056 9309 0259 04",   true,  "Diners Club",         "unset"},
      {"378282246310005",     true,  "American Express",    "unset"},
      {"5555555555554444",    true,  "MasterCard",          "unset"},
      {"6011111111111117",    true,  "Discover",            "unset"},
      {"5610591081018250",    true,  "Australian BankCard", "unset"},
      {"5611000000000000",    false, "unset",               "Invalid Credit Card Type"},
      {"3060000000000000",    false, "unset",               "Invalid Credit Card Type"},
      {"389012",              false, "Carte Blanche",       "Invalid Carte Blanche.  Number has 6 Digits and Needs 14."},
      {"411",                 false, "unset",               "Invalid Credit Card Type"},
  };
  // clang-format on
  CreditCardProcessing cards;
  for (const auto& row : cases) {
    Variant brand = "unset", message = "unset";
    EXPECT_EQ(cards.VerifyCreditCard(row.number, brand, message), row.isValid) << row.number;
    EXPECT_EQ(brand.toText(), row.brand) << row.number;
    EXPECT_EQ(message.toText(), row.message) << row.number;
  }
  EXPECT_TRUE(cards.VerifyMod10("79927398713"));
  EXPECT_EQ(errorOf([&] { cards.VerifyMod10("4111 1111"); }), 13);
  EXPECT_EQ(errorOf([&] { cards.VerifyMod10(std::string(256, '0')); }), 6);
}

TEST(CardSwipes, GiveTheFieldsOfTrackOne) {
  CreditCardProcessing cards;
  const CreditCardFieldsRef both = cards.FieldsFromSwipe(kTracks);
  EXPECT_EQ(both->accountnumber, "4111111111111111");
  EXPECT_EQ(both->lastname + "," + both->firstname, "SMITH,JOHN");
  EXPECT_EQ(both->expirationyear * 100 + both->expirationmonth, 2812);

  const CreditCardFieldsRef trackOne = cards.FieldsFromSwipe("%B5555555555554444^CARDHOLDER^2701?");
  EXPECT_EQ(trackOne->lastname + "," + trackOne->firstname, ",CARDHOLDER");

  for (const char* swipe : {";4111111111111111=2812?", "%B4111111111111111^SMITH",
                            "%B4111111111111111^SMITH/JOHN^2812?;5555555555554444=2812?"}) {
    const CreditCardFieldsRef kept = cards.FieldsFromSwipe(swipe);
    EXPECT_EQ(kept->swipedata, swipe);
    EXPECT_EQ(kept->accountnumber + kept->firstname, "") << swipe;
  }
  for (const char* swipe : {"%B1^A^XX12", "%B1^A^28", "%B1^A^28X2"}) {
    const CreditCardFieldsRef undated = cards.FieldsFromSwipe(swipe);
    EXPECT_EQ(undated->accountnumber + undated->firstname, "1A") << swipe;
    EXPECT_EQ(undated->expirationyear + undated->expirationmonth, 0) << swipe;
  }
}

TEST(CardSwipes, ThePinReadersTailIsPartedInTheMiddle) {
  CreditCardProcessing cards;
  Variant block = "b", key = "k";
  EXPECT_FALSE(cards.DecipherDUKPT(std::string(31, 'F'), block, key));
  EXPECT_TRUE(cards.DecipherDUKPT("xx0123456789ABCDEFFEDCBA9876543210", block, key));
  EXPECT_EQ(key.toText(), "0123456789ABCDEF");
  EXPECT_EQ(block.toText(), "FEDCBA9876543210");
}

CreditCardFields cardWith(const char* zip, const char* address, const char* cvv2) {
  CreditCardFields fields;
  fields.accountnumber = " 4111111111111111 ";
  fields.expirationyear = 9;
  fields.expirationmonth = 3;
  fields.zip = zip;
  fields.address = address;
  fields.cvv2 = cvv2;
  return fields;
}

TEST(RequestLines, CarryTheCardAndWhatVerifiesIt) {
  const std::string start = R"("C1","Ann12","R7","4111111111111111","0903","12.50")";
  const auto line = [](const CreditCardFields& fields) {
    return makeRequestString(fields, "Ann #12", "R-7", 12.5);
  };
  EXPECT_EQ(line(cardWith("", "", "")), start);
  EXPECT_EQ(line(cardWith("12345-6", "", "")), start + R"(,"123456")");
  EXPECT_EQ(line(cardWith("", "1 Mill St.", "")), start + R"(,"","1MillSt")");
  EXPECT_EQ(line(cardWith("", "", "1x23")), start + R"(,"","","123")");

  CreditCardFields onFile = cardWith("12345", "1 Mill", "123");
  onFile.accountnumber = "XA77";
  EXPECT_EQ(makeRequestString(onFile, std::string(30, 'c'), std::string(30, 'r'), "0.5"),
            "\"C1\",\"" + std::string(20, 'c') + "\",\"" + std::string(16, 'r') + R"(","XA77","",".50")");

  CreditCardFields swiped = cardWith("", "", "");
  swiped.swipedata = "%B1?";
  EXPECT_EQ(makeRequestStringDebit(swiped, 4, "", {20, 5.25, "A-1", "B 2"}),
            R"("D1","4","","20.00","5.25","25.25","4111111111111111","","%B1?","A1","B2")");
  swiped.accountnumber = "";
  EXPECT_EQ(makeRequestString(swiped, 4, "", 1234.5), R"("C1","4","","","0903%B1?","1234.50")");
  EXPECT_EQ(amountText(0) + amountText(-0.5) + amountText(-3), ".00-.50-3.00");
}

}  // namespace
}  // namespace ondrel
