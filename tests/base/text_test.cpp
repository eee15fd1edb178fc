#include "base/text.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace ondrel {
namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();

TEST(TextTest, NumbersShowUpTo15SignificantDigits) {
  const std::pair<double, const char*> cases[] = {
      // clang-format off
      {-0.0, "0"},                {-12.5, "-12.5"},           {100, "100"},                   {0.1 + 0.2, "0.3"},
      {2.0000000000000004, "2"},  {1.0 / 3, "0.333333333333333"}, {2.0 / 3, "0.666666666666667"},
      {123456789012345, "123456789012345"}, {1e14, "100000000000000"}, {1e15, "1E+15"},       {-1.5e20, "-1.5E+20"},
      {1e100, "1E+100"},          {0.00001, "0.00001"},       {1e-15, "0.000000000000001"},   {-2.5e-20, "-2.5E-20"},
      {999999999999999.9, "1E+15"}, {0.0000123456789012345, "1.23456789012345E-05"},
      {kInfinity, "1.#INF"},      {-kInfinity, "-1.#INF"},    {std::nan(""), "-1.#IND"},
      // clang-format on
  };
  for (const auto& [value, text] : cases) EXPECT_EQ(numberText(value), text);
}

TEST(TextTest, NumberTextIsReadAsThePlatformDoes) {
  const std::pair<const char*, double> accepted[] = {
      // clang-format off
      {" 12 ", 12},       {"\t12\t", 12},   {"+3", 3},         {"- 3", -3},       {".5", 0.5},     {"5.", 5},
      {"-.5", -0.5},      {"1,234.50", 1234.5}, {"12,34", 1234}, {"-$5.25", -5.25}, {"$-5.25", -5.25}, {"$ 5", 5},
      {"1e3", 1000},      {"1E+3", 1000},   {"25e-1", 2.5},    {"000.10", 0.1},
      {"123456789012345678901", 123456789012345678901.0},
      // clang-format on
  };
  for (const auto& [text, value] : accepted) EXPECT_EQ(parseNumber(text), value) << text;
  for (const char* text :
       {"",   " ",  "abc", "12a",   "a12",   "1 2",   "1.2.3", "--1", "-+1",  "$$1",   ".",   "-",   "$",
        "1e", "e5", "1e+", "1e2.5", "1e2e3", "1.5,0", ",5",    "5-",  "0x1F", "1e999", "inf", "nan", "#5"})
    EXPECT_FALSE(parseNumber(text)) << text;
}

TEST(TextTest, AmountsRoundHalfAwayFromZeroOnTheirDecimalDigits) {
  const struct {
    double value;
    int digits;
    const char* text;
  } cases[] = {
      // clang-format off
      // 1.005 lies below itself in binary
      {1.005, 2, "1.01"},   {-1.005, 2, "-1.01"}, {1.0049, 2, "1.00"},  {1.00499999999999, 2, "1.00"},
      {2.675, 2, "2.68"},   {0.5, 0, "1"},        {-0.5, 0, "-1"},      {0.49999, 0, "0"},
      {0.05, 1, "0.1"},     {0.005, 2, "0.01"},   {-0.004, 2, "0.00"},  {0.0005, 2, "0.00"},
      {9.995, 2, "10.00"},  {99.999, 0, "100"},   {12, 2, "12.00"},     {0.125, 4, "0.1250"},
      {1e20, 2, "100000000000000000000.00"},      {1e-300, 3, "0.000"}, {-kInfinity, 2, "-1.#INF"},
      {1234567890123456, 1, "1234567890123460.0"},  // 15 digits count
      // clang-format on
  };
  for (const auto& each : cases) EXPECT_EQ(fixedText(each.value, each.digits), each.text) << each.value;
}

TEST(TextTest, CurrencyHasCommasAndBracketsForDebts) {
  const std::pair<double, const char*> cases[] = {
      // clang-format off
      {0.1, "$0.10"},             {-0.001, "$0.00"},          {999.994, "$999.99"},         {999.995, "$1,000.00"},
      {-1234.5, "($1,234.50)"},   {100000, "$100,000.00"},    {-1e9, "($1,000,000,000.00)"}, {std::nan(""), "-1.#IND"},
      // clang-format on
  };
  for (const auto& [value, text] : cases) EXPECT_EQ(currencyText(value), text);
}

TEST(TextTest, TrimsBlanksOnly) {
  EXPECT_EQ(trim("  two words  "), "two words");
  EXPECT_EQ(trim("\t x\n"), "\t x\n");
  EXPECT_EQ(trim("   "), "");
}

TEST(TextTest, CaseCoversTheAccentedLettersOfTheAnsiPage) {
  EXPECT_EQ(toLower("ABZ É × Š Ÿ 1"), "abz é × š ÿ 1");
  EXPECT_EQ(toUpper("müller ÷ ß œ ÿ"), "MÜLLER ÷ ß Œ Ÿ");
  EXPECT_EQ(toUpper("ж"), "ж");  // outside the page
  const struct {
    const char *a, *b;
    int order;
  } cases[] = {{"Café", "CAFÉ", 0}, {"Cafe", "Café", -1},    {"ab", "abc", -1},      {"@", "`", -1},
               {"[", "{", -1},      {"apple", "BANANA", -1}, {"shirts", "SHIRT", 1}, {"", "a", -1},
               {"é", "Z", 1},       {"Äx", "äX", 0}};
  for (const auto& [a, b, order] : cases) {
    const int found = compareIgnoringCase(a, b);
    EXPECT_EQ((found > 0) - (found < 0), order) << a << " " << b;
    EXPECT_EQ(equalsIgnoringCase(a, b), order == 0) << a << " " << b;
  }
}

TEST(TextTest, CountsCharactersNotBytes) {
  EXPECT_EQ(characterCount("José € 👔"), 8u);
  EXPECT_EQ(leftCharacters("é€!", 2), "é€");
  EXPECT_EQ(leftCharacters("ab", 5), "ab");
  EXPECT_EQ(leftCharacters("ab", 0), "");
}

TEST(TextTest, ByteOutsideAValidSequenceIsACharacterOfItsOwn) {
  const struct {
    std::string_view text;
    size_t characters;
    char32_t first;
  } cases[] = {
      // clang-format off
      {"\xE9", 1, 0xE9},                // cut off, and the ANSI code of é
      {"\xE2\x82", 2, 0xE2},
      {"\xC3(", 2, 0xC3},
      {"\x80", 1, 0x80},
      {"\xC0\xAF", 2, 0xC0},            // longer than needed
      {"\xF0\x80\x80\xAF", 4, 0xF0},
      {"\xED\xA0\x80", 3, 0xED},        // half of a pair
      {"\xF4\x90\x80\x80", 4, 0xF4},    // behind the last character
      {"\xF0\x9F\x91\x94", 1, 0x1F454},
      // clang-format on
  };
  for (const auto& each : cases) {
    size_t position = 0;
    EXPECT_EQ(characterCount(each.text), each.characters);
    EXPECT_EQ(nextCharacter(each.text, position), each.first);
  }
}

TEST(TextTest, AnsiCodesAndCharactersAnswerEachOther) {
  for (int code = 0; code < 256; ++code) {
    EXPECT_EQ(ansiCode(ansiCharacter(code)), code);
    std::string text;
    appendCharacter(text, ansiCharacter(code));
    size_t position = 0;
    EXPECT_EQ(nextCharacter(text, position), ansiCharacter(code));
    EXPECT_EQ(position, text.size());
  }
  EXPECT_EQ(ansiCharacter(128), 0x20ACu);  // euro
  EXPECT_EQ(ansiCharacter(146), 0x2019u);  // closing quote
  EXPECT_EQ(ansiCharacter(233), 0xE9u);
  EXPECT_EQ(ansiCode(0x1F454), '?');
}

TEST(TextTest, ReplacesFromLeftToRight) {
  EXPECT_EQ(replaceAll("O'Brien's", "'", "''"), "O''Brien''s");
  EXPECT_EQ(replaceAll("aaa", "aa", "b"), "ba");
  EXPECT_EQ(replaceAll("abc", "", "x"), "abc");
}

TEST(Text, ANulOrABrokenByteIsSeenAtEveryPlace) {
  EXPECT_TRUE(isWholeText("select 'a brown caf\u00e9' from Store"));
  for (size_t place = 0; place < 20; ++place)
    for (const char bad : {'\0', '\x80', '\xff'}) {
      std::string text(20, 'x');
      text[place] = bad;
      EXPECT_FALSE(isWholeText(text)) << place;
    }
}

}  // namespace
}  // namespace ondrel
