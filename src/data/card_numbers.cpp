#include "data/card_numbers.h"

#include <fmt/format.h>

#include <algorithm>
#include <iterator>

#include "base/text.h"

namespace ondrel {
namespace {

constexpr size_t kShownDigits = 4;
constexpr std::string_view kStars = "************";

constexpr size_t kPrefixDigits = 4;

struct BrandRange {
  int first, last;  // of the first four digits
  std::string_view brand;
  size_t length;
};

// Searched in this order. A Visa number has 16 digits; those of 13 are refused.
// clang-format off
constexpr BrandRange kBrands[] = {
    {3000, 3059, "Diners Club",         14},
    {3600, 3699, "Diners Club",         14},
    {3800, 3889, "Diners Club",         14},
    {3400, 3499, "American Express",    15},
    {3700, 3799, "American Express",    15},
    {3528, 3589, "JCB",                 16},
    {3890, 3899, "Carte Blanche",       14},
    {4000, 4999, "Visa",                16},
    {5100, 5599, "MasterCard",          16},
    {5610, 5610, "Australian BankCard", 16},
    {6011, 6011, "Discover",            16},
};
// clang-format on

template <class Keeps>
std::string filtered(std::string_view text, Keeps keeps) {
  std::string result;
  std::copy_if(text.begin(), text.end(), std::back_inserter(result), keeps);
  return result;
}

const BrandRange* brandOf(std::string_view digits) {
  int prefix = 0;
  for (const char digit : digits.substr(0, kPrefixDigits)) prefix = prefix * 10 + (digit - '0');
  const auto found = std::find_if(std::begin(kBrands), std::end(kBrands), [&](const BrandRange& row) {
    return prefix >= row.first && prefix <= row.last;
  });
  return found == std::end(kBrands) ? nullptr : found;
}

}  // namespace

std::string keepDigits(std::string_view text) {
  return filtered(text, isDigit);
}

std::string keepAlphanumeric(std::string_view text) {
  return filtered(text, [](char c) { return isDigit(c) || isLetter(c); });
}

bool isAllDigits(std::string_view text) {
  return std::all_of(text.begin(), text.end(), isDigit);
}

bool passesLuhn(std::string_view digits) {
  int sum = 0;
  bool isDoubled = false;
  for (auto digit = digits.rbegin(); digit != digits.rend(); ++digit, isDoubled = !isDoubled) {
    const int value = (*digit - '0') * (isDoubled ? 2 : 1);
    sum += value > 9 ? value - 9 : value;
  }
  return sum % 10 == 0;
}

CardCheck checkCardNumber(std::string_view number) {
  const std::string digits = keepDigits(number);
  const BrandRange* row = brandOf(digits);
  if (!row) return {false, "", "Invalid Credit Card Type"};
  if (digits.size() != row->length)
    return {false, row->brand,
            fmt::format("Invalid {}.  Number has {} Digits and Needs {}.", row->brand, digits.size(),
                        row->length)};
  if (!passesLuhn(digits)) return {false, row->brand, "Invalid Credit Card Number."};
  return {true, row->brand, ""};
}

std::string maskedCardNumber(std::string_view number) {
  const std::string_view plain = trim(number);
  const size_t count = characterCount(plain);
  const size_t hidden = leftCharacters(plain, count > kShownDigits ? count - kShownDigits : 0).size();
  return std::string(kStars) + std::string(plain.substr(hidden));
}

}  // namespace ondrel
