#include "data/store_calendar.h"

#include <gtest/gtest.h>

#include <limits>

#include "support/error_of.h"

namespace ondrel {
namespace {

// November 2026: the 23rd is a Monday, the 29th a Sunday.
Date november(int day, int hour = 10) {
  return Date::of(2026, 11, day, hour);
}

// Weekdays by number from Monday = 1.
StoreCalendar closedOn(std::initializer_list<int> weekdays, std::vector<StoreHoliday> holidays = {}) {
  StoreCalendar calendar;
  calendar.dayOpen.fill(true);
  for (const int weekday : weekdays) calendar.dayOpen[static_cast<size_t>(weekday)] = false;
  calendar.holidays = std::move(holidays);
  return calendar;
}

constexpr int kSaturday = 6, kSunday = 7;

TEST(StoreDays, AreCountedOverClosedDaysAndHolidays) {
  const StoreHoliday thursday{november(26, 0), 1}, thursdayFriday{november(26, 0), 2},
      sunday{november(29, 0), 1};
  const struct {
    const char* what;
    StoreCalendar calendar;
    int from, days, due;  // days of November
  } cases[] = {
      {"no days on an open day", closedOn({kSunday}), 24, 0, 24},
      {"over a Sunday", closedOn({kSunday}), 27, 2, 30},
      {"onto a Sunday", closedOn({kSunday}), 28, 1, 30},
      {"over a weekend", closedOn({kSaturday, kSunday}), 27, 1, 30},
      {"no days on a closed day", closedOn({kSunday}), 22, 0, 23},
      {"one day from a closed day", closedOn({kSunday}), 22, 1, 23},
      {"two days from a closed day", closedOn({kSunday}), 22, 2, 24},
      {"a holiday on the due day", closedOn({kSunday}, {thursday}), 24, 2, 27},
      {"a holiday after the due day", closedOn({kSunday}, {thursday}), 24, 1, 25},
      {"a holiday on the day of writing", closedOn({kSunday}, {{november(24, 0), 1}}), 24, 1, 26},
      {"a holiday that began before", closedOn({kSunday}, {{november(23, 0), 3}}), 24, 1, 25},
      // Thursday and Friday off: each walked day pushes by one, from Thursday to Saturday.
      {"two days, both within", closedOn({kSunday}, {thursdayFriday}), 24, 3, 30},
      // Due Thursday, but the holiday runs on to Friday: walked from Thursday, two days, Saturday.
      {"a holiday that ends after the due day", closedOn({kSunday}, {thursdayFriday}), 24, 2, 28},
      // Due Friday the 27th: Friday and Saturday are walked, the second push lands on Sunday, one more for it.
      {"a holiday around the due day", closedOn({kSunday}, {{november(26, 0), 3}}), 24, 3, 30},
      // Due Saturday: pushed over Sunday the 29th to December 1, one more for the Sunday.
      {"three days, over a Sunday", closedOn({kSunday}, {{november(26, 0), 3}}), 24, 4, 32},
      {"a holiday on a closed weekday", closedOn({kSunday}, {sunday}), 27, 3, 31},
  };
  for (const auto& row : cases) {
    const Date due = addStoreDays(row.calendar, november(row.from), row.days);
    EXPECT_EQ(due.text(), november(row.due).text()) << row.what;
  }
}

TEST(StoreDays, CutOffDaysAreAddedToEveryCount) {
  StoreCalendar calendar = closedOn({kSunday});
  calendar.cutoffExtraDays = 1;
  EXPECT_EQ(addStoreDays(calendar, november(24), 1).text(), november(26).text());
  EXPECT_THROW(addStoreDays(calendar, november(24), std::numeric_limits<std::int32_t>::max()), Error);
}

TEST(StoreDays, AStoreThatNeverOpensStopsAfterAYear) {
  const StoreCalendar calendar = closedOn({1, 2, 3, 4, 5, 6, 7});
  // 365 closed days, each of which pushes by one; the day of writing is taken back first.
  EXPECT_EQ(daysBetween(november(24), addStoreDays(calendar, november(24), 2)), 1 + 365);
}

TEST(DaysUntil, IsTheLeastCountThatReachesTheDate) {
  const StoreCalendar calendar = closedOn({kSunday});
  EXPECT_EQ(daysUntilDate(calendar, november(27), november(30)), 2);
  EXPECT_EQ(daysUntilDate(calendar, november(27), november(29)), 2) << "no count lands on the Sunday";
  EXPECT_EQ(daysUntilDate(calendar, november(24), november(1)), 0);
}

// A date far away is reached, since only the last few counts are tried.
TEST(DaysUntil, NeverMakesAPageWait) {
  const StoreCalendar calendar = closedOn({kSunday}, {{november(26, 0), 2}});
  const Date far = Date::of(9999, 12, 31);
  const int days = daysUntilDate(calendar, november(24), far);
  EXPECT_GE(daysBetween(far, addStoreDays(calendar, november(24), days)), 0);
  EXPECT_LT(daysBetween(far, addStoreDays(calendar, november(24), days - 1)), 0);
  EXPECT_EQ(errorOf([&] { daysUntilDate(calendar, november(24), Date(1e12)); }), 6);
}

}  // namespace
}  // namespace ondrel
