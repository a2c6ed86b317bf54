#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "tests/files/pump_room.h"

namespace tavrel {
namespace {

using Texts = std::vector<std::string>;

constexpr const char* kName = "M011111A.NEW";

// Slot 12 records the inputs 1 and 2, and two sets wait in the instrument.
struct TwoSets : PumpRoom {
  TwoSets() {
    Open(12, kName, BytesOf(Running(HeaderOf(1, {1, 2}))));
    Store(1, 1, {11, 12});
    Store(1, 2, {21, 22});
  }
  void Remove() const { std::filesystem::remove(directory.File(kName)); }
};

TEST(PumpFailure, FullDiskKeepsTheSetInHandAndTellsOnce) {
  TwoSets room;
  {
    const FullDisk disk(1003);
    room.Pump(3);
    EXPECT_EQ(room.state.SampleCount[12], 0);
    EXPECT_EQ(room.state.ReadState[12], ReadState::kWaiting);
    EXPECT_TRUE(room.state.WriteFailed[12]);
    EXPECT_TRUE(room.state.SampleSeen[12][1] && room.state.SampleSeen[12][2]);
    for (int tick = 0; tick < 3; ++tick) {
      room.engine.TenSecondTick();
      room.Pump(3);
    }
    EXPECT_EQ(room.port.sent.size(), 2U);  // a set in hand is written without an exchange
  }
  EXPECT_EQ(room.Announced(), (Texts{"Write  file | M011111A.NEW: File too large"}));
  room.engine.TenSecondTick();
  room.Pump(20);
  EXPECT_FALSE(room.state.WriteFailed[12]);
  EXPECT_EQ(room.SamplesInFile(kName), Words({11, 21, 11, 21, 12, 22}));
}

TEST(PumpFailure, FullDiskIsToldAgainAfterItWasOver) {
  TwoSets room;
  for (int time = 0; time < 2; ++time) {
    {
      const FullDisk disk(1003 + (time == 0 ? 0 : 8));
      room.Pump(3);
    }
    room.engine.TenSecondTick();
    room.Pump(1);
  }
  EXPECT_EQ(room.Announced().size(), 2U);
  EXPECT_EQ(room.SamplesInFile(kName), Words({11, 21, 11, 21, 12, 22}));
}

TEST(PumpFailure, FullDiskDoesNotEndTheLastSet) {
  TwoSets room;
  room.state.ReadState[12] = ReadState::kLastSet;
  const FullDisk disk(1000);
  room.Pump(2);
  EXPECT_EQ(room.state.ReadState[12], ReadState::kWaiting);
  EXPECT_TRUE(room.engine.HoldsSet(12));
}

TEST(PumpFailure, FullDiskCountsNoBacklogDown) {
  TwoSets room;
  room.state.BacklogSlot = 12;
  room.state.BacklogCount = 9;
  const FullDisk disk(1000);
  room.Pump(2);
  EXPECT_EQ(room.state.BacklogCount, 9);
}

// Nothing is taken from the instrument that could not be kept.
TEST(PumpFailure, NoMoreThanOneSetIsTakenWhileTheDirectoryIsAway) {
  TwoSets room;
  room.Store(1, 1, {13});
  room.Store(1, 2, {23});
  room.Pump(2);
  const std::string away = room.directory.Path() + "-away";
  std::filesystem::rename(room.directory.Path(), away);
  room.engine.FlushFiles();
  room.Pump(9);
  room.engine.TenSecondTick();
  room.Pump(9);
  EXPECT_EQ(room.port.sent.size(), 4U);
  EXPECT_TRUE(room.state.WriteFailed[12]);
  EXPECT_EQ(room.Announced(), (Texts{"Write  file | M011111A.NEW: No such file or directory"}));
  std::filesystem::rename(away, room.directory.Path());
}

TEST(PumpFailure, DirectoryThatComesBackLosesNothing) {
  TwoSets room;
  room.Pump(2);
  const std::string away = room.directory.Path() + "-away";
  std::filesystem::rename(room.directory.Path(), away);
  room.engine.FlushFiles();
  EXPECT_FALSE(std::filesystem::exists(room.directory.Path()));
  room.Pump(5);
  room.engine.TenSecondTick();
  room.Pump(5);
  std::filesystem::rename(away, room.directory.Path());
  room.engine.TenSecondTick();
  room.Pump(5);
  EXPECT_FALSE(room.state.WriteFailed[12]);
  EXPECT_EQ(room.SamplesInFile(kName), Words({11, 21, 11, 21, 12, 22}));
}

TEST(PumpFailure, FileCutUnderUsGetsNoHole) {
  TwoSets room;
  room.Pump(2);
  std::filesystem::resize_file(room.directory.File(kName), 1004);
  room.Pump(3);
  EXPECT_EQ(room.directory.Read(kName).size(), 1004U);
  EXPECT_TRUE(room.state.WriteFailed[12]);
  EXPECT_EQ(room.Announced(), (Texts{"Write  file | M011111A.NEW: the file has become shorter"}));
}

TEST(PumpFailure, HandleThatFailsIsReplacedOnTheTenSecondTick) {
  TwoSets room;
  ASSERT_TRUE(room.state.SlotFileNo[12].Open(room.directory.File(kName), FileAccess::kRead));
  room.Pump(2);
  EXPECT_TRUE(room.state.WriteFailed[12]);
  room.engine.TenSecondTick();
  room.Pump(1);
  EXPECT_FALSE(room.state.WriteFailed[12]);
  EXPECT_EQ(room.SamplesInFile(kName), Words({11, 21, 11, 21}));
}

TEST(FlushFiles, ReopensRecordingSlotsAndThoseWithADirtyHeader) {
  PumpRoom room;
  room.Open(1, "A.NEW", BytesOf(Running(HeaderOf(1, {1}))));
  room.Open(2, "B.NEW", BytesOf(HeaderOf(1, {1})));
  room.Open(3, "C.NEW", BytesOf(HeaderOf(1, {1})));
  for (const int slot : {1, 2}) {
    room.state.Unit[slot].SetApparatusName("Oven");
    room.state.SlotDirty[slot] = true;
  }
  room.state.Unit[3].SetApparatusName("Oven");
  room.engine.FlushFiles();
  EXPECT_EQ(room.RecordInFile("A.NEW").ApparatusName(), "Oven");
  EXPECT_EQ(room.RecordInFile("B.NEW").ApparatusName(), "Oven");
  EXPECT_EQ(room.RecordInFile("C.NEW").ApparatusName(), "Default");
  EXPECT_TRUE(room.state.SlotFileNo[1].IsOpen());
}

// A slot that does not record and has nothing to write keeps its handle, whatever became of its
// file: closing it would lose what may be the last of it.
TEST(FlushFiles, LeavesTheHandleOfAnIdleSlotAlone) {
  for (int slot = 1; slot <= kSlots; ++slot) {
    PumpRoom room;
    room.Open(slot, "A.NEW", BytesOf(HeaderOf(1, {1})));
    std::filesystem::remove(room.directory.File("A.NEW"));
    room.engine.FlushFiles();
    room.engine.TenSecondTick();
    EXPECT_TRUE(room.state.SlotFileNo[slot].IsOpen()) << slot;
    EXPECT_FALSE(room.directory.Exists("A.NEW")) << slot;
    EXPECT_TRUE(room.Announced().empty()) << slot;
  }
}

TEST(TenSecondTick, OpensNoIdleSlotAgain) {
  for (int slot = 1; slot <= kSlots; ++slot) {
    for (const bool records : {false, true}) {
      PumpRoom room;
      const UnitRecord header = HeaderOf(1, {1});
      room.Open(slot, "A.NEW", BytesOf(records ? Running(header) : header));
      room.state.SlotFileNo[slot].Close();
      room.engine.TenSecondTick();
      EXPECT_EQ(room.state.SlotFileNo[slot].IsOpen(), records) << slot;
    }
  }
}

}  // namespace
}  // namespace tavrel
