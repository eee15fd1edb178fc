#include "cards/request_lines.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <vector>

#include "base/text.h"
#include "data/card_numbers.h"

namespace ondrel {
namespace {

constexpr std::string_view kCardOnFile = "XA";
constexpr size_t kClerkLength = 20;
constexpr size_t kReceiptLength = 16;

std::string requestLine(const std::vector<std::string>& values) {
  return fmt::format("\"{}\"", fmt::join(values, "\",\""));
}

std::string clerkText(const Variant& clerk) {
  return keepAlphanumeric(clerk.joined()).substr(0, kClerkLength);
}

std::string receiptText(const Variant& receipt) {
  return keepAlphanumeric(receipt.joined()).substr(0, kReceiptLength);
}

bool isBlank(std::string_view text) {
  return trim(text).empty();
}

// A value that stands behind blank ones keeps their places.
void addVerification(std::vector<std::string>& values, const CreditCardFields& fields) {
  const bool hasCode = !isBlank(fields.cvv2);
  const bool hasAddress = hasCode || !isBlank(fields.address);
  const bool hasZip = hasAddress || !isBlank(fields.zip);
  if (hasZip) values.push_back(keepAlphanumeric(fields.zip));
  if (hasAddress) values.push_back(keepAlphanumeric(fields.address));
  if (hasCode) values.push_back(keepDigits(fields.cvv2));
}

}  // namespace

std::string amountText(double amount) {
  std::string text = fixedText(amount, 2);
  const size_t whole = text.starts_with('-') ? 1 : 0;
  if (text.compare(whole, 2, "0.") == 0) text.erase(whole, 1);
  return text;
}

std::string expirationText(const CreditCardFields& fields) {
  return fmt::format("{:02}{:02}", fields.expirationyear, fields.expirationmonth);
}

std::string makeRequestString(const CreditCardFields& fields, const Variant& clerk, const Variant& receipt,
                              const Variant& amount) {
  const bool isOnFile = fields.accountnumber.starts_with(kCardOnFile);
  std::vector<std::string> values = {
      "C1",
      clerkText(clerk),
      receiptText(receipt),
      std::string(trim(fields.accountnumber)),
      isOnFile ? "" : expirationText(fields) + fields.swipedata,
      amountText(amount.toDouble()),
  };
  if (!isOnFile) addVerification(values, fields);
  return requestLine(values);
}

std::string makeRequestStringDebit(const CreditCardFields& fields, const Variant& clerk,
                                   const Variant& receipt, const DebitDetails& debit) {
  return requestLine({
      "D1",
      clerkText(clerk),
      receiptText(receipt),
      amountText(debit.purchaseAmount),
      amountText(debit.cashBackAmount),
      amountText(debit.total()),
      std::string(trim(fields.accountnumber)),
      "",
      fields.swipedata,
      keepAlphanumeric(debit.block),
      keepAlphanumeric(debit.key),
  });
}

}  // namespace ondrel
