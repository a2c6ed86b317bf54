#include "instrument/control_commands.h"

#include <gtest/gtest.h>

#include "tests/instrument/line_fixture.h"

namespace instrument {
namespace {

// Keeps what was switched. Lever: `plug_works`.
class FakeSwitchboard : public Switchboard {
 public:
  bool plug_works = true;
  bool plugged = true;
  bool quit = false;

  bool Plug(std::string& error) override {
    plugged = plug_works;
    error = plug_works ? "" : "no pseudo-terminal";
    return plug_works;
  }
  void Unplug() override { plugged = false; }
  [[nodiscard]] std::string PortPath() const override { return plugged ? "/dev/pts/7" : ""; }
  void Quit() override { quit = true; }
};

class Commands : public testing::Test {
 protected:
  std::string Do(const std::string& text) { return commands_.Execute(text); }

  LineBench bench{LineMode::kDirect, {1, 2}};
  FakeSwitchboard board;

 private:
  ControlCommands commands_{bench.line, board};
};

TEST_F(Commands, FaultOfOneInstrumentIsSwitchedOnAndOff) {
  EXPECT_EQ(Do("fault 1 silence on"), "ok\n");
  EXPECT_EQ(bench.Say("W01?W11?"), "0000\r");
  EXPECT_EQ(Do("fault 1 silence off"), "ok\n");
  EXPECT_EQ(bench.Say("W01?W11?"), "0000\r0000\r");
}

TEST_F(Commands, FaultOfAllInstrumentsEndsWithNone) {
  EXPECT_EQ(Do("fault all refusal"), "ok\n");
  EXPECT_EQ(bench.Say("W01?W11?"), "??");
  EXPECT_EQ(Do("fault all none"), "ok\n");
  EXPECT_EQ(bench.Say("W01?W11?"), "0000\r0000\r");
}

TEST_F(Commands, FaultStrikesSoManyTimes) {
  EXPECT_EQ(Do("fault 2 refusal on times 1"), "ok\n");
  EXPECT_EQ(bench.Say("W11?W11?"), "?0000\r");
}

TEST_F(Commands, NonsenseIsAnError) {
  for (const char* text : {"",
                           "fault",
                           "fault 1",
                           "fault 3 silence",
                           "fault 1 tired",
                           "fault 1 silence 2",
                           "fault 1 silence on times",
                           "fault 1 silence on times 0",
                           "fault 1 silence on often 2",
                           "restart",
                           "restart 5",
                           "fill 1",
                           "fill 1 0",
                           "fill 1 897",
                           "fill 1 10",
                           "pass 1",
                           "pass 1 0",
                           "pass 7 10",
                           "sensor 1",
                           "sensor 1.16 short",
                           "sensor 1.1 wet",
                           "sensor 1.1 temp",
                           "sensor 1.1 temp hot",
                           "sensor 1.1",
                           "selftest 1 ram",
                           "selftest 1 disk 0",
                           "explode"}) {
    EXPECT_TRUE(Do(text).starts_with("error: ")) << text;
  }
}

TEST_F(Commands, RestartEmptiesTheBuffers) {
  bench.Say("S11=1\r");
  bench.Pass(10);
  EXPECT_EQ(Do("restart 2"), "ok\n");
  EXPECT_EQ(bench.Say("R11?"), "0000\r");
}

TEST_F(Commands, FillLetsItsOwnTimeRunOn) {
  bench.Say("S11=1\rS12=1\r");
  EXPECT_EQ(Do("fill 2 896"), "ok\n");
  EXPECT_EQ(bench.Say("R11?R12?"), "0380\r0380\r");
  EXPECT_EQ(bench.truth.Count("overrun"), 0);
  EXPECT_EQ(bench.line.Find(1)->Seconds(), 0.0);
}

TEST_F(Commands, PassLetsItsOwnTimeRunOnOverAFullBuffer) {
  bench.Say("S11=1\r");
  EXPECT_EQ(Do("pass 2 1500"), "ok\n");
  EXPECT_EQ(bench.Say("R11?"), "0380\r");
  EXPECT_EQ(bench.truth.Count("overrun 2 1"), 1500 - 896);
  EXPECT_EQ(bench.line.Find(2)->Seconds(), 1500.0);
  EXPECT_EQ(bench.line.Find(1)->Seconds(), 0.0);
}

TEST_F(Commands, SensorCanBeBrokenAndMended) {
  EXPECT_EQ(Do("sensor 1.1 break"), "ok\n");
  EXPECT_GT(WordOf(bench.Say("Y01?")), 20000);
  EXPECT_EQ(Do("sensor 1.1 temp 100"), "ok\n");
  EXPECT_NEAR(WordOf(bench.Say("Y01?")), 2000, 5);
  EXPECT_EQ(Do("sensor 1.1 oven"), "ok\n");
  EXPECT_NEAR(WordOf(bench.Say("Y01?")), 440, 5);
}

TEST_F(Commands, SelfTestCanFail) {
  EXPECT_EQ(Do("selftest 1 eprom 12"), "ok\n");
  bench.Say("G00=9\r");
  bench.Pass(3);
  EXPECT_EQ(bench.Say("G08?"), "000C\r");
}

TEST_F(Commands, SwitchboardIsServed) {
  EXPECT_EQ(Do("unplug"), "ok\n");
  EXPECT_FALSE(board.plugged);
  EXPECT_EQ(Do(" plug "), "ok\n");
  EXPECT_TRUE(board.plugged);
  board.plug_works = false;
  EXPECT_EQ(Do("plug"), "error: no pseudo-terminal\n");
  EXPECT_EQ(Do("quit"), "ok\n");
  EXPECT_TRUE(board.quit);
}

TEST_F(Commands, StatusTellsPortInstrumentsAndFaults) {
  Do("fault 2 late-reply 200");
  EXPECT_EQ(Do("status"),
            "line /dev/pts/7\n"
            "instrument 1 time 0.00 stored 0 controllers 0 0 0 0 faults none\n"
            "instrument 2 time 0.00 stored 0 controllers 0 0 0 0 faults late-reply=200\n"
            "ok\n");
}

}  // namespace
}  // namespace instrument
