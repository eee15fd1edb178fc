#include "base/date.h"

#include <fmt/format.h>

#include <array>
#include <chrono>
#include <cmath>

#include "base/error.h"
#include "base/text.h"
#include "base/whole_number.h"

namespace ondrel {
namespace {

constexpr int kSecondsPerDay = 86400;
constexpr double kFarthestDay = 11e6;  // within the years that <chrono> counts

// Days from 1899-12-30 to 1970-01-01, where the calendar of <chrono> starts to count.
constexpr long long kUnixEpoch = 25569;

long long dayNumber(int year, int month, int day) {
  int monthsFromYearStart = month - 1;
  int carriedYears = monthsFromYearStart >= 0 ? monthsFromYearStart / 12 : -((11 - monthsFromYearStart) / 12);
  const std::chrono::year_month_day first{
      std::chrono::year{year + carriedYears},
      std::chrono::month{static_cast<unsigned>(monthsFromYearStart - carriedYears * 12 + 1)},
      std::chrono::day{1}};
  return std::chrono::sys_days{first}.time_since_epoch().count() + kUnixEpoch + day - 1;
}

// Reads one text from left to right; every take* leaves the text untouched when it does not fit.
class Reader {
 public:
  explicit Reader(std::string_view text) : rest_(text) {}

  bool atEnd() const { return rest_.empty(); }

  bool take(char expected) {
    if (rest_.empty() || rest_.front() != expected) return false;
    rest_.remove_prefix(1);
    return true;
  }

  void skipBlanks() {
    while (take(' ')) {
    }
  }

  // A number of `least` to `most` digits; no further digit may follow.
  bool takeNumber(int& value, size_t least, size_t most) {
    size_t length = 0;
    int number = 0;
    while (length < rest_.size() && isDigit(rest_[length])) {
      if (++length > most) return false;
      number = number * 10 + (rest_[length - 1] - '0');
    }
    if (length < least) return false;
    rest_.remove_prefix(length);
    value = number;
    return true;
  }

  bool takeWord(std::string_view word) {
    if (rest_.size() < word.size() || !equalsIgnoringCase(rest_.substr(0, word.size()), word)) return false;
    rest_.remove_prefix(word.size());
    return true;
  }

 private:
  std::string_view rest_;
};

bool readSlashedDate(Reader& reader, DateParts& parts) {
  if (!reader.takeNumber(parts.month, 1, 2) || !reader.take('/')) return false;
  if (!reader.takeNumber(parts.day, 1, 2) || !reader.take('/')) return false;
  if (!reader.takeNumber(parts.year, 1, 4)) return false;
  if (parts.year < 30) parts.year += 2000;
  if (parts.year < 100) parts.year += 1900;
  return true;
}

bool readIsoDate(Reader& reader, DateParts& parts) {
  return reader.takeNumber(parts.year, 4, 4) && reader.take('-') && reader.takeNumber(parts.month, 1, 2) &&
         reader.take('-') && reader.takeNumber(parts.day, 1, 2);
}

// "h:mm", "h:mm:ss", either with a fraction of a second that is dropped, either with AM or PM.
bool readTime(Reader& reader, DateParts& parts) {
  if (!reader.takeNumber(parts.hour, 1, 2) || !reader.take(':') || !reader.takeNumber(parts.minute, 1, 2))
    return false;
  if (reader.take(':')) {
    if (!reader.takeNumber(parts.second, 1, 2)) return false;
    int fraction = 0;
    if (reader.take('.') && !reader.takeNumber(fraction, 1, 9)) return false;
  }
  reader.skipBlanks();
  const bool morning = reader.takeWord("AM");
  const bool afternoon = !morning && reader.takeWord("PM");
  if (morning || afternoon) {
    if (parts.hour < 1 || parts.hour > 12) return false;
    parts.hour = parts.hour % 12 + (afternoon ? 12 : 0);
  }
  return parts.hour < 24 && parts.minute < 60 && parts.second < 60;
}

// The calendar of dates starts with the year 100.
bool isCalendarDay(const DateParts& parts) {
  return parts.year >= 100 &&
         std::chrono::year_month_day{std::chrono::year{parts.year},
                                     std::chrono::month{static_cast<unsigned>(parts.month)},
                                     std::chrono::day{static_cast<unsigned>(parts.day)}}
             .ok();
}

}  // namespace

Date Date::of(int year, int month, int day, int hour, int minute, int second) {
  const long long seconds = hour * 3600LL + minute * 60LL + second;
  return Date(static_cast<double>(dayNumber(year, month, day)) +
              static_cast<double>(seconds) / static_cast<double>(kSecondsPerDay));
}

Date Date::of(const DateParts& parts) {
  return of(parts.year, parts.month, parts.day, parts.hour, parts.minute, parts.second);
}

std::optional<Date> Date::parse(std::string_view text) {
  const std::string_view trimmed = trim(text);
  for (auto readDate : {readSlashedDate, readIsoDate}) {
    Reader reader(trimmed);
    DateParts parts;
    if (!readDate(reader, parts) || !isCalendarDay(parts)) continue;
    if (reader.atEnd()) return of(parts);
    const bool separated = reader.take('T') || reader.take(' ');
    reader.skipBlanks();
    if (separated && readTime(reader, parts) && reader.atEnd()) return of(parts);
  }
  Reader reader(trimmed);
  DateParts parts;
  if (readTime(reader, parts) && reader.atEnd()) return of(parts);
  return std::nullopt;
}

long long Date::day() const {
  // A time that rounds up to midnight belongs to the next day, as its text says.
  const double wholeSeconds = std::floor(serial_ * kSecondsPerDay + 0.5);
  const double day = std::floor(wholeSeconds / kSecondsPerDay);
  if (!(std::fabs(day) <= kFarthestDay))
    throw Error(ErrorNumber::Overflow, "Date", "Overflow: no date lies there");
  return *wholeNumber<long long>(day);
}

int Date::secondOfDay() const {
  const double wholeSeconds = std::floor(serial_ * kSecondsPerDay + 0.5);
  return *wholeNumber<int>(wholeSeconds - static_cast<double>(day()) * kSecondsPerDay);
}

DateParts Date::parts() const {
  const std::chrono::year_month_day date{
      std::chrono::sys_days{std::chrono::days{static_cast<int>(day() - kUnixEpoch)}}};
  const int seconds = secondOfDay();
  return {static_cast<int>(date.year()),
          static_cast<int>(static_cast<unsigned>(date.month())),
          static_cast<int>(static_cast<unsigned>(date.day())),
          seconds / 3600,
          seconds / 60 % 60,
          seconds % 60};
}

int Date::weekday() const {
  const long long sinceMonday = (day() - 2) % 7;  // 1900-01-01, day 2, was a Monday
  return static_cast<int>((sinceMonday + 7) % 7) + 1;
}

std::string Date::text() const {
  const DateParts now = parts();
  const bool atMidnight = now.hour == 0 && now.minute == 0 && now.second == 0, withDay = day() != 0;
  std::array<char, 64 + kShortNumber> text;
  char* end = text.data();
  const auto add = [&](int number, char after, bool inTwoDigits = false) {
    if (inTwoDigits && number < 10) *end++ = '0';
    end = writeNumber(end, number);
    *end++ = after;
  };
  if (withDay) {
    add(now.month, '/');
    add(now.day, '/');
    add(now.year, ' ');
    if (atMidnight) return {text.data(), end - 1};
  }
  add(now.hour % 12 == 0 ? 12 : now.hour % 12, ':');
  add(now.minute, ':', true);
  add(now.second, ' ', true);
  *end++ = now.hour < 12 ? 'A' : 'P';
  *end++ = 'M';
  return {text.data(), end};
}

long long daysBetween(Date from, Date to) {
  return to.day() - from.day();
}

}  // namespace ondrel
