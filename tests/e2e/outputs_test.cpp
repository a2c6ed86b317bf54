#include <gtest/gtest.h>

#include <filesystem>

#include "tests/e2e/installed_program.h"

namespace tavrel {
namespace {

using std::chrono::seconds;

// The installed program in a test of outputs, with power on output 2 and the contact of output 3
// closed, while controller 1 of the instrument was holding its oven before.
class OutputsOfTheProgram : public testing::Test {
 protected:
  void SetUp() override {
    ASSERT_TRUE(screen.IsUp());
    ASSERT_TRUE(program.Prepare({"COMMPORT=COM1", "COMMODE=0",
                                 "slot:number=1,name=Tube oven,ext=TUB,inet=2,ctrl=1,ref=5,"
                                 "inputs=1/5"}));
    ASSERT_TRUE(program.StartInstruments({"--inet", "2", "--warm", "--oven", "2.1=hold:200"}));
    program.KeepShownTexts();
    ASSERT_TRUE(program.Start());
    ASSERT_TRUE(WaitUntil([] { return OpensTest(); }, seconds(40)));
    ASSERT_TRUE(Comes("controllers 1 1 1 1 outputs 0 0 0 0 "));
    Press({"Tab", "Down"});
    Press({"Tab", "Down", "Down"});
    ASSERT_TRUE(
        Comes("controllers 1 1 5 1 outputs 0 100 0 0 contacts open open closed open "
              "heat 0 0 0 0"));
  }

  static std::string WindowCalled(const std::string& title) {
    Process search({"xdotool", "search", "--onlyvisible", "--name", title});
    return search.ReadLine(seconds(5));
  }
  // By the menu of the main form, as a user does.
  static bool OpensTest() {
    if (!WindowCalled("Test of Outputs").empty()) {
      return true;
    }
    const std::string main = WindowCalled("TAVREL  6.1");
    RunCommand({"xdotool", "windowfocus", main});
    RunCommand({"xdotool", "mousemove", "--window", main, "94", "9", "click", "1"});
    RunCommand({"xdotool", "mousemove", "--window", main, "94", "96", "click", "1"});
    return WaitUntil([] { return !WindowCalled("Test of Outputs").empty(); }, seconds(3));
  }
  static void Press(const std::vector<std::string>& keys) {
    std::vector<std::string> command = {"xdotool", "key", "--delay", "100"};
    command.insert(command.end(), keys.begin(), keys.end());
    RunCommand(command);
  }
  bool Comes(const std::string& part) const {
    const bool comes =
        WaitUntil([&] { return program.Status().find(part) != std::string::npos; }, seconds(20));
    EXPECT_TRUE(comes) << program.Status();
    return comes;
  }
  bool HasRecord() const { return std::filesystem::exists(program.Directory() + "/TAVREL.OUT"); }

  VirtualScreen screen;
  InstalledProgram program;
};

TEST_F(OutputsOfTheProgram, AreOffAndTheControllersAreBackBehindATerminationSignal) {
  EXPECT_TRUE(HasRecord());
  EXPECT_TRUE(program.End());
  const std::string status = program.Status();
  EXPECT_NE(status.find("controllers 2 0 0 0 "), std::string::npos) << status;
  EXPECT_NE(status.find(" 0 0 0 contacts closed open open open"), std::string::npos) << status;
  EXPECT_FALSE(HasRecord());
}

TEST_F(OutputsOfTheProgram, AreOffAndTheControllersAreBackBehindEscape) {
  Press({"Escape"});
  EXPECT_TRUE(WaitUntil([] { return WindowCalled("Test of Outputs").empty(); }, seconds(20)));
  EXPECT_TRUE(Comes(" 0 0 0 contacts closed open open open"));
  EXPECT_FALSE(HasRecord());
  EXPECT_TRUE(program.End());
}

TEST_F(OutputsOfTheProgram, AreSwitchedOffAtTheNextStartOfAProgramThatWasKilled) {
  program.Kill();
  EXPECT_NE(program.Status().find("outputs 0 100 0 0 contacts open open closed open"),
            std::string::npos);
  ASSERT_TRUE(HasRecord());
  ASSERT_TRUE(program.Start());
  EXPECT_TRUE(
      Comes("controllers 0 0 0 0 outputs 0 0 0 0 contacts open open open open heat 0 0 0 0"));
  EXPECT_TRUE(WaitUntil([this] { return !HasRecord(); }, seconds(20)));
  EXPECT_TRUE(WaitUntil(
      [this] {
        for (const std::string& text : program.ShownTexts()) {
          if (text.find("controller 1:  iso") != std::string::npos) {
            return true;
          }
        }
        return false;
      },
      seconds(20)));
  EXPECT_TRUE(program.End());
  EXPECT_NE(program.Status().find("controllers 0 0 0 0 "), std::string::npos)
      << "without an answer they stay off";
}

}  // namespace
}  // namespace tavrel
