#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "tests/files/pump_fixture.h"

namespace tavrel {
namespace {

using Texts = std::vector<std::string>;

// Slot 12 records the inputs 1 and 2, and two sets wait in the instrument.
struct TwoSets : PumpFixture {
  TwoSets() {
    Open(12, kNewFile, BytesOf(Running(HeaderOf(1, {1, 2}))));
    Store(1, 1, {11, 12});
    Store(1, 2, {21, 22});
  }
  void Remove() const { std::filesystem::remove(directory.File(kNewFile)); }
};

TEST(PumpFailure, FullDiskKeepsTheSetInHandAndTellsOnce) {
  TwoSets fixture;
  {
    const FullDisk disk(1003);
    fixture.Pump(3);
    EXPECT_EQ(fixture.state.SampleCount[12], 0);
    EXPECT_EQ(fixture.state.ReadState[12], ReadState::kWaiting);
    EXPECT_TRUE(fixture.state.WriteFailed[12]);
    EXPECT_TRUE(fixture.state.SampleSeen[12][1] && fixture.state.SampleSeen[12][2]);
    for (int tick = 0; tick < 3; ++tick) {
      fixture.engine.TenSecondTick();
      fixture.Pump(3);
    }
    EXPECT_EQ(fixture.port.sent.size(), 2U);  // a set in hand is written without an exchange
  }
  EXPECT_EQ(fixture.Announced(), (Texts{"Write  file | M011111A.NEW: File too large"}));
  fixture.engine.TenSecondTick();
  fixture.Pump(20);
  EXPECT_FALSE(fixture.state.WriteFailed[12]);
  EXPECT_EQ(fixture.SamplesInFile(kNewFile), Words({11, 21, 11, 21, 12, 22}));
}

TEST(PumpFailure, FullDiskIsToldAgainAfterItWasOver) {
  TwoSets fixture;
  for (int time = 0; time < 2; ++time) {
    {
      const FullDisk disk(1003 + (time == 0 ? 0 : 8));
      fixture.Pump(3);
    }
    fixture.engine.TenSecondTick();
    fixture.Pump(1);
  }
  EXPECT_EQ(fixture.Announced().size(), 2U);
  EXPECT_EQ(fixture.SamplesInFile(kNewFile), Words({11, 21, 11, 21, 12, 22}));
}

TEST(PumpFailure, FullDiskDoesNotEndTheLastSet) {
  TwoSets fixture;
  fixture.state.ReadState[12] = ReadState::kLastSet;
  const FullDisk disk(1000);
  fixture.Pump(2);
  EXPECT_EQ(fixture.state.ReadState[12], ReadState::kWaiting);
  EXPECT_TRUE(fixture.engine.HoldsSet(12));
}

TEST(PumpFailure, FullDiskCountsNoBacklogDown) {
  TwoSets fixture;
  fixture.state.BacklogSlot = 12;
  fixture.state.BacklogCount = 9;
  const FullDisk disk(1000);
  fixture.Pump(2);
  EXPECT_EQ(fixture.state.BacklogCount, 9);
}

// Nothing is taken from the instrument that could not be kept.
TEST(PumpFailure, NoMoreThanOneSetIsTakenWhileTheDirectoryIsAway) {
  TwoSets fixture;
  fixture.Store(1, 1, {13});
  fixture.Store(1, 2, {23});
  fixture.Pump(2);
  const std::string away = fixture.directory.Path() + "-away";
  std::filesystem::rename(fixture.directory.Path(), away);
  fixture.engine.FlushFiles();
  fixture.Pump(9);
  fixture.engine.TenSecondTick();
  fixture.Pump(9);
  EXPECT_EQ(fixture.port.sent.size(), 4U);
  EXPECT_TRUE(fixture.state.WriteFailed[12]);
  EXPECT_EQ(fixture.Announced(), (Texts{"Write  file | M011111A.NEW: No such file or directory"}));
  std::filesystem::rename(away, fixture.directory.Path());
}

TEST(PumpFailure, DirectoryThatComesBackLosesNothing) {
  TwoSets fixture;
  fixture.Pump(2);
  const std::string away = fixture.directory.Path() + "-away";
  std::filesystem::rename(fixture.directory.Path(), away);
  fixture.engine.FlushFiles();
  EXPECT_FALSE(std::filesystem::exists(fixture.directory.Path()));
  fixture.Pump(5);
  fixture.engine.TenSecondTick();
  fixture.Pump(5);
  std::filesystem::rename(away, fixture.directory.Path());
  fixture.engine.TenSecondTick();
  fixture.Pump(5);
  EXPECT_FALSE(fixture.state.WriteFailed[12]);
  EXPECT_EQ(fixture.SamplesInFile(kNewFile), Words({11, 21, 11, 21, 12, 22}));
}

TEST(PumpFailure, FileCutUnderUsGetsNoHole) {
  TwoSets fixture;
  fixture.Pump(2);
  std::filesystem::resize_file(fixture.directory.File(kNewFile), 1004);
  fixture.Pump(3);
  EXPECT_EQ(fixture.directory.Read(kNewFile).size(), 1004U);
  EXPECT_TRUE(fixture.state.WriteFailed[12]);
  EXPECT_EQ(fixture.Announced(),
            (Texts{"Write  file | M011111A.NEW: the file has become shorter"}));
}

TEST(PumpFailure, HandleThatFailsIsReplacedOnTheTenSecondTick) {
  TwoSets fixture;
  ASSERT_TRUE(
      fixture.state.SlotFileNo[12].Open(fixture.directory.File(kNewFile), FileAccess::kRead));
  fixture.Pump(2);
  EXPECT_TRUE(fixture.state.WriteFailed[12]);
  fixture.engine.TenSecondTick();
  fixture.Pump(1);
  EXPECT_FALSE(fixture.state.WriteFailed[12]);
  EXPECT_EQ(fixture.SamplesInFile(kNewFile), Words({11, 21, 11, 21}));
}

TEST(FlushFiles, ReopensRecordingSlotsAndThoseWithADirtyHeader) {
  PumpFixture fixture;
  fixture.Open(1, "A.NEW", BytesOf(Running(HeaderOf(1, {1}))));
  fixture.Open(2, "B.NEW", BytesOf(HeaderOf(1, {1})));
  fixture.Open(3, "C.NEW", BytesOf(HeaderOf(1, {1})));
  for (const int slot : {1, 2}) {
    fixture.state.Unit[slot].SetApparatusName("Oven");
    fixture.state.SlotDirty[slot] = true;
  }
  fixture.state.Unit[3].SetApparatusName("Oven");
  fixture.engine.FlushFiles();
  EXPECT_EQ(fixture.RecordInFile("A.NEW").ApparatusName(), "Oven");
  EXPECT_EQ(fixture.RecordInFile("B.NEW").ApparatusName(), "Oven");
  EXPECT_EQ(fixture.RecordInFile("C.NEW").ApparatusName(), "Default");
  EXPECT_TRUE(fixture.state.SlotFileNo[1].IsOpen());
}

// A slot that does not record and has nothing to write keeps its handle, whatever became of its
// file: closing it would lose what may be the last of it.
TEST(FlushFiles, LeavesTheHandleOfAnIdleSlotAlone) {
  for (int slot = 1; slot <= kSlots; ++slot) {
    PumpFixture fixture;
    fixture.Open(slot, "A.NEW", BytesOf(HeaderOf(1, {1})));
    std::filesystem::remove(fixture.directory.File("A.NEW"));
    fixture.engine.FlushFiles();
    fixture.engine.TenSecondTick();
    EXPECT_TRUE(fixture.state.SlotFileNo[slot].IsOpen()) << slot;
    EXPECT_FALSE(fixture.directory.Exists("A.NEW")) << slot;
    EXPECT_TRUE(fixture.Announced().empty()) << slot;
  }
}

TEST(TenSecondTick, OpensNoIdleSlotAgain) {
  for (int slot = 1; slot <= kSlots; ++slot) {
    for (const bool records : {false, true}) {
      PumpFixture fixture;
      const UnitRecord header = HeaderOf(1, {1});
      fixture.Open(slot, "A.NEW", BytesOf(records ? Running(header) : header));
      fixture.state.SlotFileNo[slot].Close();
      fixture.engine.TenSecondTick();
      EXPECT_EQ(fixture.state.SlotFileNo[slot].IsOpen(), records) << slot;
    }
  }
}

}  // namespace
}  // namespace tavrel
