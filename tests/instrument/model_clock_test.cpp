#include "instrument/model_clock.h"

#include <gtest/gtest.h>

namespace instrument {
namespace {

using std::chrono::hours;
using std::chrono::milliseconds;
using std::chrono::seconds;

constexpr Moment kBoot{};

// All time that is due, in however many portions.
milliseconds TakeAll(ModelClock& clock, Moment now, int& portions) {
  milliseconds time{0};
  for (portions = 0; clock.NextDue() <= now; ++portions) {
    time += clock.Take(now).time;
  }
  return time;
}

TEST(ModelClock, StepsFourTimesASecondAndTellsEachMillisecond) {
  ModelClock clock(1.0);
  clock.Start(kBoot);
  EXPECT_EQ(clock.Take(kBoot + milliseconds(240)).time, milliseconds(240));
  EXPECT_EQ(clock.NextDue(), kBoot + milliseconds(250));
  EXPECT_EQ(clock.Take(kBoot + milliseconds(260)).time, milliseconds(20));
  EXPECT_EQ(clock.NextDue(), kBoot + milliseconds(500));
}

TEST(ModelClock, RunsFasterByTheSpeedup) {
  ModelClock clock(60.0);
  clock.Start(kBoot);
  EXPECT_EQ(clock.Take(kBoot + seconds(1)).time, seconds(60));
}

TEST(ModelClock, MakesUpALongStopInPortionsAndLosesNothing) {
  ModelClock clock(10.0);
  clock.Start(kBoot);
  int portions = 0;
  EXPECT_EQ(TakeAll(clock, kBoot + hours(5), portions), hours(50));
  EXPECT_GT(portions, 50);
}

TEST(ModelClock, FarBehindItUsesTheCoarsePace) {
  ModelClock clock(1.0);
  clock.Start(kBoot);
  EXPECT_EQ(clock.Take(kBoot + hours(10)).pace, Instrument::Pace::kCoarse);
  int portions = 0;
  TakeAll(clock, kBoot + hours(10), portions);
  EXPECT_EQ(clock.Take(kBoot + hours(11)).pace, Instrument::Pace::kFine);
}

TEST(ModelClock, MakesUpFortyDaysAtMost) {
  ModelClock clock(1000.0);
  clock.Start(kBoot);
  int portions = 0;
  EXPECT_EQ(TakeAll(clock, kBoot + hours(24), portions), hours(40 * 24));
}

}  // namespace
}  // namespace instrument
