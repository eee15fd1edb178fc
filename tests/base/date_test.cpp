#include "base/date.h"

#include <gtest/gtest.h>

#include <limits>

#include "base/error.h"

namespace ondrel {
namespace {

TEST(DateTest, SerialsCountFromTheEndOf1899) {
  const std::pair<Date, double> cases[] = {
      // clang-format off
      {Date::of(1899, 12, 30), 0},     {Date::of(1899, 12, 29), -1},          {Date::of(1900, 3, 1), 61},
      {Date::of(9999, 12, 31), 2958465}, {Date::of(2000, 1, 1, 6), 36526.25}, {Date::of(100, 1, 1), -657434},
      // clang-format on
  };
  for (const auto& [date, serial] : cases) EXPECT_EQ(date.serial(), serial) << date.text();
}

TEST(DateTest, PartsOutOfRangeCarryAndTextDropsMidnightAndDayZero) {
  const std::pair<Date, const char*> cases[] = {
      // clang-format off
      {Date::of(2026, 13, 1), "1/1/2027"},   {Date::of(2026, 24, 1), "12/1/2027"}, {Date::of(2026, 25, 1), "1/1/2028"},
      {Date::of(2026, 0, 1), "12/1/2025"},   {Date::of(2026, -11, 1), "1/1/2025"}, {Date::of(2026, -12, 1), "12/1/2024"},
      {Date::of(2024, 2, 30), "3/1/2024"},   {Date::of(1900, 2, 29), "3/1/1900"},  {Date::of(2026, 3, 0), "2/28/2026"},
      {Date::of(2026, 1, 1, 24), "1/2/2026"},
      {Date::of(2026, 1, 1, 0, 90), "1/1/2026 1:30:00 AM"},
      {Date::of(2026, 1, 1, 0, 0, -1), "12/31/2025 11:59:59 PM"},
      {Date::of(2026, 1, 5, 12), "1/5/2026 12:00:00 PM"},
      {Date::of(1899, 12, 30, 9, 30), "9:30:00 AM"},
      {Date(0), "12:00:00 AM"},
      // clang-format on
  };
  for (const auto& [date, text] : cases) EXPECT_EQ(date.text(), text);
}

TEST(DateTest, EveryMinuteOfADaySurvivesItsText) {
  for (int minute = 0; minute < 24 * 60; ++minute) {
    const Date moment = Date::of(2026, 11, 24, 0, minute, minute % 60);
    EXPECT_EQ(Date::parse(moment.text()), moment) << moment.text();
    EXPECT_EQ(moment.secondOfDay(), minute * 60 + minute % 60);
    EXPECT_EQ(moment.midnight(), Date::of(2026, 11, 24));
  }
}

TEST(DateTest, ParsesTheDefaultFormIsoAndTimes) {
  const std::pair<const char*, Date> cases[] = {
      // clang-format off
      {" 1/5/2026 ", Date::of(2026, 1, 5)},   {"01/05/26", Date::of(2026, 1, 5)},
      {"1/5/29", Date::of(2029, 1, 5)},       {"1/5/30", Date::of(1930, 1, 5)},
      {"2/29/2024", Date::of(2024, 2, 29)},   {"11/24/2026 12:00:00 AM", Date::of(2026, 11, 24)},
      {"11/24/2026 5:05 pm", Date::of(2026, 11, 24, 17, 5)}, {"11/24/2026 17:05", Date::of(2026, 11, 24, 17, 5)},
      {"2026-11-24 10:30", Date::of(2026, 11, 24, 10, 30)},  {"2026-11-24T10:30:15.250", Date::of(2026, 11, 24, 10, 30, 15)},
      {"17:05", Date::of(1899, 12, 30, 17, 5)},    {"5:05PM", Date::of(1899, 12, 30, 17, 5)},
      {"12:30 AM", Date::of(1899, 12, 30, 0, 30)}, {"12:30 PM", Date::of(1899, 12, 30, 12, 30)},
      // clang-format on
  };
  for (const auto& [text, date] : cases) EXPECT_EQ(Date::parse(text), date) << text;
}

TEST(DateTest, RefusesWhatIsNoDate) {
  // clang-format off
  for (const char* text : {"", " ", "tomorrow", "5", "10", "2/30/2026", "2/29/2023", "13/1/2026", "0/1/2026", "1/0/2026",
                           "1/1", "1/1/", "1/1/20266", "2026-13-01", "2026-1", "26-01-05", "0099-01-05", "24:00", "10:60",
                           "10:30:60", "0:30 PM", "13:30 PM", "11/24/2026 5", "11/24/2026 10:30 XM", "11/24/202610:30",
                           "2026-11-24T"})
    // clang-format on
    EXPECT_FALSE(Date::parse(text)) << text;
}

TEST(DateTest, WeekStartsOnMonday) {
  EXPECT_EQ(Date::of(2026, 11, 23).weekday(), 1);
  EXPECT_EQ(Date::of(2026, 11, 29, 23, 59).weekday(), 7);
  EXPECT_EQ(Date::of(1899, 12, 30).weekday(), 6);
  EXPECT_EQ(Date::of(1865, 4, 14).weekday(), 5);
}

TEST(DateTest, DifferencesCountCalendarDays) {
  const Date night = Date::of(2026, 11, 24, 23, 59, 59);
  EXPECT_EQ(daysBetween(night, Date::of(2026, 11, 25)), 1);
  EXPECT_EQ(daysBetween(night, Date::of(2026, 11, 24)), 0);
  EXPECT_EQ(daysBetween(Date::of(2026, 3, 1), Date::of(2024, 2, 28)), -732);
}

TEST(DateTest, TimeThatRoundsUpToMidnightIsTheNextDay) {
  constexpr double kSecond = 1.0 / 86400;
  const Date almost = Date::of(2026, 11, 25).addDays(-kSecond * 0.4);
  EXPECT_EQ(almost.text(), "11/25/2026");
  EXPECT_EQ(almost.midnight(), Date::of(2026, 11, 25));
  EXPECT_EQ(almost.secondOfDay(), 0);
  EXPECT_EQ(almost.weekday(), 3);
  EXPECT_EQ(almost.addDays(-kSecond * 0.2).text(), "11/24/2026 11:59:59 PM");
}

TEST(DateTest, NoDateLiesTooFarAway) {
  for (const double serial : {1e300, -12e6, std::numeric_limits<double>::quiet_NaN()})
    EXPECT_THROW(Date(serial).text(), Error) << serial;
}

TEST(DateTest, AddingDaysKeepsTheTime) {
  const Date moment = Date::of(2026, 12, 30, 10, 20, 30);
  EXPECT_EQ(moment.addDays(3), Date::of(2027, 1, 2, 10, 20, 30));
  EXPECT_EQ(moment.addDays(-365), Date::of(2025, 12, 30, 10, 20, 30));
  EXPECT_EQ(Date::of(moment.parts()), moment);
}

}  // namespace
}  // namespace ondrel
