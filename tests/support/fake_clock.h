#ifndef TAVREL_TESTS_SUPPORT_FAKE_CLOCK_H_
#define TAVREL_TESTS_SUPPORT_FAKE_CLOCK_H_

#include <chrono>
#include <cmath>

#include "platform/clock.h"

namespace tavrel {

// A clock that stands still until a test moves it.
// Levers: timer_at_start (seconds since midnight at Elapsed() zero), wall, Advance().
class FakeClock : public Clock {
 public:
  double timer_at_start = 36000;
  WallTime wall{2026, 3, 14, 10, 0, 0};

  void Advance(std::chrono::nanoseconds time) { elapsed_ += time; }
  void AdvanceSeconds(double seconds) {
    Advance(std::chrono::nanoseconds(std::llround(seconds * 1e9)));
  }

  [[nodiscard]] double Timer() const override {
    return std::fmod(timer_at_start + std::chrono::duration<double>(elapsed_).count(), 86400.0);
  }
  [[nodiscard]] std::chrono::nanoseconds Elapsed() const override { return elapsed_; }
  [[nodiscard]] WallTime Now() const override { return wall; }

 private:
  std::chrono::nanoseconds elapsed_{};
};

}  // namespace tavrel

#endif  // TAVREL_TESTS_SUPPORT_FAKE_CLOCK_H_
