#include "work/program_runner.h"

#include <gmock/gmock.h>

#include <ostream>

#include "tests/support/control_bench.h"

namespace tavrel {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class Runner : public ControlBench {
 public:
  explicit Runner(bool plugin = false) : ControlBench(plugin) {
    Register('Y') = 500;
    Greet();
    bench.state.TickMinute.At = 0;
  }
  ProgramStart Start(const std::vector<std::vector<int>>& steps) {
    return StartFile("A.PRG", ProgramBytes(steps));
  }
  ProgramStart StartOn(int slot, const std::vector<std::vector<int>>& steps) {
    bench.home.Write("A.PRG", ProgramBytes(steps));
    bench.dialogs.chosen_file = bench.home.File("A.PRG");
    return runner.Start(slot);
  }
  ProgramStart StartFile(const std::string& name, const std::string& bytes) {
    bench.home.Write(name, bytes);
    bench.dialogs.chosen_file = bench.home.File(name);
    const ProgramStart result = runner.Start(1);
    Count();
    return result;
  }
  // The work of one minute; what was sent in it.
  std::vector<std::string> Minute() {
    Count();
    runner.StepProgram(1);
    return Sent();
  }
  bool Runs() const { return bench.state.ProgRunning[1]; }

  ProgramRunner runner{
      {bench.state, bench.link, bench.engine, bench.dialogs, bench.events, bench.clock}};
};

class Running : public testing::Test, public Runner {};

TEST_F(Running, TakesAProgramIntoTheSlot) {
  Unit().UnitProgStep = 7;
  Unit().UnitProgWait = 9;
  EXPECT_EQ(StartFile("Anneal.PRG", ProgramBytes({{2, -1, 4000, 30}})), ProgramStart::kStarted);
  EXPECT_TRUE(Runs());
  EXPECT_EQ(runner.ProgSteps(1), 1);
  EXPECT_EQ(Unit().UnitProgName.Get(), "Anneal.PRG");
  EXPECT_EQ(Unit().UnitProgStep, 0);
  EXPECT_EQ(Unit().UnitProgWait, 0);
  EXPECT_TRUE(bench.state.SlotDirty[1]);
  EXPECT_EQ(bench.state.TickMinute.At, static_cast<float>(bench.clock.Timer()));
  EXPECT_EQ(bench.state.Settings.ProgFile, "Anneal.PRG");
  EXPECT_TRUE(bench.state.SettingsChanged);
  EXPECT_EQ(bench.dialogs.file_dialogs.back().Mode, FileMode::kOpen);
  EXPECT_THAT(Sent(), IsEmpty());
}

// 10:00 on the wall; the minute that runs has 40 s left.
TEST_F(Running, TellsWhereItIsAndWhenItGoesOn) {
  Start({{2, -1, 4000, 260}, {3, 5, 4410, 30}, {0, -1, 200, 1}, {2, -1, 200, 2000}});
  EXPECT_EQ(runner.ProgressText(1, Language::kEnglish), "");
  struct Way {
    int minutes;  // that pass before
    const char* english;
    const char* german;
  };
  const Way ways[] = {
      {1, "step 1 of 4, next 220.5 °C at 14:19", "Schritt 1 von 4, dann 220.5 °C um 14:19"},
      {260, "step 2 of 4, next off at 10:29", "Schritt 2 von 4, dann aus um 10:29"},
      {30, "step 3 of 4, next 10 °C at 10:00", "Schritt 3 von 4, dann 10 °C um 10:00"},
      {1, "step 4 of 4, end at 19:19 (+1 d)", "Schritt 4 von 4, Ende um 19:19 (+1 d)"}};
  for (const Way& way : ways) {
    for (int minute = 0; minute < way.minutes; ++minute) {
      runner.StepProgram(1);
    }
    bench.state.TickMinute.SetIn(40, bench.clock);
    EXPECT_EQ(runner.ProgressText(1, Language::kEnglish), way.english);
    EXPECT_EQ(runner.ProgressText(1, Language::kGerman), way.german);
  }
  bench.clock.wall.Second = 30;
  EXPECT_EQ(runner.ProgressText(1, Language::kEnglish), "step 4 of 4, end at 19:20 (+1 d)");
  bench.state.ProgRunning[1] = false;
  EXPECT_EQ(runner.ProgressText(1, Language::kEnglish), "");
  EXPECT_EQ(runner.ProgressText(0, Language::kEnglish), "");
  EXPECT_EQ(runner.ProgressText(12, Language::kEnglish), "");
}

TEST_F(Running, CutsALongName) {
  StartFile("A program with a long name.prg", ProgramBytes({{2, -1, 4000, 30}}));
  EXPECT_EQ(Unit().UnitProgName.Get(), "A program with a lon");
}

TEST_F(Running, BeepsIfAProgramRunsAlready) {
  Start({{2, -1, 4000, 30}});
  EXPECT_EQ(runner.Start(1), ProgramStart::kRunsAlready);
  EXPECT_EQ(bench.events.beeps, 1);
  EXPECT_EQ(bench.dialogs.file_dialogs.size(), 1U);
}

TEST_F(Running, DoesNotStartWithoutTheInstrument) {
  bench.line.silent = {kInet};
  Greet();
  EXPECT_EQ(Start({{2, -1, 4000, 30}}), ProgramStart::kNotStarted);
  EXPECT_EQ(LastBox(), "check: Tavrel connected ?");
  EXPECT_FALSE(Runs());
}

TEST_F(Running, DoesNotStartOnCancelNorWithoutASlot) {
  EXPECT_EQ(runner.Start(1), ProgramStart::kNotStarted);
  EXPECT_FALSE(bench.state.SettingsChanged);
  EXPECT_EQ(runner.Start(0), ProgramStart::kNotStarted);
  EXPECT_EQ(runner.Start(13), ProgramStart::kNotStarted);
  EXPECT_EQ(runner.Start(2), ProgramStart::kNotStarted) << "no file";
  EXPECT_THAT(bench.dialogs.boxes, IsEmpty());
}

TEST_F(Running, ForgetsARestOfAnOlderFile) {
  Unit().UnitProgName.Set("old rest");
  static_cast<void>(runner.Start(1));
  EXPECT_EQ(Unit().UnitProgName.Get(), "");
  Unit().UnitProgName.Set("a.prg");
  static_cast<void>(runner.Start(1));
  EXPECT_EQ(Unit().UnitProgName.Get(), "a.prg");
}

TEST_F(Running, RefusesFilesByTheirNumberOfSteps) {
  EXPECT_EQ(StartFile("A.PRG", std::string(8, '\0')), ProgramStart::kNotStarted);
  EXPECT_EQ(LastBox(), "Read  file: A.PRG  is damaged !");
  EXPECT_EQ(StartFile("A.PRG", ""), ProgramStart::kNotStarted);
  EXPECT_EQ(LastBox(), "Read  file: A.PRG  is damaged !");
  std::vector<std::vector<int>> steps(50, {2, -1, 4000, 30});
  EXPECT_EQ(Start(steps), ProgramStart::kNotStarted);
  EXPECT_EQ(LastBox(), "Read  file: A.PRG  is too big !");
  EXPECT_EQ(bench.dialogs.boxes.back().Icon, BoxIcon::kWarning);
  bench.dialogs.chosen_file = bench.home.File("NONE.PRG");
  EXPECT_EQ(runner.Start(1), ProgramStart::kNotStarted);
  EXPECT_EQ(LastBox(), "Read  file: NONE.PRG: No such file or directory");
  EXPECT_FALSE(Runs());
  steps.pop_back();
  EXPECT_EQ(Start(steps), ProgramStart::kStarted);
  EXPECT_EQ(runner.ProgSteps(1), 49);
}

TEST_F(Running, DoesNotStartAProgramWithAnEmptyStatusOrSetpoint) {
  for (const int steps : {1, 2, 7, 49}) {
    for (const int row : {1, steps / 2 + 1, steps}) {
      for (const auto& [word, name] : {std::pair(0, "status"), std::pair(2, "setpoint")}) {
        std::vector<std::vector<int>> program(static_cast<std::size_t>(steps), {2, -1, 4000, 30});
        program.at(static_cast<std::size_t>(row - 1)).at(static_cast<std::size_t>(word)) = -1;
        EXPECT_EQ(Start(program), ProgramStart::kNotStarted) << name << row;
        ASSERT_EQ(LastBox(), std::string("check of program: missing: ") + name + " on row " +
                                 std::to_string(row));
        EXPECT_EQ(bench.dialogs.boxes.back().Icon, BoxIcon::kWarning);
        EXPECT_FALSE(Runs());
      }
    }
  }
  EXPECT_EQ(Unit().UnitProgName.Get(), "");
  EXPECT_FALSE(bench.state.SlotDirty[1]);
}

// The editor fills what it saves; only these two words are sent as they stand.
TEST_F(Running, StartsAProgramWithoutIncrementOrTime) {
  EXPECT_EQ(Start({{3, -1, 4000, 30}, {2, -1, -2, -1}, {0, -1, 20, 0}}), ProgramStart::kStarted);
}

TEST_F(Running, NeverSendsWhatAFileThatWasCutShortDoesNotHold) {
  const std::string whole = ProgramBytes({{3, 25, 8000, 10}, {2, -1, 4000, 30}, {0, -1, 20, 1}});
  for (std::size_t length = 0; length <= whole.size(); ++length) {
    bench.state.ProgRunning[1] = false;
    const bool is_started = StartFile("A.PRG", whole.substr(0, length)) == ProgramStart::kStarted;
    Unit().UnitProgWait = 0;
    for (int minute = 0; is_started && minute < 60; ++minute) {
      for (const std::string& command : Minute()) {
        EXPECT_EQ(command.find("FFFF"), std::string::npos) << command << length;
      }
    }
    // A rest of half a step counts as one behind an odd number of records.
    const std::size_t rest = length % 8;
    const bool cuts_setpoint = rest == 5 || (rest == 4 && length / 8 % 2 == 1);
    EXPECT_EQ(is_started, length >= 14 && !cuts_setpoint) << length;
  }
}

TEST_F(Running, WaitsTheTimeOfEachStep) {
  Start({{2, -1, 4000, 3}, {0, -1, 20, 1}});
  EXPECT_THAT(Minute(), ElementsAre("W22=FA0\r", "Z22=2\r"));
  EXPECT_EQ(Unit().UnitProgStep, 1);
  EXPECT_EQ(Unit().UnitProgWait, 3);
  EXPECT_THAT(Minute(), IsEmpty());
  EXPECT_EQ(Unit().UnitProgWait, 2);
  EXPECT_THAT(Minute(), IsEmpty());
  EXPECT_THAT(Minute(), ElementsAre("W22=14\r", "Z22=0\r"));
  EXPECT_EQ(Unit().UnitProgStep, 2);
  EXPECT_TRUE(Runs());
  EXPECT_THAT(Minute(), IsEmpty());
  EXPECT_FALSE(Runs()) << "the last step has been waited out";
  EXPECT_EQ(Register('W'), 20);
}

TEST_F(Running, FollowsAStepWithoutTimeAMinuteLater) {
  Start({{2, -1, 4000, 0}, {2, -1, 5000, -5}, {0, -1, 20, 1}});
  Minute();
  EXPECT_THAT(Minute(), ElementsAre("W22=1388\r", "Z22=2\r"));
  EXPECT_THAT(Minute(), ElementsAre("W22=14\r", "Z22=0\r"));
}

TEST_F(Running, StartsARampAtTheActualValue) {
  Start({{3, 25, 8000, 10}});
  Register('W') = 7000;
  EXPECT_THAT(Minute(), ElementsAre("M22=1F40\r", "Y22?", "W22=1F4\r", "I22=19\r", "Z22=3\r"));
  EXPECT_EQ(Register('W'), 500);
  EXPECT_EQ(Register('Z'), 3);
}

TEST_F(Running, RepeatsARampWithoutAnActualValueAMinuteLater) {
  for (const int increment : {1, 25, 100}) {
    Start({{3, increment, 8000, 10}, {2, -1, 4000, 5}});
    Register('Y') = kNoData;
    Register('W') = 7000;
    for (int minute = 0; minute < 3; ++minute) {
      EXPECT_THAT(Minute(), ElementsAre("M22=1F40\r", "Y22?"));
      EXPECT_EQ(Unit().UnitProgStep, 0);
      EXPECT_EQ(Unit().UnitProgWait, 1);
    }
    EXPECT_EQ(Register('W'), 7000);
    Register('Y') = -32767;
    EXPECT_EQ(Minute().size(), 5U);
    EXPECT_EQ(Register('W'), -32767);
    EXPECT_EQ(Unit().UnitProgStep, 1);
    bench.state.ProgRunning[1] = false;
  }
  EXPECT_THAT(bench.dialogs.boxes, IsEmpty());
  EXPECT_THAT(bench.dialogs.announced, IsEmpty());
}

TEST_F(Running, TakesEveryStatusFrom3OnForARamp) {
  Start({{4, 25, 8000, 10}});
  EXPECT_EQ(Minute().back(), "Z22=4\r");
  EXPECT_EQ(Register('M'), 8000);
}

TEST_F(Running, StandsStillWhileTheInstrumentIsAway) {
  Start({{2, -1, 4000, 5}, {0, -1, 20, 1}});
  Minute();
  Minute();
  bench.line.silent = {kInet};
  Greet();
  for (int minute = 0; minute < 3; ++minute) {
    EXPECT_THAT(Minute(), IsEmpty());
    EXPECT_EQ(Unit().UnitProgWait, 4);
  }
  bench.line.silent.clear();
  Greet();
  Minute();
  EXPECT_EQ(Unit().UnitProgWait, 3) << "the lost minutes are not made up";
  EXPECT_THAT(bench.dialogs.boxes, IsEmpty());
}

TEST_F(Running, NeverAdvancesWithoutAnOpenFile) {
  Start({{2, -1, 4000, 5}});
  bench.state.SlotFileNo[1].Close();
  EXPECT_THAT(Minute(), IsEmpty());
  EXPECT_EQ(Unit().UnitProgStep, 0);
  EXPECT_TRUE(Runs());
}

TEST_F(Running, LeavesAControllerAloneThatTheOutputTestHolds) {
  Start({{2, -1, 4000, 5}});
  bench.state.OutputTestHolds[kInet][kCtrl] = true;
  EXPECT_THAT(Minute(), IsEmpty());
  EXPECT_EQ(Unit().UnitProgWait, 0);
  bench.state.OutputTestHolds[kInet][kCtrl] = false;
  bench.state.OutputTestHolds[kInet][kCtrl + 1] = true;
  EXPECT_THAT(Minute(), ElementsAre("W22=FA0\r", "Z22=2\r"));
}

TEST_F(Running, EndsWhenTheSlotWasGivenToAnotherController) {
  Start({{2, -1, 4000, 1}, {2, -1, 5000, 1}});
  Minute();
  Unit().UnitCtrl = 3;
  EXPECT_THAT(Minute(), IsEmpty());
  EXPECT_FALSE(Runs());
}

TEST_F(Running, TouchesNoSlotThatRunsNoProgram) {
  for (int slot = -1; slot <= 14; ++slot) {
    runner.StepProgram(slot);
  }
  Count();
  EXPECT_THAT(Minute(), IsEmpty());
}

TEST_F(Running, AsksBeforeItStopsAndWritesNothing) {
  Start({{2, -1, 4000, 5}});
  Minute();
  Count();
  bench.dialogs.ok = false;
  EXPECT_FALSE(runner.Stop(1));
  EXPECT_TRUE(Runs());
  EXPECT_EQ(LastBox(), " : terminate program");
  EXPECT_EQ(bench.dialogs.boxes.back().Icon, BoxIcon::kQuestion);
  bench.dialogs.ok = true;
  EXPECT_TRUE(runner.Stop(1));
  EXPECT_FALSE(Runs());
  EXPECT_THAT(Sent(), IsEmpty());
  const std::size_t boxes = bench.dialogs.boxes.size();
  EXPECT_TRUE(runner.Stop(1)) << "none runs: no question";
  EXPECT_EQ(bench.dialogs.boxes.size(), boxes);
}

// The end action's order is told again each ten seconds until it is acknowledged.
TEST_F(Running, MakesAnOlderOrderToSwitchOffVoid) {
  Unit().UnitEndAction = 1;
  fail_from = 1;
  bench.engine.EndOfRecording(1);
  ASSERT_TRUE(bench.state.StopPending[1]);
  fail_from = 0;
  Greet();
  Start({{2, -1, 4000, 5}});
  Minute();
  EXPECT_FALSE(bench.state.StopPending[1]);
  Count();
  bench.engine.TenSecondTick();
  bench.engine.PumpOnce();
  EXPECT_THAT(Sent(), IsEmpty());
}

TEST_F(Running, SendsNothingBehindTheEndActionThatSwitchesOff) {
  Unit().UnitEndAction = 1;
  Unit().UnitRecOn = 1;
  Start({{2, -1, 4000, 1}, {2, -1, 5000, 1}, {3, 25, 8000, 1}});
  Minute();
  Count();
  bench.engine.EndOfRecording(1);
  EXPECT_THAT(Sent(), ElementsAre("Z22=0\r"));
  for (int minute = 0; minute < 4; ++minute) {
    EXPECT_THAT(Minute(), IsEmpty());
  }
  EXPECT_FALSE(Runs());
  EXPECT_EQ(Register('Z'), 0);
}

TEST_F(Running, LeavesTheOrderForAnotherControllerInForce) {
  Unit().UnitEndAction = 1;
  fail_from = 1;
  bench.engine.EndOfRecording(1);
  fail_from = 0;
  Unit().UnitCtrl = 4;
  Greet();
  Start({{2, -1, 4000, 5}});
  Minute();
  EXPECT_TRUE(bench.state.StopPending[1]);
}

TEST_F(Running, SendsTheFirstStepOnTheNextFreeTickOfTheCycle) {
  MainCycle::TickHandlers handlers;
  handlers.step_program = [this](int slot) { runner.StepProgram(slot); };
  bench.cycle.SetHandlers(handlers);
  bench.cycle.Start();
  bench.state.ActiveView = View::kTavProg;
  Start({{2, -1, 4000, 2}, {0, -1, 20, 1}});
  bench.Run(1);
  EXPECT_EQ(Unit().UnitProgStep, 1);
  bench.Run(118);
  EXPECT_EQ(Unit().UnitProgStep, 1);
  bench.Run(2);
  EXPECT_EQ(Unit().UnitProgStep, 2) << "two minutes of the grid later";
  bench.Run(60);
  EXPECT_FALSE(Runs());
}

// Twelve slots that each begin a ramp of five exchanges in the same minute.
class TwelveRamps : public Running {
 protected:
  TwelveRamps() {
    handlers.step_program = [this](int slot) {
      const std::uint64_t before = bench.link.Exchanges();
      runner.StepProgram(slot);
      if (bench.link.Exchanges() > before) {
        stepped.push_back(slot);
      }
    };
    bench.cycle.SetHandlers(handlers);
    bench.cycle.Start();
    bench.state.ActiveView = View::kTavProg;
  }
  // Four on each of three instruments, each with a controller of its own.
  void StartAll() {
    for (int slot = 1; slot <= kSlots; ++slot) {
      UnitRecord& unit = bench.state.Unit[slot];
      unit = bench.state.Unit[1];
      unit.UnitInet = static_cast<std::int16_t>((slot - 1) / 4 + 1);
      unit.UnitCtrl = static_cast<std::int16_t>((slot - 1) % 4 + 1);
      const std::string name = "M260314" + std::string(1, static_cast<char>('A' + slot)) + ".OVN";
      bench.home.Write("tavdat/" + name, bench.home.Read("tavdat/M260314A.OVN"));
      bench.state.SlotFile[slot] = name;
      bench.state.SlotPath[slot] = bench.state.SlotPath[1];
      static_cast<void>(bench.state.SlotFileNo[slot].Open(bench.home.File("tavdat/" + name),
                                                          FileAccess::kUpdate));
      bench.link.ComInet = unit.UnitInet;
      bench.link.ComLetter = "Y";
      bench.link.ComIndex = unit.UnitCtrl;
      bench.line.registers[{unit.UnitInet, 'Y', unit.UnitCtrl}] = 500;
      bench.link.ReadReg();
      ASSERT_EQ(StartOn(slot, {{3, 25, 8000, 2}, {3, 25, 9000, 30}}), ProgramStart::kStarted)
          << LastBox();
    }
    bench.clock.AdvanceSeconds(0.01);
    Count();
  }

  MainCycle::TickHandlers handlers;
  std::vector<int> stepped;
};

TEST_F(TwelveRamps, StepOneInATickInTheirOrder) {
  StartAll();
  std::vector<int> expected;
  for (int slot = 1; slot <= kSlots; ++slot) {
    expected.push_back(slot);
    bench.Run(0.05);
    EXPECT_EQ(stepped, expected);
  }
  stepped.clear();
  bench.Run(30);
  EXPECT_THAT(stepped, IsEmpty());
  bench.Run(120);
  EXPECT_EQ(stepped, expected) << "the second step of each";
}

struct Sleep {
  const char* name;
  double timer;  // seconds since midnight when the programs start
};

class SleepingRamps : public TwelveRamps, public testing::WithParamInterface<Sleep> {
 protected:
  void SetUp() override { bench.clock.timer_at_start = GetParam().timer; }
};

INSTANTIATE_TEST_SUITE_P(TimesOfDay, SleepingRamps,
                         testing::Values(Sleep{"by_day", 36000}, Sleep{"over_midnight", 86000},
                                         Sleep{"from_the_last_minute_of_the_day", 86298}),
                         [](const auto& each) { return std::string(each.param.name); });

TEST_P(SleepingRamps, MakeUpForTheirMinutesAndTheUserIsTold) {
  StartAll();
  bench.Run(1);
  bench.clock.AdvanceSeconds(8 * 60);
  bench.Run(5);
  for (int slot = 1; slot <= kSlots; ++slot) {
    EXPECT_EQ(bench.state.Unit[slot].UnitProgStep, 2) << slot;
    EXPECT_EQ(bench.state.Unit[slot].UnitProgWait, 30 - 6) << slot;
  }
  ASSERT_EQ(bench.dialogs.announced.size(), 1U);
  EXPECT_EQ(bench.dialogs.announced[0].Title, "controller  program");
  EXPECT_EQ(bench.dialogs.announced[0].Text,
            "The controller programs stood still for 7 minutes.\n"
            "They make up for it now: their steps follow at once.");
  bench.Run(200);
  EXPECT_EQ(bench.dialogs.announced.size(), 1U);
  bench.clock.AdvanceSeconds(120);
  bench.Run(1);
  EXPECT_EQ(bench.dialogs.announced.size(), 2U) << "another sleep";
}

TEST_F(TwelveRamps, MakeUpForANightOfMoreThanADay) {
  StartAll();
  bench.Run(1);
  bench.clock.AdvanceSeconds(24 * 3600 + 8 * 60);
  bench.Run(30);
  ASSERT_GE(bench.dialogs.announced.size(), 1U);
  EXPECT_THAT(bench.dialogs.announced[0].Text, testing::HasSubstr("stood still for 1447 minutes."));
  EXPECT_FALSE(bench.state.ProgRunning[1]) << "it came to its end on the way";
}

TEST_F(TwelveRamps, TellNothingOfASleepInWhichNoneRuns) {
  bench.Run(1);
  bench.clock.AdvanceSeconds(600);
  bench.Run(5);
  EXPECT_THAT(bench.dialogs.announced, IsEmpty());
}

TEST_F(Running, GoesOnOverMidnight) {
  MainCycle::TickHandlers handlers;
  handlers.step_program = [this](int slot) { runner.StepProgram(slot); };
  bench.cycle.SetHandlers(handlers);
  bench.cycle.Start();
  bench.state.ActiveView = View::kTavProg;
  bench.clock.timer_at_start = 86280;
  bench.Run(1);
  Start({{2, -1, 4000, 3}, {0, -1, 20, 1}});
  bench.Run(5);
  EXPECT_EQ(Unit().UnitProgStep, 1);
  bench.Run(120 + 170);
  EXPECT_EQ(Unit().UnitProgWait, 1) << "two minutes of the new day";
  bench.Run(60);
  EXPECT_EQ(Unit().UnitProgStep, 2);
}

struct RunLine {
  bool plugin;
  std::vector<std::string> ramp;
  std::vector<std::string> hold;
};

std::ostream& operator<<(std::ostream& out, const RunLine& line) {
  return out << (line.plugin ? "plugin" : "direct");
}

class RunningOnTheWire : public testing::TestWithParam<RunLine> {
 protected:
  // The step is told again whole, a minute after an exchange of it failed.
  void ExpectRetry(const std::vector<int>& step, const std::vector<std::string>& telegrams) {
    for (std::size_t exchange = 1; exchange <= telegrams.size(); ++exchange) {
      Runner slot(GetParam().plugin);
      slot.Start({step});
      slot.fail_at = static_cast<int>(exchange);
      EXPECT_EQ(slot.Minute(),
                std::vector<std::string>(telegrams.begin(),
                                         telegrams.begin() + static_cast<long>(exchange)));
      EXPECT_EQ(slot.Unit().UnitProgStep, 0);
      EXPECT_EQ(slot.Unit().UnitProgWait, 1);
      slot.fail_at = 0;
      EXPECT_THAT(slot.Minute(), IsEmpty()) << "nothing was heard of it since";
      slot.Greet();
      EXPECT_EQ(slot.Minute(), telegrams);
      EXPECT_EQ(slot.Unit().UnitProgStep, 1);
      EXPECT_EQ(slot.Unit().UnitProgWait, step.back());
    }
  }
};

TEST_P(RunningOnTheWire, SendsARampInItsOrderAndAgainAfterEachFailure) {
  ExpectRetry({3, 25, 8000, 10}, GetParam().ramp);
}

TEST_P(RunningOnTheWire, SendsAHoldInItsOrderAndAgainAfterEachFailure) {
  ExpectRetry({2, -1, 4000, 30}, GetParam().hold);
}

INSTANTIATE_TEST_SUITE_P(
    BothKindsOfLine, RunningOnTheWire,
    testing::Values(RunLine{false,
                            {"M22=1F40\r", "Y22?", "W22=1F4\r", "I22=19\r", "Z22=3\r"},
                            {"W22=FA0\r", "Z22=2\r"}},
                    RunLine{true,
                            {"n2v62=1F40\r", "n2p22?", "n2p2=1F4\r", "n2v22=19\r", "n2p32=3\r"},
                            {"n2p2=FA0\r", "n2p32=2\r"}}),
    testing::PrintToStringParamName());

}  // namespace
}  // namespace tavrel
