#include <gtest/gtest.h>
#include <unistd.h>

#include <array>
#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include "files/recording_file.h"
#include "tests/files/recording_fixture.h"

// Two users may have one data directory: a recording belongs to the program that has it open.
namespace tavrel {
namespace {

constexpr const char* kReservedName = "M011111A.NEW";
constexpr int kReservedSlot = 3;

// A clock that is asked for each line of a journal.
class WatchedClock : public FakeClock {
 public:
  std::function<void()> on_now = [] {};

  [[nodiscard]] WallTime Now() const override {
    on_now();
    return FakeClock::Now();
  }
};

// The recording of a slot, and another program that would have it.
class ReservedRecording : public testing::Test {
 protected:
  ReservedRecording() {
    fixture.Name(kReservedSlot, kReservedName, BytesOf(HeaderOf(2)) + Words({1, 2}));
    fixture.Name(kViewedFile, kReservedName);
  }

  // Another program takes it, unless it is reserved.
  [[nodiscard]] bool IsTakenByAnother(const std::string& name = kReservedName) {
    EXPECT_TRUE(other.Open(fixture.directory.File(name), FileAccess::kUpdate)) << other.Error();
    return other.Lock();
  }
  // The medium is away at that moment.
  void FailToReopen() {
    const std::string away = fixture.directory.File("away");
    std::filesystem::rename(fixture.directory.File(kReservedName), away);
    EXPECT_FALSE(fixture.files.ReopenRecordingFile(kReservedSlot));
    EXPECT_EQ(fixture.state.SlotFile[kReservedSlot], kReservedName);
    std::filesystem::rename(away, fixture.directory.File(kReservedName));
  }
  // No slot of this program has it.
  void View() {
    fixture.state.SlotFile[kReservedSlot].clear();
    fixture.files.OpenRecordingFile(kViewedFile);
  }
  void AppendByAnother(int rows) {
    std::string bytes = fixture.directory.Read(kReservedName);
    for (int row = 0; row < rows; ++row) {
      bytes += Words({70, 71});
    }
    fixture.directory.Write(kReservedName, bytes);
  }

  RecordingFixture fixture;
  RandomFile other;
};

TEST_F(ReservedRecording, StaysSoWhenItsHeaderIsWritten) {
  fixture.files.OpenRecordingFile(kReservedSlot);
  fixture.files.WriteHeader(kReservedSlot);
  EXPECT_FALSE(IsTakenByAnother());
}

TEST_F(ReservedRecording, StaysSoWhenItIsOpenedAnewForTheDisk) {
  fixture.files.OpenRecordingFile(kReservedSlot);
  ASSERT_TRUE(fixture.files.ReopenRecordingFile(kReservedSlot));
  EXPECT_FALSE(IsTakenByAnother());
}

TEST_F(ReservedRecording, IsTheNewFileAndTheNextOneToo) {
  fixture.files.OpenRecordingFile(kReservedSlot);
  ASSERT_TRUE(fixture.files.CreateRecordingFile(kReservedSlot, 1));
  const std::string made = fixture.state.SlotFile[kReservedSlot];
  EXPECT_FALSE(IsTakenByAnother(made));
  const std::string next = fixture.files.MakeNextFile(kReservedSlot);
  ASSERT_TRUE(fixture.files.GoOnInFile(kReservedSlot, next));
  EXPECT_FALSE(IsTakenByAnother(next));
  EXPECT_TRUE(IsTakenByAnother(made));
}

TEST_F(ReservedRecording, IsTheFileThatIsMadeAnew) {
  fixture.files.OpenRecordingFile(kReservedSlot);
  ASSERT_EQ(unlink(fixture.directory.File(kReservedName).c_str()), 0);
  fixture.files.WriteHeader(kReservedSlot);
  EXPECT_FALSE(IsTakenByAnother());
}

TEST_F(ReservedRecording, IsFreeOnceItIsClosed) {
  fixture.files.OpenRecordingFile(kReservedSlot);
  fixture.files.CloseRecordingFile(kReservedSlot);
  EXPECT_TRUE(IsTakenByAnother());
}

// Opening it anew takes as long as the disk needs for the journal.
TEST_F(ReservedRecording, StaysSoWhileItsJournalIsWritten) {
  UnitRecord unit = HeaderOf(2);
  unit.UnitRecOn = 1;
  fixture.Name(kReservedSlot, kReservedName, BytesOf(unit));
  WatchedClock clock;
  RecordingFiles files(fixture.state, clock, fixture.messages);
  files.OpenRecordingFile(kReservedSlot);
  ASSERT_TRUE(files.AppendRow(kReservedSlot, std::array<std::int16_t, 2>{1, 2}, 2));
  int lines = 0;
  clock.on_now = [&] {
    ++lines;
    EXPECT_FALSE(IsTakenByAnother());
  };
  ASSERT_TRUE(files.ReopenRecordingFile(kReservedSlot));
  EXPECT_GT(lines, 0);
  lines = 0;
  ASSERT_TRUE(files.AppendRow(kReservedSlot, std::array<std::int16_t, 2>{3, 4}, 1));
  files.CloseRecordingFile(kReservedSlot);
  EXPECT_GT(lines, 0);
  EXPECT_TRUE(IsTakenByAnother());
}

// The slot waits for it as at a start, and its key stays.
TEST_F(ReservedRecording, ThatAnotherProgramHasTakenMeanwhileIsLeftToThat) {
  fixture.files.OpenRecordingFile(kReservedSlot);
  FailToReopen();
  ASSERT_TRUE(IsTakenByAnother());
  const std::string before = fixture.directory.Read(kReservedName);
  EXPECT_FALSE(fixture.files.ReopenRecordingFile(kReservedSlot));
  EXPECT_EQ(fixture.state.SlotFile[kReservedSlot], "");
  EXPECT_FALSE(fixture.state.SlotFileNo[kReservedSlot].IsOpen());
  EXPECT_EQ(fixture.state.Settings.ActiveFiles[kReservedSlot - 1], kReservedName);
  EXPECT_EQ(fixture.directory.Read(kReservedName), before);
  ASSERT_EQ(fixture.dialogs.boxes.size(), 1U);
  EXPECT_EQ(fixture.dialogs.boxes[0].Text,
            std::string(kReservedName) + "  is recorded by another program !");
}

// It would be written over from the row that was known here. Up to two rows may be those of a write
// that was refused although they stand there.
TEST_F(ReservedRecording, ThatAnotherProgramHasLengthenedMeanwhileIsTakenUpAnew) {
  for (const int rows : {1, 2, 3, 40}) {
    fixture.Name(kReservedSlot, kReservedName, BytesOf(HeaderOf(2)) + Words({1, 2}));
    fixture.files.OpenRecordingFile(kReservedSlot);
    FailToReopen();
    AppendByAnother(rows);
    EXPECT_EQ(fixture.files.ReopenRecordingFile(kReservedSlot), rows <= 2) << rows;
    EXPECT_EQ(fixture.state.SlotFile[kReservedSlot], rows <= 2 ? kReservedName : "") << rows;
    fixture.Name(kReservedSlot, kReservedName);
    fixture.files.OpenRecordingFile(kReservedSlot);
    EXPECT_EQ(fixture.state.SampleCount[kReservedSlot], 1 + rows);
    fixture.files.CloseRecordingFile(kReservedSlot);
  }
}

// The user stops the recording before it was tried to open the file again.
TEST_F(ReservedRecording, ThatAnotherProgramHasTakenGetsNoHeaderAndNoSealFromHere) {
  UnitRecord unit = HeaderOf(2);
  unit.UnitRecOn = 1;
  fixture.Name(kReservedSlot, kReservedName, BytesOf(unit));
  fixture.files.OpenRecordingFile(kReservedSlot);
  ASSERT_TRUE(fixture.files.AppendRow(kReservedSlot, std::array<std::int16_t, 2>{1, 2}, 2));
  FailToReopen();
  ASSERT_TRUE(IsTakenByAnother());
  const std::string before = fixture.directory.Read(kReservedName);
  const std::string journal = "journal/" + std::string(kReservedName);
  const std::string journal_before = fixture.directory.Read(journal);
  EXPECT_NE(journal_before, "");
  fixture.state.Unit[kReservedSlot].UnitRecOn = 0;
  fixture.files.WriteHeader(kReservedSlot);
  EXPECT_EQ(fixture.directory.Read(kReservedName), before);
  EXPECT_EQ(fixture.directory.Read(journal), journal_before);
  EXPECT_EQ(fixture.state.SlotFile[kReservedSlot], "");
}

// A whole set that was in hand here was kept beside the file, and belongs to whoever has that.
TEST_F(ReservedRecording, ThatAnotherProgramHasTakenTakesTheSetInHandAlong) {
  fixture.files.OpenRecordingFile(kReservedSlot);
  FailToReopen();
  ASSERT_TRUE(IsTakenByAnother());
  for (const int input : {1, 2}) {
    fixture.state.SampleSeen[kReservedSlot][input] = true;
    fixture.state.SampleValue[kReservedSlot][input] = 9;
  }
  const std::string before = fixture.directory.Read(kReservedName);
  EXPECT_EQ(fixture.files.SaveSetInHand(kReservedSlot), "");
  EXPECT_EQ(fixture.directory.Read(kReservedName), before);
  EXPECT_FALSE(fixture.directory.Exists(HeldSetName(kReservedName)));
}

TEST_F(ReservedRecording, OfAnotherProgramKeepsItsHeaderAndIsStillShown) {
  View();
  ASSERT_TRUE(IsTakenByAnother());
  const std::string before = fixture.directory.Read(kReservedName);
  fixture.state.Unit[kViewedFile].UnitDesignation.Set("OVN:Mine");
  fixture.state.SlotDirty[kViewedFile] = true;
  fixture.files.WriteHeader(kViewedFile);
  EXPECT_EQ(fixture.directory.Read(kReservedName), before);
  EXPECT_EQ(fixture.state.SlotFile[kViewedFile], kReservedName);
  EXPECT_EQ(fixture.files.ReadSample(kViewedFile, 0, 2), 2);
  EXPECT_FALSE(fixture.state.SlotDirty[kViewedFile]);
  ASSERT_EQ(fixture.dialogs.boxes.size(), 1U);
  EXPECT_EQ(fixture.dialogs.boxes[0].Text,
            std::string(kReservedName) +
                " is recorded by another program: what was changed in its header is not kept");
}

// It was only viewed when its header was changed, and a slot has taken it since then.
TEST_F(ReservedRecording, OfAnotherSlotKeepsItsHeaderAndIsStillShown) {
  View();
  fixture.state.Unit[kViewedFile].UnitDesignation.Set("OVN:Mine");
  fixture.state.SlotDirty[kViewedFile] = true;
  fixture.Name(kReservedSlot, kReservedName);
  fixture.files.OpenRecordingFile(kReservedSlot);
  const std::string before = fixture.directory.Read(kReservedName);
  fixture.files.WriteHeader(kViewedFile);
  EXPECT_EQ(fixture.directory.Read(kReservedName), before);
  EXPECT_EQ(fixture.state.SlotFile[kViewedFile], kReservedName);
  ASSERT_EQ(fixture.dialogs.boxes.size(), 1U);
  EXPECT_EQ(fixture.dialogs.boxes[0].Text,
            std::string(kReservedName) +
                " is recorded in row 3: what was changed in its header is not kept");
  EXPECT_FALSE(IsTakenByAnother());
}

TEST_F(ReservedRecording, IsNotWhatIsOnlyViewed) {
  View();
  fixture.state.Unit[kViewedFile].UnitDesignation.Set("OVN:Mine");
  fixture.files.WriteHeader(kViewedFile);
  EXPECT_EQ(fixture.RecordInFile(kReservedName).UnitDesignation.Get(), "OVN:Mine");
  EXPECT_TRUE(IsTakenByAnother());
}

}  // namespace
}  // namespace tavrel
