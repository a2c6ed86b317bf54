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

TEST(HeldSet, LiesHiddenBesideItsRecording) {
  EXPECT_EQ(HeldSetName("m260314a.ovn"), ".M260314A.OVN.set");
}

}  // namespace
}  // namespace tavrel
