#include <gtest/gtest.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <filesystem>
#include <string>
#include <vector>

#include "files/held_set.h"
#include "tests/files/pump_room.h"

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

constexpr const char* kName = "M011111A.NEW";

// Slot 12 has the set (7, 8) in hand, which the disk has refused.
struct RefusedSet : PumpRoom {
  RefusedSet() {
    Open(12, kName, BytesOf(Running(HeaderOf(1, {1, 2}))) + Words({1, 2, 1, 2}));
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
  RefusedSet room;
  room.engine.StopRecording(12);
  EXPECT_EQ(room.SamplesInFile(kName), kWhole);
  EXPECT_FALSE(room.directory.Exists(HeldSetName(kName)));
  EXPECT_EQ(room.dialogs.boxes.size(), 1U);
}

TEST(RefusedSet, StaysBesideTheFileWhereTheStopCannotWriteIt) {
  RefusedSet room;
  {
    const FullDisk disk(RefusedSet::kFull);
    room.engine.StopRecording(12);
  }
  ASSERT_EQ(room.dialogs.boxes.size(), 2U);
  EXPECT_EQ(room.dialogs.boxes[1].Text,
            "M011111A.NEW: the last set could not be written (File too large); it stays beside "
            "the file and is written when the file is opened again");
  EXPECT_EQ(room.RecordInFile(kName).UnitRecOn, 0);
  EXPECT_FALSE(room.state.WriteFailed[12]);
  EXPECT_TRUE(room.directory.Exists(HeldSetName(kName)));
  room.files.OpenRecordingFile(12);
  EXPECT_EQ(room.SamplesInFile(kName), kWhole);
  EXPECT_EQ(room.state.SampleCount[12], 3);
  EXPECT_FALSE(room.engine.HoldsSet(12));
  EXPECT_FALSE(room.directory.Exists(HeldSetName(kName)));
}

TEST(RefusedSet, ComesBeforeTheRowsOfANewStart) {
  RefusedSet room;
  {
    const FullDisk disk(RefusedSet::kFull);
    room.engine.StopRecording(12);
    room.dialogs.boxes.clear();
    room.port.sent.clear();
    room.engine.StartRecording(12);
    ASSERT_EQ(room.dialogs.boxes.size(), 1U);
    EXPECT_EQ(room.dialogs.boxes[0].Title, "start recording");
    EXPECT_EQ(room.dialogs.boxes[0].Text, "M011111A.NEW: File too large");
    EXPECT_TRUE(room.port.sent.empty());
  }
  room.engine.StartRecording(12);
  room.Store(1, 1, {9});
  room.Store(1, 2, {10});
  room.Pump(3);
  EXPECT_EQ(room.SamplesInFile(kName), kWhole + Words({9, 10}));
}

// Where the file is looked at only, or belongs to a recording that has gone on, it stays as it is.
TEST(RefusedSet, IsLeftAloneByTheViewerAndIfItIsOutOfDate) {
  RefusedSet room;
  {
    const FullDisk disk(RefusedSet::kFull);
    room.engine.StopRecording(12);
  }
  room.files.CloseRecordingFile(12);
  room.Name(kViewedFile, kName);
  room.files.OpenRecordingFile(kViewedFile);
  EXPECT_EQ(room.SamplesInFile(kName), Words({1, 2, 1, 2}));
  room.directory.Write(kName, room.HeaderInFile(kName) + Words({1, 2, 1, 2, 3, 4}));
  room.files.OpenRecordingFile(12);
  EXPECT_EQ(room.SamplesInFile(kName), Words({1, 2, 1, 2, 3, 4}));
}

TEST(RefusedSet, OfAFullFileIsNotThrownAwayByItsEnd) {
  RefusedSet room;
  room.state.SampleLimit[12] = 1;  // the user shortens the recording
  room.engine.TenSecondTick();
  room.Pump(2);
  EXPECT_EQ(room.RecordInFile(kName).UnitRecOn, 0);
  EXPECT_EQ(room.SamplesInFile(kName), kWhole);
}

TEST(CloseRecordingFile, SyncsTheRows) {
  PumpRoom room;
  room.Open(12, kName, BytesOf(Running(HeaderOf(1, {1}))));
  room.Store(1, 1, {7});
  room.Pump(1);
  SyncedFiles().clear();
  room.files.CloseRecordingFile(12);
  EXPECT_EQ(SyncedFiles(), (std::vector<std::string>{kName, kName})) << "and its journal";
  SyncedFiles().clear();
  room.files.CloseRecordingFile(12);
  EXPECT_TRUE(SyncedFiles().empty());
}

}  // namespace
}  // namespace tavrel
