#include <gtest/gtest.h>
#include <unistd.h>

#include <string>

#include "files/recording_file.h"
#include "tests/files/recording_fixture.h"

// Two users may have one data directory: a recording belongs to the program that has it open.
namespace tavrel {
namespace {

constexpr const char* kReservedName = "M011111A.NEW";
constexpr int kReservedSlot = 3;

// The recording of a slot, and another program that would have it.
class ReservedRecording : public testing::Test {
 protected:
  ReservedRecording() {
    fixture.Name(kReservedSlot, kReservedName, BytesOf(HeaderOf(2)) + Words({1, 2}));
    fixture.Name(kViewedFile, kReservedName);
  }

  // Another program takes it, unless it is reserved.
  [[nodiscard]] bool IsTakenByAnother(const std::string& name = kReservedName) {
    return other.Open(fixture.directory.File(name), FileAccess::kUpdate) && other.Lock();
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

TEST_F(ReservedRecording, ThatAnotherProgramHasTakenMeanwhileIsNotOpenedAnew) {
  fixture.files.OpenRecordingFile(kReservedSlot);
  fixture.files.CloseRecordingFile(kReservedSlot);
  ASSERT_TRUE(IsTakenByAnother());
  EXPECT_FALSE(fixture.files.ReopenRecordingFile(kReservedSlot));
  EXPECT_EQ(fixture.files.ErrorText(), "another program records it");
  EXPECT_FALSE(fixture.state.SlotFileNo[kReservedSlot].IsOpen());
}

TEST_F(ReservedRecording, OfAnotherProgramKeepsItsHeader) {
  fixture.files.OpenRecordingFile(kViewedFile);
  ASSERT_TRUE(IsTakenByAnother());
  const std::string before = fixture.directory.Read(kReservedName);
  fixture.state.Unit[kViewedFile].UnitDesignation.Set("OVN:Mine");
  fixture.files.WriteHeader(kViewedFile);
  EXPECT_EQ(fixture.directory.Read(kReservedName), before);
  ASSERT_EQ(fixture.dialogs.boxes.size(), 1U);
  EXPECT_EQ(fixture.dialogs.boxes[0].Text,
            std::string(kReservedName) + ": another program records it");
}

TEST_F(ReservedRecording, IsNotWhatIsOnlyViewed) {
  fixture.files.OpenRecordingFile(kViewedFile);
  fixture.state.Unit[kViewedFile].UnitDesignation.Set("OVN:Mine");
  fixture.files.WriteHeader(kViewedFile);
  EXPECT_EQ(fixture.RecordInFile(kReservedName).UnitDesignation.Get(), "OVN:Mine");
  EXPECT_TRUE(IsTakenByAnother());
}

}  // namespace
}  // namespace tavrel
