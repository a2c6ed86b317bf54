#include <gtest/gtest.h>

#include <array>
#include <cstdio>

#include "tests/instrument/line_fixture.h"

namespace instrument {
namespace {

TEST(DirectDialogue, WritesAndReadsASetpointOfTwoInstruments) {
  LineBench bench(LineMode::kDirect);
  EXPECT_EQ(bench.Say("W01=3E8\r"), ".");
  EXPECT_EQ(bench.Say("W21=1F4\r"), ".");
  EXPECT_EQ(bench.Say("W01?"), "03E8\r");
  EXPECT_EQ(bench.Say("W21?"), "01F4\r");
}

TEST(DirectDialogue, LowestNumberAnswersForMemory) {
  LineBench bench(LineMode::kDirect, {3, 2});
  EXPECT_EQ(bench.Say("8000<"), "0001\r");
}

TEST(DirectDialogue, MemoryAndPortWritesAreCarriedOutUnanswered) {
  LineBench bench(LineMode::kDirect);
  EXPECT_EQ(bench.Say("9000>12\r"), "");
  EXPECT_EQ(bench.Say("9000<"), "0012\r");
  EXPECT_EQ(bench.Say("1F:A5\r"), "");
  EXPECT_EQ(bench.Say("1F@"), "A5\r");
}

TEST(PluginDialogue, WritesAndReadsASetpointOfTwoInstruments) {
  LineBench bench(LineMode::kPlugin);
  EXPECT_EQ(bench.Say("np1=3E8\r"), ".");
  EXPECT_EQ(bench.Say("n2p1=FFFF\r"), ".");
  EXPECT_EQ(bench.Say("np1?"), "03E8\r");
  EXPECT_EQ(bench.Say("n2p1?"), "FFFF\r");
}

TEST(PluginDialogue, MemoryAndPortWritesAreAcknowledged) {
  LineBench bench(LineMode::kPlugin);
  EXPECT_EQ(bench.Say("n2m9000=12\r"), ".");
  EXPECT_EQ(bench.Say("n2m9000?"), "0012\r");
  EXPECT_EQ(bench.Say("nm9000?"), "0000\r");
  EXPECT_EQ(bench.Say("no1F=5\r"), ".");
  EXPECT_EQ(bench.Say("no1F?"), "05\r");
}

TEST(PluginDialogue, EscapeBeforeACommandDoesNoHarm) {
  LineBench bench(LineMode::kPlugin);
  EXPECT_EQ(bench.Say("nv\x1Bnm8000?"), "0000\r");
}

TEST(Dialogue, NobodyAnswersForAMissingInstrument) {
  LineBench direct(LineMode::kDirect);
  EXPECT_EQ(direct.Say("Y31?"), "");
  EXPECT_EQ(direct.Say("W31=1\r"), "");
  EXPECT_EQ(direct.Say("Y3G?"), "");
  LineBench plugin(LineMode::kPlugin);
  EXPECT_EQ(plugin.Say("n3p21?"), "");
}

TEST(Dialogue, NonsenseIsRefusedOnce) {
  LineBench bench(LineMode::kPlugin);
  EXPECT_EQ(bench.Say("nx21?"), "?");
  EXPECT_EQ(bench.Say("np21=12345\r"), "?");
  EXPECT_EQ(bench.Say("n2v1FF?"), "?");
}

TEST(Dialogue, NewNumberCountsAtOnce) {
  LineBench bench(LineMode::kPlugin, {1, 3});
  EXPECT_EQ(bench.Say("n2m8000=4\r"), ".");
  EXPECT_EQ(bench.Say("n2m8000?"), "");
  EXPECT_EQ(bench.Say("n4m8000?"), "0004\r");
  EXPECT_EQ(bench.truth.rows.back(), "renumber 3 5");
}

TEST(Dialogue, TakenOrImpossibleNumberIsRefused) {
  LineBench bench(LineMode::kPlugin, {1, 3});
  EXPECT_EQ(bench.Say("nm8000=2\r"), "?");
  EXPECT_EQ(bench.Say("nm8000=6\r"), "?");
  EXPECT_EQ(bench.Say("nm8000=0\r"), ".");
  EXPECT_EQ(bench.Say("nm8000?"), "0000\r");
}

TEST(Dialogue, TestWordsStoreEveryValue) {
  LineBench bench(LineMode::kDirect);
  for (const int value : {0, 1, -1, 32767, -32767, -32768}) {
    std::array<char, 16> text{};
    std::snprintf(text.data(), text.size(), "V06=%X\r", static_cast<unsigned>(value) & 0xFFFFU);
    EXPECT_EQ(bench.Say(text.data()), ".");
    EXPECT_EQ(WordOf(bench.Say("V06?")), value);
  }
}

TEST(Dialogue, ReadingXHandsASampleOverOnce) {
  LineBench bench(LineMode::kDirect);
  ASSERT_EQ(bench.Say("S11=5\r"), ".");
  ASSERT_EQ(bench.Say("R11=0\r"), ".");
  bench.Pass(5);
  ASSERT_EQ(bench.Say("R11?"), "0001\r");
  EXPECT_GT(WordOf(bench.Say("X11?")), 0);
  EXPECT_EQ(bench.Say("X11?"), "8000\r");
  EXPECT_EQ(bench.truth.Count("handed 2 1 1"), 1);
}

}  // namespace
}  // namespace instrument
