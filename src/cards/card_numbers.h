#pragma once

#include <string>
#include <string_view>

namespace ondrel {

std::string keepDigits(std::string_view text);
std::string keepAlphanumeric(std::string_view text);
// True for an empty text.
bool isAllDigits(std::string_view text);

struct CardCheck {
  bool isValid = false;
  std::string_view brand;  // empty when the first four digits belong to none
  std::string message;     // empty when valid
};

// Brand, length and check digit of a number; anything but digits in it is dropped first.
CardCheck checkCardNumber(std::string_view number);

}  // namespace ondrel
