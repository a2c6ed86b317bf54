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

}  // namespace
}  // namespace tavrel
