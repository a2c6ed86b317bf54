#include <gtest/gtest.h>

#include <csignal>
#include <filesystem>
#include <fstream>

#include "tests/e2e/installed_program.h"

namespace tavrel {
namespace {

using std::chrono::milliseconds;
using std::chrono::seconds;

// The installed program at starts that need a word of the user first.
class StartAlone : public testing::Test {
 protected:
  void SetUp() override { ASSERT_TRUE(screen.IsUp()); }

  std::string Path(const std::string& name) const { return program.Directory() + "/" + name; }

  // A window of that title is on the screen.
  bool IsShown(const std::string& title) const {
    Process search({"xdotool", "search", "--onlyvisible", "--name", title});
    return !search.ReadLine(seconds(5)).empty();
  }

  static bool HasWindow(pid_t pid) {
    Process search({"xdotool", "search", "--onlyvisible", "--all", "--pid", std::to_string(pid),
                    "--name", "."});
    return !search.ReadLine(seconds(5)).empty();
  }

  // The newest window of a process with that title, as the screen's number for it; empty if there
  // is none.
  static std::string WindowOf(pid_t pid, const std::string& title) {
    Process search({"xdotool", "search", "--onlyvisible", "--all", "--pid", std::to_string(pid),
                    "--name", title});
    std::string last;
    for (std::string line = search.ReadLine(seconds(5)); !line.empty();
         line = search.ReadLine(seconds(5))) {
      last = line;
    }
    return last;
  }

  std::string Bytes(const std::string& name) const {
    std::ifstream file(Path(name), std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
  }

  VirtualScreen screen;
  InstalledProgram program;
};

TEST_F(StartAlone, InSimulationLeavesTheRowsOfAnInstrumentAloneAndAsks) {
  ASSERT_TRUE(program.Prepare({"COMMPORT=----", "COMMODE=0",
                               "slot:number=1,name=Tube oven,ext=TUB,inet=1,ctrl=1,ref=5,"
                               "inputs=1/5/9",
                               "slot:number=2,name=Chamber oven,ext=CHA,inet=1,ctrl=2,ref=6,"
                               "inputs=2/6"}));
  const std::string real = "tavdat/M260314A.TUB";
  std::ofstream(Path(real), std::ios::binary | std::ios::app) << std::string(2UL * 3 * 10, '\x21');
  const std::string before = Bytes(real);
  ASSERT_EQ(before.size(), 1060U);
  ASSERT_TRUE(program.Start());
  // The other file is begun in this simulation: its rows say how long the pump has run.
  ASSERT_TRUE(
      WaitUntil([this] { return program.Rows("M260314B.CHA", 2).size() > 40; }, seconds(60)));
  EXPECT_TRUE(IsShown("Simulation"));
  EXPECT_EQ(Bytes(real), before);
  EXPECT_TRUE(program.End());
  EXPECT_EQ(Bytes(real), before);
}

TEST_F(StartAlone, BesideAnotherCopyEndsWithASignalBeneathItsBox) {
  ASSERT_TRUE(program.Prepare({"COMMPORT=----", "COMMODE=0"}));
  ASSERT_TRUE(program.Start());
  Process second({Path("tavrel")});
  ASSERT_TRUE(WaitUntil([&second] { return HasWindow(second.Pid()); }, seconds(40)));
  second.Signal(SIGTERM);
  EXPECT_EQ(second.Wait(seconds(2)), 0);
  EXPECT_TRUE(program.End());
}

TEST_F(StartAlone, WithSettingsThatCannotBeReadAsksAndEndsWithASignal) {
  ASSERT_TRUE(program.Prepare({"COMMPORT=----", "COMMODE=0",
                               "slot:number=1,name=Tube oven,ext=TUB,inet=1,ctrl=1,ref=5,"
                               "inputs=1/5/9"}));
  std::filesystem::rename(Path("TAVREL.USR"), Path("kept"));
  std::filesystem::create_symlink("TAVREL.USR", Path("TAVREL.USR"));
  Process alone({Path("tavrel")});
  ASSERT_TRUE(WaitUntil([this] { return IsShown("TAVREL.USR"); }, seconds(40)));
  alone.Signal(SIGTERM);
  EXPECT_EQ(alone.Wait(seconds(2)), 0);
  EXPECT_TRUE(std::filesystem::is_symlink(Path("TAVREL.USR")));
  EXPECT_FALSE(std::filesystem::exists(Path("TAVREL.BAK")));
  EXPECT_FALSE(std::filesystem::exists(Path("tavdat/M011111A.NEW")));
}

// A box or a form of the start on which nobody has answered, and how to get there.
struct WaitingStart {
  // A window on the way and the key that leaves it; the splash is left by a click.
  struct Step {
    const char* title;
    const char* key;
  };
  const char* name;
  const char* title;  // of its own window
  std::vector<Step> way;
  const char* missing = nullptr;  // a file of the installation
};

void PrintTo(const WaitingStart& start, std::ostream* out) {
  *out << start.name;
}

class StartThatWaits : public StartAlone, public testing::WithParamInterface<WaitingStart> {
 protected:
  static testing::AssertionResult Comes(pid_t pid, const std::string& title, std::string& window) {
    const bool is_there = WaitUntil(
        [&] {
          const std::string found = WindowOf(pid, title);
          const bool is_new = !found.empty() && found != window;
          window = is_new ? found : window;
          return is_new;
        },
        seconds(40));
    return is_there ? testing::AssertionSuccess() : testing::AssertionFailure() << title;
  }
  static void Press(const std::string& window, const WaitingStart::Step& step) {
    if (step.key == nullptr) {
      RunCommand({"xdotool", "mousemove", "--window", window, "60", "200", "click", "1"});
    } else {
      RunCommand({"xdotool", "windowfocus", "--sync", window, "key", step.key});
    }
  }
};

TEST_P(StartThatWaits, EndsWithinASecondOfASignal) {
  const WaitingStart& start = GetParam();
  ASSERT_TRUE(program.Prepare({"COMMPORT=COM7", "COMMODE=0"}));
  if (start.missing != nullptr) {
    std::filesystem::remove(Path(start.missing));
  }
  Process alone({Path("tavrel")});
  std::string window;
  for (const WaitingStart::Step& step : start.way) {
    ASSERT_TRUE(Comes(alone.Pid(), step.title, window));
    Press(window, step);
  }
  ASSERT_TRUE(Comes(alone.Pid(), start.title, window));
  alone.Signal(SIGTERM);
  EXPECT_EQ(alone.Wait(seconds(1)), 0);
}

constexpr WaitingStart::Step kSplash{"TAVREL", nullptr};
constexpr WaitingStart::Step kPortError{"Open COM7", "Return"};
constexpr WaitingStart::Step kSettings{"Settings", "Escape"};
constexpr WaitingStart::Step kRetryPort{"Open COM7", "Escape"};

INSTANTIATE_TEST_SUITE_P(
    At, StartThatWaits,
    testing::Values(
        WaitingStart{"TheSplash", "TAVREL", {}},
        WaitingStart{"AnIncompleteInstallation", "TAVREL", {}, "H207_511.pdf"},
        WaitingStart{"ThePortError", "Open COM7", {kSplash}},
        WaitingStart{"TheSettings", "Settings", {kSplash, kPortError}},
        WaitingStart{"TheLaterPortError", "Open COM7", {kSplash, kPortError, kSettings}},
        WaitingStart{"TheExitQuestion", "TAVREL", {kSplash, kPortError, kSettings, kRetryPort}}),
    testing::PrintToStringParamName());

}  // namespace
}  // namespace tavrel
