#include "service/output_recovery.h"

#include <gtest/gtest.h>

#include "tests/service/output_bench.h"

namespace tavrel {
namespace {

using Texts = std::vector<std::string>;
using Statuses4 = std::array<int, 4>;

// A program that finds the record of one that was killed in a test of outputs of instrument 3.
class ATestThatWasNotEnded : public OutputBench {
 protected:
  // What the one before has left in the instrument: heater on 1, safety on 2, off on 3; controller
  // 4 has its own status again.
  void Leave(const std::string& record = kRecord) {
    bench.home.Write(kOutputRecordsFile, record);
    Prepare();
    for (const int ctrl : {1, 2, 3}) {
      Status(ctrl) = ctrl == 2 ? 5 : 1;
    }
    Register('U', 1) = 100;
    Register('Q', 1) = 100;
  }
  // What is sent to instrument 3 in so many ticks.
  Texts Sent(int ticks) {
    Texts sent = Turns(ticks);
    std::erase_if(sent, [](const std::string& text) { return text[1] != '2'; });
    return sent;
  }
  void Reply(bool yes) {
    ASSERT_EQ(bench.dialogs.asked_beside.size(), 1U);
    bench.dialogs.asked_beside[0].answer(yes);
  }
};

const Texts kAllOff = {"U21=0\r", "Q21=0\r", "Z21?",    "Z21=0\r", "U22=0\r",
                       "Q22=0\r", "Z22?",    "Z22=0\r", "U23=0\r", "Q23=0\r",
                       "Z23?",    "Z23=0\r", "U24=0\r", "Q24=0\r", "Z24?"};

TEST_F(ATestThatWasNotEnded, IsSwitchedOffAndTheUserIsAsked) {
  Leave();
  EXPECT_EQ(Sent(60), kAllOff);
  EXPECT_EQ(Statuses(), (Statuses4{0, 0, 0, 4}));
  EXPECT_FALSE(AnyPower());
  EXPECT_EQ(RecordText(), "");
  ASSERT_EQ(bench.dialogs.asked_beside.size(), 1U);
  EXPECT_EQ(bench.dialogs.asked_beside[0].notice.Text,
            "The test of outputs on Tavrel-3 was not ended.\nIts outputs have been switched off "
            "now.\n\nThese controllers were on before the test, and are off:\ncontroller 1:  iso"
            "\n\nShall they return to that status ?");
  EXPECT_TRUE(bench.dialogs.boxes.empty());
  EXPECT_EQ(Sent(400), Texts()) << "without an answer they stay off";
}

TEST_F(ATestThatWasNotEnded, GivesTheStatusBackIfTheUserSaysSo) {
  Leave();
  Sent(60);
  Reply(true);
  EXPECT_EQ(Sent(20), (Texts{"Z21?", "Z21=2\r"}));
  EXPECT_EQ(Statuses(), (Statuses4{2, 0, 0, 4}));
}

TEST_F(ATestThatWasNotEnded, StaysOffIfTheUserSaysNo) {
  Leave();
  Sent(60);
  Reply(false);
  EXPECT_EQ(Sent(400), Texts());
}

TEST_F(ATestThatWasNotEnded, LeavesAControllerAloneThatSomebodyHasSwitchedSince) {
  Leave();
  Sent(60);
  Status(1) = 3;
  Reply(true);
  EXPECT_EQ(Sent(20), Texts{"Z21?"});
  EXPECT_EQ(Status(1), 3);
}

TEST_F(ATestThatWasNotEnded, StaysOffBehindAnEndAction) {
  Leave();
  Sent(60);
  bench.engine.Orders().Give(1, kInet, 1);
  Sent(3);
  Reply(true);
  EXPECT_EQ(Sent(20), Texts());
}

TEST_F(ATestThatWasNotEnded, IsTriedEachTenSecondsOnASilentInstrument) {
  Leave();
  silent = true;
  EXPECT_EQ(Sent(150), Texts{"U21=0\r"});
  EXPECT_EQ(Sent(200), Texts{"U21=0\r"});
  EXPECT_EQ(RecordText(), kRecord);
  silent = false;
  EXPECT_EQ(Sent(260), kAllOff);
}

class AFailedRecovery : public ATestThatWasNotEnded,
                        public testing::WithParamInterface<LineFailure> {};

TEST_P(AFailedRecovery, EndsWhicheverExchangeFails) {
  failure = GetParam();
  Leave();
  for (int at = 1; at <= 15; ++at) {
    bench.home.Write(kOutputRecordsFile, kRecord);
    OutputRecords records(bench.state, bench.messages);
    OutputRecovery recovery(
        {bench.state, bench.link, bench.engine.Orders(), records, bench.dialogs, bench.clock});
    for (int ctrl = 1; ctrl <= kControllers; ++ctrl) {
      Status(ctrl) = ctrl == 2 ? 5 : 1;
      Register('U', ctrl) = 100;
    }
    Count();
    fail_at = at;
    for (int tick = 0; tick < 800; ++tick) {
      static_cast<void>(recovery.Step());
      bench.clock.Advance(std::chrono::milliseconds(kTickMilliseconds));
    }
    EXPECT_EQ(Statuses(), (Statuses4{0, 0, 0, 0})) << at;
    EXPECT_FALSE(AnyPower()) << at;
    EXPECT_EQ(RecordText(), "") << at;
  }
}

INSTANTIATE_TEST_SUITE_P(EachWay, AFailedRecovery, testing::ValuesIn(kLineFailures),
                         [](const auto& test) { return NameOf(test.param); });

TEST_F(ATestThatWasNotEnded, WaitsWhileTheInstrumentIsSimulated) {
  bench.state.Settings.CommPort = "----";
  Leave();
  Turns(100);
  EXPECT_EQ(RecordText(), kRecord);
  EXPECT_TRUE(bench.dialogs.asked_beside.empty());
}

TEST_F(ATestThatWasNotEnded, SwitchesNothingOnByADamagedRecord) {
  Leave("inet 3 controller 1 Z=2\r\ninet 3 contr");
  Turns(100);
  EXPECT_TRUE(bench.dialogs.asked_beside.empty());
  EXPECT_EQ(Statuses(), (Statuses4{0, 5, 1, 4})) << "controller 1 is known to be in the test";
  ASSERT_FALSE(bench.dialogs.announced.empty());
  EXPECT_EQ(bench.dialogs.announced[0].Text, "TAVREL.OUT  is damaged !");
}

// Until that is done the instrument takes no new test.
TEST_F(ATestThatWasNotEnded, KeepsTheNextOneClosed) {
  Leave();
  silent = true;
  Turns(3);
  screen.Open();
  EXPECT_FALSE(screen.IsOpen());
  EXPECT_EQ(bench.dialogs.boxes.size(), 1U);
  silent = false;
  Turns(260);
  screen.Open();
  EXPECT_TRUE(screen.IsOpen());
}

// The instrument goes away in the middle of a test, and is there again.
TEST_F(ATestThatWasNotEnded, IsEndedWhenTheInstrumentIsBack) {
  OpenAndTake();
  screen.Opt_Click(2, OutputOption::kSafety);
  screen.Opt_Click(3, OutputOption::kHeater);
  Turns(60);
  silent = true;
  screen.Quit();
  EXPECT_TRUE(RunsUntilClosed());
  silent = false;
  Turns(400);
  EXPECT_FALSE(AnyPower());
  EXPECT_EQ(Statuses(), (Statuses4{0, 0, 0, 0}));
  EXPECT_EQ(RecordText(), "");
  Reply(true);
  Turns(40);
  EXPECT_EQ(Statuses(), (Statuses4{2, 0, 0, 4}));
}

TEST_F(ATestThatWasNotEnded, IsEndedAsSoonAsALostPortIsBack) {
  OpenAndTake();
  bench.port.open_error = 5;
  bench.port.Vanish();
  screen.Quit();
  EXPECT_TRUE(RunsUntilClosed());
  Turns(300);
  EXPECT_EQ(RecordText(), kRecord);
  bench.port.open_error = 0;
  Turns(260);
  EXPECT_EQ(RecordText(), "");
  EXPECT_EQ(Statuses(), (Statuses4{0, 0, 0, 0}));
}

TEST_F(ATestThatWasNotEnded, IsEndedUnderTheNewNumberOfItsInstrument) {
  Leave();
  silent = true;
  Turns(30);
  bench.output_recovery.Renumber(kInet, 5);
  EXPECT_NE(RecordText().find("inet 5 controller 1"), std::string::npos);
  EXPECT_EQ(RecordText().find("inet 3"), std::string::npos);
  silent = false;
  Texts to_outputs = Turns(60);
  std::erase_if(to_outputs, [](const std::string& text) { return text[0] != 'U'; });
  EXPECT_EQ(to_outputs, (Texts{"U41=0\r", "U42=0\r", "U43=0\r", "U44=0\r"}));
  EXPECT_EQ(RecordText(), "");
}

// Another instrument may have the old number now.
TEST_F(ATestThatWasNotEnded, GivesNothingBackToAnInstrumentThatHasTheNumberSince) {
  Leave();
  Sent(60);
  bench.output_recovery.Renumber(kInet, 5);
  Reply(true);
  Turns(60);
  EXPECT_EQ(Statuses(), (Statuses4{0, 0, 0, 4}));
}

// The virtual instrument of the simulation is given a number; the real one keeps its own.
TEST_F(ATestThatWasNotEnded, KeepsItsNumberInSimulation) {
  Leave();
  silent = true;
  Turns(30);
  bench.link.Simulated = true;
  bench.output_recovery.Renumber(kInet, 5);
  EXPECT_EQ(RecordText(), kRecord);
}

}  // namespace
}  // namespace tavrel
