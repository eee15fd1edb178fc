#include <array>
#include <cmath>

#include <fmt/format.h>

#include "base/text.h"
#include "data/dialect/function_table.h"
#include "data/dialect/server_errors.h"
#include "data/embedded/functions.h"

namespace ondrel::sql {
namespace {

constexpr std::array<std::string_view, 12> kMonths = {"January",   "February", "March",    "April",
                                                      "May",       "June",     "July",     "August",
                                                      "September", "October",  "November", "December"};
constexpr std::array<std::string_view, 7> kWeekdays = {"Sunday",   "Monday", "Tuesday", "Wednesday",
                                                       "Thursday", "Friday", "Saturday"};

// What stands in the text of a style: Y year, y year in two digits, m month, M its short name, d day, D day
// padded with a blank, H hour, h hour of twelve padded with a blank, i minute, s second, f the thousandths
// (always 0), p AM or PM; anything else stands for itself.
struct Style {
  int number;
  std::string_view pattern;
};

// clang-format off
constexpr Style kStyles[] = {
    {0, "M D Y h:ip"},        {100, "M D Y h:ip"},      {1, "m/d/y"},           {101, "m/d/Y"},
    {2, "y.m.d"},             {102, "Y.m.d"},           {3, "d/m/y"},           {103, "d/m/Y"},
    {4, "d.m.y"},             {104, "d.m.Y"},           {5, "d-m-y"},           {105, "d-m-Y"},
    {6, "d M y"},             {106, "d M Y"},           {7, "M d, y"},          {107, "M d, Y"},
    {8, "H:i:s"},             {108, "H:i:s"},           {9, "M D Y h:i:s:fp"},  {109, "M D Y h:i:s:fp"},
    {10, "m-d-y"},            {110, "m-d-Y"},           {11, "y/m/d"},          {111, "Y/m/d"},
    {12, "ymd"},              {112, "Ymd"},             {13, "d M Y H:i:s:f"},  {113, "d M Y H:i:s:f"},
    {14, "H:i:s:f"},          {114, "H:i:s:f"},         {20, "Y-m-d H:i:s"},    {120, "Y-m-d H:i:s"},
    {21, "Y-m-d H:i:s.f"},    {121, "Y-m-d H:i:s.f"},   {126, "Y-m-dTH:i:s"},
};
// clang-format on

std::string_view patternOf(int style, bool dayOnly) {
  if (style == 0 && dayOnly) return "Y-m-d";
  for (const Style& row : kStyles)
    if (row.number == style) return row.pattern;
  throw serverError(ServerError::DateConversion,
                    fmt::format("{} is not a valid style number when converting a date to text.", style));
}

void appendPiece(std::string& text, char piece, const DateParts& at) {
  const auto put = [&](auto... arguments) { text += fmt::format(arguments...); };
  const int twelve = at.hour % 12 == 0 ? 12 : at.hour % 12;
  switch (piece) {
    case 'Y':
      put(FMT_STRING("{:04}"), at.year);
      break;
    case 'y':
      put(FMT_STRING("{:02}"), at.year % 100);
      break;
    case 'm':
      put(FMT_STRING("{:02}"), at.month);
      break;
    case 'M':
      text += kMonths[static_cast<size_t>(at.month - 1)].substr(0, 3);
      break;
    case 'd':
      put(FMT_STRING("{:02}"), at.day);
      break;
    case 'D':
      put(FMT_STRING("{:2}"), at.day);
      break;
    case 'H':
      put(FMT_STRING("{:02}"), at.hour);
      break;
    case 'h':
      put(FMT_STRING("{:2}"), twelve);
      break;
    case 'i':
      put(FMT_STRING("{:02}"), at.minute);
      break;
    case 's':
      put(FMT_STRING("{:02}"), at.second);
      break;
    case 'f':
      text += "000";
      break;
    case 'p':
      text += at.hour < 12 ? "AM" : "PM";
      break;
    default:
      text += piece;
  }
}

// Sunday = 1, as the server counts.
int sundayWeekday(Date moment) {
  return moment.weekday() % 7 + 1;
}

std::int64_t floorDivide(std::int64_t value, std::int64_t by) {
  return value >= 0 ? value / by : -((by - 1 - value) / by);
}

// Number of the unit that a moment lies in, counted without gaps: the boundaries between two moments are
// the difference of their numbers.
std::int64_t unitNumber(DatePart part, Date moment) {
  const DateParts at = moment.parts();
  const std::int64_t day = moment.day();
  const std::int64_t second = day * 86400 + moment.secondOfDay();
  switch (part) {
    case DatePart::Year:
      return at.year;
    case DatePart::Quarter:
      return at.year * 4 + (at.month - 1) / 3;
    case DatePart::Month:
      return at.year * 12 + at.month - 1;
    case DatePart::Week:
      return floorDivide(day + 6, 7);  // day 1 was a Sunday
    case DatePart::Hour:
      return floorDivide(second, 3600);
    case DatePart::Minute:
      return floorDivide(second, 60);
    case DatePart::Second:
      return second;
    case DatePart::Millisecond:
      return second * 1000;
    default:
      return day;
  }
}

[[noreturn]] void failDateOverflow() {
  throw serverError(ServerError::DateOverflow, "Adding a value to a 'datetime' column caused an overflow.");
}

// The days of a datetime column: 1753 to 9999.
Date within(Date moment) {
  constexpr double kFirst = -53690, kBehind = 2958466;
  if (!(moment.serial() >= kFirst && moment.serial() < kBehind)) failDateOverflow();
  return moment;
}

// Months later, on the last day of the month when it is shorter.
Date monthsLater(Date moment, std::int64_t months) {
  DateParts at = moment.parts();
  constexpr std::int64_t kMost = 12 * 10'000;
  if (months > kMost || months < -kMost) failDateOverflow();
  const std::int64_t month = at.year * 12 + at.month - 1 + months;
  at.year = static_cast<int>(floorDivide(month, 12));
  at.month = static_cast<int>(month - at.year * 12LL) + 1;
  const int length = Date::of(at.year, at.month + 1, 0).parts().day;
  at.day = std::min(at.day, length);
  return Date::of(at);
}

Date later(DatePart part, std::int64_t count, Date moment) {
  constexpr std::int64_t kMost = std::numeric_limits<std::int32_t>::max();
  if (count > kMost || count < -kMost) failDateOverflow();
  const auto days = static_cast<double>(count);
  switch (part) {
    case DatePart::Year:
      return monthsLater(moment, count * 12);
    case DatePart::Quarter:
      return monthsLater(moment, count * 3);
    case DatePart::Month:
      return monthsLater(moment, count);
    case DatePart::Week:
      return moment.addDays(days * 7);
    case DatePart::Hour:
      return moment.addDays(days / 24);
    case DatePart::Minute:
      return moment.addDays(days / 1440);
    case DatePart::Second:
      return moment.addDays(days / 86400);
    case DatePart::Millisecond:
      return moment.addDays(days / 86400000);
    default:
      return moment.addDays(days);
  }
}

std::int64_t partOf(DatePart part, Date moment) {
  const DateParts at = moment.parts();
  const Date newYear = Date::of(at.year, 1, 1);
  switch (part) {
    case DatePart::Year:
      return at.year;
    case DatePart::Quarter:
      return (at.month + 2) / 3;
    case DatePart::Month:
      return at.month;
    case DatePart::DayOfYear:
      return daysBetween(newYear, moment) + 1;
    case DatePart::Day:
      return at.day;
    case DatePart::Week:
      return unitNumber(DatePart::Week, moment) - unitNumber(DatePart::Week, newYear) + 1;
    case DatePart::Weekday:
      return sundayWeekday(moment);
    case DatePart::Hour:
      return at.hour;
    case DatePart::Minute:
      return at.minute;
    case DatePart::Second:
      return at.second;
    case DatePart::Millisecond:
      return 0;
  }
  return 0;
}

DatePart partArgument(const FunctionCall& call) {
  return static_cast<DatePart>(call.integer(0));
}

void getDate(const FunctionCall& call) {
  call.give(call.context().now());
}

void dateDiff(const FunctionCall& call) {
  if (call.anyNull()) return call.giveNull();
  call.give(unitNumber(partArgument(call), call.date(2)) - unitNumber(partArgument(call), call.date(1)));
}

void dateAdd(const FunctionCall& call) {
  if (call.anyNull()) return call.giveNull();
  call.give(within(later(partArgument(call), call.integer(1), call.date(2))));
}

void datePart(const FunctionCall& call) {
  if (call.anyNull()) return call.giveNull();
  call.give(partOf(partArgument(call), call.date(1)));
}

void dateName(const FunctionCall& call) {
  if (call.anyNull()) return call.giveNull();
  const DatePart part = partArgument(call);
  const std::int64_t number = partOf(part, call.date(1));
  if (part == DatePart::Month) return call.give(kMonths[static_cast<size_t>(number - 1)]);
  if (part == DatePart::Weekday) return call.give(kWeekdays[static_cast<size_t>(number - 1)]);
  call.give(std::string_view(std::to_string(number)));
}

void addDays(const FunctionCall& call) {
  if (call.anyNull()) return call.giveNull();
  call.give(within(call.date(0).addDays(call.number(1))));
}

// clang-format off
constexpr RegisteredFunction kDateFunctions[] = {
    {"getdate",  0, getDate},
    {"datediff", 3, dateDiff},
    {"dateadd",  3, dateAdd},
    {"datepart", 2, datePart},
    {"datename", 2, dateName},
    {"add_days", 2, addDays},
};
// clang-format on

}  // namespace

std::span<const RegisteredFunction> dateFunctions() {
  return kDateFunctions;
}

std::string styledDate(Date moment, int style, bool dayOnly) {
  const DateParts parts = moment.parts();
  std::string text;
  for (const char piece : patternOf(style, dayOnly)) appendPiece(text, piece, parts);
  return text;
}

}  // namespace ondrel::sql
