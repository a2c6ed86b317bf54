#include "main/start_up.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>

#include "tests/files/recording_room.h"
#include "tests/support/bench_program.h"
#include "tests/support/hindrance.h"

namespace tavrel {
namespace {

using std::chrono::milliseconds;

class Start : public testing::Test {
 protected:
  ~Start() override { std::filesystem::current_path(began_in_); }

  // Starts with twelve slots on six instruments.
  std::chrono::nanoseconds LongestTimeWithoutPaint() {
    for (int slot = 1; slot <= kSlots; ++slot) {
      bench.Install(slot, "M260314" + std::string(1, static_cast<char>('A' + slot)) + ".OVN",
                    BenchProgram::Header((slot + 1) / 2, 1 + slot % 2, 2, true));
    }
    std::chrono::nanoseconds longest{0};
    auto painted = bench.clock.Elapsed();
    bench.events.on_repaint = [&] {
      longest = std::max(longest, bench.clock.Elapsed() - painted);
      painted = bench.clock.Elapsed();
    };
    bench.events.on_rest = [&](milliseconds time) {
      bench.events.on_repaint();
      bench.clock.Advance(time);
      painted = bench.clock.Elapsed();
    };
    bench.Start();
    return longest;
  }

  BenchProgram bench;

 private:
  std::filesystem::path began_in_ = std::filesystem::current_path();
};

TEST_F(Start, RefusesASecondCopy) {
  EXPECT_FALSE(
      bench.start_up.SplashLoad(bench.home.Path(), [](const std::string&) { return false; }));
  ASSERT_EQ(bench.dialogs.boxes.size(), 1U);
  EXPECT_EQ(bench.dialogs.boxes[0].Text, "Program is already running !");
  EXPECT_EQ(bench.dialogs.boxes[0].Title, "TAVREL");
  EXPECT_EQ(bench.dialogs.boxes[0].Icon, BoxIcon::kInformation);
}

TEST_F(Start, AsksAgainWhileNobodyCanTellWhetherACopyRuns) {
  int times = 0;
  const auto take_lock = [&times](const std::string&) {
    return ++times < 3 ? LockTaking(false, "Too many open files") : LockTaking(true);
  };
  bench.dialogs.retry = true;
  EXPECT_TRUE(bench.start_up.SplashLoad(bench.home.Path(), take_lock));
  EXPECT_EQ(times, 3);
  ASSERT_EQ(bench.dialogs.boxes.size(), 2U);
  EXPECT_EQ(bench.dialogs.boxes[0].Text, "Cannot tell whether the program is already running:\n" +
                                             bench.home.File("TAVREL.LCK") +
                                             "\n\nToo many open files");
}

TEST_F(Start, EndsIfNobodyCanTellWhetherACopyRunsAndTheUserGivesUp) {
  bench.dialogs.retry = false;
  EXPECT_FALSE(bench.start_up.SplashLoad(
      bench.home.Path(), [](const std::string&) { return LockTaking(false, "No locks"); }));
  ASSERT_EQ(bench.dialogs.boxes.size(), 1U);
  EXPECT_EQ(bench.dialogs.boxes[0].Icon, BoxIcon::kCritical);
}

TEST_F(Start, RefusesAnIncompleteInstallation) {
  std::filesystem::remove(bench.home.File(kGermanManual));
  EXPECT_FALSE(
      bench.start_up.SplashLoad(bench.home.Path(), [](const std::string&) { return true; }));
  ASSERT_EQ(bench.dialogs.boxes.size(), 1U);
  EXPECT_EQ(bench.dialogs.boxes[0].Text, "Installation is incomplete !");
  EXPECT_EQ(bench.dialogs.boxes[0].Icon, BoxIcon::kWarning);
}

TEST_F(Start, TakesTheDirectoryOfTheProgramForItsOwn) {
  EXPECT_TRUE(
      bench.start_up.SplashLoad(bench.home.Path(), [](const std::string&) { return true; }));
  EXPECT_EQ(bench.state.AppPath, bench.home.Path() + "/");
  EXPECT_EQ(bench.state.DataHome, bench.home.Path() + "/");
  EXPECT_TRUE(bench.dialogs.boxes.empty());
}

// A path of the settings that does not begin at the root begins there.
TEST_F(Start, WorksInTheDirectoryOfTheProgram) {
  std::filesystem::create_directory(bench.home.File("data"));
  bench.home.Write("data/M260314A.OVN", "x");
  ASSERT_FALSE(std::filesystem::exists("data"));
  EXPECT_TRUE(
      bench.start_up.SplashLoad(bench.home.Path(), [](const std::string&) { return true; }));
  EXPECT_TRUE(std::filesystem::equivalent(std::filesystem::current_path(), bench.home.Path()));
  bench.home.Write("TAVREL.USR", "\"VERSION:: 6.1\"\r\n\"DEFPATH:: data\"\r\n");
  ASSERT_TRUE(bench.start_up.SplashShow());
  EXPECT_EQ(bench.state.Settings.DefPath, "data");
}

TEST_F(Start, TakesAwayWhatAKilledSaveHasLeft) {
  const std::string left = ".tavrel-" + std::to_string(getpid()) + "-0.tmp";
  bench.home.Write(left, "half");
  bench.home.Write("tavdat/" + left, "half");
  EXPECT_FALSE(
      bench.start_up.SplashLoad(bench.home.Path(), [](const std::string&) { return false; }));
  EXPECT_EQ(bench.home.Read(left), "half") << "another copy may be writing it";
  EXPECT_TRUE(
      bench.start_up.SplashLoad(bench.home.Path(), [](const std::string&) { return true; }));
  EXPECT_FALSE(std::filesystem::exists(bench.home.File(left)));
  EXPECT_FALSE(std::filesystem::exists(bench.home.File("tavdat/" + left)));
}

TEST_F(Start, LocksTheDirectoryOfItsSettings) {
  std::string locked;
  EXPECT_TRUE(bench.start_up.SplashLoad(bench.home.Path(), [&locked](const std::string& path) {
    locked = path;
    return true;
  }));
  EXPECT_EQ(locked, bench.home.File("TAVREL.LCK"));
}

// What the system answers when the program looks where it is.
class Probe : public Start {
 protected:
  static bool TakeLock(const std::string& /*path*/) { return true; }
};

TEST_F(Probe, ThatFailsDoesNotMoveTheProgramToOtherSettings) {
  auto none = std::make_unique<NoHandlesLeft>();
  bench.dialogs.retry = true;
  bench.dialogs.on_box = [&none] { none.reset(); };
  EXPECT_TRUE(bench.start_up.SplashLoad(bench.home.Path(), TakeLock));
  ASSERT_EQ(bench.dialogs.boxes.size(), 1U);
  EXPECT_NE(bench.dialogs.boxes[0].Text.find("Too many open files"), std::string::npos);
  EXPECT_EQ(bench.state.DataHome, bench.home.Path() + "/");
}

TEST_F(Probe, ThatFailsEndsTheProgramAtTheUsersWish) {
  bench.state.DataHome.clear();
  bool locked = false;
  bench.dialogs.retry = false;
  {
    const NoHandlesLeft none;
    EXPECT_FALSE(bench.start_up.SplashLoad(bench.home.Path(), [&locked](const std::string&) {
      locked = true;
      return true;
    }));
  }
  EXPECT_FALSE(locked);
  EXPECT_EQ(bench.state.DataHome, "");
  EXPECT_EQ(bench.dialogs.boxes.size(), 1U);
}

TEST_F(Probe, ThatIsNotAllowedMovesTheProgramToTheUsersOwnDirectory) {
  std::filesystem::permissions(bench.home.Path(), std::filesystem::perms(0555));
  const TemporaryDirectory own;
  std::filesystem::permissions(own.Path(), std::filesystem::perms(0777));
  setenv("XDG_DATA_HOME", own.Path().c_str(), 1);
  {
    const WithoutRights nobody;
    EXPECT_TRUE(bench.start_up.SplashLoad(bench.home.Path(), TakeLock));
  }
  unsetenv("XDG_DATA_HOME");
  std::filesystem::permissions(bench.home.Path(), std::filesystem::perms(0755));
  EXPECT_TRUE(bench.dialogs.boxes.empty());
  EXPECT_EQ(bench.state.DataHome, own.File("tavrel/"));
  EXPECT_TRUE(own.Exists("tavrel"));
}

// Also root, who can write there.
TEST_F(Probe, IsNotMadeWhereAPackageHasInstalledTheProgram) {
  bench.home.Write("installed-by-package", "");
  const TemporaryDirectory own;
  setenv("XDG_DATA_HOME", own.Path().c_str(), 1);
  std::string lock;
  EXPECT_TRUE(bench.start_up.SplashLoad(bench.home.Path(), [&lock](const std::string& path) {
    lock = path;
    return true;
  }));
  unsetenv("XDG_DATA_HOME");
  EXPECT_EQ(bench.state.DataHome, own.File("tavrel/"));
  EXPECT_EQ(lock, own.File("tavrel/TAVREL.LCK"));
  EXPECT_EQ(bench.state.AppPath, bench.home.Path() + "/");
}

TEST_F(Start, AsksAgainForSettingsThatCannotBeRead) {
  ASSERT_TRUE(
      bench.start_up.SplashLoad(bench.home.Path(), [](const std::string&) { return true; }));
  MakeUnreadable(bench.home.File("TAVREL.USR"));
  bench.dialogs.retry = true;
  bench.dialogs.on_box = [this] {
    if (bench.dialogs.boxes.size() == 3) {
      std::filesystem::remove(bench.home.File("TAVREL.USR"));
      bench.home.Write("TAVREL.USR", "\"VERSION:: 6.1\"\r\n\"ACTIVE02:: M260314A.OVN\"\r\n");
    }
  };
  EXPECT_TRUE(bench.start_up.SplashShow().has_value());
  ASSERT_EQ(bench.dialogs.boxes.size(), 3U);
  EXPECT_EQ(bench.dialogs.boxes[0].Title, "TAVREL.USR");
  EXPECT_NE(bench.dialogs.boxes[0].Text.find("Too many levels of symbolic links"),
            std::string::npos);
  EXPECT_EQ(bench.state.Settings.ActiveFiles[1], "M260314A.OVN");
  EXPECT_FALSE(bench.state.FirstRun);
}

TEST_F(Start, LeavesSettingsAloneThatCannotBeRead) {
  ASSERT_TRUE(
      bench.start_up.SplashLoad(bench.home.Path(), [](const std::string&) { return true; }));
  const std::string settings = "\"VERSION:: 6.1\"\r\n\"ACTIVE02:: M260314A.OVN\"\r\n";
  bench.home.Write("TAVREL.USR", settings);
  bench.dialogs.retry = false;
  {
    const NoHandlesLeft none;
    EXPECT_FALSE(bench.start_up.SplashShow().has_value());
  }
  EXPECT_NE(bench.settings.SettingsSave(), "");
  EXPECT_EQ(bench.home.Read("TAVREL.USR"), settings);
}

TEST_F(Start, GreetsInTheLanguageOfTheSettings) {
  ASSERT_TRUE(
      bench.start_up.SplashLoad(bench.home.Path(), [](const std::string&) { return true; }));
  EXPECT_EQ(bench.start_up.SplashShow()->cmdStart, " ... to start hit any key ... ");
  bench.home.Write("TAVREL.USR", "\"VERSION:: 6.1\"\r\n\"HELPLANG:: german\"\r\n");
  const SplashValues splash = bench.start_up.SplashShow().value();
  EXPECT_EQ(splash.cmdStart, " Start  (beliebige Taste) ");
  EXPECT_EQ(splash.lbRelease, "release   2446");
}

TEST_F(Start, MakesADefaultSlotWhenNoneIsInUse) {
  bench.Start();
  EXPECT_EQ(bench.state.SlotFile[1], "M011111A.NEW");
  EXPECT_EQ(bench.state.Settings.ActiveFiles[0], "M011111A.NEW");
  EXPECT_TRUE(bench.state.SettingsChanged);
  EXPECT_TRUE(bench.Row(1).Sheet);
  EXPECT_EQ(bench.Row(1).tx_Des, "Default");
  EXPECT_FALSE(bench.Row(2).Sheet);
  const std::string bytes = bench.home.Read("tavdat/M011111A.NEW");
  EXPECT_EQ(bytes.size(), 1000U);
  EXPECT_EQ(bytes.substr(200, 20), "NEW: Default        ");
}

TEST_F(Start, AttachesADefaultFileThatIsThereAlready) {
  UnitRecord unit = BenchProgram::Header(3, 2, 2, false);
  unit.SetApparatusName("Old one");
  bench.Install(1, "m011111a.new", unit, {1, 2, 1, 2});
  bench.state.Settings.ActiveFiles = {};
  bench.Start();
  EXPECT_EQ(bench.Row(1).tx_Des, "Old one");
  EXPECT_EQ(bench.state.SampleCount[1], 2);
  EXPECT_EQ(bench.state.Unit[1].UnitInet, 3);
  EXPECT_FALSE(bench.home.Exists("tavdat/M011111A.NEW"));
}

TEST_F(Start, LeavesAForeignFileOfThatNameAlone) {
  const std::string foreign(3000, 'x');
  bench.home.Write("tavdat/M011111A.NEW", foreign);
  bench.Start();
  EXPECT_EQ(bench.home.Read("tavdat/M011111A.NEW"), foreign);
  EXPECT_EQ(bench.state.SlotFile[1], "M011111B.NEW");
}

TEST_F(Start, HidesARowWhoseFileDoesNotOpenAndGoesOn) {
  bench.Install(2, "M260314A.OVN", BenchProgram::Header(1, 1, 2, false));
  bench.state.Settings.ActiveFiles[4] = "M260101A.GON";
  bench.dialogs.on_box = [] { FAIL() << "a box that waits would hold up the start"; };
  bench.Start();
  EXPECT_TRUE(bench.Row(2).Sheet);
  EXPECT_FALSE(bench.Row(5).Sheet);
  EXPECT_EQ(bench.state.SlotFile[5], "");
  EXPECT_EQ(bench.state.Settings.ActiveFiles[4], "");
  ASSERT_EQ(bench.dialogs.announced.size(), 1U);
  EXPECT_EQ(bench.dialogs.announced[0].Text, "M260101A.GON  not found !");
  EXPECT_EQ(bench.dialogs.announced[0].Title, "Read  file");
  EXPECT_TRUE(bench.cycle.IsEnabled());
}

TEST_F(Start, KeepsRowsOnTheirPlaces) {
  bench.Install(6, "M260314A.OVN", BenchProgram::Header(1, 1, 2, false));
  bench.Start();
  EXPECT_FALSE(bench.Row(1).Sheet);
  EXPECT_FALSE(bench.Row(5).Sheet);
  EXPECT_TRUE(bench.Row(6).Sheet);
}

class Backlog : public Start {
 protected:
  void Hold(int inet, int input, int sets) {
    for (int set = 0; set < sets; ++set) {
      bench.line.buffers[{inet, input}].push_back(static_cast<std::int16_t>(set));
    }
  }
};

TEST_F(Backlog, IsShownAndCountsDownWhileThePumpReads) {
  bench.Install(1, "M260314A.OVN", BenchProgram::Header(1, 1, 2, true));
  Hold(1, 1, 500);
  Hold(1, 2, 500);
  bench.Start();
  EXPECT_EQ(bench.sheet.Values().lbl_Info, "reading from Tavrel:  500");
  bench.Run(20);
  const std::string info = bench.sheet.Values().lbl_Info;
  ASSERT_EQ(info.substr(0, 22), "reading from Tavrel:  ");
  EXPECT_LT(std::stoi(info.substr(22)), 500);
  bench.Run(90);
  EXPECT_EQ(bench.sheet.Values().lbl_Info, "");
  EXPECT_EQ(bench.state.SampleCount[1], 501);
}

TEST_F(Backlog, OfThreeOrLessShowsNothing) {
  bench.Install(1, "M260314A.OVN", BenchProgram::Header(1, 1, 2, true));
  Hold(1, 1, 3);
  Hold(1, 2, 3);
  bench.Start();
  EXPECT_EQ(bench.sheet.Values().lbl_Info, "");
  bench.Run(20);
  EXPECT_EQ(bench.state.SampleCount[1], 4);
}

TEST_F(Backlog, OfNothingIsNothing) {
  bench.Install(12, "M260314A.OVN", BenchProgram::Header(1, 1, 2, true));
  bench.state.BacklogCount = 77;
  bench.Start();
  EXPECT_EQ(bench.state.BacklogCount, 0);
  EXPECT_EQ(bench.sheet.Values().lbl_Info, "");
}

TEST_F(Backlog, OfTwoSlotsWithAsManyIsThatOfTheFirst) {
  for (const auto& [first, last] : {std::pair(1, 12), std::pair(5, 6), std::pair(11, 12)}) {
    BenchProgram other;
    other.Install(first, "M260314A.OVN", BenchProgram::Header(1, 1, 2, true));
    other.Install(last, "M260314B.OVN", BenchProgram::Header(2, 1, 2, true));
    for (const int inet : {1, 2}) {
      other.line.buffers[{inet, 2}].assign(40, 5);
    }
    other.Start();
    EXPECT_EQ(other.state.BacklogSlot, first);
    EXPECT_EQ(other.state.BacklogCount, 40);
  }
}

TEST_F(Backlog, IsThatOfTheRecordingSlotWithTheMost) {
  bench.Install(1, "M260314A.OVN", BenchProgram::Header(1, 1, 2, true));
  bench.Install(2, "M260314B.OVN", BenchProgram::Header(2, 1, 2, true));
  bench.Install(3, "M260314C.OVN", BenchProgram::Header(3, 1, 2, false));
  bench.Install(4, "M260314D.OVN", BenchProgram::Header(4, 1, 2, true));
  Hold(1, 2, 10);
  Hold(2, 2, 20);
  Hold(3, 2, 30);
  Hold(4, 2, 40);
  bench.line.silent = {4};
  bench.Start();
  EXPECT_EQ(bench.state.BacklogSlot, 2);
  EXPECT_EQ(bench.state.BacklogCount, 20);
}

class LeftOn : public Start {
 protected:
  // The program before has left orders; slot 2 has controller 3 of instrument 4.
  void Leave(const std::string& orders) {
    bench.home.Write(kStopOrdersFile, orders + "end\r\n");
    bench.Install(2, "M260314A.OVN", BenchProgram::Header(4, 3, 2, true));
    bench.line.registers[{4, 'Z', 3}] = 2;
  }
  std::vector<std::string> Announced() const {
    std::vector<std::string> texts;
    for (const Notice& notice : bench.dialogs.announced) {
      texts.push_back(notice.Title + "|" + notice.Text);
    }
    return texts;
  }
  static constexpr const char* kOrder = "Z=0 slot 2 inet 4 controller 3\r\n";
};

TEST_F(LeftOn, IsSwitchedOffBeforeAnythingElseAndTold) {
  Leave(kOrder);
  bench.Start();
  ASSERT_GE(bench.port.sent.size(), 2U);
  EXPECT_EQ(bench.port.sent[0], "Z33=0\r");
  EXPECT_EQ(bench.port.sent[1], "R32?");
  EXPECT_FALSE(bench.home.Exists(kStopOrdersFile));
  EXPECT_EQ(Announced(), std::vector<std::string>{
                             "controller|Controller 3 of Tavrel 4 was not switched off at the end "
                             "of its recording.\nIt is off now."});
}

TEST_F(LeftOn, IsTriedEveryTenSecondsWhileItDoesNotAnswer) {
  Leave(kOrder);
  bench.line.silent = {4};
  bench.Start();
  EXPECT_EQ(bench.port.sent.front(), "Z33=0\r");
  EXPECT_EQ(Announced(), std::vector<std::string>{
                             "controller|Controller 3 of Tavrel 4 was not switched off at the end "
                             "of its recording.\nTavrel does not acknowledge it yet; it is tried "
                             "again."});
  EXPECT_TRUE(bench.state.StopPending[2]);
  bench.Run(35);
  EXPECT_EQ(bench.Row(2).lb_Cstat, "off ?");
  const auto tries = std::count(bench.port.sent.begin(), bench.port.sent.end(), "Z33=0\r");
  EXPECT_GE(tries, 4);
  EXPECT_LE(tries, 5);
  bench.line.silent.clear();
  bench.Run(20);
  EXPECT_EQ((bench.line.registers[{4, 'Z', 3}]), 0);
  EXPECT_EQ(bench.Row(2).lb_Cstat, "off");
  EXPECT_FALSE(bench.home.Exists(kStopOrdersFile));
  EXPECT_EQ(Announced().size(), 1U);
}

TEST_F(LeftOn, IsNotSimulated) {
  Leave(kOrder);
  bench.state.Settings.CommPort = "----";
  bench.Start();
  bench.Run(15);
  EXPECT_TRUE(bench.home.Exists(kStopOrdersFile));
  EXPECT_EQ(Announced().size(), 1U);
}

// An instrument without a slot is left alone but for the one controller.
TEST_F(LeftOn, OfAnInstrumentWithoutASlotIsTheOnlyOneThatIsTouched) {
  Leave("Z=0 slot 9 inet 6 controller 2\r\n");
  bench.Start();
  for (const std::string& command : bench.port.sent) {
    EXPECT_TRUE(command[1] != '5' || command == "Z52=0\r") << command;
  }
  EXPECT_EQ(bench.port.sent.front(), "Z52=0\r");
  EXPECT_FALSE(bench.home.Exists(kStopOrdersFile));
}

TEST_F(LeftOn, IsNoLongerToldOnceTheSweepHasSwitchedIt) {
  Leave("Z=0 slot 2 inet 4 controller 1\r\n");
  int refusals = 1;
  const auto answer = bench.port.answer;
  bench.port.answer = [&, answer](const std::string& command) {
    return command == "Z31=0\r" && refusals-- > 0 ? std::string("?") : answer(command);
  };
  bench.Start();
  EXPECT_EQ(std::count(bench.port.sent.begin(), bench.port.sent.end(), "Z31=0\r"), 2);
  EXPECT_FALSE(bench.home.Exists(kStopOrdersFile));
  EXPECT_FALSE(bench.state.StopPending[2]);
}

TEST_F(Start, SwitchesOffControllersThatNoSlotKnows) {
  bench.Install(1, "M260314A.OVN", BenchProgram::Header(1, 1, 2, false));
  bench.Install(2, "M260314B.OVN", BenchProgram::Header(1, 3, 2, false));
  bench.Install(3, "M260314C.OVN", BenchProgram::Header(3, 4, 2, false));
  bench.Install(4, "M260314D.OVN", BenchProgram::Header(4, 4, 2, false));
  bench.line.silent = {4};
  bench.Start();
  std::vector<std::string> writes;
  std::copy_if(bench.port.sent.begin(), bench.port.sent.end(), std::back_inserter(writes),
               [](const std::string& command) { return command.find('=') != std::string::npos; });
  EXPECT_EQ(writes,
            (std::vector<std::string>{"Z02=0\r", "Z04=0\r", "Z21=0\r", "Z22=0\r", "Z23=0\r"}));
}

TEST_F(Start, ComesUpWithNoInstrumentOnTheLine) {
  bench.Install(1, "M260314A.OVN", BenchProgram::Header(1, 1, 2, true));
  bench.line.silent = {1};
  bench.Start();
  EXPECT_EQ(bench.port.sent, std::vector<std::string>{"R02?"});
  EXPECT_TRUE(bench.cycle.IsEnabled());
  EXPECT_EQ(bench.state.ActiveView, View::kMainSheet);
  EXPECT_EQ(bench.events.pointers.back(), Pointer::kNormal);
}

TEST_F(Start, ShowsTheSettingsDialogOnAFirstRun) {
  bench.screens.built = {View::kTavSett};
  bench.state.FirstRun = true;
  EXPECT_TRUE(bench.start_up.MainFormLoad());
  EXPECT_EQ(bench.screens.shown, std::vector<View>{View::kTavSett});
}

TEST_F(Start, TellsOfAPortThatDoesNotOpenAndLetsTheUserMendIt) {
  bench.screens.built = {View::kTavSett};
  bench.state.SettingsRead = true;
  bench.port.open_error = 2;
  bench.port.open_text = "no such device";
  bench.screens.on_show = [this](View) { bench.port.open_error = 0; };
  EXPECT_TRUE(bench.start_up.MainFormLoad());
  ASSERT_EQ(bench.dialogs.boxes.size(), 1U);
  EXPECT_EQ(bench.dialogs.boxes[0].Text, "no such device");
  EXPECT_EQ(bench.dialogs.boxes[0].Title, "Open COM1");
  EXPECT_EQ(bench.dialogs.boxes[0].Icon, BoxIcon::kInformation);
  EXPECT_TRUE(bench.link.PortOpen);
}

TEST_F(Start, WaitsAMomentForAPortThatAProgramJustKilledStillHas) {
  bench.port.open_error = 2;
  bench.port.open_text = "in use";
  bench.port.in_use = true;
  milliseconds waited{0};
  bench.events.on_rest = [this, &waited](milliseconds time) {
    waited += time;
    bench.port.open_error = waited < milliseconds(1500) ? 2 : 0;
    bench.port.in_use = bench.port.open_error != 0;
  };
  bench.Start();
  EXPECT_TRUE(bench.dialogs.boxes.empty());
  EXPECT_TRUE(bench.link.PortOpen);
  EXPECT_GE(waited, milliseconds(1500));
}

TEST_F(Start, TellsOfAPortThatStaysInUseAfterTwoSeconds) {
  bench.screens.built = {View::kTavSett};
  bench.port.open_error = 2;
  bench.port.in_use = true;
  milliseconds waited{0};
  bench.events.on_rest = [&waited](milliseconds time) { waited += time; };
  bench.state.SettingsRead = true;
  EXPECT_FALSE(bench.start_up.MainFormLoad());
  ASSERT_FALSE(bench.dialogs.boxes.empty());
  EXPECT_EQ(bench.dialogs.boxes[0].Title, "Open COM1");
  EXPECT_EQ(waited, milliseconds(2000));
}

TEST_F(Start, IsPaintedAgainWithinATenthOfASecondOrSoBesideSilentInstruments) {
  bench.line.silent = {1, 2, 3, 4, 5, 6};
  const auto longest = LongestTimeWithoutPaint();
  EXPECT_EQ(bench.port.sent.size(), 12U);
  EXPECT_GE(longest, milliseconds(110));
  EXPECT_LE(longest, milliseconds(112));
}

TEST_F(Start, IsPaintedBehindEachExchange) {
  EXPECT_EQ(LongestTimeWithoutPaint(), milliseconds(10));
  EXPECT_EQ(bench.port.sent.size(), 12U + 6 * 2) << "two slots use two of four controllers";
}

TEST_F(Start, DoesNotRunItsCycleIfItIsClosedWhileItLooksForItsInstruments) {
  bench.Install(1, "M260314A.OVN", BenchProgram::Header(1, 1, 2, true));
  bench.Install(2, "M260314B.OVN", BenchProgram::Header(2, 1, 2, true));
  bench.line.silent = {1, 2};
  bench.events.on_rest = [this](milliseconds time) {
    bench.clock.Advance(time);
    bench.commands.Close();
  };
  bench.Start();
  EXPECT_TRUE(bench.commands.HasEnded());
  EXPECT_FALSE(bench.cycle.IsEnabled());
  EXPECT_EQ(bench.port.sent.size(), 1U);
}

TEST_F(Start, EndsWhenTheUserGivesUpOnThePort) {
  bench.state.SettingsRead = true;
  bench.port.open_error = 2;
  bench.dialogs.retry = false;
  EXPECT_FALSE(bench.start_up.MainFormLoad());
  EXPECT_EQ(bench.dialogs.boxes.back().Text, "Exit");
  EXPECT_TRUE(bench.commands.HasEnded());
}

// A signal at a box: from then on no box waits for an answer.
TEST_F(Start, AsksNoMoreBehindABoxAtWhichItIsEndedFromOutside) {
  bench.screens.built = {View::kTavSett};
  bench.state.SettingsRead = true;
  bench.port.open_error = 2;
  for (const std::size_t last : {1U, 2U, 3U}) {
    bench.dialogs.boxes.clear();
    bench.screens.shown.clear();
    bench.events.end_is_wanted = false;
    bench.dialogs.ok = false;
    bench.dialogs.on_box = [&] {
      bench.events.end_is_wanted = bench.dialogs.boxes.size() >= last;
      bench.port.open_error = bench.dialogs.boxes.size() < 10 ? 2 : 0;
    };
    EXPECT_FALSE(bench.start_up.MainFormLoad());
    EXPECT_EQ(bench.dialogs.boxes.size(), last);
    EXPECT_EQ(bench.screens.shown.size(), last == 1 ? 0U : 1U);
  }
}

TEST_F(Start, AsksNothingBehindTheSettingsDialogAtWhichItIsEndedFromOutside) {
  bench.screens.built = {View::kTavSett};
  bench.state.SettingsRead = true;
  bench.port.open_error = 2;
  bench.screens.on_show = [this](View) { bench.events.end_is_wanted = true; };
  EXPECT_FALSE(bench.start_up.MainFormLoad());
  EXPECT_EQ(bench.dialogs.boxes.size(), 1U);
}

TEST_F(Start, WaitsNoLongerForAPortInUseOnceItIsEndedFromOutside) {
  bench.state.SettingsRead = true;
  bench.port.open_error = 2;
  bench.port.in_use = true;
  int rests = 0;
  bench.events.on_rest = [&](milliseconds) { bench.events.end_is_wanted = ++rests == 3; };
  EXPECT_FALSE(bench.start_up.MainFormLoad());
  EXPECT_EQ(rests, 3);
  EXPECT_TRUE(bench.dialogs.boxes.empty());
}

TEST_F(Start, LeavesTheLineBehindTheExchangeInWhichItIsEndedFromOutside) {
  for (int slot = 1; slot <= kSlots; ++slot) {
    bench.Install(slot, "M260314" + std::string(1, static_cast<char>('A' + slot)) + ".OVN",
                  BenchProgram::Header((slot + 1) / 2, 1, 2, true));
  }
  bench.line.silent = {1, 2, 3, 4, 5};
  bench.events.on_rest = [this](milliseconds time) { bench.clock.Advance(time); };
  bench.events.on_repaint = [this] {
    bench.events.end_is_wanted = bench.events.end_is_wanted || bench.port.sent.size() >= 4;
  };
  bench.Start();
  EXPECT_EQ(bench.port.sent.size(), 4U);
  EXPECT_FALSE(bench.cycle.IsEnabled());
  bench.port.sent.clear();
  bench.start_up.MainFormShow();
  EXPECT_TRUE(bench.port.sent.empty());
}

TEST_F(Start, RunsItsFirstDisplayOnlyOnce) {
  bench.Start();
  bench.port.sent.clear();
  bench.start_up.MainFormShow();
  EXPECT_TRUE(bench.port.sent.empty());
}

TEST_F(Start, SimulatesARecordingWithoutALine) {
  bench.state.Settings.CommPort = "----";
  bench.Install(1, "M260314A.OVN", BenchProgram::Header(1, 1, 2, true));
  bench.Start();
  bench.Run(2);
  EXPECT_EQ(bench.Row(1).sh_TavNo, kYellow);
  EXPECT_EQ(bench.Row(1).lb_Cstat, "off");
  EXPECT_EQ(bench.Row(1).lb_Ref, "0.0");
  const std::vector<std::int16_t> samples = bench.Samples("M260314A.OVN");
  ASSERT_GE(samples.size(), 6U);
  EXPECT_EQ(samples[4], 10);
  EXPECT_EQ(samples[5], 20);
  EXPECT_EQ(bench.sheet.Values().lbl_Info, "");
}

// The program was ended while the disk had no room for the next file, and has none yet.
TEST_F(Start, GoesOnTryingToMakeTheNextFile) {
  UnitRecord unit = BenchProgram::Header(1, 1, 2, true);
  unit.UnitMaxMinutes = 5;  // 3 rows at 100 seconds
  unit.UnitEndAction = 2;
  bench.Install(7, "M260314A.OVN", unit, {1, 2, 1, 2, 3, 4, 5, 6});
  bench.line.buffers[{1, 1}] = {11, 12};
  bench.line.buffers[{1, 2}] = {21, 22};
  {
    const FullDisk disk(900);
    bench.Start();
    bench.Run(35);
    EXPECT_EQ(bench.Row(7).lb_Rstat, "disk !");
    EXPECT_EQ(bench.state.SlotFile[7], "M260314A.OVN");
    EXPECT_EQ(bench.dialogs.announced.size(), 1U);
    EXPECT_TRUE(bench.dialogs.boxes.empty());
  }
  bench.Run(25);
  EXPECT_EQ(bench.Row(7).lb_Rstat, "on");
  EXPECT_EQ(bench.Samples("M260314B.OVN"), (std::vector<std::int16_t>{11, 21, 11, 21, 12, 22}));
  EXPECT_NE(bench.home.Read("TAVREL.USR").find("\"ACTIVE07:: M260314B.OVN\""), std::string::npos);
}

TEST_F(Start, TellsWithinTenSecondsThatARecordingWasDeleted) {
  bench.Install(7, "M260314A.OVN", BenchProgram::Header(1, 1, 2, true), {1, 2, 1, 2});
  bench.Start();
  bench.Run(1);
  std::filesystem::remove(bench.home.File("tavdat/M260314A.OVN"));
  bench.line.buffers[{1, 1}] = {11, 12};
  bench.line.buffers[{1, 2}] = {21, 22};
  bench.Run(10.5);
  ASSERT_EQ(bench.dialogs.announced.size(), 1U);
  EXPECT_NE(bench.dialogs.announced[0].Text.find("deleted or moved"), std::string::npos);
  bench.Run(20);
  EXPECT_EQ(bench.Samples("M260314A.OVN"), (std::vector<std::int16_t>{1, 2, 1, 2, 11, 21, 12, 22}));
}

}  // namespace
}  // namespace tavrel
