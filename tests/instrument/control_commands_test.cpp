#include "instrument/control_commands.h"

#include <gtest/gtest.h>

#include "tests/instrument/line_fixture.h"

namespace instrument {
namespace {

// Keeps what was switched. Levers: `plug_works` and `at_rest`.
class FakeSwitchboard : public Switchboard {
 public:
  bool plug_works = true;
  bool at_rest = true;
  bool plugged = true;
  bool quit = false;

  bool Plug(std::string& error) override {
    plugged = plug_works;
    error = plug_works ? "" : "no pseudo-terminal";
    return plug_works;
  }
  void Unplug() override { plugged = false; }
  [[nodiscard]] std::string PortPath() const override { return plugged ? "/dev/pts/7" : ""; }
  [[nodiscard]] bool IsAtRest() const override { return at_rest; }
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

TEST_F(Commands, AttachPutsAFreshInstrumentToTheLine) {
  EXPECT_EQ(bench.Say("T50?"), "");
  EXPECT_EQ(Do("attach 6"), "ok\n");
  EXPECT_EQ(bench.Say("T50?"), "000A\r");
  EXPECT_EQ(Do("attach 4 fast"), "ok\n");
  EXPECT_EQ(bench.Say("T30?"), "0001\r");
  EXPECT_EQ(bench.Say("Z31?R31?"), "0000\r0000\r");
}

TEST_F(Commands, DetachTakesAnInstrumentOffTheLine) {
  EXPECT_EQ(Do("detach 2"), "ok\n");
  EXPECT_EQ(bench.Say("T10?T00?"), "000A\r");
  EXPECT_EQ(Do("detach 2"), "error: no such instrument\n");
  EXPECT_EQ(Do("detach 1"), "ok\n");
  EXPECT_EQ(bench.Say("T00?8000<"), "");
  EXPECT_EQ(Do("restart all"), "error: no such instrument\n");
  EXPECT_EQ(Do("attach 1"), "ok\n");
  EXPECT_EQ(bench.Say("T00?8000<"), "000A\r0000\r");
}

TEST_F(Commands, InstrumentsOfOneNumberTalkAtTheSameTime) {
  EXPECT_EQ(Do("attach 2"), "ok\n");
  EXPECT_EQ(bench.Say("W11=64\r"), ".");
  EXPECT_EQ(bench.Say("W11?"), "0064\r");
  EXPECT_EQ(Do("attach 2"), "ok\n");
  EXPECT_EQ(bench.Say("W11?"), "00~~\r");
  EXPECT_EQ(Do("detach 2"), "ok\n");
  EXPECT_EQ(bench.Say("W11?"), "0064\r") << "the one that came last has gone";
}

TEST_F(Commands, ThereIsNoRoomForEndlesslyManyInstruments) {
  for (int count = 3; count <= 16; ++count) {
    EXPECT_EQ(Do("attach 3"), "ok\n");
  }
  EXPECT_EQ(Do("attach 3"), "error: no room for more instruments\n");
}

// On a plug-in line each instrument is written a number of its own.
TEST(NumbersOnALine, AreGivenToOneInstrumentAfterTheOther) {
  LineBench bench{LineMode::kPlugin, {1}};
  FakeSwitchboard board;
  ControlCommands commands(bench.line, board);
  EXPECT_EQ(bench.Say("nm8000=4\r"), ".");
  EXPECT_EQ(bench.Say("nm8000?n4m8000?"), "0004\r");
  EXPECT_EQ(commands.Execute("attach 1"), "ok\n");
  EXPECT_EQ(bench.Say("nm8000=4\r"), "?") << "taken";
  EXPECT_EQ(bench.Say("nm8000=2\r"), ".");
  EXPECT_EQ(bench.Say("n2m8000?n4m8000?"), "0002\r0004\r");
  EXPECT_EQ(commands.Execute("attach 3"), "ok\n");
  EXPECT_EQ(bench.Say("n2m8000=5\r"), ".") << "both of them hear it";
  EXPECT_EQ(bench.Say("n2m8000?"), "");
  EXPECT_EQ(bench.Say("n5m8000?"), "0005\r");
  EXPECT_EQ(commands.Execute("detach 6"), "ok\n");
  EXPECT_EQ(commands.Execute("detach 6"), "ok\n");
  EXPECT_EQ(commands.Execute("detach 6"), "error: no such instrument\n");
}

TEST_F(Commands, NonsenseIsAnError) {
  for (const char* text : {"",
                           "attach",
                           "attach 0",
                           "attach 7",
                           "attach x",
                           "attach 3 slow",
                           "attach 3 fast now",
                           "detach",
                           "detach all",
                           "detach 3 4",
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
                           "selftest 1 watchdog hangs",
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

TEST_F(Commands, SelfTestCanHangUntilItIsStopped) {
  EXPECT_EQ(Do("selftest all watchdog hang"), "ok\n");
  bench.Say("G10=A\r");
  bench.Pass(1000);
  EXPECT_EQ(bench.Say("G10?"), "000A\r");
  bench.Say("G10=0\r");
  EXPECT_EQ(bench.Say("G10?"), "0000\r");
  EXPECT_EQ(Do("selftest 2 watchdog 99"), "ok\n");
  bench.Say("G10=A\r");
  bench.Pass(1);
  EXPECT_EQ(bench.Say("G10?G18?"), "0000\r0063\r");
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

TEST_F(Commands, RestIsRefusedAsLongAsTheLineIsInUse) {
  EXPECT_EQ(Do("rest"), "ok\n");
  board.at_rest = false;
  EXPECT_EQ(Do("rest"), "error: the line is in use\n");
}

TEST_F(Commands, StatusTellsPortInstrumentsAndFaults) {
  Do("fault 2 late-reply 200");
  EXPECT_EQ(Do("status"),
            "line /dev/pts/7\n"
            "instrument 1 time 0.00 stored 0 controllers 0 0 0 0 outputs 0 0 0 0 "
            "contacts open open open open heat 0 0 0 0 faults none\n"
            "instrument 2 time 0.00 stored 0 controllers 0 0 0 0 outputs 0 0 0 0 "
            "contacts open open open open heat 0 0 0 0 faults late-reply=200\n"
            "ok\n");
}

}  // namespace
}  // namespace instrument
