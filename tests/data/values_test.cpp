#include "data/values.h"

#include <gtest/gtest.h>

#include <cmath>

#include "data/query_database.h"

namespace ondrel {
namespace {

TEST(TextForms, JsonEscapesTheBackslashFirstAndKeepsNull) {
  EXPECT_EQ(jsonEscape("a\\b\"c\r\nd").text(), "a\\\\b\\\"c\\r\\nd");
  EXPECT_EQ(jsonEscape("\\\"").text(), "\\\\\\\"");
  EXPECT_TRUE(jsonEscape(Variant::null()).isNull());
  EXPECT_EQ(jsonEscape(7).text(), "7");
}

TEST(TextForms, ScriptEscapeLosesTheQuote) {
  EXPECT_EQ(jsEscapeSimple("12\" \\ coat"), "12\\ \\\\ coat");
  EXPECT_EQ(jsEscapeSimple(Variant::null()), "");
}

TEST(TextForms, HtmlEncodesByWindows1252Code) {
  EXPECT_EQ(htmlEncode("a<b> & \"c\" 'd'"), "a&lt;b&gt; &amp; &quot;c&quot; 'd'");
  EXPECT_EQ(htmlEncode("\xC3\x88"), "&#200;");
  EXPECT_EQ(htmlEncode("\xE2\x82\xAC\t"), "&#128;&#9;");
  EXPECT_EQ(htmlEncode("\xC5\x81\xC3\xB3<\xE6\xBC\xA2?"), "\xC5\x81&#243;&lt;\xE6\xBC\xA2?")
      << "no code page has both";
  EXPECT_EQ(htmlEncode(Variant::null()), "");
}

TEST(TextForms, SqlTexts) {
  EXPECT_EQ(sqlString("O'Brien"), "'O''Brien'");
  EXPECT_EQ(sqlString(""), "NULL");
  EXPECT_EQ(sqlString(" "), "' '");
  EXPECT_EQ(sqlString(Variant::null()), "NULL");
  EXPECT_EQ(sqlQuotedOrNull(Variant::null()), "null");
  EXPECT_EQ(sqlQuotedOrNull(""), "''");
  EXPECT_EQ(sqlNumber(1.5), "1.5");
  EXPECT_EQ(sqlNumber(Variant::null()), "NULL");
  EXPECT_EQ(escapeSql("O'Brien"), "O''Brien");
  EXPECT_EQ(escapeSqlValue(12), "12");
}

TEST(Rounding, WholeAmountFloors) {
  EXPECT_EQ(wholeAmount(-1.5), -2);
  EXPECT_EQ(wholeAmount(1.99), 1);
}

TEST(Rounding, MoneyFollowsItsFormula) {
  EXPECT_DOUBLE_EQ(roundMoney("tax", 1.239), 1.24);
  EXPECT_DOUBLE_EQ(roundMoney("total", -0.005), 0);
  EXPECT_DOUBLE_EQ(roundMoney("lineitem", -0.006), -0.01);
  // (1.005 + 0.005) / 0.01 stays just under 101 in double precision.
  EXPECT_EQ(roundMoney("tax", 1.005), std::floor((1.005 + 0.005) / 0.01) * 0.01);
  EXPECT_EQ(roundMoney("anything", 2.345), roundMoney("tax", 2.345));
}

TEST(Rounding, DecimalPlacesGoAwayFromZero) {
  EXPECT_EQ(roundingDP(2.5, 0), 3);
  EXPECT_EQ(roundingDP(-2.5, 0), -3);
  EXPECT_DOUBLE_EQ(roundingDP(1.255, 2), 1.25);  // 125.49999999999999 in double precision
  EXPECT_EQ(roundingDP(1249, -2), 1200);
  try {
    roundingDP(1, 51);
    FAIL();
  } catch (const Error& error) {
    EXPECT_EQ(error.code(), ErrorNumber::SubscriptOutOfRange);
  }
}

TEST(Rounding, ToAMultiple) {
  EXPECT_DOUBLE_EQ(roundTo(10.02, 0.05), 10.0);
  EXPECT_DOUBLE_EQ(roundTo(10.03, 0.05), 10.05);
  Variant step = 0;
  EXPECT_DOUBLE_EQ(roundTo(Variant(5), step).toDouble(), 5);
  EXPECT_EQ(step.toDouble(), 0.01);
  EXPECT_EQ(roundTo(Variant("abc"), step).text(), "abc");
}

TEST(Rounding, TheStrayTailIsDroppedFirst) {
  EXPECT_EQ(round2(2.0000000000000004, 2), 2);
  Variant price = 0.1 + 0.2;  // 0.30000000000000004
  EXPECT_DOUBLE_EQ(round2(price, 2).toDouble(), 0.3);
  EXPECT_EQ(price.toDouble(), 0.3) << "the argument takes the number of its text form";
  Variant word = "abc";
  EXPECT_EQ(round2(word, 2).text(), "abc");
}

TEST(Rounding, StatementTextRoundsDecimals) {
  const struct {
    Variant value;
    int digits;
    const char* text;
  } cases[] = {
      {1.005, 2, "1.01"}, {-1.005, 2, "-1.01"},          {12, 2, "12.00"}, {2.5, 0, "3"}, {"7.1", 2, "7.10"},
      {"abc", 2, "abc"},  {1234567.891, 2, "1234567.89"}};
  for (const auto& [value, digits, text] : cases) EXPECT_EQ(roundDB(value, digits).toText(), text);
}

TEST(Quantities, TextThatIsNoNumberCountsAsOne) {
  EXPECT_EQ(integerOrOne("3"), 3);
  EXPECT_EQ(integerOrOne("many"), 1);
  EXPECT_EQ(integerOrOne(""), 1);
  EXPECT_EQ(integerOrOne(Variant::null()), 1);
}

}  // namespace
}  // namespace ondrel
