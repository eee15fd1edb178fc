#include <algorithm>

#include "base/text.h"
#include "data/dialect/server_errors.h"
#include "data/embedded/functions.h"

namespace ondrel::sql {
namespace {

constexpr std::string_view kCouponUses =
    "select count(distinct l.ticketNumber) from TicketLineItem l join Ticket t on t.ticketNumber = "
    "l.ticketNumber "
    "where t.customerSequenceNumber = ?1 and l.ticketLineType = 'CU' and l.lineItemID = ?2";

constexpr std::string_view kVisits =
    "select count(*) from Ticket where customerSequenceNumber = ?1 "
    "and (?2 is null or createdDate >= ?2) and (?3 is null or createdDate <= ?3)";

constexpr std::string_view kRackLocations =
    "select distinct rackLocation from rackassignment where ticketnumber = ?1 and rackLocation <> '' order "
    "by rackLocation";

// The value of a statement that gives one number.
std::int64_t countOf(const FunctionCall& call, sqlite3_stmt* statement) {
  if (sqlite3_step(statement) != SQLITE_ROW)
    throw serverError(ServerError::InvalidObject, sqlite3_errmsg(call.context().handle));
  const std::int64_t result = sqlite3_column_int64(statement, 0);
  sqlite3_reset(statement);
  return result;
}

void bindText(sqlite3_stmt* statement, int index, const FunctionCall& call, int argument) {
  if (call.isNull(argument)) return;
  const std::string_view text = call.text(argument);
  sqlite3_bind_text(statement, index, text.data(), static_cast<int>(text.size()), SQLITE_TRANSIENT);
}

// getCustomerCouponUses(customer, discount): on how many tickets of the customer the coupon was used.
void customerCouponUses(const FunctionCall& call) {
  sqlite3_stmt* statement = call.context().prepared(kCouponUses);
  sqlite3_bind_int64(statement, 1, call.integer(0));
  sqlite3_bind_int64(statement, 2, call.integer(1));
  call.give(countOf(call, statement));
}

// getCustomerVisits(customer, from, to): number of the customer's tickets written from `from` to `to`; a
// bound that is Null is none.
void customerVisits(const FunctionCall& call) {
  sqlite3_stmt* statement = call.context().prepared(kVisits);
  sqlite3_bind_int64(statement, 1, call.integer(0));
  bindText(statement, 2, call, 1);
  bindText(statement, 3, call, 2);
  call.give(countOf(call, statement));
}

std::string digitsOf(std::string_view text) {
  std::string digits;
  std::copy_if(text.begin(), text.end(), std::back_inserter(digits), isDigit);
  return digits;
}

// formatPhone(area code, number): "(555) 123-4567", without the area code when there is none; a number
// that has not seven digits stays as it is.
void formatPhone(const FunctionCall& call) {
  constexpr size_t kExchangeDigits = 3, kPhoneDigits = 7;
  std::string phone(trim(call.text(1)));
  const std::string digits = digitsOf(phone);
  if (digits.size() == kPhoneDigits)
    phone = digits.substr(0, kExchangeDigits) + "-" + digits.substr(kExchangeDigits);
  const std::string area = digitsOf(call.text(0));
  if (!area.empty() && !phone.empty()) phone = "(" + area + ") " + phone;
  call.give(std::string_view(phone));
}

// pivotTicketRackLocationBrief(ticket, separator): the rack locations of a ticket in one text.
void ticketRackLocations(const FunctionCall& call) {
  sqlite3_stmt* statement = call.context().prepared(kRackLocations);
  sqlite3_bind_int64(statement, 1, call.integer(0));
  std::string result;
  for (bool first = true; sqlite3_step(statement) == SQLITE_ROW; first = false) {
    if (!first) result += call.text(1);
    result += reinterpret_cast<const char*>(sqlite3_column_text(statement, 0));
  }
  sqlite3_reset(statement);
  call.give(std::string_view(result));
}

// clang-format off
constexpr RegisteredFunction kStoreFunctions[] = {
    {"getCustomerCouponUses",        2, customerCouponUses,  0},
    {"getCustomerVisits",            3, customerVisits,      0},
    {"formatPhone",                  2, formatPhone},
    {"pivotTicketRackLocationBrief", 2, ticketRackLocations, 0},
};
// clang-format on

}  // namespace

std::span<const RegisteredFunction> storeFunctions() {
  return kStoreFunctions;
}

}  // namespace ondrel::sql
