#pragma once

#include <string>
#include <string_view>

namespace ondrel {

std::string keepDigits(std::string_view text);
std::string keepAlphanumeric(std::string_view text);
// True for an empty text.
bool isAllDigits(std::string_view text);

// The check of card numbers: every second digit from the right doubled, 9 taken off a doubled value of 10 or
// more, the sum a multiple of 10. The text holds digits only.
bool passesLuhn(std::string_view digits);

struct CardCheck {
  bool isValid = false;
  std::string_view brand;  // empty when the first four digits belong to none
  std::string message;     // empty when valid
};

// Brand, length and check digit of a number; anything but digits in it is dropped first.
CardCheck checkCardNumber(std::string_view number);

// "************" and the last four characters of the trimmed number.
std::string maskedCardNumber(std::string_view number);

}  // namespace ondrel
