#include "service/output_test.h"

#include <gtest/gtest.h>

#include "tests/service/output_bench.h"

namespace tavrel {
namespace {

using Texts = std::vector<std::string>;
using Values3 = std::array<int, 3>;
using Statuses4 = std::array<int, 4>;

class TheTestOfOutputs : public OutputBench {};

// The step table, telegram by telegram.
const Texts kEntryDirect = {"Z21?",    "Z22?",    "Z23?",    "Z24?",    "Q21=0\r", "Q22=0\r",
                            "Q23=0\r", "Q24=0\r", "U21=0\r", "U22=0\r", "U23=0\r", "U24=0\r",
                            "Z21=1\r", "Z22=1\r", "Z23=1\r", "Z24=1\r"};
const Texts kClosingDirect = {"U21=0\r", "U22=0\r", "U23=0\r", "U24=0\r", "Q21=0\r", "Q22=0\r",
                              "Q23=0\r", "Q24=0\r", "Z21=2\r", "Z22=0\r", "Z23=1\r", "Z24=4\r"};
const Texts kEntryPlugIn = {"n2p31?",    "n2p32?",    "n2p33?",    "n2p34?",
                            "n2vA1=0\r", "n2vA2=0\r", "n2vA3=0\r", "n2vA4=0\r",
                            "n2vE1=0\r", "n2vE2=0\r", "n2vE3=0\r", "n2vE4=0\r",
                            "n2p31=1\r", "n2p32=1\r", "n2p33=1\r", "n2p34=1\r"};
const Texts kClosingPlugIn = {"n2vE1=0\r", "n2vE2=0\r", "n2vE3=0\r", "n2vE4=0\r",
                              "n2vA1=0\r", "n2vA2=0\r", "n2vA3=0\r", "n2vA4=0\r",
                              "n2p31=2\r", "n2p32=0\r", "n2p33=1\r", "n2p34=4\r"};

TEST_F(TheTestOfOutputs, TakesTheControllersAndGivesThemBackOnADirectLine) {
  OpenTest();
  EXPECT_EQ(bench.state.ActiveView, View::kSpTavHs);
  EXPECT_EQ(screen.Caption(), " Test of Outputs");
  EXPECT_EQ(Pulses(16), kEntryDirect);
  Turns(60);
  bench.port.sent.clear();
  EXPECT_EQ(Turns(40), Texts()) << "only a change of an option writes";
  screen.Quit();
  EXPECT_FALSE(screen.lbWait());
  EXPECT_TRUE(screen.IsOpen()) << "the close itself is refused";
  EXPECT_EQ(Pulses(12), kClosingDirect);
  EXPECT_TRUE(screen.lbWait());
  EXPECT_EQ(bench.events.pointers.back(), Pointer::kHourglass);
  Turns(1);
  EXPECT_FALSE(screen.IsOpen());
  EXPECT_FALSE(screen.lbWait());
  EXPECT_EQ(bench.events.pointers.back(), Pointer::kNormal);
  EXPECT_EQ(bench.state.ActiveView, View::kMainSheet);
}

TEST_F(TheTestOfOutputs, TakesTheControllersAndGivesThemBackOnAPlugInLine) {
  OpenTest(true);
  Texts entry = kEntryPlugIn;
  entry.insert(entry.begin(), "\x1B");
  EXPECT_EQ(Pulses(17), entry);
  Turns(60);
  bench.port.sent.clear();
  screen.Quit();
  EXPECT_EQ(Pulses(12), kClosingPlugIn);
  EXPECT_TRUE(RunsUntilClosed());
}

// A controller that was on has written its own power into U until it was taken.
TEST_F(TheTestOfOutputs, SwitchesTheOutputsOffOnceMoreOfControllersThatWereOn) {
  OpenTest();
  Pulses(16);
  EXPECT_EQ(Turns(60), (Texts{"Z21=1\r", "U21=0\r", "Q21=0\r", "Z24=1\r", "U24=0\r", "Q24=0\r"}));
}

struct OptionCase {
  OutputOption option;
  Values3 values;  // U, Q and Z
  OutputLamp heater;
  OutputLamp safety;
};

constexpr std::array kOptions = {
    OptionCase{OutputOption::kOff, {0, 0, 1}, OutputLamp::kOff, OutputLamp::kOff},
    OptionCase{OutputOption::kHeater, {100, 100, 1}, OutputLamp::kOn, OutputLamp::kOff},
    OptionCase{OutputOption::kSafety, {0, 0, 5}, OutputLamp::kOff, OutputLamp::kOn}};

// From each option to each other, on each controller.
TEST_F(TheTestOfOutputs, GivesEachOptionItsThreeValues) {
  OpenAndTake();
  for (int ctrl = 1; ctrl <= kControllers; ++ctrl) {
    for (const OptionCase& from : kOptions) {
      for (const OptionCase& to : kOptions) {
        screen.Opt_Click(ctrl, from.option);
        Turns(25);
        screen.Opt_Click(ctrl, to.option);
        EXPECT_EQ(screen.Chosen(ctrl), to.option);
        Turns(25);
        EXPECT_EQ(Values(ctrl), to.values);
        EXPECT_EQ(screen.HeaterLamp(ctrl), to.heater);
        EXPECT_EQ(screen.SafetyLamp(ctrl), to.safety);
      }
    }
    screen.Opt_Click(ctrl, OutputOption::kOff);
    Turns(25);
  }
  EXPECT_FALSE(was_heated);
}

TEST_F(TheTestOfOutputs, WritesThePowersFirstAndTheStatusLast) {
  OpenAndTake();
  screen.Opt_Click(2, OutputOption::kHeater);
  EXPECT_EQ(Turns(30), (Texts{"U22=64\r", "Q22=64\r", "Z22=1\r"}));
  screen.Opt_Click(2, OutputOption::kSafety);
  EXPECT_EQ(Turns(30), (Texts{"U22=0\r", "Q22=0\r", "Z22=5\r"}));
}

TEST_F(TheTestOfOutputs, OpensTheContactBeforeThePowersOfASafetyOutput) {
  OpenAndTake();
  screen.Opt_Click(4, OutputOption::kSafety);
  Turns(30);
  bench.port.sent.clear();
  screen.Opt_Click(4, OutputOption::kHeater);
  EXPECT_EQ(Turns(30), (Texts{"Z24=1\r", "U24=64\r", "Q24=64\r"}));
  screen.Opt_Click(4, OutputOption::kSafety);
  Turns(30);
  bench.port.sent.clear();
  screen.Opt_Click(4, OutputOption::kOff);
  EXPECT_EQ(Turns(30), (Texts{"Z24=1\r", "U24=0\r", "Q24=0\r"}));
}

// Each exchange of a whole test fails in turn: it is repeated, and the test ends as without it.
class AFailedExchange : public OutputBench, public testing::WithParamInterface<LineFailure> {};

TEST_P(AFailedExchange, OfATestOfOutputsIsRepeated) {
  constexpr int kWholeTest = 16 + 6 + 3 * 4 + 12;
  OpenTest();
  screen.CloseNow();
  failure = GetParam();
  for (int at = 1; at <= kWholeTest; ++at) {
    for (int ctrl = 1; ctrl <= kControllers; ++ctrl) {
      Status(ctrl) = kFound.at(static_cast<std::size_t>(ctrl - 1));
    }
    Open(screen);
    Count();
    fail_at = at;
    Turns(90);
    for (const OutputOption option : {OutputOption::kHeater, OutputOption::kSafety,
                                      OutputOption::kHeater, OutputOption::kOff}) {
      screen.Opt_Click(3, option);
      Turns(60);
    }
    EXPECT_EQ(Values(3), (Values3{0, 0, 1})) << at;
    screen.Quit();
    EXPECT_TRUE(RunsUntilClosed()) << at;
    if (failure != LineFailure::kRefusal) {  // a refused status is left to the next round
      EXPECT_EQ(exchanges, kWholeTest + 1) << "exchange " << at << " is made twice";
    }
    EXPECT_EQ(Statuses(), (Statuses4{2, 0, 1, 4})) << at;
    EXPECT_FALSE(AnyPower()) << at;
    EXPECT_FALSE(was_heated) << at;
    EXPECT_EQ(RecordText(), "") << at;
  }
}

INSTANTIATE_TEST_SUITE_P(EachWay, AFailedExchange, testing::ValuesIn(kLineFailures),
                         [](const auto& test) { return NameOf(test.param); });

TEST_F(TheTestOfOutputs, HoldsItsControllersFromTheFirstStepToTheLast) {
  OpenTest();
  EXPECT_TRUE(bench.state.IsHeld(kInet, 1));
  EXPECT_TRUE(bench.state.IsHeld(kInet, 4));
  EXPECT_FALSE(bench.state.IsHeld(2, 1));
  Turns(80);
  screen.Quit();
  Pulses(12);
  EXPECT_TRUE(bench.state.IsHeld(kInet, 4));
  Turns(1);
  EXPECT_FALSE(bench.state.IsHeld(kInet, 1));
  EXPECT_FALSE(bench.state.IsHeld(kInet, 4));
}

TEST_F(TheTestOfOutputs, IgnoresEscapeAndOptionsWhileItCloses) {
  OpenAndTake();
  screen.Quit();
  Pulses(10);
  screen.Quit();
  screen.Opt_Click(1, OutputOption::kHeater);
  EXPECT_EQ(screen.Chosen(1), OutputOption::kOff);
  EXPECT_EQ(Pulses(2), (Texts{"Z23=1\r", "Z24=4\r"}));
  EXPECT_TRUE(RunsUntilClosed());
}

// Nothing has been switched yet: each controller keeps its status.
TEST_F(TheTestOfOutputs, RestoresNoStatusThatItHasNotTaken) {
  for (const int read : {0, 1, 3, 4}) {
    OpenTest();
    Pulses(read);
    screen.Quit();
    EXPECT_EQ(Pulses(8), Texts(kClosingDirect.begin(), kClosingDirect.begin() + 8)) << read;
    EXPECT_TRUE(RunsUntilClosed());
    EXPECT_EQ(Statuses(), (Statuses4{2, 0, 1, 4})) << read;
  }
}

TEST_F(TheTestOfOutputs, GivesBackOnlyThoseThatItHasTakenSoFar) {
  OpenTest();
  Pulses(14);  // controllers 1 and 2
  screen.Quit();
  EXPECT_EQ(Pulses(10), Texts(kClosingDirect.begin(), kClosingDirect.begin() + 10));
  EXPECT_TRUE(RunsUntilClosed());
  EXPECT_EQ(Statuses(), (Statuses4{2, 0, 1, 4}));
}

TEST_F(TheTestOfOutputs, KeepsARecordFromTheFirstWriteToTheLast) {
  OpenTest();
  Pulses(4);
  EXPECT_EQ(RecordText(), "");
  EXPECT_EQ(bench.state.Unfinished, 0);
  std::string at_first_write;
  const auto answer = bench.port.answer;
  bench.port.answer = [&](const std::string& command) {
    at_first_write = at_first_write.empty() ? RecordText() : at_first_write;
    return answer(command);
  };
  Pulses(1);
  EXPECT_EQ(at_first_write, kRecord);
  EXPECT_EQ(bench.state.Unfinished, 1);
  Turns(80);
  screen.Quit();
  Pulses(12);
  EXPECT_EQ(RecordText(), kRecord);
  Turns(1);
  EXPECT_EQ(RecordText(), "");
  EXPECT_EQ(bench.state.Unfinished, 0);
}

TEST_F(TheTestOfOutputs, BeginsNothingWithoutARecord) {
  OpenTest();
  Pulses(4);
  std::filesystem::create_directory(bench.home.File(kOutputRecordsFile));
  for (const std::string& command : Turns(60)) {
    EXPECT_EQ(command.find('='), std::string::npos) << command;
  }
  EXPECT_FALSE(screen.IsOpen());
  ASSERT_GE(bench.dialogs.announced.size(), 1U);
  EXPECT_FALSE(bench.state.IsHeld(kInet, 1));
}

TEST_F(TheTestOfOutputs, GivesUpThreeSecondsBehindTheLastGoodAnswer) {
  OpenAndTake();
  screen.Opt_Click(1, OutputOption::kHeater);
  Turns(30);
  screen.Quit();
  Pulses(2);
  silent = true;
  const auto since = bench.clock.Elapsed();
  EXPECT_TRUE(RunsUntilClosed());
  const auto time = bench.clock.Elapsed() - since;
  EXPECT_GT(time, std::chrono::milliseconds(2900));
  EXPECT_LT(time, std::chrono::milliseconds(3700));
  EXPECT_EQ(RecordText(), kRecord);
  EXPECT_EQ(bench.state.ActiveView, View::kMainSheet);
  EXPECT_EQ(bench.events.pointers.back(), Pointer::kNormal);
  ASSERT_EQ(bench.dialogs.announced.size(), 1U);
  EXPECT_FALSE(bench.state.IsHeld(kInet, 1));
}

// The guard counts from good answer to good answer, not from the beginning.
TEST_F(TheTestOfOutputs, DoesNotGiveUpWhileGoodAnswersCome) {
  OpenAndTake();
  int count = 0;
  const auto answer = bench.port.answer;
  bench.port.answer = [&](const std::string& command) {
    return ++count % 8 == 0 ? answer(command) : std::string();  // one in two seconds
  };
  screen.Quit();
  EXPECT_TRUE(RunsUntilClosed());
  EXPECT_EQ(Statuses(), (Statuses4{2, 0, 1, 4}));
  EXPECT_EQ(RecordText(), "");
}

TEST_F(TheTestOfOutputs, GoesOnWhereItWasWhenALostPortIsBack) {
  OpenAndTake();
  screen.Opt_Click(1, OutputOption::kHeater);
  Turns(1);
  bench.port.Vanish();
  Turns(10);
  EXPECT_TRUE(screen.ComIcon());
  bench.port.sent.clear();
  EXPECT_EQ(Turns(10), Texts());
  EXPECT_TRUE(screen.IsOpen());
  Turns(250);  // the ten-second tick opens the port again
  EXPECT_EQ(Values(1), (Values3{100, 100, 1}));
  EXPECT_FALSE(screen.ComIcon());
  screen.Quit();
  EXPECT_TRUE(RunsUntilClosed());
  EXPECT_EQ(Statuses(), (Statuses4{2, 0, 1, 4}));
}

TEST_F(TheTestOfOutputs, ClosesAtOnceWithoutAPort) {
  OpenAndTake();
  bench.port.open_error = 5;
  bench.port.Vanish();
  bench.link.ReopenIfLost();
  screen.Quit();
  EXPECT_FALSE(screen.IsOpen());
  EXPECT_EQ(RecordText(), kRecord);
  screen.Open();
  EXPECT_FALSE(screen.IsOpen());
  EXPECT_EQ(bench.dialogs.boxes.size(), 1U);
}

TEST_F(TheTestOfOutputs, LosesItsPortWhileItCloses) {
  OpenAndTake();
  screen.Quit();
  Pulses(9);
  bench.port.open_error = 5;
  bench.port.Vanish();
  Turns(3);
  EXPECT_FALSE(screen.IsOpen());
  EXPECT_EQ(RecordText(),
            "inet 3 controller 2 Z=0\r\ninet 3 controller 3 Z=1\r\n"
            "inet 3 controller 4 Z=4\r\nend\r\n")
      << "controller 1 has its status again";
}

// The end action of a recording switches controller 1 off beneath the test.
class AnEndActionBeneath : public OutputBench {
 protected:
  void EndRecording() { bench.engine.Orders().Give(5, kInet, 1); }
};

TEST_F(AnEndActionBeneath, ATestOfOutputsMakesTheStatusBehindItOff) {
  OpenAndTake();
  screen.Opt_Click(1, OutputOption::kHeater);
  Turns(30);
  bench.port.sent.clear();
  EndRecording();
  Texts sent = Turns(40);
  EXPECT_EQ(std::count(sent.begin(), sent.end(), "Z21=0\r"), 1) << "the order itself";
  EXPECT_EQ(Values(1), (Values3{100, 100, 1})) << "what the lamp says is in force";
  EXPECT_NE(RecordText().find("controller 1 Z=0"), std::string::npos);
  screen.Quit();
  EXPECT_TRUE(RunsUntilClosed());
  EXPECT_EQ(Statuses(), (Statuses4{0, 0, 1, 4}));
  EXPECT_FALSE(was_heated);
}

TEST_F(AnEndActionBeneath, ThatWaitsAlreadyIsFulfilledByTheTest) {
  Prepare();
  refused = "Z21=0";
  EndRecording();
  Turns(3);
  ASSERT_TRUE(bench.engine.Orders().IsWaiting(kInet, 1));
  Open(screen);
  Turns(80);
  refused.clear();
  screen.Quit();
  EXPECT_TRUE(RunsUntilClosed());
  EXPECT_EQ(Status(1), 0);
  EXPECT_FALSE(bench.engine.Orders().IsWaiting(kInet, 1));
}

// In the middle of a change, at each of its writes, and from each option to each other.
TEST_F(AnEndActionBeneath, NeverHeatsAnOven) {
  OpenAndTake();
  for (const OptionCase& from : kOptions) {
    for (const OptionCase& to : kOptions) {
      for (int turns = 0; turns < 20; ++turns) {
        screen.Opt_Click(1, from.option);
        Turns(40);
        screen.Opt_Click(1, to.option);
        Turns(turns);
        EndRecording();
        Turns(60);
        ASSERT_EQ(Values(1), to.values) << turns;
      }
    }
  }
  EXPECT_FALSE(was_heated);
}

TEST_F(TheTestOfOutputs, IsNotHeldUpByAControllerThatRefusesItsStatus) {
  OpenTest();
  refused = "Z22=";
  Turns(100);
  EXPECT_EQ(Statuses(), (Statuses4{1, 0, 1, 1}));
  screen.Opt_Click(3, OutputOption::kSafety);
  Turns(60);
  EXPECT_EQ(Status(3), 5);
  EXPECT_EQ(screen.HeaterLamp(2), OutputLamp::kUnknown);
  screen.Quit();
  EXPECT_TRUE(RunsUntilClosed());
  EXPECT_EQ(Statuses(), (Statuses4{2, 0, 1, 4}));
  EXPECT_EQ(RecordText(), "") << "it was never switched";
}

TEST_F(TheTestOfOutputs, SwitchesOffWhatRefusesItsOldStatus) {
  OpenAndTake();
  refused = "Z21=2";
  bench.port.sent.clear();
  screen.Quit();
  EXPECT_TRUE(RunsUntilClosed());
  EXPECT_EQ(Texts(bench.port.sent.begin() + 8, bench.port.sent.end()),
            (Texts{"Z21=2\r", "Z22=0\r", "Z23=1\r", "Z24=4\r", "Z21=2\r", "Z21=2\r", "Z21=0\r"}));
  EXPECT_EQ(Statuses(), (Statuses4{0, 0, 1, 4}));
  EXPECT_EQ(RecordText(), "");
}

TEST_F(TheTestOfOutputs, IsClosedFirstWhenTheProgramEnds) {
  OpenAndTake();
  screen.Opt_Click(2, OutputOption::kHeater);
  Turns(30);
  bench.events.end_is_wanted = true;
  bench.commands.Close();
  EXPECT_FALSE(bench.commands.HasEnded());
  EXPECT_TRUE(RunsUntilClosed());
  EXPECT_FALSE(AnyPower());
  EXPECT_EQ(Statuses(), (Statuses4{2, 0, 1, 4}));
  bench.commands.Close();
  EXPECT_TRUE(bench.commands.HasEnded());
}

TEST_F(TheTestOfOutputs, DoesNotKeepTheProgramFromItsEndWithoutALine) {
  OpenAndTake();
  bench.port.open_error = 5;
  bench.port.Vanish();
  bench.events.end_is_wanted = true;
  Turns(3);
  bench.commands.Close();
  EXPECT_TRUE(bench.commands.HasEnded());
  EXPECT_EQ(RecordText(), kRecord);
}

TEST_F(TheTestOfOutputs, GoesOnOverMidnight) {
  bench.clock.timer_at_start = 86290;
  OpenAndTake();
  bench.clock.AdvanceSeconds(15);
  screen.Opt_Click(1, OutputOption::kHeater);
  Turns(60);
  EXPECT_EQ(Values(1), (Values3{100, 100, 1}));
  screen.Quit();
  EXPECT_TRUE(RunsUntilClosed());
  EXPECT_FALSE(AnyPower());
}

TEST_F(TheTestOfOutputs, KeepsNoRecordOfASimulatedInstrument) {
  bench.state.Settings.CommPort = "----";
  Start();
  bench.state.ActiveInet = kInet;
  Open(screen);
  Turns(60);
  EXPECT_EQ(screen.HeaterLamp(4), OutputLamp::kOff);
  EXPECT_EQ(RecordText(), "");
  screen.Opt_Click(4, OutputOption::kHeater);
  Turns(30);
  EXPECT_EQ(screen.HeaterLamp(4), OutputLamp::kOn);
  screen.Quit();
  EXPECT_TRUE(RunsUntilClosed());
}

}  // namespace
}  // namespace tavrel
