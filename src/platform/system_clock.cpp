#include "platform/system_clock.h"

#include <time.h>

#include <cmath>

namespace tavrel {
namespace {

constexpr double kDay = 24 * 60 * 60;  // seconds

// CLOCK_BOOTTIME is the one clock that counts on while the machine sleeps and that nobody sets.
std::chrono::nanoseconds SinceBoot() {
  timespec time{};
  clock_gettime(CLOCK_BOOTTIME, &time);
  return std::chrono::seconds(time.tv_sec) + std::chrono::nanoseconds(time.tv_nsec);
}

// The time zone is looked up anew, for it may change while the program runs. It costs one look at
// the file that names it.
tm LocalTime(time_t seconds) {
  tzset();
  tm parts{};
  localtime_r(&seconds, &parts);
  return parts;
}

double SecondsSinceMidnight() {
  timespec time{};
  clock_gettime(CLOCK_REALTIME, &time);
  const tm parts = LocalTime(time.tv_sec);
  const double whole = (parts.tm_hour * 60.0 + parts.tm_min) * 60.0 + parts.tm_sec;
  return whole + static_cast<double>(time.tv_nsec) * 1e-9;
}

}  // namespace

double TimerLater(double timer, std::chrono::duration<double> later) {
  return std::fmod(timer + later.count(), kDay);
}

SystemClock::SystemClock() : timer_at_zero_(SecondsSinceMidnight()), zero_(SinceBoot()) {}

double SystemClock::Timer() const {
  return TimerLater(timer_at_zero_, SinceBoot() - zero_);
}

std::chrono::nanoseconds SystemClock::Elapsed() const {
  return SinceBoot();
}

WallTime SystemClock::Now() const {
  const tm parts = LocalTime(time(nullptr));
  return {parts.tm_year + 1900,
          parts.tm_mon + 1,
          parts.tm_mday,
          parts.tm_hour,
          parts.tm_min,
          parts.tm_sec,
          static_cast<int>(parts.tm_gmtoff / 60)};
}

}  // namespace tavrel
