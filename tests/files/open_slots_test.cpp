#include "state/open_slots.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "tests/files/recording_room.h"

namespace tavrel {
namespace {

namespace fs = std::filesystem;

constexpr const char* kOnDisk = "m260314a.ovn";
constexpr const char* kInSlot = "M260314A.OVN";

// A slot has the file open; the disk spells its name in small letters.
struct OpenFileRoom : RecordingRoom {
  explicit OpenFileRoom(int slot) {
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
    const OpenFileRoom room(slot);
    for (const char* const name : {kOnDisk, kInSlot, "M260314a.Ovn"}) {
      EXPECT_TRUE(room.IsOpen(room.directory.File(name))) << slot << " " << name;
    }
    EXPECT_FALSE(room.IsOpen(room.directory.File("M260314B.OVN")));
  }
}

TEST(IsOpenInSlot, KnowsTheFileByEverySpellingOfItsDirectory) {
  for (const int slot : kSlotsToTry) {
    const OpenFileRoom room(slot);
    const TemporaryDirectory elsewhere;
    fs::create_directory_symlink(room.directory.Path(), elsewhere.File("link"));
    const std::string deep = room.directory.Path() + "/../" +
                             fs::path(room.directory.Path()).filename().string() + "/.//";
    for (const char* const name : {kOnDisk, kInSlot}) {
      EXPECT_TRUE(room.IsOpen(deep + name));
      EXPECT_TRUE(room.IsOpen(elsewhere.File("link") + "/" + name));
      EXPECT_FALSE(room.IsOpen(elsewhere.File(name)));
    }
  }
}

TEST(IsOpenInSlot, SeesThroughLinks) {
  for (const int slot : kSlotsToTry) {
    const OpenFileRoom room(slot);
    const TemporaryDirectory elsewhere;
    fs::create_symlink(room.directory.File(kOnDisk), elsewhere.File("X.PRG"));
    fs::create_hard_link(room.directory.File(kOnDisk), room.directory.File("Y.PRG"));
    EXPECT_TRUE(room.IsOpen(elsewhere.File("X.PRG")));
    EXPECT_TRUE(room.IsOpen(room.directory.File("Y.PRG")));
  }
}

TEST(IsOpenInSlot, KnowsAnOpenFileThatOthersHaveRenamed) {
  for (const int slot : kSlotsToTry) {
    const OpenFileRoom room(slot);
    fs::rename(room.directory.File(kOnDisk), room.directory.File("X.PRG"));
    EXPECT_TRUE(room.IsOpen(room.directory.File("X.PRG")));
  }
}

// A file on a medium that is away comes back: nothing may take its place meanwhile.
TEST(IsOpenInSlot, KeepsThePlaceOfAFileThatIsNotThere) {
  for (const int slot : kSlotsToTry) {
    OpenFileRoom room(slot);
    room.files.CloseRecordingFile(slot);
    fs::remove(room.directory.File(kOnDisk));
    EXPECT_TRUE(room.IsOpen(room.directory.File(kOnDisk)));
    EXPECT_TRUE(room.IsOpen(room.directory.Path() + "/./" + kInSlot));
    EXPECT_FALSE(room.IsOpen(room.directory.File("other")));
  }
}

TEST(IsOpenInSlot, KnowsTheFileThatASlotStillWaitsFor) {
  for (const int slot : {1, 7, 12}) {
    RecordingRoom room;
    room.directory.Write(kOnDisk, "x");
    room.state.Settings.DefPath = room.directory.Path();
    room.state.Settings.ActiveFiles.at(static_cast<std::size_t>(slot - 1)) = kInSlot;
    EXPECT_TRUE(IsOpenInSlot(room.state, room.directory.File(kOnDisk)));
    EXPECT_TRUE(IsOpenInSlot(room.state, room.directory.File(kInSlot)));
    EXPECT_FALSE(IsFileOfSlot(room.state, slot, room.directory.File(kOnDisk)));
  }
}

TEST(IsOpenInSlot, KnowsNothingOfSlotsNotInUse) {
  RecordingRoom room;
  room.directory.Write(kOnDisk, "x");
  room.state.SlotPath[3] = room.directory.Path();
  EXPECT_FALSE(IsOpenInSlot(room.state, room.directory.File(kOnDisk)));
  EXPECT_FALSE(IsOpenInSlot(room.state, room.directory.Path()));
  EXPECT_FALSE(IsOpenInSlot(room.state, ""));
}

TEST(SlotOfFile, IsTheSlotThatHasTheFileItself) {
  for (const int slot : {1, 7, 12}) {
    const OpenFileRoom room(slot);
    fs::create_hard_link(room.directory.File(kOnDisk), room.directory.File("X.OVN"));
    EXPECT_EQ(SlotOfFile(room.state, room.directory.File("M260314a.Ovn")), slot);
    EXPECT_EQ(SlotOfFile(room.state, room.directory.File("X.OVN")), slot);
    EXPECT_EQ(SlotOfFile(room.state, room.directory.File("M260314B.OVN")), kViewedFile);
  }
  const OpenFileRoom viewer(kViewedFile);
  EXPECT_EQ(SlotOfFile(viewer.state, viewer.directory.File(kOnDisk)), kViewedFile);
}

// The file has two names; a slot waits for one of them while another slot opens the other.
TEST(IsAwaitedFile, IsDecidedByTheFileAndNotByItsName) {
  for (const int slot : {1, 7, 12}) {
    RecordingRoom room;
    room.directory.Write(kOnDisk, "x");
    fs::create_hard_link(room.directory.File(kOnDisk), room.directory.File("X.OVN"));
    room.state.Settings.DefPath = room.directory.Path();
    EXPECT_FALSE(WaitsForFile(room.state, slot));
    room.state.Settings.ActiveFiles.at(static_cast<std::size_t>(slot - 1)) = kInSlot;
    EXPECT_TRUE(WaitsForFile(room.state, slot));
    EXPECT_TRUE(IsAwaitedFile(room.state, slot, room.directory.File("X.OVN")));
    EXPECT_FALSE(IsAwaitedFile(room.state, slot, room.directory.File("Y.OVN")));
    EXPECT_FALSE(IsAwaitedFile(room.state, slot % kSlots + 1, room.directory.File("X.OVN")));
  }
}

TEST(EmptySlot, LeavesNothingOfTheFileInTheSlot) {
  for (const int slot : kSlotsToTry) {
    OpenFileRoom room(slot);
    room.state.WriteFailed[slot] = true;
    room.state.ReadState[slot] = ReadState::kReading;
    room.state.SampleCount[slot] = 7;
    room.files.EmptySlot(slot);
    EXPECT_FALSE(room.state.SlotFileNo[slot].IsOpen());
    EXPECT_EQ(room.state.SlotFile[slot], "");
    EXPECT_EQ(room.state.SampleCount[slot], 0);
    EXPECT_EQ(room.state.ReadState[slot], ReadState::kIdle);
    EXPECT_FALSE(room.state.WriteFailed[slot]);
    EXPECT_FALSE(room.IsOpen(room.directory.File(kOnDisk)));
  }
}

}  // namespace
}  // namespace tavrel
