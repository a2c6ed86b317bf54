#include <gtest/gtest.h>

#include <algorithm>

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

using std::chrono::milliseconds;
using std::chrono::seconds;

// The milliseconds from `from` to `until` at which `input` is sampled.
std::vector<std::int64_t> MillisecondsOf(const Sampler& sampler, int input, milliseconds from,
                                         milliseconds until) {
  std::vector<std::int64_t> instants;
  auto instant = sampler.NextInstant(input, from - milliseconds(1));
  while (instant && *instant <= until) {
    instants.push_back(instant->count());
    instant = sampler.NextInstant(input, *instant);
  }
  return instants;
}

// The same in whole seconds.
std::vector<std::int64_t> InstantsOf(const Sampler& sampler, int input, std::int64_t from,
                                     std::int64_t until) {
  auto instants = MillisecondsOf(sampler, input, seconds(from), seconds(until));
  for (std::int64_t& instant : instants) {
    EXPECT_EQ(instant % 1000, 0);
    instant /= 1000;
  }
  return instants;
}

Sampler Together(std::int64_t hold_off) {
  return {seconds(hold_off), Scan(), 1};
}

Sampler SamplerOneAfterAnother(SamplingOrder order, int distance, std::uint64_t seed = 1) {
  return {seconds(1), {order, milliseconds(distance)}, seed};
}

// When the inputs 1..15 are sampled in the set that begins at 20 s.
std::vector<std::int64_t> OneSet(Sampler& sampler) {
  std::vector<std::int64_t> instants;
  for (int input = 1; input <= 15; ++input) {
    EXPECT_TRUE(sampler.SetInterval(input, seconds(10), seconds(3)));
  }
  for (int input = 1; input <= 15; ++input) {
    const auto found = MillisecondsOf(sampler, input, seconds(0), seconds(29));
    EXPECT_EQ(found.size(), 1U);
    instants.push_back(found.empty() ? -1 : found[0]);
  }
  return instants;
}

TEST(Sampler, TakesNothingWithoutAnInterval) {
  Sampler sampler = Together(1);
  EXPECT_TRUE(InstantsOf(sampler, 1, 0, 100).empty());
}

TEST(Sampler, SamplesAtMultiplesAtLeastOneIntervalAhead) {
  Sampler sampler = Together(1);
  EXPECT_TRUE(sampler.SetInterval(1, seconds(10), seconds(3)));
  EXPECT_EQ(InstantsOf(sampler, 1, 3, 45), (std::vector<std::int64_t>{20, 30, 40}));
}

TEST(Sampler, SameIntervalAgainChangesNothing) {
  Sampler sampler = Together(1);
  EXPECT_TRUE(sampler.SetInterval(1, seconds(10), seconds(0)));
  ASSERT_EQ(InstantsOf(sampler, 1, 10, 10).size(), 1U);
  EXPECT_TRUE(sampler.SetInterval(1, seconds(10), seconds(15)));
  EXPECT_EQ(InstantsOf(sampler, 1, 20, 20).size(), 1U);
}

TEST(Sampler, InputsStartedTogetherBeginInTheSameSetAcrossAnInstant) {
  Sampler sampler = Together(1);
  EXPECT_TRUE(sampler.SetInterval(1, seconds(10), seconds(9)));
  EXPECT_TRUE(sampler.SetInterval(2, seconds(10), seconds(11)));
  EXPECT_EQ(InstantsOf(sampler, 1, 12, 45), (std::vector<std::int64_t>{30, 40}));
  EXPECT_EQ(InstantsOf(sampler, 2, 12, 45), (std::vector<std::int64_t>{30, 40}));
}

TEST(Sampler, LaterRecordingLeavesARunningOneAlone) {
  Sampler sampler = Together(1);
  EXPECT_TRUE(sampler.SetInterval(1, seconds(10), seconds(0)));
  ASSERT_EQ(InstantsOf(sampler, 1, 10, 10).size(), 1U);
  EXPECT_TRUE(sampler.SetInterval(2, seconds(10), seconds(15)));
  EXPECT_EQ(InstantsOf(sampler, 1, 15, 35), (std::vector<std::int64_t>{20, 30}));
}

TEST(Sampler, HoldOffSpansASlowHost) {
  Sampler sampler = Together(60);
  EXPECT_TRUE(sampler.SetInterval(1, seconds(10), seconds(5)));
  EXPECT_EQ(InstantsOf(sampler, 1, 5, 80), (std::vector<std::int64_t>{70, 80}));
}

TEST(Sampler, AscendingBeginsWithInput1) {
  Sampler sampler = SamplerOneAfterAnother(SamplingOrder::kAscending, 30);
  const auto instants = OneSet(sampler);
  for (std::size_t place = 0; place < 15; ++place) {
    EXPECT_EQ(instants[place], 20'000 + 30 * static_cast<std::int64_t>(place));
  }
}

TEST(Sampler, DescendingBeginsWithInput15) {
  Sampler sampler = SamplerOneAfterAnother(SamplingOrder::kDescending, 500);
  const auto instants = OneSet(sampler);
  for (std::size_t place = 0; place < 15; ++place) {
    EXPECT_EQ(instants[place], 20'000 + 500 * static_cast<std::int64_t>(14 - place));
  }
}

TEST(Sampler, RandomHasAllPlacesInAnOrderOfItsSeed) {
  Sampler sampler = SamplerOneAfterAnother(SamplingOrder::kRandom, 200);
  Sampler again = SamplerOneAfterAnother(SamplingOrder::kRandom, 200);
  Sampler other = SamplerOneAfterAnother(SamplingOrder::kRandom, 200, 2);
  Sampler ascending = SamplerOneAfterAnother(SamplingOrder::kAscending, 200);
  auto instants = OneSet(sampler);
  EXPECT_EQ(instants, OneSet(again));
  EXPECT_NE(instants, OneSet(other));
  EXPECT_NE(instants, OneSet(ascending));
  std::sort(instants.begin(), instants.end());
  EXPECT_EQ(instants, OneSet(ascending));
}

TEST(Sampler, TogetherKnowsNoDistance) {
  Sampler sampler = SamplerOneAfterAnother(SamplingOrder::kTogether, 500);
  EXPECT_EQ(OneSet(sampler), std::vector<std::int64_t>(15, 20'000));
}

TEST(Sampler, KeepsItsPlaceInEverySetAndWhateverOtherInputsDo) {
  Sampler sampler = SamplerOneAfterAnother(SamplingOrder::kAscending, 500);
  EXPECT_TRUE(sampler.SetInterval(4, seconds(10), seconds(0)));
  EXPECT_TRUE(sampler.SetInterval(9, seconds(20), seconds(0)));
  EXPECT_EQ(MillisecondsOf(sampler, 4, seconds(0), seconds(35)),
            (std::vector<std::int64_t>{11'500, 21'500, 31'500}));
  EXPECT_EQ(MillisecondsOf(sampler, 9, seconds(0), seconds(50)),
            (std::vector<std::int64_t>{24'000, 44'000}));
}

TEST(Sampler, RefusesAnIntervalIntoWhichTheInputsDoNotFit) {
  Sampler sampler = SamplerOneAfterAnother(SamplingOrder::kAscending, 500);
  EXPECT_FALSE(sampler.SetInterval(1, seconds(7), seconds(0)));
  EXPECT_TRUE(InstantsOf(sampler, 1, 0, 50).empty());
  EXPECT_TRUE(sampler.SetInterval(1, seconds(8), seconds(0)));
  EXPECT_TRUE(sampler.SetInterval(1, seconds(0), seconds(20)));
  Sampler narrow = SamplerOneAfterAnother(SamplingOrder::kAscending, 71);
  EXPECT_TRUE(narrow.SetInterval(1, seconds(1), seconds(0)));
  Sampler wide = SamplerOneAfterAnother(SamplingOrder::kAscending, 72);
  EXPECT_FALSE(wide.SetInterval(1, seconds(1), seconds(0)));
}

// Input 12 would come 5.5 s after the set in which input 1 has its first sample already.
TEST(Sampler, LaterRecordingLeavesASetAloneThatHasBegun) {
  Sampler sampler = SamplerOneAfterAnother(SamplingOrder::kAscending, 500);
  EXPECT_TRUE(sampler.SetInterval(1, seconds(10), seconds(0)));
  EXPECT_TRUE(sampler.SetInterval(12, seconds(10), seconds(0)));
  EXPECT_TRUE(sampler.SetInterval(3, seconds(10), seconds(12)));
  EXPECT_EQ(MillisecondsOf(sampler, 12, seconds(0), seconds(20)),
            (std::vector<std::int64_t>{15'500}));
  EXPECT_EQ(MillisecondsOf(sampler, 3, seconds(0), seconds(40)),
            (std::vector<std::int64_t>{31'000}));
}

TEST(Sampler, RestartLeavesOutTheRestOfASet) {
  Sampler sampler = SamplerOneAfterAnother(SamplingOrder::kDescending, 500);
  OneSet(sampler);
  sampler.Restart(seconds(23));
  for (int input = 1; input <= 15; ++input) {
    EXPECT_EQ(MillisecondsOf(sampler, input, seconds(23), seconds(39)),
              (std::vector<std::int64_t>{30'000 + 500 * (15 - input)}));
  }
}

}  // namespace
}  // namespace instrument
