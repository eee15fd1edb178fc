#pragma once

#include <cstdint>
#include <span>
#include <string_view>

#include "base/variant.h"

namespace ondrel {

// What a conversion does; one of each group can be joined with one of another by adding them.
//
// | group  | option           | changes                                                             |
// |--------|------------------|---------------------------------------------------------------------|
// | case   | vbUpperCase      | to upper case                                                       |
// |        | vbLowerCase      | to lower case                                                       |
// |        | vbProperCase     | the first letter of each word to upper, the others to lower case    |
// | width  | vbWide           | ASCII and half-width katakana to their full-width forms             |
// |        | vbNarrow         | the other way round                                                 |
// | script | vbKatakana       | hiragana to katakana                                                |
// |        | vbHiragana       | katakana to hiragana                                                |
// | bytes  | vbUnicode        | each byte of the text's 16-bit units to the character of that code  |
// |        | vbFromUnicode    | two characters' codes to one 16-bit unit, a last odd one by itself  |
enum StrConvOptionsEnum : std::int32_t {
  vbUpperCase = 1,
  vbLowerCase = 2,
  vbProperCase = 3,
  vbWide = 4,
  vbNarrow = 8,
  vbKatakana = 16,
  vbHiragana = 32,
  vbUnicode = 64,
  vbFromUnicode = 128,
};

struct ConversionName {
  std::string_view name;
  StrConvOptionsEnum option;
};
// The options by name, in the order above.
std::span<const ConversionName> conversionNames();

// What a page's language lacks.
class HelperFunctions : public Object {
 public:
  std::string_view className() const override { return "HelperFunctions"; }

  // `strIn` converted, in the order of the table above; Null stays Null. Error 5 for an option that is none
  // of the table or joins two of a group. `lcid` is a locale's number, 0 for the system's: case and scripts
  // are the same in all, and character codes are those of Windows-1252.
  Variant ASPStrConv(const Variant& strIn, const Variant& convOption, const Variant& lcid) const;
};

}  // namespace ondrel
