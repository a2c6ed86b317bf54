#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "files/held_set.h"
#include "tests/files/pump_room.h"

namespace tavrel {
namespace {

using Texts = std::vector<std::string>;

namespace fs = std::filesystem;

constexpr const char* kName = "M011111A.NEW";
constexpr const char* kNext = "M011111B.NEW";
constexpr const char* kThereAgain =
    "Write  file | M011111A.NEW: the file has been deleted or moved by others; it stands there "
    "again with all its rows";
constexpr const char* kGoesOn =
    "Write  file | M011111A.NEW: the file has been deleted or moved by others; the recording goes "
    "on in M011111B.NEW with all its rows";

// A slot records the inputs 1 and 2; one set is in the file, two more wait in the instrument.
struct Recording : PumpRoom {
  explicit Recording(int slot = 12) : number(static_cast<std::size_t>(slot)) {
    Open(slot, kName, BytesOf(Running(HeaderOf(1, {1, 2}))));
    Store(1, 1, {11, 12, 13});
    Store(1, 2, {21, 22, 23});
    Pump(2);
  }
  void Remove() const { fs::remove(directory.File(kName)); }

  std::size_t number;
};

const std::string kAllRows = Words({11, 21, 11, 21, 12, 22, 13, 23});

TEST(DeletedFile, IsFoundOnTheTenSecondTickAndStandsThereAgain) {
  for (const int slot : {1, 7, 12}) {
    Recording room(slot);
    room.Remove();
    room.engine.TenSecondTick();
    EXPECT_EQ(room.Announced(), Texts{kThereAgain});
    room.Pump(9);
    EXPECT_EQ(room.state.SlotFile[room.number], kName);
    EXPECT_EQ(room.SamplesInFile(kName), kAllRows);
    EXPECT_EQ(room.RecordInFile(kName).UnitRecOn, 1);
    EXPECT_FALSE(room.state.WriteFailed[room.number]);
  }
}

TEST(DeletedFile, IsFoundAtTheFlushToo) {
  Recording room;
  room.Remove();
  room.engine.FlushFiles();
  room.Pump(9);
  EXPECT_EQ(room.SamplesInFile(kName), kAllRows);
}

// The rows that were written between the deletion and the tick.
TEST(DeletedFile, BringsTheRowsAlongThatCameSince) {
  Recording room;
  room.Remove();
  room.Pump(4);
  room.engine.TenSecondTick();
  EXPECT_EQ(room.SamplesInFile(kName), kAllRows);
}

TEST(DeletedFile, IsFoundWhateverTheCaseOnTheDisk) {
  PumpRoom room;
  room.directory.Write("m011111a.new", BytesOf(Running(HeaderOf(1, {1}))));
  room.Name(3, kName);
  room.files.OpenRecordingFile(3);
  room.engine.TenSecondTick();
  EXPECT_FALSE(room.directory.Exists(kName));
  EXPECT_TRUE(room.Announced().empty());
  fs::remove(room.directory.File("m011111a.new"));
  room.engine.TenSecondTick();
  EXPECT_EQ(room.HeaderInFile(kName), BytesOf(Running(HeaderOf(1, {1}))));
}

TEST(DeletedFile, IsLeftAloneWhereNoRecordingRuns) {
  PumpRoom room;
  room.Open(5, kName, BytesOf(HeaderOf(1, {1})));
  fs::remove(room.directory.File(kName));
  room.engine.TenSecondTick();
  EXPECT_FALSE(room.directory.Exists(kName));
}

TEST(DeletedFile, KeepsWhatIsEditedInItsHeaderAndTheHalfReadSet) {
  Recording room;
  room.Pump(1);  // input 2 of the next set
  room.state.Unit[12].SetApparatusName("Oven 3");
  room.state.SlotDirty[12] = true;
  room.Remove();
  fs::remove(room.directory.File(HeldSetName(kName)));
  room.engine.TenSecondTick();
  EXPECT_EQ(room.RecordInFile(kName).ApparatusName(), "Oven 3");
  EXPECT_TRUE(room.directory.Exists(HeldSetName(kName)));
  room.Pump(9);
  EXPECT_EQ(room.SamplesInFile(kName), kAllRows);
}

TEST(DeletedFile, ThatWasMovedIsWrittenAgain) {
  Recording room;
  fs::rename(room.directory.File(kName), room.directory.File("kept.bak"));
  room.engine.TenSecondTick();
  room.Pump(9);
  EXPECT_EQ(room.Announced(), Texts{kThereAgain});
  EXPECT_EQ(room.SamplesInFile(kName), kAllRows);
  EXPECT_EQ(room.SamplesInFile("kept.bak"), Words({11, 21, 11, 21}));
}

TEST(DeletedFile, WhoseNameAnotherOneHasGoesOnUnderTheNextLetter) {
  Recording room;
  room.state.ActiveView = View::kTavGraph;
  room.state.SelSlot = 12;
  room.Remove();
  const std::string shorter = BytesOf(Running(HeaderOf(1, {1, 2}))) + Words({1, 1});
  room.directory.Write(kName, shorter);
  room.engine.TenSecondTick();
  room.Pump(9);
  EXPECT_EQ(room.directory.Read(kName), shorter);
  EXPECT_EQ(room.state.SlotFile[12], kNext);
  EXPECT_EQ(room.state.Settings.ActiveFiles[11], kNext);
  EXPECT_NE(room.directory.Read("TAVREL.USR").find(kNext), std::string::npos);
  EXPECT_EQ(room.SamplesInFile(kNext), kAllRows);
  EXPECT_TRUE(room.state.GraphMustClose);
  EXPECT_EQ(room.Announced(), Texts{kGoesOn});
}

TEST(DeletedFile, WhoseNameADirectoryHasGoesOnUnderTheNextLetter) {
  Recording room;
  room.Remove();
  fs::create_directory(room.directory.File(kName));
  room.engine.TenSecondTick();
  room.Pump(9);
  EXPECT_EQ(room.SamplesInFile(kNext), kAllRows);
}

// What a program for backups or for keeping directories alike does: a copy takes the name.
TEST(DeletedFile, ThatWasReplacedByAWholeCopyGoesOnInTheCopy) {
  Recording room;
  const std::string whole = room.directory.Read(kName);
  room.directory.Write("copy", whole);
  fs::rename(room.directory.File("copy"), room.directory.File(kName));
  room.engine.TenSecondTick();
  room.Pump(9);
  EXPECT_EQ(room.state.SlotFile[12], kName);
  EXPECT_EQ(room.SamplesInFile(kName), kAllRows);
  EXPECT_TRUE(room.Announced().empty());
}

TEST(DeletedFile, WaitsForADiskThatIsFull) {
  Recording room;
  room.Pump(1);
  room.Remove();
  {
    const FullDisk disk(900);
    for (int tick = 0; tick < 3; ++tick) {
      room.engine.TenSecondTick();
      EXPECT_FALSE(room.directory.Exists(kName));
    }
    EXPECT_EQ(room.Announced().size(), 1U);
    EXPECT_TRUE(room.state.WriteFailed[12]);
  }
  room.engine.TenSecondTick();
  room.Pump(9);
  EXPECT_EQ(room.SamplesInFile(kName), kAllRows);
}

TEST(DeletedFile, WaitsForItsDirectory) {
  Recording room;
  fs::remove_all(room.directory.Path());
  room.engine.TenSecondTick();
  room.Pump(9);
  room.engine.TenSecondTick();
  fs::create_directory(room.directory.Path());
  room.engine.TenSecondTick();
  room.Pump(9);
  EXPECT_EQ(room.SamplesInFile(kName), kAllRows);
}

// Its rows are gone for good, what the instrument stores is not.
TEST(DeletedFile, WhoseRowsNobodyHasAnyMoreGoesOnWithoutThem) {
  Recording room;
  const std::string away = room.directory.Path() + "-away";
  fs::rename(room.directory.Path(), away);
  room.engine.FlushFiles();  // the file is closed now
  room.clock.wall = {2026, 3, 14, 9, 5, 0};
  fs::rename(away, room.directory.Path());
  room.Remove();
  room.engine.TenSecondTick();
  room.Pump(9);
  EXPECT_EQ(room.SamplesInFile(kName), Words({12, 22, 12, 22, 13, 23}));
  EXPECT_EQ(room.RecordInFile(kName).UnitDate.Get(), "03-14-2026 / 09:05");
  ASSERT_FALSE(room.Announced().empty());
  EXPECT_EQ(room.dialogs.announced.back().Text,
            "M011111A.NEW: the file has been deleted or moved by others; it stands there again "
            "without its rows, which are lost");
}

// The directory is another one: the medium of the file is not there, and comes back.
TEST(DeletedFile, IsNotTakenForDeletedWhileItsMediumIsAway) {
  Recording room;
  const std::string away = room.directory.Path() + "-away";
  fs::rename(room.directory.Path(), away);
  fs::create_directory(room.directory.Path());
  room.engine.TenSecondTick();
  room.engine.FlushFiles();
  room.engine.TenSecondTick();
  EXPECT_TRUE(fs::is_empty(room.directory.Path()));
  fs::remove(room.directory.Path());
  fs::rename(away, room.directory.Path());
  room.engine.TenSecondTick();
  room.Pump(9);
  EXPECT_EQ(room.SamplesInFile(kName), kAllRows);
}

}  // namespace
}  // namespace tavrel
