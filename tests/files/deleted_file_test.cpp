#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "files/held_set.h"
#include "tests/files/pump_fixture.h"

namespace tavrel {
namespace {

using Texts = std::vector<std::string>;

namespace fs = std::filesystem;

constexpr const char* kThereAgain =
    "Write  file | M011111A.NEW: the file has been deleted or moved by others; it stands there "
    "again with all its rows";
constexpr const char* kGoesOn =
    "Write  file | M011111A.NEW: the file has been deleted or moved by others; the recording goes "
    "on in M011111B.NEW with all its rows";

// A slot records the inputs 1 and 2; one set is in the file, two more wait in the instrument.
struct Recording : PumpFixture {
  explicit Recording(int slot = 12) : number(static_cast<std::size_t>(slot)) {
    Open(slot, kNewFile, BytesOf(Running(HeaderOf(1, {1, 2}))));
    Store(1, 1, {11, 12, 13});
    Store(1, 2, {21, 22, 23});
    Pump(2);
  }
  void Remove() const { fs::remove(directory.File(kNewFile)); }

  std::size_t number;
};

const std::string kAllRows = Words({11, 21, 11, 21, 12, 22, 13, 23});

TEST(DeletedFile, IsFoundOnTheTenSecondTickAndStandsThereAgain) {
  for (const int slot : {1, 7, 12}) {
    Recording fixture(slot);
    fixture.Remove();
    fixture.engine.TenSecondTick();
    EXPECT_EQ(fixture.Announced(), Texts{kThereAgain});
    fixture.Pump(9);
    EXPECT_EQ(fixture.state.SlotFile[fixture.number], kNewFile);
    EXPECT_EQ(fixture.SamplesInFile(kNewFile), kAllRows);
    EXPECT_EQ(fixture.RecordInFile(kNewFile).UnitRecOn, 1);
    EXPECT_FALSE(fixture.state.WriteFailed[fixture.number]);
  }
}

TEST(DeletedFile, IsFoundAtTheFlushToo) {
  Recording fixture;
  fixture.Remove();
  fixture.engine.FlushFiles();
  fixture.Pump(9);
  EXPECT_EQ(fixture.SamplesInFile(kNewFile), kAllRows);
}

// The rows that were written between the deletion and the tick.
TEST(DeletedFile, BringsTheRowsAlongThatCameSince) {
  Recording fixture;
  fixture.Remove();
  fixture.Pump(4);
  fixture.engine.TenSecondTick();
  EXPECT_EQ(fixture.SamplesInFile(kNewFile), kAllRows);
}

TEST(DeletedFile, IsFoundWhateverTheCaseOnTheDisk) {
  PumpFixture fixture;
  fixture.directory.Write("m011111a.new", BytesOf(Running(HeaderOf(1, {1}))));
  fixture.Name(3, kNewFile);
  fixture.files.OpenRecordingFile(3);
  fixture.engine.TenSecondTick();
  EXPECT_FALSE(fixture.directory.Exists(kNewFile));
  EXPECT_TRUE(fixture.Announced().empty());
  fs::remove(fixture.directory.File("m011111a.new"));
  fixture.engine.TenSecondTick();
  EXPECT_EQ(fixture.HeaderInFile(kNewFile), BytesOf(Running(HeaderOf(1, {1}))));
}

TEST(DeletedFile, IsLeftAloneWhereNoRecordingRuns) {
  PumpFixture fixture;
  fixture.Open(5, kNewFile, BytesOf(HeaderOf(1, {1})));
  fs::remove(fixture.directory.File(kNewFile));
  fixture.engine.TenSecondTick();
  EXPECT_FALSE(fixture.directory.Exists(kNewFile));
}

TEST(DeletedFile, KeepsWhatIsEditedInItsHeaderAndTheHalfReadSet) {
  Recording fixture;
  fixture.Pump(1);  // input 2 of the next set
  fixture.state.Unit[12].SetApparatusName("Oven 3");
  fixture.state.SlotDirty[12] = true;
  fixture.Remove();
  fs::remove(fixture.directory.File(HeldSetName(kNewFile)));
  fixture.engine.TenSecondTick();
  EXPECT_EQ(fixture.RecordInFile(kNewFile).ApparatusName(), "Oven 3");
  EXPECT_TRUE(fixture.directory.Exists(HeldSetName(kNewFile)));
  fixture.Pump(9);
  EXPECT_EQ(fixture.SamplesInFile(kNewFile), kAllRows);
}

TEST(DeletedFile, ThatWasMovedIsWrittenAgain) {
  Recording fixture;
  fs::rename(fixture.directory.File(kNewFile), fixture.directory.File("kept.bak"));
  fixture.engine.TenSecondTick();
  fixture.Pump(9);
  EXPECT_EQ(fixture.Announced(), Texts{kThereAgain});
  EXPECT_EQ(fixture.SamplesInFile(kNewFile), kAllRows);
  EXPECT_EQ(fixture.SamplesInFile("kept.bak"), Words({11, 21, 11, 21}));
}

TEST(DeletedFile, WhoseNameAnotherOneHasGoesOnUnderTheNextLetter) {
  Recording fixture;
  fixture.state.ActiveView = View::kTavGraph;
  fixture.state.SelSlot = 12;
  fixture.Remove();
  const std::string shorter = BytesOf(Running(HeaderOf(1, {1, 2}))) + Words({1, 1});
  fixture.directory.Write(kNewFile, shorter);
  fixture.engine.TenSecondTick();
  fixture.Pump(9);
  EXPECT_EQ(fixture.directory.Read(kNewFile), shorter);
  EXPECT_EQ(fixture.state.SlotFile[12], kNextNewFile);
  EXPECT_EQ(fixture.state.Settings.ActiveFiles[11], kNextNewFile);
  EXPECT_NE(fixture.directory.Read("TAVREL.USR").find(kNextNewFile), std::string::npos);
  EXPECT_EQ(fixture.SamplesInFile(kNextNewFile), kAllRows);
  EXPECT_TRUE(fixture.state.GraphMustClose);
  EXPECT_EQ(fixture.Announced(), Texts{kGoesOn});
}

TEST(DeletedFile, WhoseNameADirectoryHasGoesOnUnderTheNextLetter) {
  Recording fixture;
  fixture.Remove();
  fs::create_directory(fixture.directory.File(kNewFile));
  fixture.engine.TenSecondTick();
  fixture.Pump(9);
  EXPECT_EQ(fixture.SamplesInFile(kNextNewFile), kAllRows);
}

// What a program for backups or for keeping directories alike does: a copy takes the name.
TEST(DeletedFile, ThatWasReplacedByAWholeCopyGoesOnInTheCopy) {
  Recording fixture;
  const std::string whole = fixture.directory.Read(kNewFile);
  fixture.directory.Write("copy", whole);
  fs::rename(fixture.directory.File("copy"), fixture.directory.File(kNewFile));
  fixture.engine.TenSecondTick();
  fixture.Pump(9);
  EXPECT_EQ(fixture.state.SlotFile[12], kNewFile);
  EXPECT_EQ(fixture.SamplesInFile(kNewFile), kAllRows);
  EXPECT_TRUE(fixture.Announced().empty());
}

TEST(DeletedFile, WaitsForADiskThatIsFull) {
  Recording fixture;
  fixture.Pump(1);
  fixture.Remove();
  {
    const FullDisk disk(900);
    for (int tick = 0; tick < 3; ++tick) {
      fixture.engine.TenSecondTick();
      EXPECT_FALSE(fixture.directory.Exists(kNewFile));
    }
    EXPECT_EQ(fixture.Announced().size(), 1U);
    EXPECT_TRUE(fixture.state.WriteFailed[12]);
  }
  fixture.engine.TenSecondTick();
  fixture.Pump(9);
  EXPECT_EQ(fixture.SamplesInFile(kNewFile), kAllRows);
}

TEST(DeletedFile, WaitsForItsDirectory) {
  Recording fixture;
  fs::remove_all(fixture.directory.Path());
  fixture.engine.TenSecondTick();
  fixture.Pump(9);
  fixture.engine.TenSecondTick();
  fs::create_directory(fixture.directory.Path());
  fixture.engine.TenSecondTick();
  fixture.Pump(9);
  EXPECT_EQ(fixture.SamplesInFile(kNewFile), kAllRows);
}

// Its rows are gone for good, what the instrument stores is not.
TEST(DeletedFile, WhoseRowsNobodyHasAnyMoreGoesOnWithoutThem) {
  Recording fixture;
  const std::string away = fixture.directory.Path() + "-away";
  fs::rename(fixture.directory.Path(), away);
  fixture.engine.FlushFiles();  // the file is closed now
  fixture.clock.wall = {2026, 3, 14, 9, 5, 0};
  fs::rename(away, fixture.directory.Path());
  fixture.Remove();
  fixture.engine.TenSecondTick();
  fixture.Pump(9);
  EXPECT_EQ(fixture.SamplesInFile(kNewFile), Words({12, 22, 12, 22, 13, 23}));
  EXPECT_EQ(fixture.RecordInFile(kNewFile).UnitDate.Get(), "03-14-2026 / 09:05");
  ASSERT_FALSE(fixture.Announced().empty());
  EXPECT_EQ(fixture.dialogs.announced.back().Text,
            "M011111A.NEW: the file has been deleted or moved by others; it stands there again "
            "without its rows, which are lost");
}

// The directory is another one: the medium of the file is not there, and comes back.
TEST(DeletedFile, IsNotTakenForDeletedWhileItsMediumIsAway) {
  Recording fixture;
  const std::string away = fixture.directory.Path() + "-away";
  fs::rename(fixture.directory.Path(), away);
  fs::create_directory(fixture.directory.Path());
  fixture.engine.TenSecondTick();
  fixture.engine.FlushFiles();
  fixture.engine.TenSecondTick();
  EXPECT_TRUE(fs::is_empty(fixture.directory.Path()));
  fs::remove(fixture.directory.Path());
  fs::rename(away, fixture.directory.Path());
  fixture.engine.TenSecondTick();
  fixture.Pump(9);
  EXPECT_EQ(fixture.SamplesInFile(kNewFile), kAllRows);
}

}  // namespace
}  // namespace tavrel
