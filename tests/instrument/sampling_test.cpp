#include <gtest/gtest.h>

#include "instrument/sample_buffer.h"
#include "instrument/sampler.h"

namespace instrument {
namespace {

TEST(SampleBuffer, HandsOverTheOldestFirst) {
  SampleBuffer buffer;
  std::optional<StoredSample> lost;
  EXPECT_EQ(buffer.Store(10, lost), 1);
  EXPECT_EQ(buffer.Store(20, lost), 2);
  EXPECT_EQ(buffer.TakeOldest()->word, 10);
  EXPECT_EQ(buffer.TakeOldest()->number, 2);
  EXPECT_FALSE(buffer.TakeOldest());
}

TEST(SampleBuffer, LosesTheOldestBeyond896) {
  SampleBuffer buffer;
  std::optional<StoredSample> lost;
  for (int i = 1; i <= 896; ++i) {
    buffer.Store(static_cast<std::int16_t>(i), lost);
    ASSERT_FALSE(lost);
  }
  EXPECT_EQ(buffer.Store(897, lost), 897);
  ASSERT_TRUE(lost);
  EXPECT_EQ(lost->number, 1);
  EXPECT_EQ(buffer.Count(), 896);
  EXPECT_EQ(buffer.TakeOldest()->number, 2);
}

TEST(SampleBuffer, ClearBeginsNumbersAnew) {
  SampleBuffer buffer;
  std::optional<StoredSample> lost;
  buffer.Store(10, lost);
  buffer.Clear();
  EXPECT_EQ(buffer.Count(), 0);
  EXPECT_EQ(buffer.Store(20, lost), 1);
}

// The instants 0..`until` at which `input` is due.
std::vector<std::int64_t> InstantsOf(Sampler& sampler, int input, std::int64_t from,
                                     std::int64_t until) {
  std::vector<std::int64_t> instants;
  for (std::int64_t second = from; second <= until; ++second) {
    if (sampler.IsDue(input, second)) {
      instants.push_back(second);
    }
  }
  return instants;
}

TEST(Sampler, TakesNothingWithoutAnInterval) {
  Sampler sampler(1);
  EXPECT_TRUE(InstantsOf(sampler, 1, 0, 100).empty());
}

TEST(Sampler, SamplesAtMultiplesAtLeastOneIntervalAhead) {
  Sampler sampler(1);
  sampler.SetInterval(1, 10, 3);
  EXPECT_EQ(InstantsOf(sampler, 1, 3, 45), (std::vector<std::int64_t>{20, 30, 40}));
}

TEST(Sampler, SameIntervalAgainChangesNothing) {
  Sampler sampler(1);
  sampler.SetInterval(1, 10, 0);
  ASSERT_TRUE(sampler.IsDue(1, 10));
  sampler.SetInterval(1, 10, 15);
  EXPECT_TRUE(sampler.IsDue(1, 20));
}

TEST(Sampler, InputsStartedTogetherBeginInTheSameSetAcrossAnInstant) {
  Sampler sampler(1);
  sampler.SetInterval(1, 10, 9);
  sampler.SetInterval(2, 10, 11);
  EXPECT_EQ(InstantsOf(sampler, 1, 12, 45), (std::vector<std::int64_t>{30, 40}));
  EXPECT_EQ(InstantsOf(sampler, 2, 12, 45), (std::vector<std::int64_t>{30, 40}));
}

TEST(Sampler, LaterRecordingLeavesARunningOneAlone) {
  Sampler sampler(1);
  sampler.SetInterval(1, 10, 0);
  ASSERT_TRUE(sampler.IsDue(1, 10));
  sampler.SetInterval(2, 10, 15);
  EXPECT_EQ(InstantsOf(sampler, 1, 15, 35), (std::vector<std::int64_t>{20, 30}));
}

TEST(Sampler, HoldOffSpansASlowHost) {
  Sampler sampler(60);
  sampler.SetInterval(1, 10, 5);
  EXPECT_EQ(InstantsOf(sampler, 1, 5, 80), (std::vector<std::int64_t>{70, 80}));
}

}  // namespace
}  // namespace instrument
