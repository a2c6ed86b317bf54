#include "service/watchdog_test.h"

#include <gtest/gtest.h>

#include "tests/service/failed_exchange.h"
#include "tests/service/service_line.h"

namespace tavrel {
namespace {

// The watchdog test, with an instrument whose measurement takes as long as the period.
// Levers: period (in units of 10 ms; 0 hangs), and those of the line.
class TheWatchdogTest : public ServiceLine {
 protected:
  TheWatchdogTest() {
    on_command = [this](const std::string& words) { Work(words); };
  }
  void Work(const std::string& words) {
    if (words[0] != 'G' || words[2] != '0') {
      return;
    }
    const int inet = words[1] - '0' + 1;
    if (words[3] == '=') {
      ends_at = bench.clock.Elapsed() + std::chrono::milliseconds(10 * period);
    } else if (Word(inet, 'G', 0) == 10 && period > 0 && bench.clock.Elapsed() >= ends_at) {
      Word(inet, 'G', 8) = static_cast<std::int16_t>(period);
      Word(inet, 'G', 0) = 0;
    }
  }
  void Measure() {
    for (int turn = 0; turn < 120 && !screen->Values().Cmd_again; ++turn) {
      bench.Run(0.05);
    }
  }
  [[nodiscard]] Pointer LastPointer() const { return bench.events.pointers.back(); }

  int period = 160;
  std::chrono::nanoseconds ends_at{};
  WatchdogTest* screen = &bench.watchdog_test;
};

TEST_F(TheWatchdogTest, MeasuresOnceOnADirectLine) {
  period = 10;
  StartOn(0, 5);
  Open(*screen);
  EXPECT_EQ(screen->Caption(), " Tavrel-5  /  Test  of  Watchdog");
  EXPECT_EQ(bench.state.ActiveView, View::kAllWdog);
  EXPECT_EQ(screen->Values().Lbl_delay, "?");
  EXPECT_FALSE(screen->Values().Lbl_error);
  EXPECT_FALSE(screen->Values().Cmd_again);
  EXPECT_EQ(Pulses(1), Texts{"G40=A\r"});
  EXPECT_EQ(LastPointer(), Pointer::kHourglass);
  EXPECT_EQ(Pulses(3), (Texts{"G40?", "G40?", "G48?"}));
  EXPECT_EQ(screen->Values().Lbl_delay, "100");
  EXPECT_TRUE(screen->Values().Lbl_error);
  EXPECT_TRUE(screen->Values().Cmd_again);
  EXPECT_EQ(LastPointer(), Pointer::kNormal);
  EXPECT_TRUE(Pulses(1).empty()) << "the measurement has ended";
}

TEST_F(TheWatchdogTest, ClearsAPluginLineFirst) {
  period = 1;
  StartOn(1, 2);
  Open(*screen);
  EXPECT_EQ(Pulses(3), (Texts{kEsc, "n1v0=A\r", "n1v0?", "n1v8?"}));
}

struct Period {
  int units;
  const char* shown;
  bool is_error;
};

class TheWatchdogTestOf : public TheWatchdogTest, public testing::WithParamInterface<Period> {};

TEST_P(TheWatchdogTestOf, APeriod) {
  period = GetParam().units;
  StartOn(0, 1);
  Open(*screen);
  const auto begin = bench.clock.Elapsed();
  Measure();
  EXPECT_EQ(screen->Values().Lbl_delay, GetParam().shown);
  EXPECT_EQ(screen->Values().Lbl_error, GetParam().is_error);
  EXPECT_TRUE(screen->Values().Cmd_again);
  EXPECT_EQ(LastPointer(), Pointer::kNormal);
  EXPECT_LT(bench.clock.Elapsed() - begin, std::chrono::milliseconds(3500));
  EXPECT_EQ(Word(1, 'G', 0), 0);
}

INSTANTIATE_TEST_SUITE_P(Periods, TheWatchdogTestOf,
                         testing::Values(Period{99, "990", true}, Period{100, "1000", false},
                                         Period{160, "1600", false}, Period{225, "2250", false},
                                         Period{226, "2260", true}, Period{290, "2900", true},
                                         Period{310, "> 3000", true}, Period{0, "> 3000", true}));

TEST_F(TheWatchdogTest, StopsTheFirmwareWhenItHangs) {
  period = 0;
  StartOn(0, 3);
  Open(*screen);
  Texts sent;
  while (!screen->Values().Cmd_again) {
    const Texts pulse = Pulses(1);
    sent.insert(sent.end(), pulse.begin(), pulse.end());
    ASSERT_LT(sent.size(), 100U);
  }
  EXPECT_EQ(sent.front(), "G20=A\r");
  EXPECT_EQ(Texts(sent.end() - 2, sent.end()), (Texts{"G20?", "G20=0\r"}));
  EXPECT_GT(sent.size(), 40U);
}

TEST_F(TheWatchdogTest, HasEndedThoughTheFirmwareDoesNotHearOfIt) {
  period = 0;
  StartOn(0, 3);
  Open(*screen);
  on_command = [this](const std::string& words) {
    if (words == "G20=0\r") {
      bench.line.silent = {3};
      replies = {""};
    }
  };
  Measure();
  EXPECT_EQ(screen->Values().Lbl_delay, "> 3000");
  EXPECT_TRUE(Pulses(2).empty());
  EXPECT_TRUE(screen->Values().Cmd_again);
}

// The order to stop is the third silence in a row.
TEST_F(TheWatchdogTest, HasEndedThoughThereIsNoConnectionAnyMore) {
  period = 0;
  StartOn(0, 3);
  Open(*screen);
  Pulses(2);
  bench.line.silent = {3};
  Pulses(2);
  bench.clock.AdvanceSeconds(3);
  EXPECT_EQ(Pulses(1), (Texts{"G20?", "G20=0\r"}));
  EXPECT_TRUE(screen->ComIcon());
  EXPECT_EQ(screen->Values().Lbl_delay, "> 3000");
  EXPECT_TRUE(Pulses(2).empty());
}

TEST_F(TheWatchdogTest, MeasuresAgainOnlyWhenOneHasEnded) {
  StartOn(0, 1);
  Open(*screen);
  Pulses(2);
  screen->Cmd_again_Click();
  EXPECT_EQ(Pulses(1), Texts{"G00?"}) << "the measurement goes on";
  Measure();
  EXPECT_EQ(screen->Values().Lbl_delay, "1600");
  period = 300;
  screen->Cmd_again_Click();
  EXPECT_EQ(screen->Values().Lbl_delay, "?");
  EXPECT_FALSE(screen->Values().Lbl_error);
  EXPECT_FALSE(screen->Values().Cmd_again);
  Measure();
  EXPECT_TRUE(screen->Values().Lbl_error);
  period = 100;
  screen->Cmd_again_Click();
  EXPECT_FALSE(screen->Values().Lbl_error);
  Measure();
  EXPECT_EQ(screen->Values().Lbl_delay, "1000");
}

class TheWatchdogTestAfterAFailure : public TheWatchdogTest,
                                     public testing::WithParamInterface<FailedExchange> {};

TEST_P(TheWatchdogTestAfterAFailure, ComesToTheSameEnd) {
  period = 12;
  StartOn(GetParam().com_mode, 6);
  Open(*screen);
  FailExchange(GetParam().exchange, GetParam().failure);
  Measure();
  EXPECT_EQ(screen->Values().Lbl_delay, "120");
  EXPECT_EQ(LastPointer(), Pointer::kNormal);
}

INSTANTIATE_TEST_SUITE_P(EachExchange, TheWatchdogTestAfterAFailure,
                         testing::ValuesIn(EachExchange({0, 2}, 4)), NameOfExchange);

TEST_F(TheWatchdogTest, FallsBackToItsFirstStepWhenThereIsNoConnection) {
  StartOn(1, 1);
  Open(*screen);
  Pulses(2);
  bench.line.silent = {1};
  EXPECT_EQ(Pulses(5), (Texts{"nv0?", "nv0?", "nv0?", kEsc, "nv0=A\r", kEsc, "nv0=A\r"}));
  EXPECT_TRUE(screen->ComIcon());
  EXPECT_EQ(bench.link_watch.LinkMisses, 2);
  EXPECT_EQ(LastPointer(), Pointer::kNormal);
  bench.line.silent.clear();
  Measure();
  EXPECT_FALSE(screen->ComIcon());
  EXPECT_EQ(screen->Values().Lbl_delay, "1600");
}

TEST_F(TheWatchdogTest, CountsElapsedTimeOverMidnight) {
  for (const int units : {160, 226, 0}) {
    period = units;
    bench.clock.timer_at_start =
        86398 - std::chrono::duration<double>(bench.clock.Elapsed()).count();
    bench.clock.timer_at_start += bench.clock.timer_at_start < 0 ? 86400 : 0;
    if (!bench.cycle.IsEnabled()) {
      StartOn(0, 1);
    }
    Open(*screen);
    const auto begin = bench.clock.Elapsed();
    Measure();
    EXPECT_EQ(screen->Values().Lbl_delay, units == 0 ? "> 3000" : std::to_string(units * 10));
    EXPECT_LT(bench.clock.Elapsed() - begin, std::chrono::milliseconds(3500));
    screen->Quit();
  }
}

TEST_F(TheWatchdogTest, GivesThePointerBackWhenItIsLeft) {
  for (const bool is_end : {false, true}) {
    StartOn(0, 1);
    Open(*screen);
    Pulses(2);
    ASSERT_EQ(LastPointer(), Pointer::kHourglass);
    is_end ? screen->CloseNow() : screen->Quit();
    EXPECT_EQ(LastPointer(), Pointer::kNormal);
    EXPECT_EQ(screen->Values().Lbl_delay, "?");
    EXPECT_EQ(Word(1, 'G', 0), 10) << "the firmware ends it by itself";
    bench.Run(2);
    Open(*screen);
    EXPECT_EQ(Pulses(1), Texts{"G00=A\r"});
    screen->CloseNow();
  }
}

TEST_F(TheWatchdogTest, ForgetsItsResultWhenItIsLeft) {
  period = 10;
  StartOn(0, 1);
  Open(*screen);
  Measure();
  ASSERT_EQ(screen->Values().Lbl_delay, "100");
  screen->Quit();
  EXPECT_EQ(screen->Values().Lbl_delay, "?");
  EXPECT_FALSE(screen->Values().Lbl_error);
  EXPECT_FALSE(screen->Values().Cmd_again);
}

TEST_F(TheWatchdogTest, EndsAtOnceInSimulation) {
  bench.state.Settings.CommPort = "----";
  StartOn(0, 1);
  Open(*screen);
  bench.Run(0.15);
  EXPECT_EQ(screen->Values().Lbl_delay, "0");
  EXPECT_TRUE(screen->Values().Lbl_error);
  EXPECT_TRUE(screen->Values().Cmd_again);
}

TEST_F(TheWatchdogTest, AsksWhileTheInstrumentRecords) {
  bench.Install(12, "M260301A.OVN", BenchProgram::Header(6, 1, 15, true));
  StartOn(0, 6);
  bench.dialogs.boxes.clear();
  bench.dialogs.yes = false;
  screen->Open();
  ASSERT_EQ(bench.dialogs.boxes.size(), 1U);
  EXPECT_NE(bench.dialogs.boxes.front().Text.find("row 12:  "), std::string::npos);
  EXPECT_TRUE(bench.dialogs.boxes.front().PresetIsNo);
  EXPECT_FALSE(screen->IsOpen());
  screen->Step();
  EXPECT_EQ(Word(6, 'G', 0), 0);
}

}  // namespace
}  // namespace tavrel
