#include <gtest/gtest.h>

#include <array>
#include <filesystem>
#include <string>

#include "files/held_set.h"
#include "files/recording_file.h"
#include "tests/files/recording_fixture.h"

namespace tavrel {
namespace {

using Row2 = std::array<std::int16_t, 2>;

constexpr const char* kName = "M011111A.NEW";

TEST(WriteHeader, WritesAThousandBytesAndLeavesTheRows) {
  RecordingFixture fixture;
  fixture.Open(1, kName, BytesOf(HeaderOf(2)) + Words({1, 2}));
  fixture.state.Unit[1].UnitSetpoint = 4000;
  fixture.state.SlotDirty[1] = true;
  fixture.files.WriteHeader(1);
  EXPECT_EQ(fixture.directory.Read(kName), BytesOf(fixture.state.Unit[1]) + Words({1, 2}));
  EXPECT_FALSE(fixture.state.SlotDirty[1]);
  EXPECT_EQ(fixture.files.ReadSample(1, 0, 2), 2);
}

TEST(WriteHeader, KeepsWordsThatHaveNoName) {
  RecordingFixture fixture;
  std::string bytes = BytesOf(HeaderOf(2));
  bytes.replace(38, 2, "\x34\x12");
  bytes.replace(940, 5, "spare");
  fixture.Open(1, kName, bytes);
  fixture.files.WriteHeader(1);
  EXPECT_EQ(fixture.directory.Read(kName), bytes);
}

TEST(WriteHeader, MakesAMissingFileInCapitalsWithNoRows) {
  RecordingFixture fixture;
  fixture.Name(1, "m011111a.new");
  fixture.state.Unit[1] = DefaultUnitRecord();
  fixture.state.SampleCount[1] = 7;
  fixture.state.IndexValid = true;
  fixture.files.WriteHeader(1);
  EXPECT_EQ(fixture.directory.Read(kName), BytesOf(DefaultUnitRecord()));
  EXPECT_EQ(fixture.state.SlotFile[1], "m011111a.new");
  EXPECT_EQ(fixture.state.SampleCount[1], 0);
  EXPECT_FALSE(fixture.state.IndexValid);
  EXPECT_TRUE(fixture.state.SlotFileNo[1].IsOpen());
}

TEST(WriteHeader, MakesNoDirectoryAndClearsTheNameButNotTheEntry) {
  RecordingFixture fixture;
  fixture.Open(1, kName, BytesOf(HeaderOf(2)));
  std::filesystem::rename(fixture.directory.Path(), fixture.directory.Path() + "-away");
  fixture.files.WriteHeader(1);
  std::filesystem::rename(fixture.directory.Path() + "-away", fixture.directory.Path());
  EXPECT_EQ(fixture.state.SlotFile[1], "");
  EXPECT_EQ(fixture.state.Settings.ActiveFiles[0], kName);
  ASSERT_EQ(fixture.dialogs.boxes.size(), 1U);
  EXPECT_EQ(fixture.dialogs.boxes[0].Text, std::string(kName) + ": No such file or directory");
  EXPECT_EQ(fixture.dialogs.boxes[0].Title, "Write  file");
  EXPECT_EQ(fixture.dialogs.boxes[0].Icon, BoxIcon::kWarning);
}

TEST(WriteHeader, ReachesTheDirectoryAfterTheFileWasDeletedUnderIt) {
  RecordingFixture fixture;
  fixture.Open(1, kName, BytesOf(HeaderOf(2)) + Words({1, 2}));
  std::filesystem::remove(fixture.directory.File(kName));
  fixture.files.WriteHeader(1);
  EXPECT_EQ(fixture.directory.Read(kName), BytesOf(HeaderOf(2)));
  EXPECT_EQ(fixture.state.SampleCount[1], 0);
}

TEST(WriteHeader, SparesAShorterFileThatTookTheNameOver) {
  RecordingFixture fixture;
  fixture.Open(1, kName, BytesOf(HeaderOf(2)) + Words({1, 2, 3, 4}));
  UnitRecord other = HeaderOf(2);
  other.UnitDate.Set("01-01-2020 / 00:00");
  std::filesystem::remove(fixture.directory.File(kName));
  fixture.directory.Write(kName, BytesOf(other));
  fixture.files.WriteHeader(1);
  EXPECT_EQ(fixture.directory.Read(kName), BytesOf(other));
  EXPECT_EQ(fixture.state.SlotFile[1], "");
}

TEST(WriteHeader, TakesAwayAFileThatDidNotFit) {
  RecordingFixture fixture;
  fixture.Name(1, kName);
  fixture.state.Unit[1] = DefaultUnitRecord();
  {
    const FullDisk disk(300);
    fixture.files.WriteHeader(1);
  }
  EXPECT_FALSE(fixture.directory.Exists(kName));
  EXPECT_EQ(fixture.state.SlotFile[1], "");
}

TEST(WriteHeader, DoesNothingForASlotNotInUse) {
  RecordingFixture fixture;
  fixture.files.WriteHeader(3);
  fixture.files.WriteHeader(99);
  EXPECT_TRUE(fixture.dialogs.boxes.empty());
}

TEST(AppendRow, PutsRowsBehindEachOther) {
  RecordingFixture fixture;
  fixture.Open(1, kName, BytesOf(HeaderOf(2)));
  EXPECT_TRUE(fixture.files.AppendRow(1, Row2{-1, 2}, 2));
  EXPECT_EQ(fixture.state.SampleCount[1], 2);
  EXPECT_TRUE(fixture.files.AppendRow(1, Row2{3, 4}, 1));
  EXPECT_EQ(fixture.state.SampleCount[1], 3);
  EXPECT_EQ(fixture.SamplesInFile(kName), Words({-1, 2, -1, 2, 3, 4}));
}

TEST(AppendRow, OverwritesATornRow) {
  RecordingFixture fixture;
  fixture.Open(1, kName, BytesOf(HeaderOf(2)) + Words({1, 2, 1, 2, 9}));
  EXPECT_TRUE(fixture.files.AppendRow(1, Row2{3, 4}, 1));
  EXPECT_EQ(fixture.SamplesInFile(kName), Words({1, 2, 1, 2, 3, 4}));
}

TEST(AppendRow, CountsNothingOnAFullDiskAndMendsTheTornRowAfterwards) {
  RecordingFixture fixture;
  fixture.Open(1, kName, BytesOf(HeaderOf(2)));
  {
    const FullDisk disk(1007);  // one byte short of two rows
    EXPECT_FALSE(fixture.files.AppendRow(1, Row2{1, 2}, 2));
    EXPECT_EQ(fixture.files.Error(), "File too large");
  }
  EXPECT_EQ(fixture.state.SampleCount[1], 0);
  EXPECT_TRUE(fixture.files.AppendRow(1, Row2{1, 2}, 2));
  EXPECT_EQ(fixture.SamplesInFile(kName), Words({1, 2, 1, 2}));
}

TEST(AppendRow, LeavesNoHoleInAFileThatWasCut) {
  RecordingFixture fixture;
  fixture.Open(1, kName, BytesOf(HeaderOf(2)) + Words({1, 2, 3, 4}));
  std::filesystem::resize_file(fixture.directory.File(kName), 1005);
  EXPECT_FALSE(fixture.files.AppendRow(1, Row2{5, 6}, 1));
  EXPECT_EQ(fixture.directory.Read(kName).size(), 1005U);
  EXPECT_EQ(fixture.state.SampleCount[1], 2);
}

TEST(AppendRow, RefusesARowOfAnotherWidth) {
  RecordingFixture fixture;
  fixture.Open(1, kName, BytesOf(HeaderOf(3)));
  EXPECT_FALSE(fixture.files.AppendRow(1, Row2{5, 6}, 1));
  EXPECT_FALSE(fixture.files.AppendRow(1, {}, 1));
  EXPECT_FALSE(fixture.files.AppendRow(42, Row2{5, 6}, 1));
  EXPECT_EQ(fixture.SamplesInFile(kName), "");
}

TEST(AppendRow, FailsOnAClosedFile) {
  RecordingFixture fixture;
  fixture.Open(1, kName, BytesOf(HeaderOf(2)));
  fixture.files.CloseRecordingFile(1);
  EXPECT_FALSE(fixture.files.AppendRow(1, Row2{5, 6}, 1));
  EXPECT_EQ(fixture.state.SampleCount[1], 0);
}

TEST(AppendRow, StopsWhereRecordNumbersEnd) {
  RecordingFixture fixture;
  fixture.Open(1, kName, BytesOf(HeaderOf(1)) + std::string(std::size_t{2} * 32766, '\1'));
  EXPECT_FALSE(fixture.files.AppendRow(1, std::array<std::int16_t, 1>{5}, 2));
  EXPECT_TRUE(fixture.files.AppendRow(1, std::array<std::int16_t, 1>{5}, 1));
  EXPECT_FALSE(fixture.files.AppendRow(1, std::array<std::int16_t, 1>{5}, 1));
  EXPECT_EQ(fixture.state.SampleCount[1], 32767);
}

TEST(ReadSample, ReadsByRowFromZeroAndColumnFromOne) {
  RecordingFixture fixture;
  fixture.Open(1, kName, BytesOf(HeaderOf(3)) + Words({1, 2, 3, -4, -5, -6}));
  EXPECT_EQ(fixture.files.ReadSample(1, 0, 1), 1);
  EXPECT_EQ(fixture.files.ReadSample(1, 0, 3), 3);
  EXPECT_EQ(fixture.files.ReadSample(1, 1, 2), -5);
}

TEST(ReadSample, IsEmptyOutsideTheFile) {
  RecordingFixture fixture;
  fixture.Open(1, kName, BytesOf(HeaderOf(3)) + Words({1, 2, 3, 4}));
  EXPECT_EQ(fixture.files.ReadSample(1, 1, 1), std::nullopt);  // a torn row
  EXPECT_EQ(fixture.files.ReadSample(1, 0, 0), std::nullopt);
  EXPECT_EQ(fixture.files.ReadSample(1, 0, 4), std::nullopt);
  EXPECT_EQ(fixture.files.ReadSample(1, -1, 1), std::nullopt);
  EXPECT_EQ(fixture.files.ReadSample(2, 0, 1), std::nullopt);
  EXPECT_EQ(fixture.files.ReadSample(-1, 0, 1), std::nullopt);
}

TEST(ReopenRecordingFile, WritesADirtyHeader) {
  RecordingFixture fixture;
  fixture.Open(1, kName, BytesOf(HeaderOf(2)) + Words({1, 2}));
  fixture.state.Unit[1].SetApparatusName("Oven 3");
  fixture.state.SlotDirty[1] = true;
  EXPECT_TRUE(fixture.files.ReopenRecordingFile(1));
  EXPECT_EQ(fixture.RecordInFile(kName).ApparatusName(), "Oven 3");
  EXPECT_FALSE(fixture.state.SlotDirty[1]);
}

TEST(ReopenRecordingFile, LeavesACleanHeaderAlone) {
  RecordingFixture fixture;
  fixture.Open(1, kName, BytesOf(HeaderOf(2)));
  fixture.state.Unit[1].UnitSetpoint = 77;
  EXPECT_TRUE(fixture.files.ReopenRecordingFile(1));
  EXPECT_EQ(fixture.RecordInFile(kName).UnitSetpoint, 0);
  EXPECT_TRUE(fixture.state.SlotFileNo[1].IsOpen());
}

TEST(ReopenRecordingFile, MakesNothingAnewAndKeepsTheName) {
  RecordingFixture fixture;
  fixture.Open(1, kName, BytesOf(HeaderOf(2)) + Words({1, 2}));
  std::filesystem::remove(fixture.directory.File(kName));
  EXPECT_FALSE(fixture.files.ReopenRecordingFile(1));
  EXPECT_EQ(fixture.files.Error(), "No such file or directory");
  EXPECT_FALSE(fixture.directory.Exists(kName));
  EXPECT_EQ(fixture.state.SlotFile[1], kName);
  EXPECT_EQ(fixture.state.SampleCount[1], 1);
  EXPECT_FALSE(fixture.state.SlotFileNo[1].IsOpen());
  fixture.directory.Write(kName, BytesOf(HeaderOf(2)) + Words({1, 2}));
  EXPECT_TRUE(fixture.files.ReopenRecordingFile(1));
  EXPECT_TRUE(fixture.state.SlotFileNo[1].IsOpen());
}

TEST(ReopenRecordingFile, RefusesAFileShorterThanTheRows) {
  RecordingFixture fixture;
  fixture.Open(1, kName, BytesOf(HeaderOf(2)) + Words({1, 2, 3, 4}));
  std::filesystem::resize_file(fixture.directory.File(kName), 1007);
  EXPECT_FALSE(fixture.files.ReopenRecordingFile(1));
  EXPECT_FALSE(fixture.state.SlotFileNo[1].IsOpen());
}

TEST(ReopenRecordingFile, RefusesAFileThatIsNoHeaderOrBelongsToAnotherRecording) {
  UnitRecord of_another_date = HeaderOf(2);
  of_another_date.UnitDate.Set("01-01-2020 / 00:00");
  for (const std::string& bytes :
       {BytesOf(HeaderOf(2)).substr(0, 999), BytesOf(HeaderOf(3)), BytesOf(of_another_date)}) {
    RecordingFixture fixture;
    fixture.Open(1, kName, BytesOf(HeaderOf(2)));
    fixture.state.SlotDirty[1] = true;
    fixture.directory.Write(kName, bytes);
    EXPECT_FALSE(fixture.files.ReopenRecordingFile(1));
    EXPECT_EQ(fixture.directory.Read(kName), bytes);
    EXPECT_TRUE(fixture.state.SlotDirty[1]);
  }
}

TEST(KeepHeldSet, ReplacesALinkAndSparesWhatItLeadsTo) {
  for (const bool is_there : {true, false}) {
    RecordingFixture fixture;
    fixture.Open(1, kName, BytesOf(HeaderOf(2)));
    if (is_there) {
      fixture.directory.Write("kept", "a file of somebody else, longer than what is held there");
    }
    std::filesystem::create_symlink("kept", fixture.directory.File(HeldSetName(kName)));
    const std::string before = fixture.directory.Read("kept");
    fixture.files.KeepHeldSet(1, 2);
    EXPECT_EQ(fixture.directory.Read("kept"), before);
    EXPECT_EQ(fixture.directory.Exists("kept"), is_there);
    EXPECT_FALSE(std::filesystem::is_symlink(fixture.directory.File(HeldSetName(kName))));
    EXPECT_EQ(fixture.directory.Read(HeldSetName(kName)).substr(0, 4), "TAVI");
  }
}

TEST(MakeNextFile, ReplacesALinkInThePlaceOfItsHeldSet) {
  RecordingFixture fixture;
  fixture.Open(1, kName, BytesOf(HeaderOf(2)));
  fixture.state.SampleSeen[1][2] = true;
  fixture.directory.Write("kept", "a file of somebody else, longer than what is held there");
  std::filesystem::create_symlink("kept", fixture.directory.File(HeldSetName("M011111B.NEW")));
  const std::string before = fixture.directory.Read("kept");
  EXPECT_EQ(fixture.files.MakeNextFile(1), "M011111B.NEW");
  EXPECT_EQ(fixture.directory.Read("kept"), before);
  EXPECT_EQ(fixture.directory.Read(HeldSetName("M011111B.NEW")).substr(0, 4), "TAVI");
}

}  // namespace
}  // namespace tavrel
