#include "services/helper_functions.h"

#include <gtest/gtest.h>

#include "support/error_of.h"

namespace ondrel {
namespace {

using namespace std::string_literals;

struct Case {
  std::string text;
  int options;
  std::string result;
};

TEST(HelperFunctions, ConvertTexts) {
  const Case cases[] = {
      {"Zoë o'Hanlon", vbUpperCase, "ZOË O'HANLON"},
      {"ÉMILE ŒUF", vbLowerCase, "émile œuf"},
      {"mary-ann o'HANLON\tÉMILE", vbProperCase, "Mary-ann O'hanlon\tÉmile"},
      {"Ab ~!", vbWide, "Ａｂ　～！"},
      {"ｶﾞｯﾂ ﾊﾟﾝ ｳﾞｱﾞ｡", vbWide, "ガッツ　パン　ヴア゛。"},
      {"Ａｂ　～！ é", vbNarrow, "Ab ~! é"},
      {"¢£¬¯¦¥₩ €", vbWide, "￠￡￢￣￤￥￦　€"},
      {"￠￡￢￣￤￥￦　€", vbNarrow, "¢£¬¯¦¥₩ €"},
      {"ガッツパンヴヂヱ。", vbNarrow, "ｶﾞｯﾂﾊﾟﾝｳﾞﾁﾞヱ｡"},
      {"ひらがなゝ x", vbKatakana, "ヒラガナヽ x"},
      {"カタカナヽー", vbHiragana, "かたかなゝー"},
      {"ab か", vbUpperCase + vbWide + vbKatakana, "ＡＢ　カ"},
      {"ガ", vbNarrow + vbHiragana, "ｶﾞ"},
      {"A€", vbUnicode, "A\0\xC2\xAC "s},
      {"AB", vbFromUnicode, "\xE4\x89\x81"},  // 0x4241
      {"ABC", vbFromUnicode,
       "\xE4\x89\x81"
       "C"},
      {"", vbFromUnicode, ""},
  };
  const HelperFunctions helper;
  for (const Case& row : cases)
    EXPECT_EQ(helper.ASPStrConv(row.text, row.options, 0).toText(), row.result) << row.text << row.options;
}

// Whatever the bytes are, packing them and taking them apart gives them back; Ø and ß make half of a pair.
TEST(HelperFunctions, BytesComeBack) {
  const HelperFunctions helper;
  for (const char* text : {"four", "aØ", "aßØb", "€uro"}) {
    const Variant packed = helper.ASPStrConv(text, vbFromUnicode, 1033);
    EXPECT_EQ(helper.ASPStrConv(packed, vbUnicode, 1033).toText(), text);
  }
}

TEST(HelperFunctions, RefuseOtherOptions) {
  const HelperFunctions helper;
  for (const int options : {0, -1, 12, 48, 192, 256, vbUpperCase + 256})
    EXPECT_EQ(errorOf([&] { helper.ASPStrConv("a", options, 0); }), 5) << options;
  EXPECT_EQ(errorOf([&] { helper.ASPStrConv("a", "upper", 0); }), 13);
  EXPECT_TRUE(helper.ASPStrConv(Variant::null(), vbUpperCase, 0).isNull());
}

}  // namespace
}  // namespace ondrel
