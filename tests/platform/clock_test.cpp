#include "platform/clock.h"

#include <gtest/gtest.h>

namespace ondrel {
namespace {

using namespace std::chrono_literals;

TEST(ClockTest, SleepingMovesTheFixedClockForward) {
  FixedClock clock(Date::of(2026, 11, 24, 23, 59, 30));
  const auto start = std::chrono::steady_clock::now();
  clock.sleep(45s);
  EXPECT_EQ(clock.now().text(), "11/25/2026 12:00:15 AM");
  for (int poll = 0; poll < 100; ++poll) clock.sleep(100ms);
  EXPECT_EQ(clock.now().text(), "11/25/2026 12:00:25 AM");
  EXPECT_LT(std::chrono::steady_clock::now() - start, 5s);

  clock.set(Date::of(2024, 2, 29, 8, 0));
  EXPECT_EQ(clock.now(), Date::of(2024, 2, 29, 8, 0));
}

TEST(ClockTest, SystemClockGivesLocalTimeAndWaits) {
  SystemClock clock;
  const Date before = clock.now();
  const auto start = std::chrono::steady_clock::now();
  clock.sleep(20ms);
  EXPECT_GE(std::chrono::steady_clock::now() - start, 20ms);
  EXPECT_GE(clock.now(), before);

  const auto utc = std::chrono::floor<std::chrono::seconds>(std::chrono::system_clock::now());
  constexpr double kUnixEpoch = 25569;
  const double utcSerial = kUnixEpoch + static_cast<double>(utc.time_since_epoch().count()) / 86400.0;
  // No zone lies further off than 14 hours.
  EXPECT_NEAR(before.serial(), utcSerial, 14.1 / 24);
}

}  // namespace
}  // namespace ondrel
