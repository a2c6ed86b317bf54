#include <gtest/gtest.h>

#include <random>
#include <string>

#include "files/recording_file.h"
#include "tests/files/recording_room.h"

namespace tavrel {
namespace {

// What a refused file leaves: no name, nothing open, one box with the reason.
void ExpectRefused(const RecordingRoom& room, int slot, const std::string& text) {
  EXPECT_EQ(room.state.SlotFile[slot], "");
  EXPECT_FALSE(room.state.SlotFileNo[slot].IsOpen());
  EXPECT_EQ(room.state.ReadState[slot], ReadState::kIdle);
  ASSERT_EQ(room.dialogs.boxes.size(), 1U);
  EXPECT_EQ(room.dialogs.boxes[0].Text, text);
  EXPECT_EQ(room.dialogs.boxes[0].Title, "Read  file");
  EXPECT_EQ(room.dialogs.boxes[0].Icon, BoxIcon::kWarning);
}

TEST(OpenRecordingFile, TakesAFileOfOneHeaderWithNoRows) {
  RecordingRoom room;
  room.Open(1, "M011111A.NEW", BytesOf(DefaultUnitRecord()));
  EXPECT_EQ(room.state.SlotFile[1], "M011111A.NEW");
  EXPECT_TRUE(room.state.SlotFileNo[1].IsOpen());
  EXPECT_EQ(room.state.SampleCount[1], 0);
  EXPECT_EQ(room.state.RecInterval[1], 100);
  EXPECT_EQ(room.state.SampleLimit[1], 16000);
  EXPECT_EQ(room.state.ReadState[1], ReadState::kIdle);
  EXPECT_EQ(BytesOf(room.state.Unit[1]), BytesOf(DefaultUnitRecord()));
  EXPECT_TRUE(room.dialogs.boxes.empty());
}

TEST(OpenRecordingFile, FindsTheFileWhateverItsCaseAndKeepsTheNameGiven) {
  RecordingRoom room;
  room.directory.Write("m011111a.new", BytesOf(DefaultUnitRecord()));
  room.Name(1, "M011111A.NEW");
  room.files.OpenRecordingFile(1);
  EXPECT_EQ(room.state.SlotFile[1], "M011111A.NEW");
  EXPECT_TRUE(room.state.SlotFileNo[1].IsOpen());
}

TEST(OpenRecordingFile, RefusesAFileThatIsNotThere) {
  RecordingRoom room;
  room.Name(1, "M011111A.NEW");
  room.files.OpenRecordingFile(1);
  ExpectRefused(room, 1, "M011111A.NEW  not found !");
  EXPECT_EQ(room.state.Settings.ActiveFiles[0], "M011111A.NEW");
}

TEST(OpenRecordingFile, DeletesAStumpOfHalfAHeader) {
  for (const std::size_t length : {0U, 1U, 499U, 500U}) {
    RecordingRoom room;
    room.state.IndexValid = true;
    room.Open(1, "M011111A.NEW", BytesOf(DefaultUnitRecord()).substr(0, length));
    ExpectRefused(room, 1, "M011111A.NEW  is damaged !");
    EXPECT_FALSE(room.directory.Exists("M011111A.NEW"));
    EXPECT_FALSE(room.state.IndexValid);
  }
}

TEST(OpenRecordingFile, KeepsAFileOfAnotherKind) {
  RecordingRoom room;
  room.Open(1, "NOTES.TXT", std::string(3000, 'x'));
  ExpectRefused(room, 1, "NOTES.TXT  is not a Tavrel-file !");
  EXPECT_EQ(room.directory.Read("NOTES.TXT"), std::string(3000, 'x'));
}

TEST(OpenRecordingFile, KeepsAFileWithAnIntervalOutOfRange) {
  for (const std::int16_t interval : {std::int16_t{0}, std::int16_t{3601}}) {
    RecordingRoom room;
    UnitRecord unit = DefaultUnitRecord();
    unit.UnitInterval = interval;
    room.Open(1, "M011111A.NEW", BytesOf(unit));
    ExpectRefused(room, 1, "M011111A.NEW  is not a Tavrel-file !");
    EXPECT_TRUE(room.directory.Exists("M011111A.NEW"));
  }
}

TEST(OpenRecordingFile, ReadsA700ByteFileWithTheRestZero) {
  RecordingRoom room;
  room.Open(1, "M011111A.NEW", BytesOf(DefaultUnitRecord()).substr(0, 700));
  EXPECT_EQ(room.state.SlotFile[1], "M011111A.NEW");
  EXPECT_EQ(room.state.SampleCount[1], 0);
  EXPECT_EQ(room.state.Unit[1].UnitDesignation.Get(), "NEW: Default");
  EXPECT_EQ(room.state.Unit[1].UnitDate.Bytes, HeaderText{}.Bytes);
}

TEST(OpenRecordingFile, CompletesAShortHeaderBeforeARecordingGoesOn) {
  RecordingRoom room;
  UnitRecord unit = DefaultUnitRecord();
  unit.UnitRecOn = 1;
  room.Open(1, "M011111A.NEW", BytesOf(unit).substr(0, 700));
  EXPECT_EQ(room.directory.Read("M011111A.NEW").size(), 1000U);
  EXPECT_TRUE(room.files.AppendRow(1, std::array<std::int16_t, 2>{1, 2}, 1));
}

TEST(OpenRecordingFile, DoesNotCountATornLastRow) {
  RecordingRoom room;
  room.Open(1, "M011111A.NEW", BytesOf(HeaderOf(3)) + Words({1, 2, 3, 4, 5, 6, 7}) + "t");
  EXPECT_EQ(room.state.SampleCount[1], 2);
}

TEST(OpenRecordingFile, ResumesARunningRecording) {
  RecordingRoom room;
  UnitRecord unit = HeaderOf(3);
  unit.UnitRecOn = 1;
  room.state.SampleSeen[4].Fill(true);
  room.Open(4, "M011111A.NEW", BytesOf(unit));
  EXPECT_EQ(room.state.ReadState[4], ReadState::kReading);
  for (const bool seen : room.state.SampleSeen[4]) {
    EXPECT_FALSE(seen);
  }
}

TEST(OpenRecordingFile, DoesNotResumeWhatIsMarkedInAnotherWayThanOne) {
  RecordingRoom room;
  UnitRecord unit = HeaderOf(3);
  unit.UnitRecOn = 2;
  room.state.ReadState[4] = ReadState::kReading;
  room.Open(4, "M011111A.NEW", BytesOf(unit));
  EXPECT_EQ(room.state.ReadState[4], ReadState::kIdle);
}

TEST(OpenRecordingFile, DoesNotResumeWhereRolesAndChannelsDisagree) {
  RecordingRoom room;
  UnitRecord unit = HeaderOf(3);
  unit.UnitRecOn = 1;
  unit.UnitChannels = 4;
  room.Open(4, "M011111A.NEW", BytesOf(unit));
  EXPECT_EQ(room.state.SlotFile[4], "M011111A.NEW");
  EXPECT_EQ(room.state.ReadState[4], ReadState::kIdle);
}

TEST(OpenRecordingFile, NeverRecordsInTheViewedFile) {
  RecordingRoom room;
  UnitRecord unit = HeaderOf(3);
  unit.UnitRecOn = 1;
  room.Open(kViewedFile, "M011111A.NEW", BytesOf(unit));
  EXPECT_EQ(room.state.SlotFile[0], "M011111A.NEW");
  EXPECT_EQ(room.state.ReadState[0], ReadState::kIdle);
}

TEST(OpenRecordingFile, OpensForReadingOnlyTheViewedFileOnAReadOnlyMedium) {
  RecordingRoom room;
  room.Name(kViewedFile, "M011111A.NEW", BytesOf(DefaultUnitRecord()) + Words({20, 40}));
  room.Name(1, "M011111A.NEW");
  const ReadOnlyMedium medium(room.directory.Path(), room.directory.File("M011111A.NEW"));
  room.files.OpenRecordingFile(kViewedFile);
  EXPECT_EQ(room.files.ReadSample(kViewedFile, 0, 2), 40);
  EXPECT_TRUE(room.dialogs.boxes.empty());
  room.files.OpenRecordingFile(1);
  ExpectRefused(room, 1, "M011111A.NEW: Permission denied");
}

TEST(OpenRecordingFile, MakesTheScreensForgetTheFileBefore) {
  RecordingRoom room;
  room.state.SelSlot = 1;
  room.state.SheetReset = room.state.WorkReset = true;
  room.state.OverPrepared = room.state.PartPrepared = true;
  room.Open(2, "B.NEW", BytesOf(DefaultUnitRecord()));
  EXPECT_FALSE(room.state.SheetReset);
  EXPECT_TRUE(room.state.OverPrepared);
  room.Open(1, "A.NEW", BytesOf(DefaultUnitRecord()));
  EXPECT_FALSE(room.state.WorkReset);
  EXPECT_FALSE(room.state.OverPrepared);
  EXPECT_FALSE(room.state.PartPrepared);
}

TEST(OpenRecordingFile, IgnoresSlotsThatDoNotExist) {
  RecordingRoom room;
  room.files.OpenRecordingFile(-1);
  room.files.OpenRecordingFile(13);
  EXPECT_TRUE(room.dialogs.boxes.empty());
}

// A whole file of two rows, cut at every byte: never a crash, never a row that was not there.
TEST(OpenRecordingFile, SurvivesTruncationAtEveryByte) {
  const std::string whole = BytesOf(HeaderOf(2)) + Words({1, 2, 3, 4});
  for (std::size_t length = 0; length <= whole.size(); ++length) {
    RecordingRoom room;
    room.Open(1, "M011111A.NEW", whole.substr(0, length));
    const bool is_kept = length > 500;
    ASSERT_EQ(room.directory.Exists("M011111A.NEW"), is_kept) << length;
    ASSERT_EQ(room.state.SlotFile[1].empty(), !is_kept) << length;
    const std::int32_t rows = length < 1004 ? 0 : length < 1008 ? 1 : 2;
    ASSERT_EQ(room.state.SampleCount[1], rows) << length;
    ASSERT_EQ(room.files.ReadSample(1, rows, 1), std::nullopt) << length;
  }
}

TEST(OpenRecordingFile, TakesAnyBytesWithoutACrash) {
  std::mt19937 random(20260314);
  RecordingRoom room;
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
    room.Open(1, "M011111A.NEW", bytes);
    ASSERT_EQ(room.state.SlotFile[1].empty(), round % 2 != 0) << round;
    ASSERT_GE(room.state.SampleCount[1], 0);
    ASSERT_GE(room.state.RecInterval[1] + (round % 2), 1);
    static_cast<void>(room.files.ReadSample(1, 0, 1));
  }
}

// The recording of such a file cannot go on; without a word the row would say "on" for ever.
TEST(OpenRecordingFile, SaysOnceThatARunningFileOfAnotherWidthStandsStill) {
  for (const int slot : {1, 7, 12}) {
    RecordingRoom room;
    UnitRecord unit = HeaderOf(3);
    unit.UnitChannels = 2;
    unit.UnitRecOn = 1;
    {
      const Messages::Deferral deferral(room.messages);
      room.Open(slot, "M011111A.NEW", BytesOf(unit));
    }
    room.messages.ShowKept();
    ASSERT_EQ(room.dialogs.announced.size(), 1U);
    EXPECT_EQ(room.dialogs.announced[0].Title, "Read  file");
    EXPECT_EQ(room.dialogs.announced[0].Text,
              "M011111A.NEW: the recording stands still, for the file has another number of "
              "columns than there are recorded inputs.");
    EXPECT_EQ(room.state.SlotFile[slot], "M011111A.NEW");
  }
}

TEST(OpenRecordingFile, SaysNothingOfAnotherWidthWhereNothingRuns) {
  for (const int slot : {kViewedFile, 3}) {
    RecordingRoom room;
    UnitRecord unit = HeaderOf(3);
    unit.UnitChannels = 2;
    unit.UnitRecOn = slot == kViewedFile ? 1 : 0;
    room.Open(slot, "M011111A.NEW", BytesOf(unit));
    EXPECT_TRUE(room.dialogs.boxes.empty());
  }
}

}  // namespace
}  // namespace tavrel
