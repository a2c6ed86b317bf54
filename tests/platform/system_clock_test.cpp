#include "platform/system_clock.h"

#include <gtest/gtest.h>

#include <time.h>

#include <array>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <string>
#include <utility>

namespace tavrel {
namespace {

using std::chrono::nanoseconds;

double SecondsOfDay(const WallTime& time) {
  return (time.Hour * 60.0 + time.Minute) * 60.0 + time.Second;
}

TEST(SystemClock, StartsItsTimerAtTheLocalTimeOfDay) {
  const SystemClock clock;
  const double apart = std::fabs(clock.Timer() - SecondsOfDay(clock.Now()));
  EXPECT_LT(std::fmin(apart, 86400 - apart), 2.0);
}

TEST(SystemClock, KeepsItsTimerWithinTheDay) {
  const SystemClock clock;
  EXPECT_GE(clock.Timer(), 0);
  EXPECT_LT(clock.Timer(), 86400);
}

TEST(SystemClock, BeginsItsTimerAnewAfterADayOf86400Seconds) {
  using std::chrono::duration;
  EXPECT_DOUBLE_EQ(TimerLater(0, duration<double>(86399.5)), 86399.5);
  EXPECT_DOUBLE_EQ(TimerLater(86399, duration<double>(0.5)), 86399.5);
  EXPECT_DOUBLE_EQ(TimerLater(86399, duration<double>(1)), 0);
  EXPECT_DOUBLE_EQ(TimerLater(86000, duration<double>(1000)), 600);
  EXPECT_DOUBLE_EQ(TimerLater(43200, std::chrono::hours(24 * 7)), 43200);
}

TEST(SystemClock, NeverGoesBack) {
  const SystemClock clock;
  nanoseconds last = clock.Elapsed();
  for (int i = 0; i < 10000; ++i) {
    const nanoseconds now = clock.Elapsed();
    ASSERT_GE(now, last);
    last = now;
  }
}

TEST(SystemClock, MovesItsTimerWithElapsedTime) {
  const SystemClock clock;
  const double timer = clock.Timer();
  const nanoseconds start = clock.Elapsed();
  while (clock.Elapsed() - start < std::chrono::milliseconds(2)) {
  }
  const double moved = std::fmod(clock.Timer() - timer + 86400, 86400);
  EXPECT_GE(moved, 0.002 - 1e-6);
  EXPECT_LT(moved, 10);
}

// As the C library writes it.
std::string LocalText() {
  const std::time_t now = std::time(nullptr);
  std::array<char, 32> text{};
  std::strftime(text.data(), text.size(), "%Y-%m-%d %H:%M:%S", std::localtime(&now));
  return text.data();
}

std::string TextOf(const WallTime& time) {
  std::array<char, 80> text{};
  std::snprintf(text.data(), text.size(), "%04d-%02d-%02d %02d:%02d:%02d", time.Year, time.Month,
                time.Day, time.Hour, time.Minute, time.Second);
  return text.data();
}

TEST(SystemClock, ShowsTheDateAndTheTimeOfTheLocalCalendar) {
  const SystemClock clock;
  // A second may end between the looks.
  std::string before;
  std::string shown;
  std::string after;
  for (int attempt = 0; attempt < 100 && (before.empty() || before != after); ++attempt) {
    before = LocalText();
    shown = TextOf(clock.Now());
    after = LocalText();
  }
  EXPECT_EQ(shown, before);
}

// The hour of the clock less that of the world, 0..23.
int HoursAheadOfTheWorld() {
  const WallTime local = SystemClock().Now();
  const time_t now = time(nullptr);
  tm world{};
  gmtime_r(&now, &world);
  return (local.Hour - world.tm_hour + 24) % 24;
}

TEST(SystemClock, FollowsATimeZoneThatChanges) {
  const char* const before = std::getenv("TZ");
  const std::string kept = before == nullptr ? "" : before;
  const SystemClock clock;
  const double timer = clock.Timer();
  for (const auto& [zone, hours] : {std::pair{"UTC0", 0}, {"EAST-7", 7}, {"WEST5", 19}}) {
    setenv("TZ", zone, 1);
    EXPECT_EQ(HoursAheadOfTheWorld(), hours) << zone;
  }
  EXPECT_LT(std::fmod(clock.Timer() - timer + 86400, 86400), 10) << "deadlines stay";
  if (before == nullptr) {
    unsetenv("TZ");
  } else {
    setenv("TZ", kept.c_str(), 1);
  }
  tzset();
}

}  // namespace
}  // namespace tavrel
