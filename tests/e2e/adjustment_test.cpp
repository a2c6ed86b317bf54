#include <gtest/gtest.h>

#include <algorithm>

#include "tests/e2e/installed_program.h"

namespace tavrel {
namespace {

using std::chrono::seconds;

// The installed program in the middle of an adjustment of input 7, which no test uses: its sensor
// code is taken away, and the readings of the zero position are being collected.
class AdjustmentOfTheProgram : public testing::Test {
 protected:
  void SetUp() override {
    ASSERT_TRUE(screen.IsUp());
    ASSERT_TRUE(program.Prepare({"COMMPORT=COM1", "COMMODE=0",
                                 "slot:number=1,name=Tube oven,ext=TUB,inet=2,ctrl=1,ref=5,"
                                 "inputs=1/5"}));
    ASSERT_TRUE(program.StartInstruments({"--inet", "2", "--warm"}));
    program.KeepShownTexts();
    ASSERT_TRUE(program.Start());
    ASSERT_TRUE(WaitUntil([this] { return OpensChannels(); }, seconds(40)));
    ASSERT_TRUE(WaitUntil([this] { return BeginsRun(); }, seconds(60))) << Journal();
    Press({"Return"});
  }

  // By the menu of the main form, as a user does.
  bool OpensChannels() const {
    RunCommand({"xdotool", "windowfocus", "--sync", program.WindowCalled("TAVREL  6.1")});
    Press({"alt+t", "c"});
    return WaitUntil([this] { return !program.WindowCalled("Channels").empty(); }, seconds(3));
  }
  // What comes before the sheet is read, or a second time, changes nothing.
  bool BeginsRun() const {
    Press({"F10", "Down", "Return", "ctrl+Home"});
    Press({"Down", "Down", "Down", "Down", "Down", "Down", "Down", "space", "Return"});
    return WaitUntil([this] { return HasBegun(); }, seconds(2));
  }
  static void Press(const std::vector<std::string>& keys) {
    std::vector<std::string> command = {"xdotool", "key", "--delay", "150"};
    command.insert(command.end(), keys.begin(), keys.end());
    RunCommand(command);
  }
  [[nodiscard]] std::string Journal() const { return program.Read("ADJUST.TXT"); }
  [[nodiscard]] bool HasBegun() const { return Journal().find("before 7 ") != std::string::npos; }
  // The line of the journal that begins with these words, without its end.
  [[nodiscard]] std::string LineOf(const std::string& words) const {
    const std::string journal = Journal();
    const std::size_t begin = journal.find(words);
    return begin == std::string::npos ? ""
                                      : journal.substr(begin, journal.find('\r', begin) - begin);
  }

  // How many of the shown texts tell of an adjustment that ended with the program.
  [[nodiscard]] int Told() const { return static_cast<int>(ToldTexts().size()); }
  [[nodiscard]] std::vector<std::string> ToldTexts() const {
    std::vector<std::string> told = program.ShownTexts();
    std::erase_if(told, [](const std::string& text) {
      return text.find("This adjustment ended with the program") == std::string::npos;
    });
    return told;
  }
  // At the next start, and at none behind it.
  void ExpectToldOnce() {
    EXPECT_EQ(Told(), 0);
    const std::string run = LineOf("begin ").substr(std::string("begin ").size());
    const std::string before = LineOf("before 7 ");
    EXPECT_NE(run.find(" inet 2 sensor FeCuNi rows 7"), std::string::npos) << run;
    for (int start = 0; start < 2; ++start) {
      ASSERT_TRUE(program.Start());
      EXPECT_TRUE(WaitUntil([this] { return Told() > 0; }, seconds(20)));
      EXPECT_TRUE(program.End());
    }
    ASSERT_EQ(Told(), 1);
    const std::string text = ToldTexts().front();
    EXPECT_NE(text.find(run + "\\n"), std::string::npos) << text;
    EXPECT_NE(text.find("\\n    " + before + "\\n"), std::string::npos) << text;
    EXPECT_NE(text.find(program.Directory() + "/ADJUST.TXT"), std::string::npos) << text;
  }

  VirtualScreen screen;
  InstalledProgram program;
};

TEST_F(AdjustmentOfTheProgram, IsToldOnceAtTheNextStartOfAProgramThatWasKilled) {
  program.Kill();
  EXPECT_EQ(LineOf("end "), "") << "killed in the middle";
  ExpectToldOnce();
}

TEST_F(AdjustmentOfTheProgram, IsToldOnceBehindATerminationSignal) {
  EXPECT_TRUE(program.End());
  EXPECT_NE(LineOf("end ").find("dropped with the program"), std::string::npos) << Journal();
  EXPECT_NE(LineOf("after 7 ").find(" L 0 "), std::string::npos) << Journal();
  ExpectToldOnce();
}

}  // namespace
}  // namespace tavrel
