#include "state/open_slots.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "tests/files/recording_fixture.h"

namespace tavrel {
namespace {

namespace fs = std::filesystem;

constexpr const char* kOnDisk = "m260314a.ovn";
constexpr const char* kInSlot = "M260314A.OVN";

// A slot has the file open; the disk spells its name in small letters.
struct OpenFileFixture : RecordingFixture {
  explicit OpenFileFixture(int slot) {
    directory.Write(kOnDisk, BytesOf(DefaultUnitRecord()));
    Name(slot, kInSlot);
    files.OpenRecordingFile(slot);
    EXPECT_EQ(state.SlotFile[slot], kInSlot);
  }
  [[nodiscard]] bool IsOpen(const std::string& path) const { return IsOpenInSlot(state, path); }
};

constexpr int kSlotsToTry[] = {kViewedFile, 1, 7, 12};

TEST(IsOpenInSlot, KnowsTheFileByEverySpellingOfItsName) {
  for (const int slot : kSlotsToTry) {
    const OpenFileFixture fixture(slot);
    for (const char* const name : {kOnDisk, kInSlot, "M260314a.Ovn"}) {
      EXPECT_TRUE(fixture.IsOpen(fixture.directory.File(name))) << slot << " " << name;
    }
    EXPECT_FALSE(fixture.IsOpen(fixture.directory.File("M260314B.OVN")));
  }
}

TEST(IsOpenInSlot, KnowsTheFileByEverySpellingOfItsDirectory) {
  for (const int slot : kSlotsToTry) {
    const OpenFileFixture fixture(slot);
    const TemporaryDirectory elsewhere;
    fs::create_directory_symlink(fixture.directory.Path(), elsewhere.File("link"));
    const std::string deep = fixture.directory.Path() + "/../" +
                             fs::path(fixture.directory.Path()).filename().string() + "/.//";
    for (const char* const name : {kOnDisk, kInSlot}) {
      EXPECT_TRUE(fixture.IsOpen(deep + name));
      EXPECT_TRUE(fixture.IsOpen(elsewhere.File("link") + "/" + name));
      EXPECT_FALSE(fixture.IsOpen(elsewhere.File(name)));
    }
  }
}

TEST(IsOpenInSlot, SeesThroughLinks) {
  for (const int slot : kSlotsToTry) {
    const OpenFileFixture fixture(slot);
    const TemporaryDirectory elsewhere;
    fs::create_symlink(fixture.directory.File(kOnDisk), elsewhere.File("X.PRG"));
    fs::create_hard_link(fixture.directory.File(kOnDisk), fixture.directory.File("Y.PRG"));
    EXPECT_TRUE(fixture.IsOpen(elsewhere.File("X.PRG")));
    EXPECT_TRUE(fixture.IsOpen(fixture.directory.File("Y.PRG")));
  }
}

TEST(IsOpenInSlot, KnowsAnOpenFileThatOthersHaveRenamed) {
  for (const int slot : kSlotsToTry) {
    const OpenFileFixture fixture(slot);
    fs::rename(fixture.directory.File(kOnDisk), fixture.directory.File("X.PRG"));
    EXPECT_TRUE(fixture.IsOpen(fixture.directory.File("X.PRG")));
  }
}

// A file on a medium that is away comes back: nothing may take its place meanwhile.
TEST(IsOpenInSlot, KeepsThePlaceOfAFileThatIsNotThere) {
  for (const int slot : kSlotsToTry) {
    OpenFileFixture fixture(slot);
    fixture.files.CloseRecordingFile(slot);
    fs::remove(fixture.directory.File(kOnDisk));
    EXPECT_TRUE(fixture.IsOpen(fixture.directory.File(kOnDisk)));
    EXPECT_TRUE(fixture.IsOpen(fixture.directory.Path() + "/./" + kInSlot));
    EXPECT_FALSE(fixture.IsOpen(fixture.directory.File("other")));
  }
}

TEST(IsOpenInSlot, KnowsTheFileThatASlotStillWaitsFor) {
  for (const int slot : {1, 7, 12}) {
    RecordingFixture fixture;
    fixture.directory.Write(kOnDisk, "x");
    fixture.state.Settings.DefPath = fixture.directory.Path();
    fixture.state.Settings.ActiveFiles.at(static_cast<std::size_t>(slot - 1)) = kInSlot;
    EXPECT_TRUE(IsOpenInSlot(fixture.state, fixture.directory.File(kOnDisk)));
    EXPECT_TRUE(IsOpenInSlot(fixture.state, fixture.directory.File(kInSlot)));
    EXPECT_FALSE(IsFileOfSlot(fixture.state, slot, fixture.directory.File(kOnDisk)));
  }
}

TEST(IsOpenInSlot, KnowsNothingOfSlotsNotInUse) {
  RecordingFixture fixture;
  fixture.directory.Write(kOnDisk, "x");
  fixture.state.SlotPath[3] = fixture.directory.Path();
  EXPECT_FALSE(IsOpenInSlot(fixture.state, fixture.directory.File(kOnDisk)));
  EXPECT_FALSE(IsOpenInSlot(fixture.state, fixture.directory.Path()));
  EXPECT_FALSE(IsOpenInSlot(fixture.state, ""));
}

TEST(SlotOfFile, IsTheSlotThatHasTheFileItself) {
  for (const int slot : {1, 7, 12}) {
    const OpenFileFixture fixture(slot);
    fs::create_hard_link(fixture.directory.File(kOnDisk), fixture.directory.File("X.OVN"));
    EXPECT_EQ(SlotOfFile(fixture.state, fixture.directory.File("M260314a.Ovn")), slot);
    EXPECT_EQ(SlotOfFile(fixture.state, fixture.directory.File("X.OVN")), slot);
    EXPECT_EQ(SlotOfFile(fixture.state, fixture.directory.File("M260314B.OVN")), kViewedFile);
  }
  const OpenFileFixture viewer(kViewedFile);
  EXPECT_EQ(SlotOfFile(viewer.state, viewer.directory.File(kOnDisk)), kViewedFile);
}

// The file has two names; a slot waits for one of them while another slot opens the other.
TEST(IsAwaitedFile, IsDecidedByTheFileAndNotByItsName) {
  for (const int slot : {1, 7, 12}) {
    RecordingFixture fixture;
    fixture.directory.Write(kOnDisk, "x");
    fs::create_hard_link(fixture.directory.File(kOnDisk), fixture.directory.File("X.OVN"));
    fixture.state.Settings.DefPath = fixture.directory.Path();
    EXPECT_FALSE(WaitsForFile(fixture.state, slot));
    fixture.state.Settings.ActiveFiles.at(static_cast<std::size_t>(slot - 1)) = kInSlot;
    EXPECT_TRUE(WaitsForFile(fixture.state, slot));
    EXPECT_TRUE(IsAwaitedFile(fixture.state, slot, fixture.directory.File("X.OVN")));
    EXPECT_FALSE(IsAwaitedFile(fixture.state, slot, fixture.directory.File("Y.OVN")));
    EXPECT_FALSE(IsAwaitedFile(fixture.state, slot % kSlots + 1, fixture.directory.File("X.OVN")));
  }
}

TEST(EmptySlot, LeavesNothingOfTheFileInTheSlot) {
  for (const int slot : kSlotsToTry) {
    OpenFileFixture fixture(slot);
    fixture.state.WriteFailed[slot] = true;
    fixture.state.ReadState[slot] = ReadState::kReading;
    fixture.state.SampleCount[slot] = 7;
    fixture.files.EmptySlot(slot);
    EXPECT_FALSE(fixture.state.SlotFileNo[slot].IsOpen());
    EXPECT_EQ(fixture.state.SlotFile[slot], "");
    EXPECT_EQ(fixture.state.SampleCount[slot], 0);
    EXPECT_EQ(fixture.state.ReadState[slot], ReadState::kIdle);
    EXPECT_FALSE(fixture.state.WriteFailed[slot]);
    EXPECT_FALSE(fixture.IsOpen(fixture.directory.File(kOnDisk)));
  }
}

}  // namespace
}  // namespace tavrel
