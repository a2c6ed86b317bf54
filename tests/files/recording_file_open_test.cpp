#include <gtest/gtest.h>

#include <random>
#include <string>

#include "files/recording_file.h"
#include "tests/files/recording_fixture.h"

namespace tavrel {
namespace {

// What a refused file leaves: no name, nothing open, one box with the reason.
void ExpectRefused(const RecordingFixture& fixture, int slot, const std::string& text) {
  EXPECT_EQ(fixture.state.SlotFile[slot], "");
  EXPECT_FALSE(fixture.state.SlotFileNo[slot].IsOpen());
  EXPECT_EQ(fixture.state.ReadState[slot], ReadState::kIdle);
  ASSERT_EQ(fixture.dialogs.boxes.size(), 1U);
  EXPECT_EQ(fixture.dialogs.boxes[0].Text, text);
  EXPECT_EQ(fixture.dialogs.boxes[0].Title, "Read  file");
  EXPECT_EQ(fixture.dialogs.boxes[0].Icon, BoxIcon::kWarning);
}

TEST(OpenRecordingFile, TakesAFileOfOneHeaderWithNoRows) {
  RecordingFixture fixture;
  fixture.Open(1, "M011111A.NEW", BytesOf(DefaultUnitRecord()));
  EXPECT_EQ(fixture.state.SlotFile[1], "M011111A.NEW");
  EXPECT_TRUE(fixture.state.SlotFileNo[1].IsOpen());
  EXPECT_EQ(fixture.state.SampleCount[1], 0);
  EXPECT_EQ(fixture.state.RecInterval[1], 100);
  EXPECT_EQ(fixture.state.SampleLimit[1], 16000);
  EXPECT_EQ(fixture.state.ReadState[1], ReadState::kIdle);
  EXPECT_EQ(BytesOf(fixture.state.Unit[1]), BytesOf(DefaultUnitRecord()));
  EXPECT_TRUE(fixture.dialogs.boxes.empty());
}

TEST(OpenRecordingFile, FindsTheFileWhateverItsCaseAndKeepsTheNameGiven) {
  RecordingFixture fixture;
  fixture.directory.Write("m011111a.new", BytesOf(DefaultUnitRecord()));
  fixture.Name(1, "M011111A.NEW");
  fixture.files.OpenRecordingFile(1);
  EXPECT_EQ(fixture.state.SlotFile[1], "M011111A.NEW");
  EXPECT_TRUE(fixture.state.SlotFileNo[1].IsOpen());
}

TEST(OpenRecordingFile, RefusesAFileThatIsNotThere) {
  RecordingFixture fixture;
  fixture.Name(1, "M011111A.NEW");
  fixture.files.OpenRecordingFile(1);
  ExpectRefused(fixture, 1, "M011111A.NEW  not found !");
  EXPECT_EQ(fixture.state.Settings.ActiveFiles[0], "M011111A.NEW");
}

TEST(OpenRecordingFile, DeletesAFileOfHalfAHeader) {
  for (const std::size_t length : {0U, 1U, 499U, 500U}) {
    RecordingFixture fixture;
    fixture.state.IndexValid = true;
    fixture.Open(1, "M011111A.NEW", BytesOf(DefaultUnitRecord()).substr(0, length));
    ExpectRefused(fixture, 1, "M011111A.NEW  is damaged !");
    EXPECT_FALSE(fixture.directory.Exists("M011111A.NEW"));
    EXPECT_FALSE(fixture.state.IndexValid);
  }
}

TEST(OpenRecordingFile, KeepsAFileOfAnotherKind) {
  RecordingFixture fixture;
  fixture.Open(1, "NOTES.TXT", std::string(3000, 'x'));
  ExpectRefused(fixture, 1, "NOTES.TXT  is not a Tavrel-file !");
  EXPECT_EQ(fixture.directory.Read("NOTES.TXT"), std::string(3000, 'x'));
}

TEST(OpenRecordingFile, KeepsAFileWithAnIntervalOutOfRange) {
  for (const std::int16_t interval : {std::int16_t{0}, std::int16_t{3601}}) {
    RecordingFixture fixture;
    UnitRecord unit = DefaultUnitRecord();
    unit.UnitInterval = interval;
    fixture.Open(1, "M011111A.NEW", BytesOf(unit));
    ExpectRefused(fixture, 1, "M011111A.NEW  is not a Tavrel-file !");
    EXPECT_TRUE(fixture.directory.Exists("M011111A.NEW"));
  }
}

TEST(OpenRecordingFile, ReadsA700ByteFileWithTheRestZero) {
  RecordingFixture fixture;
  fixture.Open(1, "M011111A.NEW", BytesOf(DefaultUnitRecord()).substr(0, 700));
  EXPECT_EQ(fixture.state.SlotFile[1], "M011111A.NEW");
  EXPECT_EQ(fixture.state.SampleCount[1], 0);
  EXPECT_EQ(fixture.state.Unit[1].UnitDesignation.Get(), "NEW: Default");
  EXPECT_EQ(fixture.state.Unit[1].UnitDate.Bytes, HeaderText{}.Bytes);
}

TEST(OpenRecordingFile, CompletesAShortHeaderBeforeARecordingGoesOn) {
  RecordingFixture fixture;
  UnitRecord unit = DefaultUnitRecord();
  unit.UnitRecOn = 1;
  fixture.Open(1, "M011111A.NEW", BytesOf(unit).substr(0, 700));
  EXPECT_EQ(fixture.directory.Read("M011111A.NEW").size(), 1000U);
  EXPECT_TRUE(fixture.files.AppendRow(1, std::array<std::int16_t, 2>{1, 2}, 1));
}

TEST(OpenRecordingFile, DoesNotCountATornLastRow) {
  RecordingFixture fixture;
  fixture.Open(1, "M011111A.NEW", BytesOf(HeaderOf(3)) + Words({1, 2, 3, 4, 5, 6, 7}) + "t");
  EXPECT_EQ(fixture.state.SampleCount[1], 2);
}

TEST(OpenRecordingFile, ResumesARunningRecording) {
  RecordingFixture fixture;
  UnitRecord unit = HeaderOf(3);
  unit.UnitRecOn = 1;
  fixture.state.SampleSeen[4].Fill(true);
  fixture.Open(4, "M011111A.NEW", BytesOf(unit));
  EXPECT_EQ(fixture.state.ReadState[4], ReadState::kReading);
  for (const bool seen : fixture.state.SampleSeen[4]) {
    EXPECT_FALSE(seen);
  }
}

TEST(OpenRecordingFile, DoesNotResumeWhatIsMarkedInAnotherWayThanOne) {
  RecordingFixture fixture;
  UnitRecord unit = HeaderOf(3);
  unit.UnitRecOn = 2;
  fixture.state.ReadState[4] = ReadState::kReading;
  fixture.Open(4, "M011111A.NEW", BytesOf(unit));
  EXPECT_EQ(fixture.state.ReadState[4], ReadState::kIdle);
}

TEST(OpenRecordingFile, DoesNotResumeWhereRolesAndChannelsDisagree) {
  RecordingFixture fixture;
  UnitRecord unit = HeaderOf(3);
  unit.UnitRecOn = 1;
  unit.UnitChannels = 4;
  fixture.Open(4, "M011111A.NEW", BytesOf(unit));
  EXPECT_EQ(fixture.state.SlotFile[4], "M011111A.NEW");
  EXPECT_EQ(fixture.state.ReadState[4], ReadState::kIdle);
}

TEST(OpenRecordingFile, NeverRecordsInTheViewedFile) {
  RecordingFixture fixture;
  UnitRecord unit = HeaderOf(3);
  unit.UnitRecOn = 1;
  fixture.Open(kViewedFile, "M011111A.NEW", BytesOf(unit));
  EXPECT_EQ(fixture.state.SlotFile[0], "M011111A.NEW");
  EXPECT_EQ(fixture.state.ReadState[0], ReadState::kIdle);
}

TEST(OpenRecordingFile, ShowsWhatAnotherProgramRecordsAndRecordsNothingInIt) {
  RecordingFixture fixture;
  fixture.Name(kViewedFile, "M011111A.NEW", BytesOf(DefaultUnitRecord()) + Words({20, 40}));
  fixture.Name(1, "M011111A.NEW");
  RandomFile other;
  ASSERT_TRUE(other.Open(fixture.directory.File("M011111A.NEW"), FileAccess::kUpdate));
  ASSERT_TRUE(other.Lock());
  fixture.files.OpenRecordingFile(kViewedFile);
  EXPECT_EQ(fixture.files.ReadSample(kViewedFile, 0, 2), 40);
  EXPECT_TRUE(fixture.dialogs.boxes.empty());
  fixture.files.OpenRecordingFile(1);
  ExpectRefused(fixture, 1, "M011111A.NEW  is recorded by another program !");
}

TEST(OpenRecordingFile, OpensForReadingOnlyTheViewedFileOnAReadOnlyMedium) {
  RecordingFixture fixture;
  fixture.Name(kViewedFile, "M011111A.NEW", BytesOf(DefaultUnitRecord()) + Words({20, 40}));
  fixture.Name(1, "M011111A.NEW");
  const ReadOnlyMedium medium(fixture.directory.Path(), fixture.directory.File("M011111A.NEW"));
  fixture.files.OpenRecordingFile(kViewedFile);
  EXPECT_EQ(fixture.files.ReadSample(kViewedFile, 0, 2), 40);
  EXPECT_TRUE(fixture.dialogs.boxes.empty());
  fixture.files.OpenRecordingFile(1);
  ExpectRefused(fixture, 1, "M011111A.NEW: Permission denied");
}

TEST(OpenRecordingFile, MakesTheScreensForgetTheFileBefore) {
  RecordingFixture fixture;
  fixture.state.SelSlot = 1;
  fixture.state.SheetReset = fixture.state.WorkReset = true;
  fixture.state.OverPrepared = fixture.state.PartPrepared = true;
  fixture.Open(2, "B.NEW", BytesOf(DefaultUnitRecord()));
  EXPECT_FALSE(fixture.state.SheetReset);
  EXPECT_TRUE(fixture.state.OverPrepared);
  fixture.Open(1, "A.NEW", BytesOf(DefaultUnitRecord()));
  EXPECT_FALSE(fixture.state.WorkReset);
  EXPECT_FALSE(fixture.state.OverPrepared);
  EXPECT_FALSE(fixture.state.PartPrepared);
}

TEST(OpenRecordingFile, IgnoresSlotsThatDoNotExist) {
  RecordingFixture fixture;
  fixture.files.OpenRecordingFile(-1);
  fixture.files.OpenRecordingFile(13);
  EXPECT_TRUE(fixture.dialogs.boxes.empty());
}

// A whole file of two rows, cut at every byte: never a crash, never a row that was not there.
TEST(OpenRecordingFile, SurvivesTruncationAtEveryByte) {
  const std::string whole = BytesOf(HeaderOf(2)) + Words({1, 2, 3, 4});
  for (std::size_t length = 0; length <= whole.size(); ++length) {
    RecordingFixture fixture;
    fixture.Open(1, "M011111A.NEW", whole.substr(0, length));
    const bool is_kept = length > 500;
    ASSERT_EQ(fixture.directory.Exists("M011111A.NEW"), is_kept) << length;
    ASSERT_EQ(fixture.state.SlotFile[1].empty(), !is_kept) << length;
    const std::int32_t rows = length < 1004 ? 0 : length < 1008 ? 1 : 2;
    ASSERT_EQ(fixture.state.SampleCount[1], rows) << length;
    ASSERT_EQ(fixture.files.ReadSample(1, rows, 1), std::nullopt) << length;
  }
}

TEST(OpenRecordingFile, TakesAnyBytesWithoutACrash) {
  std::mt19937 random(20260314);
  RecordingFixture fixture;
  for (int round = 0; round < 2000; ++round) {
    std::string bytes(501 + random() % 800, '\0');
    for (char& byte : bytes) {
      byte = static_cast<char>(random());
    }
    if (round % 2 == 0) {  // a header that passes, with everything else at random
      UnitRecord unit = HeaderOf(1 + static_cast<int>(random() % 15));
      bytes.replace(0, 8, BytesOf(unit).substr(0, 8));
      bytes.replace(44, 2, Words({1 + static_cast<int>(random() % 3600)}));
    }
    fixture.Open(1, "M011111A.NEW", bytes);
    ASSERT_EQ(fixture.state.SlotFile[1].empty(), round % 2 != 0) << round;
    ASSERT_GE(fixture.state.SampleCount[1], 0);
    ASSERT_GE(fixture.state.RecInterval[1] + (round % 2), 1);
    static_cast<void>(fixture.files.ReadSample(1, 0, 1));
  }
}

// The recording of such a file cannot go on; without a word the row would say "on" for ever.
TEST(OpenRecordingFile, SaysOnceThatARunningFileOfAnotherWidthStandsStill) {
  for (const int slot : {1, 7, 12}) {
    RecordingFixture fixture;
    UnitRecord unit = HeaderOf(3);
    unit.UnitChannels = 2;
    unit.UnitRecOn = 1;
    {
      const Messages::Deferral deferral(fixture.messages);
      fixture.Open(slot, "M011111A.NEW", BytesOf(unit));
    }
    fixture.messages.ShowKept();
    ASSERT_EQ(fixture.dialogs.announced.size(), 1U);
    EXPECT_EQ(fixture.dialogs.announced[0].Title, "Read  file");
    EXPECT_EQ(fixture.dialogs.announced[0].Text,
              "M011111A.NEW: the recording stands still, for the file has another number of "
              "columns than there are recorded inputs.");
    EXPECT_EQ(fixture.state.SlotFile[slot], "M011111A.NEW");
  }
}

TEST(OpenRecordingFile, SaysNothingOfAnotherWidthWhereNothingRuns) {
  for (const int slot : {kViewedFile, 3}) {
    RecordingFixture fixture;
    UnitRecord unit = HeaderOf(3);
    unit.UnitChannels = 2;
    unit.UnitRecOn = slot == kViewedFile ? 1 : 0;
    fixture.Open(slot, "M011111A.NEW", BytesOf(unit));
    EXPECT_TRUE(fixture.dialogs.boxes.empty());
  }
}

}  // namespace
}  // namespace tavrel
