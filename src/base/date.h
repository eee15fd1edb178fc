#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace ondrel {

// The parts of a moment: month and day from 1, hour from 0.
struct DateParts {
  int year = 1899;
  int month = 12;
  int day = 30;
  int hour = 0;
  int minute = 0;
  int second = 0;
};

// A moment in local time: days since 1899-12-30, the time of day as the fraction. Day 0 stands for a
// time of day without a date. Meant for the years 100 to 9999.
class Date {
 public:
  constexpr Date() = default;
  constexpr explicit Date(double serial) : serial_(serial) {}

  // Parts out of range carry over (month 13 is January of the next year).
  static Date of(int year, int month, int day, int hour = 0, int minute = 0, int second = 0);
  static Date of(const DateParts& parts);

  // Takes the default text form, ISO dates with or without a time, and a time of day alone
  // ("17:05", "5:05 PM"), which gives day 0. No value when the text is none of these.
  static std::optional<Date> parse(std::string_view text);

  constexpr double serial() const { return serial_; }

  // Number of the calendar day, the time of day dropped. Error 6 more than 30,000 years away, here and in whatever
  // asks for parts or the text.
  long long day() const;
  // Seconds since midnight, rounded to a whole second.
  int secondOfDay() const;
  DateParts parts() const;
  // Monday = 1 to Sunday = 7.
  int weekday() const;

  Date addDays(double days) const { return Date(serial_ + days); }
  Date midnight() const { return Date(static_cast<double>(day())); }

  // "m/d/yyyy h:mm:ss AM/PM", without the time at midnight, without the date on day 0.
  std::string text() const;

  friend constexpr bool operator==(Date a, Date b) { return a.serial_ == b.serial_; }
  friend constexpr auto operator<=>(Date a, Date b) { return a.serial_ <=> b.serial_; }

 private:
  double serial_ = 0;
};

// Calendar days from `from` to `to`; negative when `to` is earlier. Times of day do not count.
long long daysBetween(Date from, Date to);

}  // namespace ondrel
