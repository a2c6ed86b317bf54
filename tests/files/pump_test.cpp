#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/files/pump_room.h"
#include "tests/support/known_order.h"

namespace tavrel {
namespace {

using Telegrams = std::vector<std::string>;

constexpr const char* kName = "M011111A.NEW";

TEST(Pump, FindsNothingWithNothingConfigured) {
  PumpRoom room;
  room.state.PumpSlot = 0;
  room.state.PumpChannel = 99;
  room.engine.PumpOnce();
  EXPECT_EQ(room.state.PumpSlot, 12);
  EXPECT_EQ(room.state.PumpChannel, 15);
  EXPECT_TRUE(room.port.sent.empty());
}

TEST(Pump, BringsACursorThatIsOutOfRangeToSlotOneAndChannelFifteen) {
  PumpRoom room;
  room.Open(1, kName, BytesOf(Running(HeaderOf(1, {15}))));
  room.Open(12, "M011111B.NEW", BytesOf(Running(HeaderOf(2, {15}))));
  room.state.PumpSlot = 13;
  room.state.PumpChannel = 16;
  room.engine.PumpOnce();
  EXPECT_EQ(room.port.sent, (Telegrams{"X0F?"}));
}

TEST(Pump, WalksDownFromSlotTwelveAndChannelFifteen) {
  PumpRoom room;
  room.Open(12, "M011111B.NEW", BytesOf(Running(HeaderOf(3, {14, 15}))));
  room.Open(2, kName, BytesOf(Running(HeaderOf(1, {1, 3}))));
  room.state.Columns[12].Order = KnownOrder(14);
  room.state.Columns[2].Order = KnownOrder(1);
  room.Store(3, 15, {1501, 1502});
  room.Store(3, 14, {1401, 1402});
  room.Store(1, 3, {301});
  room.Store(1, 1, {101});
  room.Pump(11);
  EXPECT_EQ(room.port.sent, (Telegrams{"X2F?", "X2E?",          // first set of slot 12
                                       "X03?", "X01?", "X03?",  // slot 2 until it is empty
                                       "X2F?", "X2E?",          // second set of slot 12
                                       "X2F?"}));               // which is empty now
  EXPECT_EQ(room.SamplesInFile("M011111B.NEW"), Words({1401, 1501, 1401, 1501, 1402, 1502}));
  EXPECT_EQ(room.SamplesInFile(kName), Words({101, 301, 101, 301}));
  EXPECT_EQ(room.state.ReadState[12], ReadState::kWaiting);
  EXPECT_EQ(room.state.ReadState[2], ReadState::kWaiting);
}

TEST(Pump, MakesAtMostOneExchangeInACall) {
  PumpRoom room;
  room.Open(3, kName, BytesOf(Running(HeaderOf(15))));
  for (int call = 1; call <= 40; ++call) {
    room.engine.PumpOnce();
    ASSERT_LE(room.port.sent.size(), static_cast<std::size_t>(call));
  }
}

TEST(Pump, WaitsAfterNoDataUntilTheTenSecondTick) {
  PumpRoom room;
  room.Open(1, kName, BytesOf(Running(HeaderOf(1, {2}))));
  room.Pump(5);
  EXPECT_EQ(room.port.sent, (Telegrams{"X02?"}));
  EXPECT_EQ(room.state.ReadState[1], ReadState::kWaiting);
  room.engine.TenSecondTick();
  EXPECT_EQ(room.state.ReadState[1], ReadState::kReading);
  room.Pump(2);
  EXPECT_EQ(room.port.sent, (Telegrams{"X02?", "X02?"}));
}

TEST(Pump, KeepsItsChannelAfterAFailedReadAndLowersItAfterNoData) {
  PumpRoom room;
  room.Open(12, kName, BytesOf(Running(HeaderOf(1, {2, 5}))));
  room.line.refused.insert('X');
  room.engine.PumpOnce();
  EXPECT_EQ(room.state.ReadState[12], ReadState::kWaiting);
  EXPECT_EQ(room.state.PumpChannel, 5);
  room.line.refused.clear();
  room.engine.TenSecondTick();
  room.engine.PumpOnce();
  EXPECT_EQ(room.state.ReadState[12], ReadState::kWaiting);
  EXPECT_EQ(room.state.PumpChannel, 4);
  EXPECT_TRUE(room.Announced().empty());
}

TEST(Pump, KeepsChannelsThatArrivedBeforeAFailedRead) {
  PumpRoom room;
  room.Open(12, kName, BytesOf(Running(HeaderOf(1, {1, 2, 3}))));
  for (const int input : {1, 2, 3}) {
    room.Store(1, input, {input, input + 10});
  }
  room.engine.PumpOnce();  // channel 3
  room.line.refused.insert('X');
  room.engine.PumpOnce();  // channel 2 is refused
  EXPECT_TRUE(room.engine.HoldsSet(12));
  room.line.refused.clear();
  room.engine.TenSecondTick();
  room.Pump(2);
  EXPECT_EQ(room.port.sent, (Telegrams{"X03?", "X02?", "X02?", "X01?"}));
  EXPECT_EQ(room.SamplesInFile(kName), Words({1, 2, 3, 1, 2, 3}));
  EXPECT_FALSE(room.engine.HoldsSet(12));
}

TEST(Pump, CompletesASetLaterWhenOneChannelHadNoData) {
  PumpRoom room;
  room.Open(12, kName, BytesOf(Running(HeaderOf(1, {1, 2, 3}))));
  room.Store(1, 3, {3});
  room.Store(1, 1, {1});
  room.Pump(2);  // channel 3 has a value, channel 2 none
  EXPECT_EQ(room.SamplesInFile(kName), "");
  room.Store(1, 2, {2});
  room.engine.TenSecondTick();
  for (int tick = 0; tick < 60; ++tick) {
    room.clock.AdvanceSeconds(0.05);
    room.Pump(1);
  }
  EXPECT_EQ(room.SamplesInFile(kName), Words({1, 2, 3, 1, 2, 3}));
}

TEST(Pump, WritesTheFirstSetOfAFileTwice) {
  PumpRoom room;
  room.Open(12, kName, BytesOf(Running(HeaderOf(1, {1}))));
  room.Store(1, 1, {7});
  room.engine.PumpOnce();
  EXPECT_EQ(room.state.SampleCount[12], 2);
  EXPECT_EQ(room.SamplesInFile(kName), Words({7, 7}));
  room.Store(1, 1, {8, 9});
  room.Pump(4);
  EXPECT_EQ(room.state.SampleCount[12], 4);
  EXPECT_EQ(room.SamplesInFile(kName), Words({7, 7, 8, 9}));
}

TEST(Pump, StoresEqualValuesInARowEachTime) {
  PumpRoom room;
  room.Open(12, kName, BytesOf(Running(HeaderOf(1, {1}))));
  room.Store(1, 1, {7, 7, 7});
  room.Pump(8);
  EXPECT_EQ(room.SamplesInFile(kName), Words({7, 7, 7, 7}));
}

TEST(Pump, StoresNegativeWordsAndNeverTheOneForNoData) {
  PumpRoom room;
  room.Open(12, kName, BytesOf(Running(HeaderOf(1, {1, 2}))));
  room.Store(1, 1, {-1, 32767});
  room.Store(1, 2, {-32767, -32768, 5});
  room.Pump(9);
  room.engine.TenSecondTick();
  room.Pump(9);
  EXPECT_EQ(room.SamplesInFile(kName), Words({-1, -32767, -1, -32767, 32767, 5}));
}

TEST(Pump, GoesOnBehindTheRowsThatAreThere) {
  PumpRoom room;
  room.Open(12, kName, BytesOf(Running(HeaderOf(1, {1, 2}))) + Words({1, 2, 1, 2, 3, 4, 9}));
  room.Store(1, 1, {5});
  room.Store(1, 2, {6});
  room.Pump(3);
  EXPECT_EQ(room.SamplesInFile(kName), Words({1, 2, 1, 2, 3, 4, 5, 6}));
}

// A program that was killed between the two copies of the first set leaves one row.
TEST(Pump, WritesTheSecondSetTwiceBehindASingleRow) {
  for (int rows = 0; rows <= 3; ++rows) {
    PumpRoom room;
    std::string samples;
    for (int row = 0; row < rows; ++row) {
      samples += Words({1, 2});
    }
    room.Open(12, kName, BytesOf(Running(HeaderOf(1, {1, 2}))) + samples);
    ASSERT_EQ(room.state.SampleCount[12], rows);
    room.Store(1, 1, {5});
    room.Store(1, 2, {6});
    room.Pump(3);
    const std::string set = Words({5, 6});
    EXPECT_EQ(room.SamplesInFile(kName), samples + (rows < 2 ? set + set : set)) << rows;
  }
}

TEST(Pump, FillsASimulatedFileWithTenTimesTheChannel) {
  PumpRoom room;
  room.link.LinkOpen({"----", 0});
  room.Open(12, kName, BytesOf(Running(HeaderOf(1, {1, 4, 15}))));
  room.Pump(7);
  EXPECT_EQ(room.SamplesInFile(kName), Words({10, 40, 150, 10, 40, 150, 10, 40, 150}));
  EXPECT_TRUE(room.port.sent.empty());
}

TEST(Pump, ServesTwoSlotsOfOneInstrumentByThemselves) {
  PumpRoom room;
  room.Open(2, "M011111B.NEW", BytesOf(Running(HeaderOf(4, {1}))));
  room.Open(1, kName, BytesOf(Running(HeaderOf(4, {2}))));
  room.Store(4, 1, {11});
  room.Store(4, 2, {22});
  room.Pump(6);
  EXPECT_EQ(room.SamplesInFile("M011111B.NEW"), Words({11, 11}));
  EXPECT_EQ(room.SamplesInFile(kName), Words({22, 22}));
}

TEST(Pump, NeverTouchesASlotWithoutAFileName) {
  PumpRoom room;
  room.Open(12, kName, BytesOf(Running(HeaderOf(1, {1}))));
  room.state.SlotFile[12].clear();
  room.Pump(3);
  EXPECT_TRUE(room.port.sent.empty());
}

TEST(Pump, NeverWantsASlotWithoutRecordedInputs) {
  PumpRoom room;
  UnitRecord unit = Running(HeaderOf(1, {}));
  unit.UnitChannels = 1;
  room.Open(12, kName, BytesOf(unit));
  room.state.ReadState[12] = ReadState::kReading;
  room.Pump(3);
  EXPECT_TRUE(room.port.sent.empty());
  EXPECT_EQ(room.SamplesInFile(kName), "");
}

TEST(Pump, NeverWritesASlotWhoseRolesAndChannelsDisagree) {
  PumpRoom room;
  UnitRecord unit = Running(HeaderOf(1, {1, 2}));
  unit.UnitChannels = 3;
  room.Open(12, kName, BytesOf(unit));
  room.state.ReadState[12] = ReadState::kReading;
  room.Pump(3);
  EXPECT_TRUE(room.port.sent.empty());
  EXPECT_EQ(room.SamplesInFile(kName), "");
}

TEST(Pump, TakesOneMoreWholeSetBeforeItStops) {
  PumpRoom room;
  room.Open(12, kName, BytesOf(Running(HeaderOf(1, {1, 2}))));
  room.state.ReadState[12] = ReadState::kLastSet;
  room.Store(1, 1, {1, 3});
  room.Store(1, 2, {2, 4});
  room.Pump(5);
  EXPECT_EQ(room.SamplesInFile(kName), Words({1, 2, 1, 2}));
  EXPECT_EQ(room.state.ReadState[12], ReadState::kIdle);
}

TEST(Pump, CountsTheBacklogDownAndHidesItFromThree) {
  PumpRoom room;
  room.Open(12, kName, BytesOf(Running(HeaderOf(1, {1}))));
  room.state.BacklogSlot = 12;
  room.state.BacklogCount = 5;
  room.Store(1, 1, {1, 2, 3, 4});
  room.Pump(1);
  EXPECT_EQ(room.state.lbl_Info, "reading from Tavrel:  4");
  room.Pump(1);
  EXPECT_EQ(room.state.lbl_Info, "reading from Tavrel:  3");
  room.Pump(1);
  EXPECT_EQ(room.state.BacklogCount, 0);
  EXPECT_EQ(room.state.lbl_Info, "");
}

TEST(Pump, CountsTheBacklogOfItsSlotOnly) {
  PumpRoom room;
  room.Open(12, kName, BytesOf(Running(HeaderOf(1, {1}))));
  room.state.BacklogSlot = 3;
  room.state.BacklogCount = 5;
  room.Store(1, 1, {1});
  room.Pump(1);
  EXPECT_EQ(room.state.BacklogCount, 5);
}

// The reference has handed over its value of the set in hand, so one more set waits than its count
// says: there is room for 63.
TEST(Pump, CountsTheSetInHandAmongThoseThatWait) {
  for (const bool has_reference : {false, true}) {
    PumpRoom room;
    room.Open(12, kName, BytesOf(Running(HeaderOf(1, {2, 5}))));
    room.Open(7, "M011111B.NEW", BytesOf(Running(HeaderOf(3, {2, 5}))));
    room.state.SampleSeen[7][2] = has_reference;
    room.engine.TakeUp(7, 832);
    room.engine.PumpOnce();
    EXPECT_EQ(room.port.sent, (Telegrams{has_reference ? "X25?" : "X05?"}));
  }
}

TEST(Pump, TakesNoCountsFromASimulatedLine) {
  PumpRoom room;
  room.link.LinkOpen({"----", 0});
  room.Open(12, kName, BytesOf(Running(HeaderOf(1, {2, 5}))));
  room.engine.TakeUp(12, 0);
  room.Pump(3);
  room.link.LinkOpen({"COM1", 0});
  room.Pump(2);
  EXPECT_EQ(room.port.sent, (Telegrams{"R02?", "X05?"}));
}

TEST(Pump, DrainsAWholeBufferWithEveryWordInItsPlace) {
  PumpRoom room;
  UnitRecord unit = Running(HeaderOf(15));
  room.Open(7, kName, BytesOf(unit));
  for (int set = 0; set < kBufferSets; ++set) {
    for (int input = 1; input <= kInputs; ++input) {
      room.Store(1, input, {set * 16 + input});
    }
  }
  int calls = 0;
  while (room.state.ReadState[7] == ReadState::kReading && calls < 30000) {
    room.engine.PumpOnce();
    ++calls;
  }
  ASSERT_EQ(room.state.SampleCount[7], kBufferSets + 1);
  for (int row = 0; row <= kBufferSets; ++row) {
    for (int input = 1; input <= kInputs; ++input) {
      const int set = row == 0 ? 0 : row - 1;
      ASSERT_EQ(room.files.ReadSample(7, row, input), set * 16 + input);
    }
  }
}

}  // namespace
}  // namespace tavrel
