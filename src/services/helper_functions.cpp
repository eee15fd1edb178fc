#include "services/helper_functions.h"

#include <array>
#include <string>
#include <utility>

#include "base/text.h"
#include "platform/utf16.h"

namespace ondrel {
namespace {

constexpr char32_t kFirstWide = 0xFF01, kLastWide = 0xFF5E, kWideShift = 0xFF01 - '!';
constexpr char32_t kWideBlank = 0x3000;
constexpr char32_t kHiraganaShift = 0x60;

std::string properCase(std::string_view text) {
  std::string result;
  bool isStart = true;
  for (size_t position = 0; position < text.size();) {
    const size_t from = position;
    const char32_t character = nextCharacter(text, position);
    const std::string_view letter = text.substr(from, position - from);
    result += isStart ? toUpper(letter) : toLower(letter);
    isStart = character == 0 || (character >= '\t' && character <= '\r') || character == ' ';
  }
  return result;
}

// ---- width

// The full-width forms of half-width katakana from U+FF61 on; those that take a voice mark are followed by
// their voiced form, and in the h row by the half-voiced one behind it.
constexpr char32_t kFirstHalfKatakana = 0xFF61;
// clang-format off
constexpr std::array<char16_t, 63> kFullKatakana = {
    u'。', u'「', u'」', u'、', u'・', u'ヲ', u'ァ', u'ィ', u'ゥ', u'ェ', u'ォ', u'ャ', u'ュ', u'ョ', u'ッ', u'ー',
    u'ア', u'イ', u'ウ', u'エ', u'オ', u'カ', u'キ', u'ク', u'ケ', u'コ', u'サ', u'シ', u'ス', u'セ', u'ソ', u'タ',
    u'チ', u'ツ', u'テ', u'ト', u'ナ', u'ニ', u'ヌ', u'ネ', u'ノ', u'ハ', u'ヒ', u'フ', u'ヘ', u'ホ', u'マ', u'ミ',
    u'ム', u'メ', u'モ', u'ヤ', u'ユ', u'ヨ', u'ラ', u'リ', u'ル', u'レ', u'ロ', u'ワ', u'ン', u'゛', u'゜'};
// clang-format on
constexpr char32_t kHalfVoiceMark = 0xFF9E, kHalfHalfVoiceMark = 0xFF9F;

// Signs whose full-width forms stand apart from the letters.
constexpr std::array<std::pair<char32_t, char32_t>, 7> kWideSigns = {{
    {U'¢', U'￠'},
    {U'£', U'￡'},
    {U'¬', U'￢'},
    {U'¯', U'￣'},
    {U'¦', U'￤'},
    {U'¥', U'￥'},
    {U'₩', U'￦'},
}};

char32_t wideSign(char32_t character) {
  for (const auto& [plain, full] : kWideSigns)
    if (plain == character) return full;
  return character;
}

char32_t narrowSign(char32_t character) {
  for (const auto& [plain, full] : kWideSigns)
    if (full == character) return plain;
  return character;
}

char32_t voiced(char32_t full) {
  if (full == u'ウ') return u'ヴ';
  const bool takesMark =
      (full >= u'カ' && full <= u'ト' && full != u'ッ') || (full >= u'ハ' && full <= u'ホ');
  return takesMark ? full + 1 : 0;
}

char32_t halfVoiced(char32_t full) {
  return full >= u'ハ' && full <= u'ホ' ? full + 2 : 0;
}

std::string wide(std::string_view text) {
  std::string result;
  for (size_t position = 0; position < text.size();) {
    char32_t character = nextCharacter(text, position);
    if (character == ' ') {
      character = kWideBlank;
    } else if (character > ' ' && character <= '~') {
      character += kWideShift;
    } else if (character >= kFirstHalfKatakana && character <= kHalfHalfVoiceMark) {
      character = kFullKatakana[character - kFirstHalfKatakana];
      size_t behind = position;
      const char32_t mark = position < text.size() ? nextCharacter(text, behind) : 0;
      const char32_t joined = mark == kHalfVoiceMark       ? voiced(character)
                              : mark == kHalfHalfVoiceMark ? halfVoiced(character)
                                                           : 0;
      if (joined != 0) {
        character = joined;
        position = behind;
      }
    } else {
      character = wideSign(character);
    }
    appendCharacter(result, character);
  }
  return result;
}

void appendHalfKatakana(std::string& result, char32_t full) {
  for (size_t k = 0; full > kWideBlank && k < kFullKatakana.size(); ++k) {
    const char32_t half = kFirstHalfKatakana + static_cast<char32_t>(k);
    const char32_t base = kFullKatakana[k];
    if (base != full && voiced(base) != full && halfVoiced(base) != full) continue;
    appendCharacter(result, half);
    if (voiced(base) == full) appendCharacter(result, kHalfVoiceMark);
    if (halfVoiced(base) == full) appendCharacter(result, kHalfHalfVoiceMark);
    return;
  }
  appendCharacter(result, full);
}

std::string narrow(std::string_view text) {
  std::string result;
  for (size_t position = 0; position < text.size();) {
    const char32_t character = nextCharacter(text, position);
    if (character == kWideBlank)
      result += ' ';
    else if (character >= kFirstWide && character <= kLastWide)
      appendCharacter(result, character - kWideShift);
    else
      appendHalfKatakana(result, narrowSign(character));
  }
  return result;
}

// ---- script

bool isHiragana(char32_t c) {
  return (c >= u'ぁ' && c <= u'ゖ') || c == u'ゝ' || c == u'ゞ';
}

template <class Change>
std::string changeEach(std::string_view text, Change change) {
  std::string result;
  for (size_t position = 0; position < text.size();)
    appendCharacter(result, change(nextCharacter(text, position)));
  return result;
}

std::string katakana(std::string_view text) {
  return changeEach(text, [](char32_t c) { return isHiragana(c) ? c + kHiraganaShift : c; });
}

std::string hiragana(std::string_view text) {
  return changeEach(text, [](char32_t c) { return isHiragana(c - kHiraganaShift) ? c - kHiraganaShift : c; });
}

// ---- bytes

std::string bytesToCharacters(std::string_view text) {
  std::string result;
  for (const char16_t unit : toUtf16(text)) {
    appendCharacter(result, ansiCharacter(unit & 0xFF));
    appendCharacter(result, ansiCharacter(unit >> 8));
  }
  return result;
}

std::string charactersToBytes(std::string_view text) {
  std::u16string units;
  for (size_t position = 0; position < text.size();) {
    const int low = ansiCode(nextCharacter(text, position));
    const int high = position < text.size() ? ansiCode(nextCharacter(text, position)) : 0;
    units += static_cast<char16_t>(high << 8 | low);
  }
  return fromUtf16(units);
}

// ---- options

struct Conversion {
  std::int32_t group;  // the bits of all options that exclude each other
  std::int32_t option;
  std::string (*convert)(std::string_view text);
};

// clang-format off
constexpr std::int32_t kCase = 3, kWidth = 12, kScript = 48, kBytes = 192;
constexpr Conversion kConversions[] = {
    {kCase,   vbUpperCase,   toUpper},
    {kCase,   vbLowerCase,   toLower},
    {kCase,   vbProperCase,  properCase},
    {kWidth,  vbWide,        wide},
    {kWidth,  vbNarrow,      narrow},
    {kScript, vbKatakana,    katakana},
    {kScript, vbHiragana,    hiragana},
    {kBytes,  vbUnicode,     bytesToCharacters},
    {kBytes,  vbFromUnicode, charactersToBytes},
};
// clang-format on

// clang-format off
constexpr ConversionName kNames[] = {
    {"vbUpperCase",   vbUpperCase},
    {"vbLowerCase",   vbLowerCase},
    {"vbProperCase",  vbProperCase},
    {"vbWide",        vbWide},
    {"vbNarrow",      vbNarrow},
    {"vbKatakana",    vbKatakana},
    {"vbHiragana",    vbHiragana},
    {"vbUnicode",     vbUnicode},
    {"vbFromUnicode", vbFromUnicode},
};
// clang-format on

}  // namespace

std::span<const ConversionName> conversionNames() {
  return kNames;
}

Variant HelperFunctions::ASPStrConv(const Variant& strIn, const Variant& convOption,
                                    const Variant& lcid) const {
  const std::int32_t options = convOption.toLong();
  lcid.toLong();
  if (strIn.isNull()) return strIn;
  std::string text = strIn.toText();
  std::int32_t done = 0;
  for (const Conversion& row : kConversions) {
    if ((options & row.group) != row.option) continue;
    text = row.convert(text);
    done |= row.option;
  }
  if (done == 0 || done != options)
    throw Error(ErrorNumber::InvalidCall, "HelperFunctions",
                "Invalid procedure call or argument: conversion " + std::to_string(options));
  return text;
}

}  // namespace ondrel
