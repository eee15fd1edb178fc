#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace ondrel {

// Text is UTF-8. Case is ignored for ASCII letters and for the accented letters of Windows-1252.

constexpr bool isDigit(char c) {
  return c >= '0' && c <= '9';
}
constexpr bool isLetter(char c) {
  return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
}

// Without blanks (the character 32, nothing else) at both ends.
std::string_view trim(std::string_view text);

std::string toLower(std::string_view text);
std::string toUpper(std::string_view text);

// Order of two texts without regard to case: negative, 0 or positive.
int compareIgnoringCase(std::string_view a, std::string_view b);
bool equalsIgnoringCase(std::string_view a, std::string_view b);

// Number of characters. A byte that is no part of a valid sequence counts as one character.
size_t characterCount(std::string_view text);

// The first `count` characters.
std::string_view leftCharacters(std::string_view text, size_t count);

// Takes the character at `position` and moves `position` behind it. A byte that is no part of a valid
// sequence gives its own value.
char32_t nextCharacter(std::string_view text, size_t& position);

// True for UTF-8 without a NUL.
bool isWholeText(std::string_view text);
void appendCharacter(std::string& text, char32_t character);

// Code of a character in Windows-1252; 63, the question mark, for a character that it lacks.
int ansiCode(char32_t character);
// Character of a Windows-1252 code from 0 to 255.
char32_t ansiCharacter(int code);

// `text` with every `what` replaced by `with`; an empty `what` replaces nothing.
std::string replaceAll(std::string_view text, std::string_view what, std::string_view with);

// Number text as the platform reads it: blanks around, a sign, thousands commas, a decimal point, a
// currency sign, an exponent. No value when the text is not a number.
std::optional<double> parseNumber(std::string_view text);

// Shortest of the forms with up to 15 significant digits, no trailing zeros: 1.5, 0.001, 1E+20.
std::string numberText(double value);
void appendNumber(std::string& text, double value);
// Writes the number to a place with room for kShortNumber characters and gives the end; nothing, and nothing
// written, for one that takes the long way of appendNumber.
inline constexpr size_t kShortNumber = 24;
char* writeNumber(char* to, std::int32_t value);
char* writeShortNumber(char* to, double value);
// What that text reads as: `value` without what its digits do not show.
double shownValue(double value);

// "$1,234.50", negative "($1,234.50)"; rounded half away from zero on the decimal digits.
std::string currencyText(double value);

// `value` with `digits` places after the point, rounded half away from zero on the 15 decimal digits
// that the value shows.
std::string fixedText(double value, int digits);
void appendFixed(std::string& text, double value, int digits);
// As writeShortNumber.
char* writeShortFixed(char* to, double value, int digits);

}  // namespace ondrel
