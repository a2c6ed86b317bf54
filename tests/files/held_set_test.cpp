#include "files/held_set.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <utility>
#include <vector>

namespace tavrel {
namespace {

HeldSet Example() {
  HeldSet held;
  held.SampleCount = 31999;
  held.AskedInput = 15;
  held.Seen[1] = held.Seen[8] = held.Seen[15] = true;
  held.Value[1] = -32767;
  held.Value[8] = 4000;
  held.Value[15] = std::numeric_limits<std::int16_t>::max();
  return held;
}

TEST(HeldSet, ComesBackAsItWas) {
  EXPECT_EQ(DecodeHeldSet(EncodeHeldSet(Example())), Example());
  EXPECT_EQ(DecodeHeldSet(EncodeHeldSet(HeldSet())), HeldSet());
}

TEST(HeldSet, KeepsThatTheJournalLacksLines) {
  HeldSet held = Example();
  held.JournalLacksLines = true;
  EXPECT_EQ(DecodeHeldSet(EncodeHeldSet(held)), held);
}

TEST(HeldSet, KeepsThatTheColumnsAreCompared) {
  HeldSet held = Example();
  held.Columns.Compared = ColumnMemory::Comparison::kRestart;
  held.Columns.Questioned = 31000;
  held.Columns.IsDropped[1] = held.Columns.IsDropped[15] = true;
  EXPECT_EQ(DecodeHeldSet(EncodeHeldSet(held)), held);
  held.Columns.Compared = static_cast<ColumnMemory::Comparison>(3);
  EXPECT_FALSE(DecodeHeldSet(EncodeHeldSet(held)));
}

TEST(HeldSet, IsRefusedWithAnyByteChangedOrMissing) {
  const HeldSetBytes bytes = EncodeHeldSet(Example());
  for (std::size_t place = 0; place < bytes.size(); ++place) {
    HeldSetBytes changed = bytes;
    changed[place] ^= std::byte{0x40};
    EXPECT_FALSE(DecodeHeldSet(changed)) << place;
    EXPECT_FALSE(DecodeHeldSet(std::span(bytes).first(place))) << place;
  }
}

TEST(HeldSet, IsRefusedWithMoreBehindIt) {
  std::vector<std::byte> bytes(kHeldSetBytes + 1);
  const HeldSetBytes good = EncodeHeldSet(Example());
  std::copy(good.begin(), good.end(), bytes.begin());
  EXPECT_FALSE(DecodeHeldSet(bytes));
}

// The sum of the words does not see that the mark is another one.
TEST(HeldSet, IsRefusedWithTheHalvesOfItsMarkExchanged) {
  HeldSetBytes bytes = EncodeHeldSet(Example());
  std::swap(bytes[0], bytes[2]);
  std::swap(bytes[1], bytes[3]);
  EXPECT_FALSE(DecodeHeldSet(bytes));
}

TEST(HeldSet, IsRefusedIfItAsksForAnInputThatIsNone) {
  HeldSet held = Example();
  for (const int input : {-1, kInputs + 1}) {
    held.AskedInput = input;
    EXPECT_FALSE(DecodeHeldSet(EncodeHeldSet(held))) << input;
  }
}

TEST(HeldSet, KeepsTheOrderOfTheInputsNoSharperThanItWas) {
  HeldSet held = Example();
  held.Columns.IsFirstSet = true;
  held.Columns.IsUncertain[7] = true;
  held.Columns.Owed[3] = 2;
  held.Columns.Repeats[15] = 1;
  held.Columns.LastSet = 1'800'000'000;
  held.Columns.Order.Base = 4;
  held.Columns.Order.IntervalLow = 9.998;
  held.Columns.Order.IntervalHigh = 10.002;
  held.Columns.Order.Least[15] = -0.7F;
  held.Columns.Order.Most[15] = -0.6F;
  const auto back = DecodeHeldSet(EncodeHeldSet(held));
  ASSERT_TRUE(back);
  const SamplingOrder& order = back->Columns.Order;
  EXPECT_LE(order.Least[15], -0.7F);
  EXPECT_GE(order.Most[15], -0.6F);
  EXPECT_NEAR(order.Least[15], -0.7F, 1e-4);
  EXPECT_NEAR(order.Most[15], -0.6F, 1e-4);
  EXPECT_NEAR(order.IntervalLow, 9.998, 2e-6);
  EXPECT_NEAR(order.IntervalHigh, 10.002, 2e-6);
  held.Columns.Order = order;
  EXPECT_EQ(*back, held);
}

// The file of an earlier program: the values belong to the set in hand as ever.
TEST(HeldSet, OfAnEarlierProgramIsTakenOverWithoutAnOrder) {
  std::vector<std::uint16_t> words = {0x4154, 0x4856, 7, 0, 2, 1U << 3};  // TAVH, row 7, input 2
  words.resize(21);
  words[6 + 2] = 444;
  std::uint16_t sum = 0;
  for (const std::uint16_t word : words) {
    sum = static_cast<std::uint16_t>(sum + word);
  }
  words.push_back(sum);
  const auto held = DecodeHeldSet(std::as_bytes(std::span(words)));
  ASSERT_TRUE(held);
  EXPECT_EQ(held->SampleCount, 7);
  EXPECT_EQ(held->AskedInput, 2);
  EXPECT_TRUE(held->Seen[3]);
  EXPECT_EQ(held->Value[3], 444);
  EXPECT_EQ(held->Columns, ColumnMemory());
  words[8] = 445;
  EXPECT_FALSE(DecodeHeldSet(std::as_bytes(std::span(words))));
}

TEST(HeldSet, LiesHiddenBesideItsRecording) {
  EXPECT_EQ(HeldSetName("m260314a.ovn"), ".M260314A.OVN.set");
}

}  // namespace
}  // namespace tavrel
