#include <gtest/gtest.h>

#include <array>
#include <filesystem>
#include <string>

#include "files/recording_file.h"
#include "tests/files/recording_fixture.h"

namespace tavrel {
namespace {

TEST(CreateRecordingFile, NamesDatesAndOpensTheFile) {
  RecordingFixture fixture;
  fixture.clock.wall = {2026, 3, 14, 9, 5, 0};
  UnitRecord unit = HeaderOf(2);
  unit.UnitMaxMinutes = 60;
  unit.UnitMarks = 3;
  unit.UnitXmax = 0;
  fixture.Open(5, "M260101C.NEW", BytesOf(unit) + Words({1, 2}));
  fixture.state.IndexValid = true;
  EXPECT_TRUE(fixture.files.CreateRecordingFile(5, 1));
  EXPECT_EQ(fixture.state.SlotFile[5], "M260314A.NEW");
  EXPECT_EQ(fixture.state.Settings.ActiveFiles[4], "M260314A.NEW");
  const UnitRecord made = fixture.RecordInFile("M260314A.NEW");
  EXPECT_EQ(made.UnitDate.Get(), "03-14-2026 / 09:05");
  EXPECT_EQ(made.UnitInterval, 1);
  EXPECT_EQ(made.UnitMaxMinutes, 0);
  EXPECT_EQ(made.UnitMarks, 0);
  EXPECT_EQ(made.UnitXmax, 2683);
  EXPECT_EQ(fixture.directory.Read("M260314A.NEW").size(), 1000U);
  EXPECT_EQ(fixture.state.SampleCount[5], 0);
  EXPECT_EQ(fixture.state.RecInterval[5], 10);
  EXPECT_EQ(fixture.state.SampleLimit[5], 16000);
  EXPECT_TRUE(fixture.state.SlotFileNo[5].IsOpen());
  EXPECT_FALSE(fixture.state.IndexValid);
  EXPECT_EQ(fixture.SamplesInFile("M260101C.NEW"), Words({1, 2}));
}

TEST(CreateRecordingFile, TakesTheIntervalAsSecondsOnAFastInstrument) {
  RecordingFixture fixture;
  UnitRecord unit = HeaderOf(1);
  unit.UnitFast = 1;
  fixture.Open(1, "M260101C.NEW", BytesOf(unit));
  EXPECT_TRUE(fixture.files.CreateRecordingFile(1, 25));
  EXPECT_EQ(fixture.state.RecInterval[1], 25);
}

TEST(CreateRecordingFile, NeverTakesANameOfTheDiskOrOfAnotherSlot) {
  RecordingFixture fixture;
  fixture.clock.wall = {2026, 3, 14, 9, 5, 0};
  fixture.directory.Write("m260314a.new", "an old file of the day");
  fixture.state.SlotFile[7] = "M260314B.NEW";
  fixture.state.Settings.ActiveFiles[11] = "m260314c.new";
  fixture.Open(1, "M260101A.NEW", BytesOf(DefaultUnitRecord()));
  EXPECT_TRUE(fixture.files.CreateRecordingFile(1, 10));
  EXPECT_EQ(fixture.state.SlotFile[1], "M260314D.NEW");
  EXPECT_EQ(fixture.directory.Read("m260314a.new"), "an old file of the day");
}

TEST(CreateRecordingFile, KeepsTheOldFileWhenTheDayHasNoLetterLeft) {
  RecordingFixture fixture;
  fixture.clock.wall = {2026, 3, 14, 9, 5, 0};
  fixture.Open(1, "M260314~.NEW", BytesOf(DefaultUnitRecord()) + Words({1, 2}));
  fixture.files.CloseRecordingFile(1);
  EXPECT_FALSE(fixture.files.CreateRecordingFile(1, 10));
  EXPECT_EQ(fixture.state.SlotFile[1], "M260314~.NEW");
  EXPECT_TRUE(fixture.state.SlotFileNo[1].IsOpen());
  EXPECT_EQ(fixture.state.SampleCount[1], 1);
  ASSERT_EQ(fixture.dialogs.boxes.size(), 1U);
  EXPECT_EQ(fixture.dialogs.boxes[0].Title, "Write  file");
}

TEST(CreateRecordingFile, LeavesNoPartialFileAndKeepsTheEntryOnAFullDisk) {
  RecordingFixture fixture;
  fixture.clock.wall = {2026, 3, 14, 9, 5, 0};
  fixture.Open(1, "M260101A.NEW", BytesOf(DefaultUnitRecord()));
  {
    const FullDisk disk(999);
    EXPECT_FALSE(fixture.files.CreateRecordingFile(1, 10));
  }
  EXPECT_FALSE(fixture.directory.Exists("M260314A.NEW"));
  EXPECT_EQ(fixture.state.SlotFile[1], "");
  EXPECT_EQ(fixture.state.Settings.ActiveFiles[0], "M260101A.NEW");
  ASSERT_EQ(fixture.dialogs.boxes.size(), 1U);
  EXPECT_EQ(fixture.dialogs.boxes[0].Text, "M260314A.NEW: File too large");
}

TEST(FreeName, SkipsWhatIsNoNameForADisk) {
  RecordingFixture fixture;
  fixture.Name(1, "M260314A.NEW");
  fixture.directory.Write("M260314[.NEW", "");
  EXPECT_EQ(fixture.files.FreeName(1, "M260314[.NEW"), "M260314].NEW");  // not the backslash
  fixture.directory.Write("M260314`.NEW", "");
  EXPECT_EQ(fixture.files.FreeName(1, "M260314`.NEW"), "M260314{.NEW");  // not a to z
}

TEST(FreeName, IsEmptyWhenNoLetterIsLeft) {
  RecordingFixture fixture;
  fixture.Name(1, "M260314A.NEW");
  fixture.directory.Write("M260314~.NEW", "");
  EXPECT_EQ(fixture.files.FreeName(1, "M260314~.NEW"), "");
  EXPECT_EQ(fixture.files.FreeName(1, ""), "");
}

// A slot that waits for its file has no more than its key.
TEST(FreeName, IsNoneThatAKeyOfASlotNames) {
  for (std::size_t key = 0; key < kSlots; ++key) {
    RecordingFixture fixture;
    const int slot = key == 4 ? 6 : 5;
    fixture.Name(slot, "M260314B.NEW");
    fixture.state.Settings.ActiveFiles.at(key) = "m260314a.new";
    EXPECT_EQ(fixture.files.FreeName(slot, "M260314A.NEW"), "M260314C.NEW") << key;
    fixture.state.Settings.ActiveFiles.at(key).clear();
    EXPECT_EQ(fixture.files.FreeName(slot, "M260314A.NEW"), "M260314A.NEW") << key;
  }
}

TEST(FreeName, GivesCapitals) {
  RecordingFixture fixture;
  fixture.Name(1, "old.new");
  EXPECT_EQ(fixture.files.FreeName(1, "m260314a.new"), "M260314A.NEW");
}

TEST(MakeNextFile, IsOnTheDiskWithTheRecordingOnAndNoMarks) {
  RecordingFixture fixture;
  UnitRecord unit = HeaderOf(2);
  unit.UnitMarks = 2;
  fixture.Open(1, "m011111z.new", BytesOf(unit));
  EXPECT_EQ(fixture.files.MakeNextFile(1), "M011111[.NEW");
  unit.UnitMarks = 0;
  unit.UnitRecOn = 1;
  EXPECT_EQ(fixture.directory.Read("M011111[.NEW"), BytesOf(unit));
  EXPECT_EQ(fixture.state.SlotFile[1], "m011111z.new");
  EXPECT_EQ(fixture.state.Unit[1].UnitRecOn, 0);
}

TEST(MakeNextFile, GoesOnWithTodaysDateAfterTheLastLetter) {
  for (const char* const name : {"M011111~.NEW", "old.new"}) {
    RecordingFixture fixture;
    fixture.clock.wall = {2026, 3, 14, 9, 5, 0};
    fixture.Open(1, name, BytesOf(HeaderOf(2)));
    EXPECT_EQ(fixture.files.MakeNextFile(1), "M260314A.NEW");
  }
}

// An error of a moment, such as too many open files, must not take the slot its file.
TEST(GoOnInFile, KeepsTheSlotThatCannotOpenTheFileNow) {
  RecordingFixture fixture;
  fixture.Open(7, "M011111A.NEW", BytesOf(HeaderOf(2)) + Words({1, 2}));
  const std::string next = fixture.files.MakeNextFile(7);
  std::filesystem::rename(fixture.directory.File(next), fixture.directory.File("away"));
  EXPECT_FALSE(fixture.files.GoOnInFile(7, next));
  EXPECT_EQ(fixture.files.Error(), "No such file or directory");
  EXPECT_EQ(fixture.state.SlotFile[7], next);
  EXPECT_EQ(fixture.state.ReadState[7], ReadState::kReading);
  EXPECT_EQ(fixture.state.SampleCount[7], 0);
  std::filesystem::rename(fixture.directory.File("away"), fixture.directory.File(next));
  EXPECT_TRUE(fixture.files.ReopenRecordingFile(7));
  EXPECT_TRUE(fixture.files.AppendRow(7, std::array<std::int16_t, 2>{3, 4}, 2));
  EXPECT_EQ(fixture.SamplesInFile(next), Words({3, 4, 3, 4}));
}

TEST(DeleteRecordingFile, ClosesAndDeletesWhateverTheCase) {
  RecordingFixture fixture;
  fixture.directory.Write("m011111a.new", BytesOf(DefaultUnitRecord()));
  fixture.Name(1, "M011111A.NEW");
  fixture.files.OpenRecordingFile(1);
  fixture.state.IndexValid = true;
  fixture.files.DeleteRecordingFile(1);
  EXPECT_FALSE(fixture.directory.Exists("m011111a.new"));
  EXPECT_FALSE(fixture.state.SlotFileNo[1].IsOpen());
  EXPECT_FALSE(fixture.state.IndexValid);
  EXPECT_TRUE(fixture.dialogs.boxes.empty());
}

TEST(DeleteRecordingFile, DoesNothingForASlotNotInUse) {
  RecordingFixture fixture;
  fixture.Name(1, "");
  fixture.files.DeleteRecordingFile(1);
  fixture.files.DeleteRecordingFile(77);
  EXPECT_TRUE(fixture.dialogs.boxes.empty());
}

}  // namespace
}  // namespace tavrel
