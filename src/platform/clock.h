#pragma once

#include <chrono>

#include "base/date.h"

namespace ondrel {

// The host's local time and its sleep call. Everything that asks for the time or waits goes through
// one, so that a test or a script can fix the moment.
class Clock {
 public:
  virtual ~Clock() = default;
  virtual Date now() = 0;
  virtual void sleep(std::chrono::milliseconds duration) = 0;
};

class SystemClock : public Clock {
 public:
  Date now() override;
  void sleep(std::chrono::milliseconds duration) override;
};

// Stands still at a moment; sleeping moves it forward without waiting.
class FixedClock : public Clock {
 public:
  explicit FixedClock(Date now) : now_(now) {}
  Date now() override { return now_; }
  void sleep(std::chrono::milliseconds duration) override;
  void set(Date now) { now_ = now; }

 private:
  Date now_;
};

}  // namespace ondrel
