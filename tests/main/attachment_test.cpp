#include "main/attachment.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <memory>

#include "platform/random_file.h"
#include "tests/support/bench_program.h"
#include "tests/support/hindrance.h"

namespace tavrel {
namespace {

namespace fs = std::filesystem;

constexpr double kTenSeconds = 11;  // with the ticks that a pass of the sheet takes

class Attaching : public testing::Test {
 protected:
  std::string PathOf(const std::string& name) { return bench.home.File("tavdat/" + name); }
  std::string& Key(int slot) {
    return bench.state.Settings.ActiveFiles.at(static_cast<std::size_t>(slot - 1));
  }
  const std::string& File(int slot) { return bench.state.SlotFile[slot]; }
  std::vector<std::string> Writes() {
    std::vector<std::string> writes;
    std::copy_if(bench.port.sent.begin(), bench.port.sent.end(), std::back_inserter(writes),
                 [](const std::string& command) { return command.find('=') != std::string::npos; });
    return writes;
  }
  std::vector<std::string> Told() {
    std::vector<std::string> texts;
    for (const Notice& notice : bench.dialogs.announced) {
      texts.push_back(notice.Text);
    }
    return texts;
  }
  // A file of a running recording with two rows.
  static UnitRecord Running(int inet, int ctrl) {
    return BenchProgram::Header(inet, ctrl, 2, true);
  }

  BenchProgram bench;
};

class Waiting : public Attaching, public testing::WithParamInterface<int> {};

TEST_P(Waiting, SlotKeepsItsKeyAndIsTriedAgain) {
  const int slot = GetParam();
  const std::string name = "M260314A.OVN";
  bench.Install(slot, name, Running(3, 2), {7, 8, 7, 8});
  const std::string bytes = bench.home.Read("tavdat/" + name);
  MakeUnreadable(PathOf(name));
  bench.Start();
  EXPECT_EQ(Key(slot), name);
  EXPECT_EQ(File(slot), "");
  EXPECT_EQ(Told(), std::vector<std::string>{name + ": Too many levels of symbolic links"});
  EXPECT_EQ(bench.Row(slot).lb_File, "m260314a.ovn");
  EXPECT_EQ(bench.Row(slot).lb_Rstat, "disk !");
  EXPECT_NE(bench.Row(slot).RstatNote, "");
  EXPECT_TRUE(bench.Row(slot).Sheet);
  EXPECT_FALSE(bench.Row(slot).cmd_WorkEnabled);
  bench.Run(3 * kTenSeconds);
  EXPECT_EQ(Key(slot), name);
  EXPECT_EQ(Told().size(), 1U) << "told once";

  fs::remove(PathOf(name));
  bench.home.Write("tavdat/" + name, bytes);
  bench.line.buffers[{3, 1}] = {11};
  bench.line.buffers[{3, 2}] = {12};
  bench.Run(2 * kTenSeconds);
  EXPECT_EQ(File(slot), name);
  EXPECT_EQ(bench.Row(slot).lb_Rstat, "on");
  EXPECT_EQ(bench.Samples(name), (std::vector<std::int16_t>{7, 8, 7, 8, 11, 12}));
}

INSTANTIATE_TEST_SUITE_P(EverySlot, Waiting, testing::Range(1, kSlots + 1));

// Two users of one data directory, each with a program of his own.
TEST_F(Attaching, LeavesARecordingToAnotherProgramAsLongAsThatHasIt) {
  const std::string name = "M260314A.OVN";
  bench.Install(3, name, Running(3, 2), {7, 8, 7, 8});
  RandomFile other;
  ASSERT_TRUE(other.Open(PathOf(name), FileAccess::kUpdate));
  ASSERT_TRUE(other.Lock());
  bench.line.buffers[{3, 1}] = {11};
  bench.line.buffers[{3, 2}] = {12};
  const std::string bytes = bench.home.Read("tavdat/" + name);
  bench.Start();
  bench.Run(3 * kTenSeconds);
  EXPECT_EQ(Told(), std::vector<std::string>{name + "  is recorded by another program !"});
  EXPECT_EQ(Key(3), name);
  EXPECT_EQ(File(3), "");
  EXPECT_EQ(bench.home.Read("tavdat/" + name), bytes);
  EXPECT_EQ(Writes(), std::vector<std::string>{});

  other.Close();
  bench.Run(2 * kTenSeconds);
  EXPECT_EQ(File(3), name);
  EXPECT_EQ(bench.Samples(name), (std::vector<std::int16_t>{7, 8, 7, 8, 11, 12}));
  ASSERT_TRUE(other.Open(PathOf(name), FileAccess::kUpdate));
  EXPECT_FALSE(other.Lock()) << "it is this program's now";
  EXPECT_EQ(other.Error(), "Resource temporarily unavailable");
}

// Its directory is away for a while, and another program has the recording when it comes back.
TEST_F(Attaching, TakesUpAnewWhatAnotherProgramHasRecordedIntoMeanwhile) {
  const std::string name = "M260314A.OVN";
  bench.Install(3, name, Running(3, 2), {7, 8, 7, 8});
  bench.Start();
  bench.Run(kTenSeconds);
  const std::string directory = bench.home.File("tavdat");
  fs::rename(directory, bench.home.File("away"));
  bench.line.buffers[{3, 1}] = {11};
  bench.line.buffers[{3, 2}] = {12};
  bench.state.TickFlush.MakeDue();
  bench.Run(2 * kTenSeconds);
  fs::rename(bench.home.File("away"), directory);
  RandomFile other;
  ASSERT_TRUE(other.Open(PathOf(name), FileAccess::kUpdate));
  ASSERT_TRUE(other.Lock());
  bench.Run(2 * kTenSeconds);
  EXPECT_EQ(Told().back(), name + "  is recorded by another program !");
  EXPECT_EQ(Key(3), name);
  EXPECT_EQ(File(3), "");
  EXPECT_EQ(bench.Row(3).lb_Rstat, "disk !");
  const std::string bytes = bench.home.Read("tavdat/" + name);
  bench.home.Write("tavdat/" + name, bytes + std::string(12, '\x15'));  // three rows
  other.Close();
  bench.line.buffers[{3, 1}] = {51};
  bench.line.buffers[{3, 2}] = {52};
  bench.Run(2 * kTenSeconds);
  EXPECT_EQ(File(3), name);
  EXPECT_EQ(bench.Row(3).lb_Rstat, "on");
  EXPECT_EQ(bench.Samples(name).back(), 52);
}

TEST_F(Attaching, MakesNoDefaultSlotWhileOneWaits) {
  bench.Install(7, "M260314A.OVN", Running(1, 1));
  MakeUnreadable(PathOf("M260314A.OVN"));
  bench.Start();
  bench.Run(kTenSeconds);
  EXPECT_EQ(File(1), "");
  EXPECT_EQ(Key(1), "");
  EXPECT_FALSE(bench.home.Exists("tavdat/M011111A.NEW"));
  EXPECT_FALSE(bench.state.SettingsChanged);
}

TEST_F(Attaching, SweepsNoControllerWhileTheInstrumentOfAWaitingTestIsUnknown) {
  bench.Install(4, "M260314A.OVN", Running(1, 1));
  bench.Install(9, "M260314B.OVN", Running(2, 3));
  MakeUnreadable(PathOf("M260314B.OVN"));
  bench.Start();
  EXPECT_EQ(Writes(), std::vector<std::string>{});
}

// Whichever slot waits: it may use any controller of its instrument.
TEST_P(Waiting, TestKeepsTheControllersOfItsInstrument) {
  const int slot = GetParam();
  const int other = slot == 12 ? 11 : 12;
  bench.Install(slot, "M260314A.OVN", Running(2, 3));
  bench.Install(other, "M260314B.OVN", Running(2, 1));
  fs::permissions(bench.home.Path(), fs::perms(0755));
  fs::permissions(PathOf("M260314A.OVN"), fs::perms(0444));
  fs::permissions(PathOf("M260314B.OVN"), fs::perms(0666));
  {
    const WithoutRights nobody;
    bench.Start();
  }
  EXPECT_EQ(File(slot), "");
  EXPECT_EQ(Writes(), std::vector<std::string>{});
}

// The settings may name another directory by now.
TEST_P(Waiting, FileIsLookedForWhereItWasAtTheStart) {
  const int slot = GetParam();
  const std::string name = "M260314A.OVN";
  bench.Install(slot, name, Running(3, 2), {7, 8, 7, 8});
  const std::string bytes = bench.home.Read("tavdat/" + name);
  MakeUnreadable(PathOf(name));
  bench.Start();
  fs::create_directory(bench.home.File("elsewhere"));
  bench.state.Settings.DefPath = bench.home.File("elsewhere");
  fs::remove(PathOf(name));
  bench.home.Write("tavdat/" + name, bytes);
  bench.Run(kTenSeconds);
  EXPECT_EQ(File(slot), name);
}

TEST_F(Attaching, LeavesTheControllersOfAWaitingTestsInstrumentAlone) {
  bench.Install(1, "M260314A.OVN", Running(1, 1));
  bench.Install(2, "M260314B.OVN", Running(2, 3));
  bench.Install(3, "M260314C.OVN", Running(2, 2));
  fs::permissions(bench.home.Path(), fs::perms(0755));
  fs::permissions(PathOf("M260314A.OVN"), fs::perms(0666));
  fs::permissions(PathOf("M260314B.OVN"), fs::perms(0444));
  fs::permissions(PathOf("M260314C.OVN"), fs::perms(0666));
  {
    const WithoutRights nobody;
    bench.Start();
  }
  EXPECT_EQ(Key(2), "M260314B.OVN");
  EXPECT_EQ(Told(), (std::vector<std::string>{
                        "M260314A.OVN: the journal cannot be written (the directory journal "
                        "cannot be made); the recording goes on without it",
                        "M260314B.OVN: Permission denied"}));
  EXPECT_EQ(Writes(), (std::vector<std::string>{"Z02=0\r", "Z03=0\r", "Z04=0\r"}));
  fs::permissions(PathOf("M260314B.OVN"), fs::perms(0666));
  bench.Run(kTenSeconds);
  EXPECT_EQ(File(2), "M260314B.OVN");
}

TEST_F(Attaching, LosesNoKeyToAProcessThatMayOpenNoFurtherFile) {
  bench.Install(2, "M260314A.OVN", Running(1, 1));
  bench.Install(12, "M260314B.OVN", Running(1, 2));
  {
    const NoHandlesLeft none;
    bench.Start();
    EXPECT_EQ(File(2), "");
    bench.Run(kTenSeconds);
  }
  EXPECT_EQ(Writes(), std::vector<std::string>{});
  bench.Run(kTenSeconds);
  EXPECT_EQ(File(2), "M260314A.OVN");
  EXPECT_EQ(File(12), "M260314B.OVN");
}

TEST_F(Attaching, KeepsTheKeyOfAWaitingTestThatIsGoneMeanwhile) {
  bench.Install(5, "M260314A.OVN", Running(1, 1));
  MakeUnreadable(PathOf("M260314A.OVN"));
  bench.Start();
  fs::remove(PathOf("M260314A.OVN"));
  bench.Run(2 * kTenSeconds);
  EXPECT_EQ(Key(5), "M260314A.OVN");
  EXPECT_EQ(Told().back(), "M260314A.OVN  not found !");
  EXPECT_EQ(Told().size(), 2U);
}

TEST_F(Attaching, GetsASlotBackWhoseHeaderCouldNotBeWritten) {
  bench.Install(3, "M260314A.OVN", Running(1, 1), {7, 8, 7, 8});
  bench.Start();
  fs::permissions(bench.home.Path(), fs::perms(0755));
  fs::permissions(PathOf("M260314A.OVN"), fs::perms(0444));
  {
    const WithoutRights nobody;
    bench.files.WriteHeader(3);
  }
  ASSERT_EQ(File(3), "");
  fs::permissions(PathOf("M260314A.OVN"), fs::perms(0666));
  bench.Run(kTenSeconds);
  EXPECT_EQ(File(3), "M260314A.OVN");
  EXPECT_EQ(bench.state.ReadState[3], ReadState::kWaiting);
}

TEST_F(Attaching, WaitsForADefaultFileThatCannotBeOpened) {
  bench.Install(1, "M011111A.NEW", Running(1, 1), {7, 8, 7, 8});
  bench.state.Settings.ActiveFiles = {};
  fs::permissions(bench.home.Path(), fs::perms(0755));
  fs::permissions(bench.home.File("tavdat"), fs::perms(0777));
  fs::permissions(PathOf("M011111A.NEW"), fs::perms(0444));
  {
    const WithoutRights nobody;
    bench.Start();
  }
  EXPECT_EQ(Key(1), "M011111A.NEW");
  EXPECT_FALSE(bench.home.Exists("tavdat/M011111B.NEW"));
  bench.Run(kTenSeconds);
  EXPECT_EQ(File(1), "M011111A.NEW");
}

// Two keys that lead to one file.
class OneFileTwice : public Attaching {
 protected:
  // Starts with the file in row `first`, and in row `second` under `other_name`.
  void StartTwice(int first, int second, const std::string& other_name) {
    Key(second) = other_name;
    bench.Install(first, "M260314A.OVN", Running(1, 1), {7, 8, 7, 8});
    bench.Start();
  }
  void ExpectSecondRefused(int first, int second, const std::string& other_name) {
    EXPECT_EQ(File(first), "M260314A.OVN");
    EXPECT_EQ(File(second), "");
    EXPECT_EQ(Key(first), "M260314A.OVN");
    EXPECT_EQ(Key(second), "");
    EXPECT_FALSE(bench.Row(second).Sheet);
    ASSERT_EQ(Told().size(), 1U);
    EXPECT_EQ(Told()[0], other_name + "  is in use in row " + std::to_string(first) + " !");
    for (std::int16_t set = 1; set <= 3; ++set) {
      bench.line.buffers[{1, 1}].push_back(static_cast<std::int16_t>(10 * set));
      bench.line.buffers[{1, 2}].push_back(static_cast<std::int16_t>(10 * set + 1));
    }
    bench.Run(kTenSeconds);
    EXPECT_EQ(bench.Samples("M260314A.OVN"),
              (std::vector<std::int16_t>{7, 8, 7, 8, 10, 11, 20, 21, 30, 31}));
  }
};

TEST_F(OneFileTwice, IsRefusedToTheSecondKey) {
  StartTwice(1, 2, "M260314A.OVN");
  ExpectSecondRefused(1, 2, "M260314A.OVN");
}

TEST_F(OneFileTwice, IsRefusedInRowsFarApart) {
  StartTwice(5, 12, "M260314A.OVN");
  ExpectSecondRefused(5, 12, "M260314A.OVN");
}

TEST_F(OneFileTwice, IsRefusedInAnotherSpelling) {
  StartTwice(3, 4, "m260314a.Ovn");
  ExpectSecondRefused(3, 4, "m260314a.Ovn");
}

TEST_F(OneFileTwice, IsRefusedUnderTheNameOfALink) {
  fs::create_symlink("M260314A.OVN", PathOf("M260314B.OVN"));
  StartTwice(2, 11, "M260314B.OVN");
  ExpectSecondRefused(2, 11, "M260314B.OVN");
}

TEST_F(OneFileTwice, IsRefusedUnderItsSecondName) {
  bench.Install(2, "M260314A.OVN", Running(1, 1), {7, 8, 7, 8});
  fs::create_hard_link(PathOf("M260314A.OVN"), PathOf("M260314B.OVN"));
  StartTwice(2, 3, "M260314B.OVN");
  ExpectSecondRefused(2, 3, "M260314B.OVN");
}

TEST_F(OneFileTwice, StaysWithTheFirstKeyThatWaitsForIt) {
  bench.Install(2, "M260314A.OVN", Running(1, 1), {7, 8, 7, 8});
  const std::string bytes = bench.home.Read("tavdat/M260314A.OVN");
  fs::permissions(bench.home.Path(), fs::perms(0755));
  fs::permissions(PathOf("M260314A.OVN"), fs::perms(0444));
  Key(6) = "m260314a.ovn";
  {
    const WithoutRights nobody;
    bench.Start();
  }
  EXPECT_EQ(Key(2), "M260314A.OVN");
  EXPECT_EQ(Key(6), "");
  bench.Run(kTenSeconds);
  EXPECT_EQ(File(2), "M260314A.OVN");
  EXPECT_EQ(File(6), "");
}

TEST_F(OneFileTwice, MayBeLookedAt) {
  StartTwice(1, 2, "M260314A.OVN");
  bench.state.SlotFile[kViewedFile] = "M260314A.OVN";
  bench.state.SlotPath[kViewedFile] = bench.home.File("tavdat");
  bench.files.OpenRecordingFile(kViewedFile);
  EXPECT_EQ(File(kViewedFile), "M260314A.OVN");
}

// Tests that are not there at the start, with real settings.
class NotThere : public Attaching {
 protected:
  static std::string NameOf(int slot) { return "M2603" + std::to_string(10 + slot) + "A.OVN"; }
  void InstallTwelve() {
    for (int slot = 1; slot <= kSlots; ++slot) {
      bench.Install(slot, NameOf(slot), BenchProgram::Header(1 + slot % 6, 1, 2, false));
    }
    ASSERT_EQ(bench.settings.SettingsSave(), "");
    before = bench.home.Read("TAVREL.USR");
  }
  // A run of the program with the settings as they are on the disk.
  static void RunOnce(const std::string& home, const std::function<void(BenchProgram&)>& action) {
    auto program = std::make_unique<BenchProgram>();
    program->state.AppPath = home + "/";
    program->state.DataHome = home + "/";
    program->settings.SettingsLoad();
    program->state.Settings.CommPort = "COM1";
    program->Start();
    action(*program);
    program->commands.Close();
  }
  std::string before;
};

TEST_F(NotThere, TestsAreNamedWithThePlaceOfTheirBackup) {
  InstallTwelve();
  fs::rename(bench.home.File("tavdat"), bench.home.File("away"));
  fs::create_directory(bench.home.File("tavdat"));
  RunOnce(bench.home.Path(), [this](BenchProgram& program) {
    ASSERT_EQ(program.dialogs.announced.size(), 13U);
    const std::string& text = program.dialogs.announced.back().Text;
    EXPECT_NE(text.find(bench.home.File("TAVREL.BAK")), std::string::npos) << text;
    EXPECT_NE(text.find(NameOf(1)), std::string::npos);
    EXPECT_NE(text.find(NameOf(12)), std::string::npos);
    EXPECT_EQ(bench.home.Read("TAVREL.BAK"), before) << "it is there when it is named";
  });
  EXPECT_EQ(bench.home.Read("TAVREL.BAK"), before);
}

TEST_F(NotThere, TestsOutliveEverythingThatIsSavedWithoutThem) {
  InstallTwelve();
  fs::rename(bench.home.File("tavdat"), bench.home.File("away"));
  fs::create_directory(bench.home.File("tavdat"));
  for (int run = 0; run < 3; ++run) {
    RunOnce(bench.home.Path(), [](BenchProgram& program) {
      program.state.SelSlot = 1;
      EXPECT_TRUE(program.files.CreateRecordingFile(1, 1));
      EXPECT_EQ(program.settings.SettingsSave(), "");
    });
    EXPECT_EQ(bench.home.Read("TAVREL.BAK"), before) << run;
  }
  // The way back of the manual.
  fs::remove_all(bench.home.File("tavdat"));
  fs::rename(bench.home.File("away"), bench.home.File("tavdat"));
  fs::copy_file(bench.home.File("TAVREL.BAK"), bench.home.File("TAVREL.USR"),
                fs::copy_options::overwrite_existing);
  RunOnce(bench.home.Path(), [](BenchProgram& program) {
    for (int slot = 1; slot <= kSlots; ++slot) {
      EXPECT_EQ(program.state.SlotFile[slot], NameOf(slot));
    }
  });
}

}  // namespace
}  // namespace tavrel
