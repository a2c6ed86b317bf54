#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/files/pump_fixture.h"
#include "tests/support/known_order.h"

namespace tavrel {
namespace {

using Telegrams = std::vector<std::string>;

TEST(Pump, FindsNothingWithNothingConfigured) {
  PumpFixture fixture;
  fixture.state.PumpSlot = 0;
  fixture.state.PumpChannel = 99;
  fixture.engine.PumpOnce();
  EXPECT_EQ(fixture.state.PumpSlot, 12);
  EXPECT_EQ(fixture.state.PumpChannel, 15);
  EXPECT_TRUE(fixture.port.sent.empty());
}

TEST(Pump, BringsACursorThatIsOutOfRangeToSlotOneAndChannelFifteen) {
  PumpFixture fixture;
  fixture.Open(1, kNewFile, BytesOf(Running(HeaderOf(1, {15}))));
  fixture.Open(12, "M011111B.NEW", BytesOf(Running(HeaderOf(2, {15}))));
  fixture.state.PumpSlot = 13;
  fixture.state.PumpChannel = 16;
  fixture.engine.PumpOnce();
  EXPECT_EQ(fixture.port.sent, (Telegrams{"X0F?"}));
}

TEST(Pump, WalksDownFromSlotTwelveAndChannelFifteen) {
  PumpFixture fixture;
  fixture.Open(12, "M011111B.NEW", BytesOf(Running(HeaderOf(3, {14, 15}))));
  fixture.Open(2, kNewFile, BytesOf(Running(HeaderOf(1, {1, 3}))));
  fixture.state.Columns[12].Order = KnownOrder(14);
  fixture.state.Columns[2].Order = KnownOrder(1);
  fixture.Store(3, 15, {1501, 1502});
  fixture.Store(3, 14, {1401, 1402});
  fixture.Store(1, 3, {301});
  fixture.Store(1, 1, {101});
  fixture.Pump(11);
  EXPECT_EQ(fixture.port.sent, (Telegrams{"X2F?", "X2E?",          // first set of slot 12
                                          "X03?", "X01?", "X03?",  // slot 2 until it is empty
                                          "X2F?", "X2E?",          // second set of slot 12
                                          "X2F?"}));               // which is empty now
  EXPECT_EQ(fixture.SamplesInFile("M011111B.NEW"), Words({1401, 1501, 1401, 1501, 1402, 1502}));
  EXPECT_EQ(fixture.SamplesInFile(kNewFile), Words({101, 301, 101, 301}));
  EXPECT_EQ(fixture.state.ReadState[12], ReadState::kWaiting);
  EXPECT_EQ(fixture.state.ReadState[2], ReadState::kWaiting);
}

TEST(Pump, MakesAtMostOneExchangeInACall) {
  PumpFixture fixture;
  fixture.Open(3, kNewFile, BytesOf(Running(HeaderOf(15))));
  for (int call = 1; call <= 40; ++call) {
    fixture.engine.PumpOnce();
    ASSERT_LE(fixture.port.sent.size(), static_cast<std::size_t>(call));
  }
}

TEST(Pump, WaitsAfterNoDataUntilTheTenSecondTick) {
  PumpFixture fixture;
  fixture.Open(1, kNewFile, BytesOf(Running(HeaderOf(1, {2}))));
  fixture.Pump(5);
  EXPECT_EQ(fixture.port.sent, (Telegrams{"X02?"}));
  EXPECT_EQ(fixture.state.ReadState[1], ReadState::kWaiting);
  fixture.engine.TenSecondTick();
  EXPECT_EQ(fixture.state.ReadState[1], ReadState::kReading);
  fixture.Pump(2);
  EXPECT_EQ(fixture.port.sent, (Telegrams{"X02?", "X02?"}));
}

TEST(Pump, KeepsItsChannelAfterAFailedReadAndLowersItAfterNoData) {
  PumpFixture fixture;
  fixture.Open(12, kNewFile, BytesOf(Running(HeaderOf(1, {2, 5}))));
  fixture.line.refused.insert('X');
  fixture.engine.PumpOnce();
  EXPECT_EQ(fixture.state.ReadState[12], ReadState::kWaiting);
  EXPECT_EQ(fixture.state.PumpChannel, 5);
  fixture.line.refused.clear();
  fixture.engine.TenSecondTick();
  fixture.engine.PumpOnce();
  EXPECT_EQ(fixture.state.ReadState[12], ReadState::kWaiting);
  EXPECT_EQ(fixture.state.PumpChannel, 4);
  EXPECT_TRUE(fixture.Announced().empty());
}

TEST(Pump, KeepsChannelsThatArrivedBeforeAFailedRead) {
  PumpFixture fixture;
  fixture.Open(12, kNewFile, BytesOf(Running(HeaderOf(1, {1, 2, 3}))));
  for (const int input : {1, 2, 3}) {
    fixture.Store(1, input, {input, input + 10});
  }
  fixture.engine.PumpOnce();  // channel 3
  fixture.line.refused.insert('X');
  fixture.engine.PumpOnce();  // channel 2 is refused
  EXPECT_TRUE(fixture.engine.HoldsSet(12));
  fixture.line.refused.clear();
  fixture.engine.TenSecondTick();
  fixture.Pump(2);
  EXPECT_EQ(fixture.port.sent, (Telegrams{"X03?", "X02?", "X02?", "X01?"}));
  EXPECT_EQ(fixture.SamplesInFile(kNewFile), Words({1, 2, 3, 1, 2, 3}));
  EXPECT_FALSE(fixture.engine.HoldsSet(12));
}

TEST(Pump, CompletesASetLaterWhenOneChannelHadNoData) {
  PumpFixture fixture;
  fixture.Open(12, kNewFile, BytesOf(Running(HeaderOf(1, {1, 2, 3}))));
  fixture.Store(1, 3, {3});
  fixture.Store(1, 1, {1});
  fixture.Pump(2);  // channel 3 has a value, channel 2 none
  EXPECT_EQ(fixture.SamplesInFile(kNewFile), "");
  fixture.Store(1, 2, {2});
  fixture.engine.TenSecondTick();
  for (int tick = 0; tick < 60; ++tick) {
    fixture.clock.AdvanceSeconds(0.05);
    fixture.Pump(1);
  }
  EXPECT_EQ(fixture.SamplesInFile(kNewFile), Words({1, 2, 3, 1, 2, 3}));
}

TEST(Pump, WritesTheFirstSetOfAFileTwice) {
  PumpFixture fixture;
  fixture.Open(12, kNewFile, BytesOf(Running(HeaderOf(1, {1}))));
  fixture.Store(1, 1, {7});
  fixture.engine.PumpOnce();
  EXPECT_EQ(fixture.state.SampleCount[12], 2);
  EXPECT_EQ(fixture.SamplesInFile(kNewFile), Words({7, 7}));
  fixture.Store(1, 1, {8, 9});
  fixture.Pump(4);
  EXPECT_EQ(fixture.state.SampleCount[12], 4);
  EXPECT_EQ(fixture.SamplesInFile(kNewFile), Words({7, 7, 8, 9}));
}

TEST(Pump, StoresEqualValuesInARowEachTime) {
  PumpFixture fixture;
  fixture.Open(12, kNewFile, BytesOf(Running(HeaderOf(1, {1}))));
  fixture.Store(1, 1, {7, 7, 7});
  fixture.Pump(8);
  EXPECT_EQ(fixture.SamplesInFile(kNewFile), Words({7, 7, 7, 7}));
}

TEST(Pump, StoresNegativeWordsAndNeverTheOneForNoData) {
  PumpFixture fixture;
  fixture.Open(12, kNewFile, BytesOf(Running(HeaderOf(1, {1, 2}))));
  fixture.Store(1, 1, {-1, 32767});
  fixture.Store(1, 2, {-32767, -32768, 5});
  fixture.Pump(9);
  fixture.engine.TenSecondTick();
  fixture.Pump(9);
  EXPECT_EQ(fixture.SamplesInFile(kNewFile), Words({-1, -32767, -1, -32767, 32767, 5}));
}

TEST(Pump, GoesOnBehindTheRowsThatAreThere) {
  PumpFixture fixture;
  fixture.Open(12, kNewFile, BytesOf(Running(HeaderOf(1, {1, 2}))) + Words({1, 2, 1, 2, 3, 4, 9}));
  fixture.Store(1, 1, {5});
  fixture.Store(1, 2, {6});
  fixture.Pump(3);
  EXPECT_EQ(fixture.SamplesInFile(kNewFile), Words({1, 2, 1, 2, 3, 4, 5, 6}));
}

// A program that was killed between the two copies of the first set leaves one row.
TEST(Pump, WritesTheSecondSetTwiceBehindASingleRow) {
  for (int rows = 0; rows <= 3; ++rows) {
    PumpFixture fixture;
    std::string samples;
    for (int row = 0; row < rows; ++row) {
      samples += Words({1, 2});
    }
    fixture.Open(12, kNewFile, BytesOf(Running(HeaderOf(1, {1, 2}))) + samples);
    ASSERT_EQ(fixture.state.SampleCount[12], rows);
    fixture.Store(1, 1, {5});
    fixture.Store(1, 2, {6});
    fixture.Pump(3);
    const std::string set = Words({5, 6});
    EXPECT_EQ(fixture.SamplesInFile(kNewFile), samples + (rows < 2 ? set + set : set)) << rows;
  }
}

TEST(Pump, FillsASimulatedFileWithTenTimesTheChannel) {
  PumpFixture fixture;
  fixture.link.LinkOpen({"----", 0});
  fixture.Open(12, kNewFile, BytesOf(Running(HeaderOf(1, {1, 4, 15}))));
  fixture.Pump(7);
  EXPECT_EQ(fixture.SamplesInFile(kNewFile), Words({10, 40, 150, 10, 40, 150, 10, 40, 150}));
  EXPECT_TRUE(fixture.port.sent.empty());
}

TEST(Pump, ServesTwoSlotsOfOneInstrumentByThemselves) {
  PumpFixture fixture;
  fixture.Open(2, "M011111B.NEW", BytesOf(Running(HeaderOf(4, {1}))));
  fixture.Open(1, kNewFile, BytesOf(Running(HeaderOf(4, {2}))));
  fixture.Store(4, 1, {11});
  fixture.Store(4, 2, {22});
  fixture.Pump(6);
  EXPECT_EQ(fixture.SamplesInFile("M011111B.NEW"), Words({11, 11}));
  EXPECT_EQ(fixture.SamplesInFile(kNewFile), Words({22, 22}));
}

TEST(Pump, NeverTouchesASlotWithoutAFileName) {
  PumpFixture fixture;
  fixture.Open(12, kNewFile, BytesOf(Running(HeaderOf(1, {1}))));
  fixture.state.SlotFile[12].clear();
  fixture.Pump(3);
  EXPECT_TRUE(fixture.port.sent.empty());
}

TEST(Pump, NeverWantsASlotWithoutRecordedInputs) {
  PumpFixture fixture;
  UnitRecord unit = Running(HeaderOf(1, {}));
  unit.UnitChannels = 1;
  fixture.Open(12, kNewFile, BytesOf(unit));
  fixture.state.ReadState[12] = ReadState::kReading;
  fixture.Pump(3);
  EXPECT_TRUE(fixture.port.sent.empty());
  EXPECT_EQ(fixture.SamplesInFile(kNewFile), "");
}

TEST(Pump, NeverWritesASlotWhoseRolesAndChannelsDisagree) {
  PumpFixture fixture;
  UnitRecord unit = Running(HeaderOf(1, {1, 2}));
  unit.UnitChannels = 3;
  fixture.Open(12, kNewFile, BytesOf(unit));
  fixture.state.ReadState[12] = ReadState::kReading;
  fixture.Pump(3);
  EXPECT_TRUE(fixture.port.sent.empty());
  EXPECT_EQ(fixture.SamplesInFile(kNewFile), "");
}

TEST(Pump, TakesOneMoreWholeSetBeforeItStops) {
  PumpFixture fixture;
  fixture.Open(12, kNewFile, BytesOf(Running(HeaderOf(1, {1, 2}))));
  fixture.state.ReadState[12] = ReadState::kLastSet;
  fixture.Store(1, 1, {1, 3});
  fixture.Store(1, 2, {2, 4});
  fixture.Pump(5);
  EXPECT_EQ(fixture.SamplesInFile(kNewFile), Words({1, 2, 1, 2}));
  EXPECT_EQ(fixture.state.ReadState[12], ReadState::kIdle);
}

TEST(Pump, CountsTheBacklogDownAndHidesItFromThree) {
  PumpFixture fixture;
  fixture.Open(12, kNewFile, BytesOf(Running(HeaderOf(1, {1}))));
  fixture.state.BacklogSlot = 12;
  fixture.state.BacklogCount = 5;
  fixture.Store(1, 1, {1, 2, 3, 4});
  fixture.Pump(1);
  EXPECT_EQ(fixture.state.lbl_Info, "reading from Tavrel:  4");
  fixture.Pump(1);
  EXPECT_EQ(fixture.state.lbl_Info, "reading from Tavrel:  3");
  fixture.Pump(1);
  EXPECT_EQ(fixture.state.BacklogCount, 0);
  EXPECT_EQ(fixture.state.lbl_Info, "");
}

TEST(Pump, CountsTheBacklogOfItsSlotOnly) {
  PumpFixture fixture;
  fixture.Open(12, kNewFile, BytesOf(Running(HeaderOf(1, {1}))));
  fixture.state.BacklogSlot = 3;
  fixture.state.BacklogCount = 5;
  fixture.Store(1, 1, {1});
  fixture.Pump(1);
  EXPECT_EQ(fixture.state.BacklogCount, 5);
}

// The reference has handed over its value of the set in hand, so one more set waits than its count
// says: there is room for 63.
TEST(Pump, CountsTheSetInHandAmongThoseThatWait) {
  for (const bool has_reference : {false, true}) {
    PumpFixture fixture;
    fixture.Open(12, kNewFile, BytesOf(Running(HeaderOf(1, {2, 5}))));
    fixture.Open(7, "M011111B.NEW", BytesOf(Running(HeaderOf(3, {2, 5}))));
    fixture.state.SampleSeen[7][2] = has_reference;
    fixture.engine.TakeUp(7, 832);
    fixture.engine.PumpOnce();
    EXPECT_EQ(fixture.port.sent, (Telegrams{has_reference ? "X25?" : "X05?"}));
  }
}

TEST(Pump, TakesNoCountsFromASimulatedLine) {
  PumpFixture fixture;
  fixture.link.LinkOpen({"----", 0});
  fixture.Open(12, kNewFile, BytesOf(Running(HeaderOf(1, {2, 5}))));
  fixture.engine.TakeUp(12, 0);
  fixture.Pump(3);
  fixture.link.LinkOpen({"COM1", 0});
  fixture.Pump(2);
  EXPECT_EQ(fixture.port.sent, (Telegrams{"R02?", "X05?"}));
}

TEST(Pump, DrainsAWholeBufferWithEveryWordInItsPlace) {
  PumpFixture fixture;
  UnitRecord unit = Running(HeaderOf(15));
  fixture.Open(7, kNewFile, BytesOf(unit));
  for (int set = 0; set < kBufferSets; ++set) {
    for (int input = 1; input <= kInputs; ++input) {
      fixture.Store(1, input, {set * 16 + input});
    }
  }
  int calls = 0;
  while (fixture.state.ReadState[7] == ReadState::kReading && calls < 30000) {
    fixture.engine.PumpOnce();
    ++calls;
  }
  ASSERT_EQ(fixture.state.SampleCount[7], kBufferSets + 1);
  for (int row = 0; row <= kBufferSets; ++row) {
    for (int input = 1; input <= kInputs; ++input) {
      const int set = row == 0 ? 0 : row - 1;
      ASSERT_EQ(fixture.files.ReadSample(7, row, input), set * 16 + input);
    }
  }
}

}  // namespace
}  // namespace tavrel
