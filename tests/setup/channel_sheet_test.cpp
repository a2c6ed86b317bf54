#include <gmock/gmock.h>

#include "tests/setup/channel_bench.h"

namespace tavrel {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

// "L20?", "L21?" and so on, of instrument 3.
std::vector<std::string> Reads(const std::string& letters, int first_row = 0) {
  std::vector<std::string> commands;
  for (int row = first_row; row < kChannelRows; ++row) {
    for (const char letter : letters) {
      commands.push_back(std::string(1, letter) + "2" + RowName(row) + "?");
    }
  }
  return commands;
}

std::vector<std::string> Joined(std::vector<std::string> left,
                                const std::vector<std::string>& right) {
  left.insert(left.end(), right.begin(), right.end());
  return left;
}

TEST(ChannelSheet, ReadsOneColumnInAStep) {
  ChannelBench fixture;
  fixture.Open();
  const std::vector<std::pair<AdjState, std::vector<std::string>>> steps = {
      {AdjState::kReadSensors, {}},
      {AdjState::kReadSampling, Joined(Reads("L"), {"T20?"})},
      {AdjState::kReadOffsets, Reads("S", 1)},
      {AdjState::kReadDivisors, Reads("O")},
      {AdjState::kReadActual, Reads("JK")},
      {AdjState::kReadBuffers, Reads("Y")},
      {AdjState::kIdle, Reads("R", 1)}};
  EXPECT_EQ(fixture.dialog->State(), AdjState::kEmptySheet);
  for (const auto& [next, commands] : steps) {
    fixture.Forget();
    fixture.Tick();
    EXPECT_EQ(fixture.dialog->State(), next);
    EXPECT_EQ(fixture.commands, commands);
  }
}

TEST(ChannelSheet, ShowsWhatItHasRead) {
  ChannelBench fixture;
  fixture.Register('L', 9) = 0;
  fixture.Register('L', 10) = 1;
  fixture.Register('L', 11) = 5;
  fixture.Register('L', 12) = -1;
  fixture.Register('Y', 0) = 2512;
  fixture.Register('Y', 1) = -401;
  fixture.Register('Y', 2) = kNoData;
  fixture.Register('K', 3) = -16384;
  fixture.Register('O', 3) = -77;
  fixture.Register('J', 4) = 32766;
  fixture.Register('K', 4) = 1;
  fixture.bench.line.buffers[{3, 1}] = {1, 2, 3};
  fixture.OpenIdle();
  EXPECT_EQ(fixture.Values().Caption, " Tavrel-3:   Channels");
  const std::vector<std::string> sensors = {
      "RTD",    "FeCuNi", "FeCuNi", "FeCuNi", "FeCuNi", "FeCuNi", "FeCuNi", "FeCuNi",
      "FeCuNi", "------", "Linear", "?",      "?",      "NiCrNi", "NiCrNi", "NiCrNi"};
  for (int row = 0; row < kChannelRows; ++row) {
    EXPECT_EQ(fixture.Row(row).sensor, sensors.at(static_cast<std::size_t>(row))) << row;
    EXPECT_EQ(fixture.Row(row).sampling, row == 0 ? "" : "10") << row;
  }
  EXPECT_EQ(fixture.Row(0).actual, "25.12");
  EXPECT_EQ(fixture.Row(1).actual, "-20.05");
  EXPECT_EQ(fixture.Row(2).actual, "");
  EXPECT_EQ(fixture.Row(15).actual, "20.75");
  EXPECT_EQ(fixture.Row(0).buffer, "");
  EXPECT_EQ(fixture.Row(1).buffer, "3");
  EXPECT_EQ(fixture.Row(2).buffer, "0");
  EXPECT_EQ(fixture.Row(3).offset, "-77");
  EXPECT_EQ(fixture.Row(15).offset, "25");
  EXPECT_EQ(fixture.Row(0).gain, "1.2000");
  EXPECT_EQ(fixture.Row(3).gain, "1.7500");
  EXPECT_EQ(fixture.Row(4).gain, "32766.0000");
  EXPECT_FALSE(fixture.Values().ComIcon);
}

TEST(ChannelSheet, SamplingTimesOfAFastInstrumentAreSeconds) {
  ChannelBench fixture;
  fixture.Register('T', 0) = 1;
  fixture.Register('S', 7) = 3;
  fixture.OpenIdle();
  EXPECT_EQ(fixture.Row(7).sampling, "3");
  EXPECT_EQ(fixture.Row(1).sampling, "1");
}

TEST(ChannelSheet, MenusComeWithTheIdleLoop) {
  ChannelBench fixture;
  fixture.Open();
  while (fixture.dialog->State() != AdjState::kIdle) {
    EXPECT_FALSE(fixture.Values().MenusEnabled);
    fixture.dialog->Mnu_FeCuNi_Click();
    EXPECT_NE(fixture.dialog->State(), AdjState::kBeginInputs);
    fixture.Tick();
  }
  EXPECT_TRUE(fixture.Values().MenusEnabled);
  EXPECT_THAT(fixture.bench.events.pointers,
              ElementsAre(Pointer::kHourglass, Pointer::kHourglass, Pointer::kNormal));
}

TEST(ChannelSheet, IsRefreshedEveryFiveSeconds) {
  ChannelBench fixture;
  fixture.OpenIdle();
  fixture.Tick(4.4);
  EXPECT_THAT(fixture.commands, IsEmpty());
  fixture.Register('Y', 5) = 999;
  fixture.bench.line.buffers[{3, 5}] = {1};
  fixture.Tick(1);
  EXPECT_EQ(fixture.commands, Joined(Reads("Y"), Reads("R", 1)));
  EXPECT_EQ(fixture.Row(5).actual, "49.95");
  EXPECT_EQ(fixture.Row(5).buffer, "1");
  fixture.Forget();
  fixture.Tick(10);
  EXPECT_EQ(fixture.commands.size(), 62U);
}

// Seconds since midnight begin anew; the five seconds do not.
TEST(ChannelSheet, IsRefreshedAcrossMidnight) {
  ChannelBench fixture;
  fixture.bench.clock.timer_at_start = 86390;
  fixture.OpenIdle();
  fixture.Tick(60);
  EXPECT_GE(fixture.commands.size(), 10U * 31U);
}

TEST(ChannelSheet, OpenedWithoutALinkSendsNothing) {
  ChannelBench fixture;
  fixture.fails = [](const std::string&) { return true; };
  fixture.Greet();
  fixture.fails = [](const std::string&) { return false; };
  fixture.OpenAsItIs();
  EXPECT_EQ(fixture.dialog->State(), AdjState::kNoLink);
  fixture.Tick(60);
  EXPECT_EQ(fixture.dialog->State(), AdjState::kNoLink);
  EXPECT_THAT(fixture.commands, IsEmpty());
  EXPECT_EQ(fixture.Row(0).sensor, "");
  EXPECT_TRUE(fixture.Values().ComIcon);
  EXPECT_FALSE(fixture.Values().MenusEnabled);
  fixture.dialog->Quit();
  EXPECT_FALSE(fixture.dialog->IsOpen());
}

TEST(ChannelSheet, WithoutASelectedInstrumentItIsTheFirst) {
  ChannelBench fixture;
  fixture.bench.state.ActiveInet = 0;
  fixture.bench.link.ComInet = 1;
  fixture.bench.link.ComLetter = "Y";
  fixture.bench.link.ComIndex = 0;
  fixture.bench.link.ReadReg();
  fixture.OpenAsItIs();
  fixture.Tick(0.2);
  EXPECT_EQ(fixture.Values().Caption, " Tavrel-1:   Channels");
  EXPECT_EQ(fixture.commands.at(0), "L00?");
}

TEST(ChannelSheet, StandsStillWhileThePortIsAway) {
  ChannelBench fixture;
  fixture.Open();
  fixture.bench.link.PortOpen = false;
  fixture.Tick(5);
  EXPECT_EQ(fixture.dialog->State(), AdjState::kEmptySheet);
  EXPECT_THAT(fixture.commands, IsEmpty());
}

TEST(ChannelSheet, ViewIsGivenBack) {
  ChannelBench fixture;
  fixture.OpenIdle();
  EXPECT_EQ(fixture.bench.state.ActiveView, View::kTavChann);
  fixture.dialog->Quit();
  EXPECT_FALSE(fixture.dialog->IsOpen());
  EXPECT_EQ(fixture.bench.state.ActiveView, View::kMainSheet);
  fixture.Forget();
  fixture.Tick(10);
  EXPECT_THAT(fixture.commands, IsEmpty()) << "a form that has closed uses the line no more";
}

// Sixteen reads at 4800 baud last a third of a second, thirty-two do not fit. The link itself adds
// ten milliseconds to each.
TEST(ChannelSheet, NoStepHoldsTheWindowForMoreThanHalfASecond) {
  for (const int milliseconds : {2, 11, 30, 80, 99}) {
    ChannelBench fixture;
    fixture.Open();
    fixture.takes = std::chrono::milliseconds(milliseconds);
    int ticks = 0;
    while (fixture.dialog->State() != AdjState::kIdle && ticks < 1000) {
      const auto begin = fixture.bench.clock.Elapsed();
      fixture.dialog->Timer_chann();
      EXPECT_LE(fixture.bench.clock.Elapsed() - begin, std::chrono::milliseconds(500));
      ++ticks;
    }
    EXPECT_EQ(fixture.dialog->State(), AdjState::kIdle);
    EXPECT_EQ(fixture.commands.size(), 17U + 15 + 16 + 32 + 16 + 15);
    EXPECT_EQ(fixture.Row(15).gain, "1.2000");
    if (milliseconds == 11) {
      EXPECT_EQ(ticks, 1 + 6 + 1) << "one step for each column, two for the divisors";
    }
  }
}

// Each read of the sheet fails once, in each way: it is made again in a later step.
TEST(ChannelSheet, OneFailedReadLeavesNoCellEmpty) {
  for (const LineFailure failure : kLineFailures) {
    for (const std::string at :
         {"L20?", "L2F?", "T20?", "S21?", "O25?", "J23?", "K23?", "Y20?", "Y2F?", "R21?", "R2F?"}) {
      ChannelBench fixture;
      fixture.failure = failure;
      fixture.Open();
      fixture.FailNext(at, 1);
      ASSERT_TRUE(fixture.TickTo(AdjState::kIdle));
      for (int row = 0; row < kChannelRows; ++row) {
        EXPECT_NE(fixture.Row(row).sensor, "") << at << NameOf(failure);
        EXPECT_NE(fixture.Row(row).actual, "") << at << NameOf(failure);
        EXPECT_NE(fixture.Row(row).gain, "") << at << NameOf(failure);
        EXPECT_NE(fixture.Row(row).offset, "") << at << NameOf(failure);
        EXPECT_EQ(fixture.Row(row).sampling, row == 0 ? "" : "10") << at << NameOf(failure);
        EXPECT_EQ(fixture.Row(row).buffer, row == 0 ? "" : "0") << at << NameOf(failure);
      }
    }
  }
}

TEST(ChannelSheet, SilentInstrumentIsNotAskedForEachRegister) {
  ChannelBench fixture;
  fixture.OpenIdle();
  fixture.fails = [](const std::string&) { return true; };
  fixture.Tick(4.5);
  fixture.Forget();
  fixture.Tick(6);
  EXPECT_LE(fixture.commands.size(), 6U * 2)
      << "three in each of two columns, in one or two rounds";
  EXPECT_EQ(fixture.Row(3).actual, "");
  EXPECT_EQ(fixture.Row(3).buffer, "");
  EXPECT_EQ(fixture.Row(3).offset, "13") << "what does not change by itself stays";
  EXPECT_TRUE(fixture.Values().ComIcon);
}

TEST(ChannelSheet, SilenceHoldsNoStepForLongerThanOneExchange) {
  ChannelBench fixture;
  fixture.OpenIdle();
  fixture.fails = [](const std::string&) { return true; };
  for (int tick = 0; tick < 200; ++tick) {
    const auto begin = fixture.bench.clock.Elapsed();
    fixture.dialog->Timer_chann();
    EXPECT_LE(fixture.bench.clock.Elapsed() - begin, std::chrono::milliseconds(115));
    fixture.bench.clock.Advance(std::chrono::milliseconds(100));
  }
}

TEST(ChannelSheet, FillsItsGapsWhenTheInstrumentAnswersAgain) {
  ChannelBench fixture;
  fixture.Open();
  fixture.Tick();
  fixture.fails = [](const std::string& command) { return command[0] != 'Y' && command[0] != 'R'; };
  ASSERT_TRUE(fixture.TickTo(AdjState::kIdle));
  EXPECT_EQ(fixture.Row(3).sensor, "");
  EXPECT_EQ(fixture.Row(3).gain, "");
  EXPECT_EQ(fixture.Row(3).sampling, "");
  fixture.Tick(20);
  fixture.fails = [](const std::string&) { return false; };
  fixture.Tick(30);
  for (int row = 0; row < kChannelRows; ++row) {
    EXPECT_NE(fixture.Row(row).sensor, "") << row;
    EXPECT_EQ(fixture.Row(row).gain, "1.2000") << row;
    EXPECT_EQ(fixture.Row(row).sampling, row == 0 ? "" : "10") << row;
  }
}

TEST(ChannelSheet, GapsAreNotAskedForWhileTheInstrumentIsSilent) {
  ChannelBench fixture;
  fixture.Open();
  fixture.Tick();
  fixture.fails = [](const std::string& command) { return command[0] != 'Y' && command[0] != 'R'; };
  ASSERT_TRUE(fixture.TickTo(AdjState::kIdle));
  fixture.fails = [](const std::string&) { return true; };
  fixture.Tick(8);
  fixture.Forget();
  fixture.Tick(18);
  EXPECT_LE(fixture.commands.size(), 4U * 6) << "three of each of two columns in a round";
}

TEST(ChannelSheet, ComIconFollowsTheInstrument) {
  ChannelBench fixture;
  fixture.OpenIdle();
  EXPECT_FALSE(fixture.Values().ComIcon);
  fixture.fails = [](const std::string&) { return true; };
  fixture.Tick(6);
  EXPECT_TRUE(fixture.Values().ComIcon);
  fixture.fails = [](const std::string&) { return false; };
  fixture.Tick(6);
  EXPECT_FALSE(fixture.Values().ComIcon);
}

TEST(ChannelSheet, NoClickChoosesARowWhileNoneIsAskedFor) {
  ChannelBench fixture;
  fixture.OpenIdle();
  fixture.dialog->Sheet_Click(3);
  EXPECT_FALSE(fixture.Row(3).selected);
  EXPECT_FALSE(fixture.Values().CmdOKShown);
  fixture.dialog->CmdOK_Click();
  EXPECT_EQ(fixture.dialog->State(), AdjState::kIdle);
}

TEST(ChannelSheet, AnswersFromTheStoreInSimulation) {
  ChannelBench fixture;
  fixture.bench.link.LinkOpen({"----", 0, 4});
  fixture.Open();
  ASSERT_TRUE(fixture.TickTo(AdjState::kIdle));
  EXPECT_EQ(fixture.Row(1).sensor, "------");
  EXPECT_EQ(fixture.Row(1).actual, "0.00");
  EXPECT_EQ(fixture.Row(1).gain, "0.0000");
  EXPECT_THAT(fixture.commands, IsEmpty());
}

}  // namespace
}  // namespace tavrel
