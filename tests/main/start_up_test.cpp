#include "main/start_up.h"

#include <gtest/gtest.h>

#include <memory>

#include "tests/main/start_bench.h"
#include "tests/support/hindrance.h"

namespace tavrel {
namespace {

using std::chrono::milliseconds;

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

TEST_F(Start, ShowsItsSplashFormInTheLanguageOfTheSettings) {
  ASSERT_TRUE(
      bench.start_up.SplashLoad(bench.home.Path(), [](const std::string&) { return true; }));
  EXPECT_EQ(bench.start_up.SplashShow()->cmdStart, " ... to start hit any key ... ");
  bench.home.Write("TAVREL.USR", "\"VERSION:: 6.1\"\r\n\"HELPLANG:: german\"\r\n");
  const SplashValues splash = bench.start_up.SplashShow().value();
  EXPECT_EQ(splash.cmdStart, " Start  (beliebige Taste) ");
  EXPECT_EQ(splash.lbRelease, "release   2446");
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

}  // namespace
}  // namespace tavrel
