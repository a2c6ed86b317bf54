#include <gtest/gtest.h>

#include <array>
#include <filesystem>
#include <string>

#include "files/held_set.h"
#include "files/recording_file.h"
#include "tests/files/recording_room.h"

namespace tavrel {
namespace {

using Row2 = std::array<std::int16_t, 2>;

constexpr const char* kName = "M011111A.NEW";

TEST(WriteHeader, WritesAThousandBytesAndLeavesTheRows) {
  RecordingRoom room;
  room.Open(1, kName, BytesOf(HeaderOf(2)) + Words({1, 2}));
  room.state.Unit[1].UnitSetpoint = 4000;
  room.state.SlotDirty[1] = true;
  room.files.WriteHeader(1);
  EXPECT_EQ(room.directory.Read(kName), BytesOf(room.state.Unit[1]) + Words({1, 2}));
  EXPECT_FALSE(room.state.SlotDirty[1]);
  EXPECT_EQ(room.files.ReadSample(1, 0, 2), 2);
}

TEST(WriteHeader, KeepsWordsThatHaveNoName) {
  RecordingRoom room;
  std::string bytes = BytesOf(HeaderOf(2));
  bytes.replace(38, 2, "\x34\x12");
  bytes.replace(940, 5, "spare");
  room.Open(1, kName, bytes);
  room.files.WriteHeader(1);
  EXPECT_EQ(room.directory.Read(kName), bytes);
}

TEST(WriteHeader, MakesAMissingFileInCapitalsWithNoRows) {
  RecordingRoom room;
  room.Name(1, "m011111a.new");
  room.state.Unit[1] = DefaultUnitRecord();
  room.state.SampleCount[1] = 7;
  room.state.IndexValid = true;
  room.files.WriteHeader(1);
  EXPECT_EQ(room.directory.Read(kName), BytesOf(DefaultUnitRecord()));
  EXPECT_EQ(room.state.SlotFile[1], "m011111a.new");
  EXPECT_EQ(room.state.SampleCount[1], 0);
  EXPECT_FALSE(room.state.IndexValid);
  EXPECT_TRUE(room.state.SlotFileNo[1].IsOpen());
}

TEST(WriteHeader, MakesNoDirectoryAndClearsTheNameButNotTheEntry) {
  RecordingRoom room;
  room.Open(1, kName, BytesOf(HeaderOf(2)));
  std::filesystem::rename(room.directory.Path(), room.directory.Path() + "-away");
  room.files.WriteHeader(1);
  std::filesystem::rename(room.directory.Path() + "-away", room.directory.Path());
  EXPECT_EQ(room.state.SlotFile[1], "");
  EXPECT_EQ(room.state.Settings.ActiveFiles[0], kName);
  ASSERT_EQ(room.dialogs.boxes.size(), 1U);
  EXPECT_EQ(room.dialogs.boxes[0].Text, std::string(kName) + ": No such file or directory");
  EXPECT_EQ(room.dialogs.boxes[0].Title, "Write  file");
  EXPECT_EQ(room.dialogs.boxes[0].Icon, BoxIcon::kWarning);
}

TEST(WriteHeader, ReachesTheDirectoryAfterTheFileWasDeletedUnderIt) {
  RecordingRoom room;
  room.Open(1, kName, BytesOf(HeaderOf(2)) + Words({1, 2}));
  std::filesystem::remove(room.directory.File(kName));
  room.files.WriteHeader(1);
  EXPECT_EQ(room.directory.Read(kName), BytesOf(HeaderOf(2)));
  EXPECT_EQ(room.state.SampleCount[1], 0);
}

TEST(WriteHeader, SparesAShorterFileThatTookTheNameOver) {
  RecordingRoom room;
  room.Open(1, kName, BytesOf(HeaderOf(2)) + Words({1, 2, 3, 4}));
  UnitRecord other = HeaderOf(2);
  other.UnitDate.Set("01-01-2020 / 00:00");
  std::filesystem::remove(room.directory.File(kName));
  room.directory.Write(kName, BytesOf(other));
  room.files.WriteHeader(1);
  EXPECT_EQ(room.directory.Read(kName), BytesOf(other));
  EXPECT_EQ(room.state.SlotFile[1], "");
}

TEST(WriteHeader, TakesAwayTheStumpOfAFileThatDidNotFit) {
  RecordingRoom room;
  room.Name(1, kName);
  room.state.Unit[1] = DefaultUnitRecord();
  {
    const FullDisk disk(300);
    room.files.WriteHeader(1);
  }
  EXPECT_FALSE(room.directory.Exists(kName));
  EXPECT_EQ(room.state.SlotFile[1], "");
}

TEST(WriteHeader, DoesNothingForASlotNotInUse) {
  RecordingRoom room;
  room.files.WriteHeader(3);
  room.files.WriteHeader(99);
  EXPECT_TRUE(room.dialogs.boxes.empty());
}

TEST(AppendRow, PutsRowsBehindEachOther) {
  RecordingRoom room;
  room.Open(1, kName, BytesOf(HeaderOf(2)));
  EXPECT_TRUE(room.files.AppendRow(1, Row2{-1, 2}, 2));
  EXPECT_EQ(room.state.SampleCount[1], 2);
  EXPECT_TRUE(room.files.AppendRow(1, Row2{3, 4}, 1));
  EXPECT_EQ(room.state.SampleCount[1], 3);
  EXPECT_EQ(room.SamplesInFile(kName), Words({-1, 2, -1, 2, 3, 4}));
}

TEST(AppendRow, OverwritesATornRow) {
  RecordingRoom room;
  room.Open(1, kName, BytesOf(HeaderOf(2)) + Words({1, 2, 1, 2, 9}));
  EXPECT_TRUE(room.files.AppendRow(1, Row2{3, 4}, 1));
  EXPECT_EQ(room.SamplesInFile(kName), Words({1, 2, 1, 2, 3, 4}));
}

TEST(AppendRow, CountsNothingOnAFullDiskAndMendsTheTornRowAfterwards) {
  RecordingRoom room;
  room.Open(1, kName, BytesOf(HeaderOf(2)));
  {
    const FullDisk disk(1007);  // one byte short of two rows
    EXPECT_FALSE(room.files.AppendRow(1, Row2{1, 2}, 2));
    EXPECT_EQ(room.files.Error(), "File too large");
  }
  EXPECT_EQ(room.state.SampleCount[1], 0);
  EXPECT_TRUE(room.files.AppendRow(1, Row2{1, 2}, 2));
  EXPECT_EQ(room.SamplesInFile(kName), Words({1, 2, 1, 2}));
}

TEST(AppendRow, LeavesNoHoleInAFileThatWasCut) {
  RecordingRoom room;
  room.Open(1, kName, BytesOf(HeaderOf(2)) + Words({1, 2, 3, 4}));
  std::filesystem::resize_file(room.directory.File(kName), 1005);
  EXPECT_FALSE(room.files.AppendRow(1, Row2{5, 6}, 1));
  EXPECT_EQ(room.directory.Read(kName).size(), 1005U);
  EXPECT_EQ(room.state.SampleCount[1], 2);
}

TEST(AppendRow, RefusesARowOfAnotherWidth) {
  RecordingRoom room;
  room.Open(1, kName, BytesOf(HeaderOf(3)));
  EXPECT_FALSE(room.files.AppendRow(1, Row2{5, 6}, 1));
  EXPECT_FALSE(room.files.AppendRow(1, {}, 1));
  EXPECT_FALSE(room.files.AppendRow(42, Row2{5, 6}, 1));
  EXPECT_EQ(room.SamplesInFile(kName), "");
}

TEST(AppendRow, FailsOnAClosedFile) {
  RecordingRoom room;
  room.Open(1, kName, BytesOf(HeaderOf(2)));
  room.files.CloseRecordingFile(1);
  EXPECT_FALSE(room.files.AppendRow(1, Row2{5, 6}, 1));
  EXPECT_EQ(room.state.SampleCount[1], 0);
}

TEST(AppendRow, StopsWhereRecordNumbersEnd) {
  RecordingRoom room;
  room.Open(1, kName, BytesOf(HeaderOf(1)) + std::string(std::size_t{2} * 32766, '\1'));
  EXPECT_FALSE(room.files.AppendRow(1, std::array<std::int16_t, 1>{5}, 2));
  EXPECT_TRUE(room.files.AppendRow(1, std::array<std::int16_t, 1>{5}, 1));
  EXPECT_FALSE(room.files.AppendRow(1, std::array<std::int16_t, 1>{5}, 1));
  EXPECT_EQ(room.state.SampleCount[1], 32767);
}

TEST(ReadSample, ReadsByRowFromZeroAndColumnFromOne) {
  RecordingRoom room;
  room.Open(1, kName, BytesOf(HeaderOf(3)) + Words({1, 2, 3, -4, -5, -6}));
  EXPECT_EQ(room.files.ReadSample(1, 0, 1), 1);
  EXPECT_EQ(room.files.ReadSample(1, 0, 3), 3);
  EXPECT_EQ(room.files.ReadSample(1, 1, 2), -5);
}

TEST(ReadSample, IsEmptyOutsideTheFile) {
  RecordingRoom room;
  room.Open(1, kName, BytesOf(HeaderOf(3)) + Words({1, 2, 3, 4}));
  EXPECT_EQ(room.files.ReadSample(1, 1, 1), std::nullopt);  // a torn row
  EXPECT_EQ(room.files.ReadSample(1, 0, 0), std::nullopt);
  EXPECT_EQ(room.files.ReadSample(1, 0, 4), std::nullopt);
  EXPECT_EQ(room.files.ReadSample(1, -1, 1), std::nullopt);
  EXPECT_EQ(room.files.ReadSample(2, 0, 1), std::nullopt);
  EXPECT_EQ(room.files.ReadSample(-1, 0, 1), std::nullopt);
}

TEST(ReopenRecordingFile, WritesADirtyHeader) {
  RecordingRoom room;
  room.Open(1, kName, BytesOf(HeaderOf(2)) + Words({1, 2}));
  room.state.Unit[1].SetApparatusName("Oven 3");
  room.state.SlotDirty[1] = true;
  EXPECT_TRUE(room.files.ReopenRecordingFile(1));
  EXPECT_EQ(room.RecordInFile(kName).ApparatusName(), "Oven 3");
  EXPECT_FALSE(room.state.SlotDirty[1]);
}

TEST(ReopenRecordingFile, LeavesACleanHeaderAlone) {
  RecordingRoom room;
  room.Open(1, kName, BytesOf(HeaderOf(2)));
  room.state.Unit[1].UnitSetpoint = 77;
  EXPECT_TRUE(room.files.ReopenRecordingFile(1));
  EXPECT_EQ(room.RecordInFile(kName).UnitSetpoint, 0);
  EXPECT_TRUE(room.state.SlotFileNo[1].IsOpen());
}

TEST(ReopenRecordingFile, MakesNothingAnewAndKeepsTheName) {
  RecordingRoom room;
  room.Open(1, kName, BytesOf(HeaderOf(2)) + Words({1, 2}));
  std::filesystem::remove(room.directory.File(kName));
  EXPECT_FALSE(room.files.ReopenRecordingFile(1));
  EXPECT_EQ(room.files.Error(), "No such file or directory");
  EXPECT_FALSE(room.directory.Exists(kName));
  EXPECT_EQ(room.state.SlotFile[1], kName);
  EXPECT_EQ(room.state.SampleCount[1], 1);
  EXPECT_FALSE(room.state.SlotFileNo[1].IsOpen());
  room.directory.Write(kName, BytesOf(HeaderOf(2)) + Words({1, 2}));
  EXPECT_TRUE(room.files.ReopenRecordingFile(1));
  EXPECT_TRUE(room.state.SlotFileNo[1].IsOpen());
}

TEST(ReopenRecordingFile, RefusesAFileShorterThanTheRows) {
  RecordingRoom room;
  room.Open(1, kName, BytesOf(HeaderOf(2)) + Words({1, 2, 3, 4}));
  std::filesystem::resize_file(room.directory.File(kName), 1007);
  EXPECT_FALSE(room.files.ReopenRecordingFile(1));
  EXPECT_FALSE(room.state.SlotFileNo[1].IsOpen());
}

TEST(ReopenRecordingFile, RefusesAFileThatIsNoHeaderOrBelongsToAnotherRecording) {
  UnitRecord of_another_date = HeaderOf(2);
  of_another_date.UnitDate.Set("01-01-2020 / 00:00");
  for (const std::string& bytes :
       {BytesOf(HeaderOf(2)).substr(0, 999), BytesOf(HeaderOf(3)), BytesOf(of_another_date)}) {
    RecordingRoom room;
    room.Open(1, kName, BytesOf(HeaderOf(2)));
    room.state.SlotDirty[1] = true;
    room.directory.Write(kName, bytes);
    EXPECT_FALSE(room.files.ReopenRecordingFile(1));
    EXPECT_EQ(room.directory.Read(kName), bytes);
    EXPECT_TRUE(room.state.SlotDirty[1]);
  }
}

TEST(KeepHeldSet, ReplacesALinkAndSparesWhatItLeadsTo) {
  for (const bool is_there : {true, false}) {
    RecordingRoom room;
    room.Open(1, kName, BytesOf(HeaderOf(2)));
    if (is_there) {
      room.directory.Write("kept", "a file of somebody else, longer than what is held there");
    }
    std::filesystem::create_symlink("kept", room.directory.File(HeldSetName(kName)));
    const std::string before = room.directory.Read("kept");
    room.files.KeepHeldSet(1, 2);
    EXPECT_EQ(room.directory.Read("kept"), before);
    EXPECT_EQ(room.directory.Exists("kept"), is_there);
    EXPECT_FALSE(std::filesystem::is_symlink(room.directory.File(HeldSetName(kName))));
    EXPECT_EQ(room.directory.Read(HeldSetName(kName)).substr(0, 4), "TAVI");
  }
}

TEST(MakeNextFile, ReplacesALinkInThePlaceOfItsHeldSet) {
  RecordingRoom room;
  room.Open(1, kName, BytesOf(HeaderOf(2)));
  room.state.SampleSeen[1][2] = true;
  room.directory.Write("kept", "a file of somebody else, longer than what is held there");
  std::filesystem::create_symlink("kept", room.directory.File(HeldSetName("M011111B.NEW")));
  const std::string before = room.directory.Read("kept");
  EXPECT_EQ(room.files.MakeNextFile(1), "M011111B.NEW");
  EXPECT_EQ(room.directory.Read("kept"), before);
  EXPECT_EQ(room.directory.Read(HeldSetName("M011111B.NEW")).substr(0, 4), "TAVI");
}

}  // namespace
}  // namespace tavrel
