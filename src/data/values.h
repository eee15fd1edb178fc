#pragma once

#include <string>
#include <string_view>

#include "base/variant.h"

namespace ondrel {

// ---- text forms

// The forms for mark-up and script text, appended to a text that grows.
void appendJsonEscaped(std::string& target, std::string_view text);
void appendJsEscaped(std::string& target, std::string_view text);
void appendHtmlEncoded(std::string& target, std::string_view text);

// For a JSON text: backslash, quote, CR and LF escaped. Null stays Null.
Variant jsonEscape(const Variant& value);
// For a script text in an attribute: backslashes doubled and each quote turned into a single backslash,
// which loses the quote. The empty text for Null.
std::string jsEscapeSimple(const Variant& value);
// Quote, ampersand and angle brackets as entities, control characters and those from 128 on as the
// decimal number of their Windows-1252 code; a character without one stays. The empty text for Null.
std::string htmlEncode(const Variant& value);
// Doubles each single quote. One behaviour under two names; the second is in general use.
std::string escapeSql(const Variant& value);
std::string escapeSqlValue(const Variant& value);
// The argument unchanged: what stands for the escape where a value goes in bare.
const Variant& plainValue(const Variant& value);
// 'value' with quotes doubled; null when the value is Null or has no text form.
std::string sqlQuotedOrNull(const Variant& value);
// 'value' with quotes doubled; NULL for Null and for the empty text. Blanks are content.
std::string sqlString(const Variant& value);
// The value's bare text; NULL for Null.
std::string sqlNumber(const Variant& value);

// Whether a setting is on: not Null, and true as a Boolean. Error 13 for a text that is none.
bool isOn(const Variant& setting);
// The whole number of a quantity as a page sends it, 1 when it is no number.
std::int32_t integerOrOne(const Variant& quantity);

// ---- rounding
//
// | function   | to                     | half                          |
// |------------|------------------------|-------------------------------|
// | roundMoney | cents                  | up, in double arithmetic      |
// | roundingDP | `digits` places        | away from zero                |
// | roundTo    | a multiple of `step`   | up, in double arithmetic      |
// | round2     | `digits` places        | away from zero, stray tail of |
// |            |                        | floating-point error dropped  |
// | roundDB    | `digits` places, text  | away from zero, on decimals   |

// The largest whole number not above the value.
double wholeAmount(double value);
// All kinds round alike; the kind stays so that a caller can say what it rounds.
double roundMoney(std::string_view kind, double amount);
// `digits` from -50 to 50; error 9 outside.
double roundingDP(double value, int digits);
// A value that is no number comes back unchanged. A `step` of 0 or less counts as 0.01 and is written back.
Variant roundTo(const Variant& value, Variant& step);
double roundTo(double value, double step);
// A value that is no number comes back unchanged. `value` is written back as the number that its text
// form says.
Variant round2(Variant& value, int digits);
double round2(double value, int digits);
// The text of a number in a statement. A value that is no number comes back unchanged. Error 5 for more than 1000
// digits before or behind the point.
Variant roundDB(const Variant& value, int digits);

}  // namespace ondrel
