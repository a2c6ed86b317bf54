#include <gtest/gtest.h>

#include <array>
#include <filesystem>
#include <string>

#include "files/recording_file.h"
#include "tests/files/recording_room.h"

namespace tavrel {
namespace {

TEST(CreateRecordingFile, NamesDatesAndOpensTheFile) {
  RecordingRoom room;
  room.clock.wall = {2026, 3, 14, 9, 5, 0};
  UnitRecord unit = HeaderOf(2);
  unit.UnitMaxMinutes = 60;
  unit.UnitMarks = 3;
  unit.UnitXmax = 0;
  room.Open(5, "M260101C.NEW", BytesOf(unit) + Words({1, 2}));
  room.state.IndexValid = true;
  EXPECT_TRUE(room.files.CreateRecordingFile(5, 1));
  EXPECT_EQ(room.state.SlotFile[5], "M260314A.NEW");
  EXPECT_EQ(room.state.Settings.ActiveFiles[4], "M260314A.NEW");
  const UnitRecord made = room.RecordInFile("M260314A.NEW");
  EXPECT_EQ(made.UnitDate.Get(), "03-14-2026 / 09:05");
  EXPECT_EQ(made.UnitInterval, 1);
  EXPECT_EQ(made.UnitMaxMinutes, 0);
  EXPECT_EQ(made.UnitMarks, 0);
  EXPECT_EQ(made.UnitXmax, 2683);
  EXPECT_EQ(room.directory.Read("M260314A.NEW").size(), 1000U);
  EXPECT_EQ(room.state.SampleCount[5], 0);
  EXPECT_EQ(room.state.RecInterval[5], 10);
  EXPECT_EQ(room.state.SampleLimit[5], 16000);
  EXPECT_TRUE(room.state.SlotFileNo[5].IsOpen());
  EXPECT_FALSE(room.state.IndexValid);
  EXPECT_EQ(room.SamplesInFile("M260101C.NEW"), Words({1, 2}));
}

TEST(CreateRecordingFile, TakesTheIntervalAsSecondsOnAFastInstrument) {
  RecordingRoom room;
  UnitRecord unit = HeaderOf(1);
  unit.UnitFast = 1;
  room.Open(1, "M260101C.NEW", BytesOf(unit));
  EXPECT_TRUE(room.files.CreateRecordingFile(1, 25));
  EXPECT_EQ(room.state.RecInterval[1], 25);
}

TEST(CreateRecordingFile, NeverTakesANameOfTheDiskOrOfAnotherSlot) {
  RecordingRoom room;
  room.clock.wall = {2026, 3, 14, 9, 5, 0};
  room.directory.Write("m260314a.new", "an old file of the day");
  room.state.SlotFile[7] = "M260314B.NEW";
  room.state.Settings.ActiveFiles[11] = "m260314c.new";
  room.Open(1, "M260101A.NEW", BytesOf(DefaultUnitRecord()));
  EXPECT_TRUE(room.files.CreateRecordingFile(1, 10));
  EXPECT_EQ(room.state.SlotFile[1], "M260314D.NEW");
  EXPECT_EQ(room.directory.Read("m260314a.new"), "an old file of the day");
}

TEST(CreateRecordingFile, KeepsTheOldFileWhenTheDayHasNoLetterLeft) {
  RecordingRoom room;
  room.clock.wall = {2026, 3, 14, 9, 5, 0};
  room.Open(1, "M260314~.NEW", BytesOf(DefaultUnitRecord()) + Words({1, 2}));
  room.files.CloseRecordingFile(1);
  EXPECT_FALSE(room.files.CreateRecordingFile(1, 10));
  EXPECT_EQ(room.state.SlotFile[1], "M260314~.NEW");
  EXPECT_TRUE(room.state.SlotFileNo[1].IsOpen());
  EXPECT_EQ(room.state.SampleCount[1], 1);
  ASSERT_EQ(room.dialogs.boxes.size(), 1U);
  EXPECT_EQ(room.dialogs.boxes[0].Title, "Write  file");
}

TEST(CreateRecordingFile, LeavesNoStumpAndKeepsTheEntryOnAFullDisk) {
  RecordingRoom room;
  room.clock.wall = {2026, 3, 14, 9, 5, 0};
  room.Open(1, "M260101A.NEW", BytesOf(DefaultUnitRecord()));
  {
    const FullDisk disk(999);
    EXPECT_FALSE(room.files.CreateRecordingFile(1, 10));
  }
  EXPECT_FALSE(room.directory.Exists("M260314A.NEW"));
  EXPECT_EQ(room.state.SlotFile[1], "");
  EXPECT_EQ(room.state.Settings.ActiveFiles[0], "M260101A.NEW");
  ASSERT_EQ(room.dialogs.boxes.size(), 1U);
  EXPECT_EQ(room.dialogs.boxes[0].Text, "M260314A.NEW: File too large");
}

TEST(FreeName, SkipsWhatIsNoNameForADisk) {
  RecordingRoom room;
  room.Name(1, "M260314A.NEW");
  room.directory.Write("M260314[.NEW", "");
  EXPECT_EQ(room.files.FreeName(1, "M260314[.NEW"), "M260314].NEW");  // not the backslash
  room.directory.Write("M260314`.NEW", "");
  EXPECT_EQ(room.files.FreeName(1, "M260314`.NEW"), "M260314{.NEW");  // not a to z
}

TEST(FreeName, IsEmptyWhenNoLetterIsLeft) {
  RecordingRoom room;
  room.Name(1, "M260314A.NEW");
  room.directory.Write("M260314~.NEW", "");
  EXPECT_EQ(room.files.FreeName(1, "M260314~.NEW"), "");
  EXPECT_EQ(room.files.FreeName(1, ""), "");
}

// A slot that waits for its file has no more than its key.
TEST(FreeName, IsNoneThatAKeyOfASlotNames) {
  for (std::size_t key = 0; key < kSlots; ++key) {
    RecordingRoom room;
    const int slot = key == 4 ? 6 : 5;
    room.Name(slot, "M260314B.NEW");
    room.state.Settings.ActiveFiles.at(key) = "m260314a.new";
    EXPECT_EQ(room.files.FreeName(slot, "M260314A.NEW"), "M260314C.NEW") << key;
    room.state.Settings.ActiveFiles.at(key).clear();
    EXPECT_EQ(room.files.FreeName(slot, "M260314A.NEW"), "M260314A.NEW") << key;
  }
}

TEST(FreeName, GivesCapitals) {
  RecordingRoom room;
  room.Name(1, "old.new");
  EXPECT_EQ(room.files.FreeName(1, "m260314a.new"), "M260314A.NEW");
}

TEST(MakeNextFile, IsOnTheDiskWithTheRecordingOnAndNoMarks) {
  RecordingRoom room;
  UnitRecord unit = HeaderOf(2);
  unit.UnitMarks = 2;
  room.Open(1, "m011111z.new", BytesOf(unit));
  EXPECT_EQ(room.files.MakeNextFile(1), "M011111[.NEW");
  unit.UnitMarks = 0;
  unit.UnitRecOn = 1;
  EXPECT_EQ(room.directory.Read("M011111[.NEW"), BytesOf(unit));
  EXPECT_EQ(room.state.SlotFile[1], "m011111z.new");
  EXPECT_EQ(room.state.Unit[1].UnitRecOn, 0);
}

TEST(MakeNextFile, GoesOnWithTodaysDateAfterTheLastLetter) {
  for (const char* const name : {"M011111~.NEW", "old.new"}) {
    RecordingRoom room;
    room.clock.wall = {2026, 3, 14, 9, 5, 0};
    room.Open(1, name, BytesOf(HeaderOf(2)));
    EXPECT_EQ(room.files.MakeNextFile(1), "M260314A.NEW");
  }
}

// An error of a moment, such as too many open files, must not take the slot its file.
TEST(GoOnInFile, KeepsTheSlotThatCannotOpenTheFileNow) {
  RecordingRoom room;
  room.Open(7, "M011111A.NEW", BytesOf(HeaderOf(2)) + Words({1, 2}));
  const std::string next = room.files.MakeNextFile(7);
  std::filesystem::rename(room.directory.File(next), room.directory.File("away"));
  EXPECT_FALSE(room.files.GoOnInFile(7, next));
  EXPECT_EQ(room.files.Error(), "No such file or directory");
  EXPECT_EQ(room.state.SlotFile[7], next);
  EXPECT_EQ(room.state.ReadState[7], ReadState::kReading);
  EXPECT_EQ(room.state.SampleCount[7], 0);
  std::filesystem::rename(room.directory.File("away"), room.directory.File(next));
  EXPECT_TRUE(room.files.ReopenRecordingFile(7));
  EXPECT_TRUE(room.files.AppendRow(7, std::array<std::int16_t, 2>{3, 4}, 2));
  EXPECT_EQ(room.SamplesInFile(next), Words({3, 4, 3, 4}));
}

TEST(DeleteRecordingFile, ClosesAndDeletesWhateverTheCase) {
  RecordingRoom room;
  room.directory.Write("m011111a.new", BytesOf(DefaultUnitRecord()));
  room.Name(1, "M011111A.NEW");
  room.files.OpenRecordingFile(1);
  room.state.IndexValid = true;
  room.files.DeleteRecordingFile(1);
  EXPECT_FALSE(room.directory.Exists("m011111a.new"));
  EXPECT_FALSE(room.state.SlotFileNo[1].IsOpen());
  EXPECT_FALSE(room.state.IndexValid);
  EXPECT_TRUE(room.dialogs.boxes.empty());
}

TEST(DeleteRecordingFile, DoesNothingForASlotNotInUse) {
  RecordingRoom room;
  room.Name(1, "");
  room.files.DeleteRecordingFile(1);
  room.files.DeleteRecordingFile(77);
  EXPECT_TRUE(room.dialogs.boxes.empty());
}

}  // namespace
}  // namespace tavrel
