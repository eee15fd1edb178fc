#include "platform/clock.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <ctime>

namespace ondrel {
namespace {

using namespace std::chrono_literals;

TEST(ClockTest, SleepingMovesTheFixedClockForward) {
  FixedClock clock(Date::of(2026, 11, 24, 23, 59, 30));
  clock.sleep(45s);
  EXPECT_EQ(clock.now().text(), "11/25/2026 12:00:15 AM");
  for (int poll = 0; poll < 100; ++poll) clock.sleep(100ms);
  EXPECT_EQ(clock.now().text(), "11/25/2026 12:00:25 AM");
}

TEST(ClockTest, SystemClockGivesTheTimeOnTheWall) {
  ::setenv("TZ", "EST5", 1);
  ::tzset();
  constexpr double kUnixEpoch = 25569;
  const double utc = kUnixEpoch + static_cast<double>(std::time(nullptr)) / 86400.0;
  EXPECT_NEAR(SystemClock().now().serial(), utc - 5.0 / 24, 1.0 / 1440);
  ::unsetenv("TZ");
  ::tzset();
}

}  // namespace
}  // namespace ondrel
