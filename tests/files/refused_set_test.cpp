#include <gtest/gtest.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <filesystem>
#include <string>
#include <vector>

#include "files/held_set.h"
#include "tests/files/pump_fixture.h"

namespace {

// The names of the files that were made durable since the list was emptied.
std::vector<std::string>& SyncedFiles() {
  static std::vector<std::string> files;
  return files;
}

}  // namespace

// In the place of the system's, to see which files were made durable.
extern "C" int fsync(int handle) {
  std::error_code error;
  const auto path = std::filesystem::read_symlink("/proc/self/fd/" + std::to_string(handle), error);
  SyncedFiles().push_back(path.filename());
  return static_cast<int>(syscall(SYS_fsync, handle));
}

namespace tavrel {
namespace {

// Slot 12 has the set (7, 8) in hand, which the disk has refused.
struct RefusedSet : PumpFixture {
  RefusedSet() {
    Open(12, kNewFile, BytesOf(Running(HeaderOf(1, {1, 2}))) + Words({1, 2, 1, 2}));
    Store(1, 1, {7});
    Store(1, 2, {8});
    const FullDisk disk(kFull);
    Pump(2);
    EXPECT_TRUE(state.WriteFailed[12]);
    static_cast<void>(Announced());
  }
  // Bytes: the header and the two rows that are there.
  static constexpr std::size_t kFull = 1008;
};

const std::string kWhole = Words({1, 2, 1, 2, 7, 8});

TEST(RefusedSet, IsWrittenByTheStop) {
  RefusedSet fixture;
  fixture.engine.StopRecording(12);
  EXPECT_EQ(fixture.SamplesInFile(kNewFile), kWhole);
  EXPECT_FALSE(fixture.directory.Exists(HeldSetName(kNewFile)));
  EXPECT_EQ(fixture.dialogs.boxes.size(), 1U);
}

TEST(RefusedSet, StaysBesideTheFileWhereTheStopCannotWriteIt) {
  RefusedSet fixture;
  {
    const FullDisk disk(RefusedSet::kFull);
    fixture.engine.StopRecording(12);
  }
  ASSERT_EQ(fixture.dialogs.boxes.size(), 2U);
  EXPECT_EQ(fixture.dialogs.boxes[1].Text,
            "M011111A.NEW: the last set could not be written (File too large); it stays beside "
            "the file and is written when the file is opened again");
  EXPECT_EQ(fixture.RecordInFile(kNewFile).UnitRecOn, 0);
  EXPECT_FALSE(fixture.state.WriteFailed[12]);
  EXPECT_TRUE(fixture.directory.Exists(HeldSetName(kNewFile)));
  fixture.files.OpenRecordingFile(12);
  EXPECT_EQ(fixture.SamplesInFile(kNewFile), kWhole);
  EXPECT_EQ(fixture.state.SampleCount[12], 3);
  EXPECT_FALSE(fixture.engine.HoldsSet(12));
  EXPECT_FALSE(fixture.directory.Exists(HeldSetName(kNewFile)));
}

TEST(RefusedSet, ComesBeforeTheRowsOfANewStart) {
  RefusedSet fixture;
  {
    const FullDisk disk(RefusedSet::kFull);
    fixture.engine.StopRecording(12);
    fixture.dialogs.boxes.clear();
    fixture.port.sent.clear();
    fixture.engine.StartRecording(12);
    ASSERT_EQ(fixture.dialogs.boxes.size(), 1U);
    EXPECT_EQ(fixture.dialogs.boxes[0].Title, "start recording");
    EXPECT_EQ(fixture.dialogs.boxes[0].Text, "M011111A.NEW: File too large");
    EXPECT_TRUE(fixture.port.sent.empty());
  }
  fixture.engine.StartRecording(12);
  fixture.Store(1, 1, {9});
  fixture.Store(1, 2, {10});
  fixture.Pump(3);
  EXPECT_EQ(fixture.SamplesInFile(kNewFile), kWhole + Words({9, 10}));
}

// Where the file is looked at only, or belongs to a recording that has gone on, it stays as it is.
TEST(RefusedSet, IsLeftAloneByTheViewerAndIfItIsOutOfDate) {
  RefusedSet fixture;
  {
    const FullDisk disk(RefusedSet::kFull);
    fixture.engine.StopRecording(12);
  }
  fixture.files.CloseRecordingFile(12);
  fixture.Name(kViewedFile, kNewFile);
  fixture.files.OpenRecordingFile(kViewedFile);
  EXPECT_EQ(fixture.SamplesInFile(kNewFile), Words({1, 2, 1, 2}));
  fixture.directory.Write(kNewFile, fixture.HeaderInFile(kNewFile) + Words({1, 2, 1, 2, 3, 4}));
  fixture.files.OpenRecordingFile(12);
  EXPECT_EQ(fixture.SamplesInFile(kNewFile), Words({1, 2, 1, 2, 3, 4}));
}

TEST(RefusedSet, OfAFullFileIsNotThrownAwayByItsEnd) {
  RefusedSet fixture;
  fixture.state.SampleLimit[12] = 1;  // the user shortens the recording
  fixture.engine.TenSecondTick();
  fixture.Pump(2);
  EXPECT_EQ(fixture.RecordInFile(kNewFile).UnitRecOn, 0);
  EXPECT_EQ(fixture.SamplesInFile(kNewFile), kWhole);
}

TEST(CloseRecordingFile, SyncsTheRows) {
  PumpFixture fixture;
  fixture.Open(12, kNewFile, BytesOf(Running(HeaderOf(1, {1}))));
  fixture.Store(1, 1, {7});
  fixture.Pump(1);
  SyncedFiles().clear();
  fixture.files.CloseRecordingFile(12);
  EXPECT_EQ(SyncedFiles(), (std::vector<std::string>{kNewFile, kNewFile, "journal"}))
      << "and its journal, with its name";
  SyncedFiles().clear();
  fixture.files.CloseRecordingFile(12);
  EXPECT_TRUE(SyncedFiles().empty());
}

}  // namespace
}  // namespace tavrel
