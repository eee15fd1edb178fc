#include "data/values.h"

#include <gtest/gtest.h>

#include <cmath>

#include "data/query_database.h"
#include "support/error_of.h"

namespace ondrel {
namespace {

const Variant kNothing = Variant::null();

TEST(TextForms, JsonEscapesTheBackslashFirstAndKeepsNull) {
  EXPECT_EQ(jsonEscape("a\\b\"c\r\nd\\\"").text(), "a\\\\b\\\"c\\r\\nd\\\\\\\"");
  EXPECT_TRUE(jsonEscape(kNothing).isNull());
}

TEST(TextForms, ScriptEscapeLosesTheQuote) {
  EXPECT_EQ(jsEscapeSimple("12\" \\ coat"), "12\\ \\\\ coat");
}

TEST(TextForms, HtmlEncodesByWindows1252Code) {
  EXPECT_EQ(htmlEncode("a<b> & \"c\" 'd'"), "a&lt;b&gt; &amp; &quot;c&quot; 'd'");
  EXPECT_EQ(htmlEncode("\xC3\x88\xE2\x82\xAC\t"), "&#200;&#128;&#9;");
  EXPECT_EQ(htmlEncode("\xC5\x81\xC3\xB3<\xE6\xBC\xA2?"), "\xC5\x81&#243;&lt;\xE6\xBC\xA2?")
      << "no code page has both";
  EXPECT_EQ(htmlEncode(kNothing), "");
}

TEST(TextForms, SqlTexts) {
  EXPECT_EQ(sqlString("O'Brien") + sqlString("") + sqlString(" ") + sqlString(kNothing),
            "'O''Brien'NULL' 'NULL");
  EXPECT_EQ(sqlQuotedOrNull(kNothing) + sqlQuotedOrNull(""), "null''");
  EXPECT_EQ(sqlNumber(1.5) + sqlNumber(kNothing), "1.5NULL");
  EXPECT_EQ(escapeSql("O'Brien"), "O''Brien");
}

TEST(Rounding, MoneyFollowsItsFormula) {
  EXPECT_DOUBLE_EQ(roundMoney("tax", 1.239), 1.24);
  EXPECT_DOUBLE_EQ(roundMoney("total", -0.005), 0);
  EXPECT_DOUBLE_EQ(roundMoney("lineitem", -0.006), -0.01);
  // (1.005 + 0.005) / 0.01 stays just under 101 in double precision.
  EXPECT_EQ(roundMoney("tax", 1.005), std::floor((1.005 + 0.005) / 0.01) * 0.01);
  EXPECT_EQ(wholeAmount(-1.5), -2);
}

TEST(Rounding, DecimalPlacesGoAwayFromZero) {
  EXPECT_EQ(roundingDP(2.5, 0), 3);
  EXPECT_EQ(roundingDP(-2.5, 0), -3);
  EXPECT_DOUBLE_EQ(roundingDP(1.255, 2), 1.25);  // 125.49999999999999 in double precision
  EXPECT_EQ(roundingDP(1249, -2), 1200);
  EXPECT_EQ(errorOf([] { roundingDP(1, 51); }), 9);
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
  Variant price = 0.1 + 0.2, word = "abc";
  EXPECT_DOUBLE_EQ(round2(price, 2).toDouble(), 0.3);
  EXPECT_EQ(price.toDouble(), 0.3) << "the argument takes the number of its text form";
  EXPECT_EQ(round2(word, 2).text(), "abc");
}

TEST(Rounding, StatementTextRoundsDecimals) {
  EXPECT_EQ(roundDB(1.005, 2).toText(), "1.01");
  EXPECT_EQ(roundDB("7.1", 2).toText(), "7.10");
  EXPECT_EQ(roundDB("abc", 2).toText(), "abc");
  for (const int digits : {1'001, 2'147'483'647, -2'147'483'647 - 1})
    EXPECT_THROW(roundDB(1.5, digits), Error) << digits << " places would not fit into a statement";
}

TEST(Quantities, TextThatIsNoNumberCountsAsOne) {
  EXPECT_EQ(integerOrOne("3"), 3);
  for (const Variant& quantity : {Variant("many"), Variant(""), kNothing})
    EXPECT_EQ(integerOrOne(quantity), 1);
}

}  // namespace
}  // namespace ondrel
