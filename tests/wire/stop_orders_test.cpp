#include "files/stop_orders.h"
#include "tests/support/control_bench.h"
#include "tests/wire/button_fixture.h"

namespace tavrel {
namespace {

constexpr const char* kOrderText = "Z=0 slot 1 inet 2 controller 3\r\nend\r\n";

// The end action that switches the controller off, beside a program of the same slot.
class EndActionOnTheWire : public ButtonsOnTheWire {
 protected:
  void SetUp() override {
    ButtonsOnTheWire::SetUp();
    program.home.Write("A.PRG", ProgramBytes({{2, -1, 1600, 1}, {2, -1, 1700, 1}}));
    program.dialogs.chosen_file = program.home.File("A.PRG");
    Unit().UnitEndAction = 1;
    ASSERT_EQ(program.runner.Start(1), ProgramStart::kStarted);
    program.runner.StepProgram(1);
    ASSERT_EQ(Register("Z"), 2);
  }
  // The recording ends, and the order fails as this test is for.
  void End() {
    Forget();
    fail_at = Fails() ? 1 : 0;
    program.engine.EndOfRecording(1);
    ExpectTelegrams(off);
    EXPECT_EQ(program.state.StopPending[1], Fails());
    EXPECT_EQ(program.home.Exists(kStopOrdersFile), Fails());
    EXPECT_FALSE(program.state.ProgRunning[1]);
  }

  Telegrams off = Of({"Z13=0\r"}, {"n1p33=0\r"});
};

TEST_P(EndActionOnTheWire, SwitchesOffAndEndsTheProgramHoweverTheOrderGoes) {
  End();
  EXPECT_TRUE(program.RunUntil([this] { return !program.state.StopPending[1]; }));
  EXPECT_EQ(Register("Z"), 0);
  EXPECT_FALSE(program.home.Exists(kStopOrdersFile));
  instrument.Forget();
  for (int minute = 0; minute < 3; ++minute) {
    program.runner.StepProgram(1);
  }
  ExpectTelegrams({});
}

TEST_P(EndActionOnTheWire, IsTriedOnceMoreAtTheEndOfTheProgram) {
  End();
  instrument.Forget();
  program.commands.Close();
  ExpectTelegrams(Fails() ? off : Telegrams{});
  EXPECT_FALSE(program.home.Exists(kStopOrdersFile));
}

TEST_P(EndActionOnTheWire, IsLeftToTheUserWhoSwitchesTheController) {
  End();
  Greet();
  program.worksheet.cmd_Ctrl_Click(0);
  EXPECT_FALSE(program.state.StopPending[1]);
  EXPECT_FALSE(program.home.Exists(kStopOrdersFile));
  program.engine.TenSecondTick();
  program.engine.PumpOnce();
  EXPECT_EQ(Register("Z"), 2);
}

INSTANTIATE_TEST_SUITE_P(BothKindsOfLine, EndActionOnTheWire,
                         testing::Combine(testing::Bool(),
                                          testing::Values(kNone, kLostRequest, kLostReply, kRefusal,
                                                          kLateReply)),
                         [](const auto& test) { return NameOf(test.param); });

// A program that finds what the one before it could not switch off.
class LeftOnTheWire : public testing::TestWithParam<bool> {};

TEST_P(LeftOnTheWire, IsSwitchedOffFirst) {
  WireProgram program(kSpeedUp);
  LiveInstrument instrument(program.home, GetParam(),
                            {"--instruments", "2", "--oven", "2.3=hold:300"});
  ASSERT_TRUE(instrument.IsUp());
  program.home.Write(kStopOrdersFile, kOrderText);
  program.Start(GetParam(), kName, BenchProgram::Header(kInet, kCtrl, 2, true));
  const Telegrams all = instrument.Telegrams(2);
  ASSERT_GE(all.size(), 2U);
  EXPECT_EQ(all[0], GetParam() ? "n1p33=0\r" : "Z13=0\r");
  EXPECT_EQ(all[1], GetParam() ? "n1vB2?" : "R12?");
  EXPECT_FALSE(program.home.Exists(kStopOrdersFile));
  ASSERT_EQ(program.dialogs.announced.size(), 1U);
  program.link.ComInet = kInet;
  program.link.ComLetter = "Z";
  program.link.ComIndex = kCtrl;
  program.link.ReadReg();
  EXPECT_EQ(program.link.ComValue, 0);
}

INSTANTIATE_TEST_SUITE_P(BothKindsOfLine, LeftOnTheWire, testing::Bool(),
                         [](const auto& test) { return test.param ? "plugin" : "direct"; });

}  // namespace
}  // namespace tavrel
