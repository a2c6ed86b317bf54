#include "service/output_test.h"

#include <gtest/gtest.h>

#include "tests/wire/live_instrument.h"
#include "tests/wire/wire_program.h"

namespace tavrel {
namespace {

constexpr int kNoExchange = 0;

// The outputs of a virtual instrument, whose controller 1 holds an oven at 200 degrees.
class OutputsOnTheWire : public testing::TestWithParam<bool> {
 protected:
  void SetUp() override {
    ASSERT_TRUE(instrument.IsUp());
    program.port.before_write = [this] { CountExchange(); };
    program.Start(GetParam(), "M260314A.OVN", BenchProgram::Header(2, 1, 2, false));
    program.state.ActiveInet = 2;
    screen.Open();
    ASSERT_TRUE(screen.IsOpen());
    turn.emplace(program.stepped, View::kSpTavHs, [this] { screen.Step(); });
  }

  // From now on instrument 2 is away from that exchange on.
  void CountExchange() {
    if (exchanges_left != kNoExchange && --exchanges_left == kNoExchange) {
      EXPECT_TRUE(instrument.Tell("fault 2 silence on"));
    }
  }
  bool Shows(int ctrl, OutputLamp heater, OutputLamp safety) {
    return program.RunUntil(
        [&] { return screen.HeaterLamp(ctrl) == heater && screen.SafetyLamp(ctrl) == safety; });
  }
  bool Choose(int ctrl, OutputOption option) {
    screen.Opt_Click(ctrl, option);
    return Shows(ctrl, option == OutputOption::kHeater ? OutputLamp::kOn : OutputLamp::kOff,
                 option == OutputOption::kSafety ? OutputLamp::kOn : OutputLamp::kOff);
  }
  // All four are in the hands of the test and off.
  bool IsTaken() {
    return Shows(4, OutputLamp::kOff, OutputLamp::kOff) &&
           WaitForState("controllers 1 1 1 1 outputs 0 0 0 0 contacts open open open open");
  }
  bool IsClosed() {
    return program.RunUntil([this] { return !screen.IsOpen(); });
  }
  // What the instrument says of its controllers and their outputs.
  std::string State() const {
    const std::string status = instrument.Status();
    const std::size_t begin = status.find("controllers");
    return begin == std::string::npos ? status
                                      : status.substr(begin, status.find(" faults") - begin);
  }
  bool WaitForState(const std::string& part) {
    const bool comes = program.RunUntil([&] { return State().find(part) != std::string::npos; });
    EXPECT_TRUE(comes) << State();
    return comes;
  }
  bool HeatsNothing() const { return State().ends_with("heat 0 0 0 0"); }

  WireProgram program{1};
  LiveInstrument instrument{
      program.home,
      GetParam(),
      {"--inet", "2", "--warm", "--oven", "2.1=hold:200", "--line-speed", "none"}};
  OutputTest& screen = program.output_test;
  std::optional<SteppedScreens::Turn> turn;
  int exchanges_left = kNoExchange;
};

TEST_P(OutputsOnTheWire, HaveTheValuesOfEachOptionAndHeatNoOven) {
  ASSERT_TRUE(IsTaken());
  EXPECT_TRUE(HeatsNothing());
  ASSERT_TRUE(Choose(2, OutputOption::kHeater));
  EXPECT_EQ(State(),
            "controllers 1 1 1 1 outputs 0 100 0 0 contacts open open open open "
            "heat 0 0 0 0");
  ASSERT_TRUE(Choose(3, OutputOption::kSafety));
  EXPECT_EQ(State(),
            "controllers 1 1 5 1 outputs 0 100 0 0 contacts open open closed open "
            "heat 0 0 0 0");
  ASSERT_TRUE(Choose(2, OutputOption::kSafety));
  ASSERT_TRUE(Choose(3, OutputOption::kHeater));
  EXPECT_EQ(State(),
            "controllers 1 5 1 1 outputs 0 0 100 0 contacts open closed open open "
            "heat 0 0 0 0");
  ASSERT_TRUE(Choose(2, OutputOption::kOff));
  ASSERT_TRUE(Choose(3, OutputOption::kOff));
  EXPECT_EQ(State(),
            "controllers 1 1 1 1 outputs 0 0 0 0 contacts open open open open "
            "heat 0 0 0 0");
}

// The line dies at each exchange of a change, from each option to each other. Whatever the
// instrument has got by then, it heats nothing, now and later.
TEST_P(OutputsOnTheWire, HeatNoOvenWhereverTheLineFailsInAChange) {
  constexpr int kWrites = 3;
  ASSERT_TRUE(IsTaken());
  for (const auto& [from, to] : std::vector<std::pair<OutputOption, OutputOption>>{
           {OutputOption::kOff, OutputOption::kHeater},
           {OutputOption::kHeater, OutputOption::kSafety},
           {OutputOption::kSafety, OutputOption::kHeater},
           {OutputOption::kOff, OutputOption::kSafety},
           {OutputOption::kSafety, OutputOption::kOff},
           {OutputOption::kHeater, OutputOption::kOff}}) {
    for (int dies_at = 1; dies_at <= kWrites; ++dies_at) {
      ASSERT_TRUE(Choose(1, from));
      screen.Opt_Click(1, to);
      exchanges_left = dies_at;
      const auto before = program.link.Exchanges();
      EXPECT_TRUE(program.RunUntil(
          [&] { return program.link.Exchanges() >= before + static_cast<unsigned>(dies_at); }));
      EXPECT_TRUE(HeatsNothing()) << State();
      EXPECT_TRUE(instrument.Tell("pass 2 5"));
      EXPECT_TRUE(HeatsNothing()) << State();
      exchanges_left = kNoExchange;
      ASSERT_TRUE(instrument.Tell("fault 2 none"));
      ASSERT_TRUE(Choose(1, to));
      EXPECT_TRUE(HeatsNothing()) << State();
    }
  }
}

TEST_P(OutputsOnTheWire, AreOffAndTheStatusIsBackBehindEscape) {
  ASSERT_TRUE(IsTaken());
  ASSERT_TRUE(Choose(1, OutputOption::kSafety));
  ASSERT_TRUE(Choose(2, OutputOption::kHeater));
  screen.Quit();
  ASSERT_TRUE(IsClosed());
  EXPECT_TRUE(State().starts_with("controllers 2 0 0 0 ")) << State();
  EXPECT_TRUE(WaitForState(" 0 0 0 contacts closed open open open"));
  EXPECT_FALSE(program.home.Exists(kOutputRecordsFile));
}

TEST_P(OutputsOnTheWire, KeepTheirStatusBehindAnEscapeAtEachStepOfTheEntry) {
  for (unsigned step = 0; step < 17; ++step) {
    const auto end = program.link.Exchanges() + step;
    ASSERT_TRUE(program.RunUntil([&] { return program.link.Exchanges() >= end; }));
    screen.Quit();
    ASSERT_TRUE(IsClosed());
    EXPECT_TRUE(State().starts_with("controllers 2 0 0 0 ")) << step << " " << State();
    screen.Open();
  }
  screen.Quit();
  EXPECT_TRUE(IsClosed());
}

TEST_P(OutputsOnTheWire, AreOffWhenAPulledPlugIsBack) {
  ASSERT_TRUE(IsTaken());
  ASSERT_TRUE(Choose(1, OutputOption::kHeater));
  ASSERT_TRUE(Choose(4, OutputOption::kSafety));
  ASSERT_TRUE(instrument.Tell("unplug"));
  screen.Quit();
  ASSERT_TRUE(IsClosed());
  turn.reset();
  EXPECT_TRUE(program.home.Exists(kOutputRecordsFile));
  ASSERT_TRUE(instrument.Tell("plug"));
  program.state.TickTen = {};  // the next ten-second tick
  EXPECT_TRUE(WaitForState("controllers 0 0 0 0 outputs 0 0 0 0 contacts open open open open"));
  ASSERT_TRUE(program.RunUntil([this] { return !program.dialogs.asked_beside.empty(); }));
  EXPECT_FALSE(program.home.Exists(kOutputRecordsFile));
  program.dialogs.asked_beside[0].answer(true);
  EXPECT_TRUE(WaitForState("controllers 2 0 0 0"));
}

TEST_P(OutputsOnTheWire, AreOffWhenAnInstrumentThatWasGivenUpAnswersAgain) {
  ASSERT_TRUE(IsTaken());
  ASSERT_TRUE(Choose(2, OutputOption::kHeater));
  ASSERT_TRUE(instrument.Tell("fault 2 silence on"));
  screen.Quit();
  ASSERT_TRUE(IsClosed());
  EXPECT_TRUE(program.home.Exists(kOutputRecordsFile));
  ASSERT_TRUE(instrument.Tell("fault 2 none"));
  turn.reset();
  EXPECT_TRUE(WaitForState("controllers 0 0 0 0 outputs 0 0 0 0 contacts open open open open"));
}

// Each exchange of the closing steps is lost in turn.
TEST_P(OutputsOnTheWire, AreOffWhicheverReplyOfTheClosingStepsIsLost) {
  for (int lost = 1; lost <= 12; ++lost) {
    ASSERT_TRUE(IsTaken());
    ASSERT_TRUE(Choose(3, OutputOption::kHeater));
    int count = 0;
    program.port.before_write = [&] {
      if (++count == lost) {
        EXPECT_TRUE(instrument.Tell(std::string("fault 2 ") +
                                    (lost % 2 == 0 ? "lost-reply" : "lost-request") +
                                    " on times 1"));
      }
    };
    screen.Quit();
    ASSERT_TRUE(IsClosed());
    program.port.before_write = [] {};
    EXPECT_TRUE(WaitForState(" 0 0 0 contacts closed open open open")) << lost;
    EXPECT_TRUE(State().starts_with("controllers 2 0 0 0 ")) << lost << State();
    screen.Open();
  }
  screen.Quit();
  EXPECT_TRUE(IsClosed());
}

INSTANTIATE_TEST_SUITE_P(BothKindsOfLine, OutputsOnTheWire, testing::Bool(),
                         [](const auto& test) { return test.param ? "plugin" : "direct"; });

}  // namespace
}  // namespace tavrel
