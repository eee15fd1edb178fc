#include "platform/clock.h"

#include <ctime>
#include <thread>

namespace ondrel {

Date SystemClock::now() {
  const std::time_t seconds = std::time(nullptr);
  std::tm local{};
  localtime_r(&seconds, &local);
  return Date::of(local.tm_year + 1900, local.tm_mon + 1, local.tm_mday, local.tm_hour, local.tm_min,
                  local.tm_sec);
}

void SystemClock::sleep(std::chrono::milliseconds duration) {
  std::this_thread::sleep_for(duration);
}

void FixedClock::sleep(std::chrono::milliseconds duration) {
  constexpr double kMillisecondsPerDay = 86'400'000;
  now_ = now_.addDays(static_cast<double>(duration.count()) / kMillisecondsPerDay);
}

}  // namespace ondrel
