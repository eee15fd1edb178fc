#include "cards/credit_card_processing.h"

#include "base/ignore_errors.h"
#include "base/text.h"
#include "data/card_masking.h"
#include "data/card_numbers.h"
#include "data/query_database.h"
#include "data/values.h"

namespace ondrel {
namespace {

constexpr size_t kLongestNumber = 255;
constexpr size_t kStripeMarks = 2;  // start sentinel and format code
constexpr size_t kTailLength = 32;
constexpr size_t kKeyLength = 16;

std::string asFolder(const std::string& directory) {
  return replaceAll(replaceAll(directory + "\\", "/", "\\"), "\\\\", "\\");
}

std::vector<std::string_view> split(std::string_view text, char mark) {
  std::vector<std::string_view> pieces;
  for (size_t end; (end = text.find(mark)) != std::string_view::npos; text.remove_prefix(end + 1))
    pieces.push_back(text.substr(0, end));
  pieces.push_back(text);
  return pieces;
}

void takeName(std::string_view name, CreditCardFields& fields) {
  const auto pieces = split(name, '/');
  fields.lastname = pieces.size() > 1 ? pieces[0] : "";
  fields.firstname = pieces.size() > 1 ? pieces[1] : pieces[0];
}

// "2812": year and month. Both are set or none.
void takeExpiration(std::string_view digits, CreditCardFields& fields) {
  ignoreErrors([&] {
    const std::int32_t year = Variant(digits.substr(0, 2)).toLong();
    fields.expirationmonth = Variant(digits.substr(std::min<size_t>(2, digits.size()), 2)).toLong();
    fields.expirationyear = year;
  });
}

}  // namespace

// ---------------------------------------------------------------- properties

void CreditCardProcessing::setDBConnectionString(const std::string& connectionString) {
  apartment_->DBConnectionString = connectionString;
}

void CreditCardProcessing::setXChargeDirectory(const std::string& directory) {
  directory_ = asFolder(directory);
  if (trim(directoryKeyed_).empty()) setXChargeDirectoryKeyed(directory);
}

void CreditCardProcessing::setXChargeDirectoryKeyed(const std::string& directory) {
  directoryKeyed_ = asFolder(directory);
}

// ---------------------------------------------------------------- card numbers

bool CreditCardProcessing::VerifyCreditCard(const Variant& Number, Variant& CardName,
                                            Variant& ErrorMsg) const {
  const CardCheck check = checkCardNumber(Number.toText());
  if (!check.brand.empty()) CardName = check.brand;
  if (!check.isValid) ErrorMsg = check.message;
  return check.isValid;
}

bool CreditCardProcessing::VerifyMod10(const Variant& Number) const {
  const std::string number = Number.toText();
  if (number.size() > kLongestNumber) throw Error(ErrorNumber::Overflow, className(), "Overflow");
  if (!isAllDigits(number)) throw Error(ErrorNumber::TypeMismatch, className(), "Type mismatch");
  return passesLuhn(number);
}

// Track 1 is %B<account>^<name>^<yymm>..., track 2 <account>=<yymm>...
CreditCardFieldsRef CreditCardProcessing::FieldsFromSwipe(const Variant& swipe) const {
  auto fields = std::make_shared<CreditCardFields>();
  fields->swipedata = swipe.toText();
  const auto tracks = split(fields->swipedata, ';');
  const auto parts = split(tracks[0], '^');
  if (parts.size() <= 2) return fields;

  const std::string_view account = parts[0].substr(leftCharacters(parts[0], kStripeMarks).size());
  if (tracks.size() > 1 && !tracks[1].starts_with(account)) return fields;

  fields->accountnumber = account;
  takeName(parts[1], *fields);
  takeExpiration(parts[2], *fields);
  return fields;
}

bool CreditCardProcessing::DecipherDUKPT(const Variant& dukpt, Variant& block, Variant& key) const {
  const std::string text = dukpt.toText();
  const size_t length = characterCount(text);
  if (length < kTailLength) return false;
  const std::string_view tail =
      std::string_view(text).substr(leftCharacters(text, length - kTailLength).size());
  const std::string_view head = leftCharacters(tail, kKeyLength);
  key = head;
  block = tail.substr(head.size());
  return true;
}

Variant CreditCardProcessing::getCreditCardTypeID(const Variant& storeid, const Variant& ccnumber) const {
  const CardCheck check = checkCardNumber(ccnumber.toText());
  if (!check.isValid) return Variant();
  const RecordsetRef types = queryDatabase(
      *apartment_, "select creditCardTypeID from creditcardtypedomain where storeid = '" +
                       escapeSqlValue(storeid) + "' and name = " + sqlQuotedOrNull(check.brand));
  return types->eof() ? Variant() : types->value("creditCardTypeID");
}

}  // namespace ondrel
