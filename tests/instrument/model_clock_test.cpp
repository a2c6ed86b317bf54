#include "instrument/model_clock.h"

#include <gtest/gtest.h>

namespace instrument {
namespace {

using std::chrono::hours;
using std::chrono::milliseconds;
using std::chrono::seconds;

constexpr Moment kStart{};

// All ticks that are due, in however many portions.
std::int64_t TakeAll(ModelClock& clock, Moment now, int& portions) {
  std::int64_t ticks = 0;
  for (portions = 0; clock.NextDue() <= now; ++portions) {
    ticks += clock.Take(now).ticks;
  }
  return ticks;
}

TEST(ModelClock, TicksFourTimesASecond) {
  ModelClock clock(1.0);
  clock.Start(kStart);
  EXPECT_EQ(clock.Take(kStart + milliseconds(240)).ticks, 0);
  EXPECT_EQ(clock.Take(kStart + milliseconds(260)).ticks, 1);
  EXPECT_EQ(clock.NextDue(), kStart + milliseconds(500));
}

TEST(ModelClock, RunsFasterByTheSpeedup) {
  ModelClock clock(60.0);
  clock.Start(kStart);
  EXPECT_EQ(clock.Take(kStart + seconds(1)).ticks, 240);
}

TEST(ModelClock, MakesUpALongStopInPortionsAndLosesNothing) {
  ModelClock clock(10.0);
  clock.Start(kStart);
  int portions = 0;
  EXPECT_EQ(TakeAll(clock, kStart + hours(5), portions), std::int64_t{50} * 3600 * 4);
  EXPECT_GT(portions, 50);
}

TEST(ModelClock, FarBehindItUsesTheCoarsePace) {
  ModelClock clock(1.0);
  clock.Start(kStart);
  EXPECT_EQ(clock.Take(kStart + hours(10)).pace, Instrument::Pace::kCoarse);
  int portions = 0;
  TakeAll(clock, kStart + hours(10), portions);
  EXPECT_EQ(clock.Take(kStart + hours(11)).pace, Instrument::Pace::kFine);
}

TEST(ModelClock, MakesUpFortyDaysAtMost) {
  ModelClock clock(1000.0);
  clock.Start(kStart);
  int portions = 0;
  EXPECT_EQ(TakeAll(clock, kStart + hours(24), portions), std::int64_t{40} * 24 * 3600 * 4);
}

}  // namespace
}  // namespace instrument
