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
  ChannelBench room;
  room.Open();
  const std::vector<std::pair<AdjState, std::vector<std::string>>> steps = {
      {AdjState::kReadSensors, {}},
      {AdjState::kReadSampling, Joined(Reads("L"), {"T20?"})},
      {AdjState::kReadOffsets, Reads("S", 1)},
      {AdjState::kReadDivisors, Reads("O")},
      {AdjState::kReadActual, Reads("JK")},
      {AdjState::kReadBuffers, Reads("Y")},
      {AdjState::kIdle, Reads("R", 1)}};
  EXPECT_EQ(room.dialog->State(), AdjState::kEmptySheet);
  for (const auto& [next, commands] : steps) {
    room.Forget();
    room.Tick();
    EXPECT_EQ(room.dialog->State(), next);
    EXPECT_EQ(room.commands, commands);
  }
}

TEST(ChannelSheet, ShowsWhatItHasRead) {
  ChannelBench room;
  room.Register('L', 9) = 0;
  room.Register('L', 10) = 1;
  room.Register('L', 11) = 5;
  room.Register('L', 12) = -1;
  room.Register('Y', 0) = 2512;
  room.Register('Y', 1) = -401;
  room.Register('Y', 2) = kNoData;
  room.Register('K', 3) = -16384;
  room.Register('O', 3) = -77;
  room.Register('J', 4) = 32766;
  room.Register('K', 4) = 1;
  room.bench.line.buffers[{3, 1}] = {1, 2, 3};
  room.OpenIdle();
  EXPECT_EQ(room.Values().Caption, " Tavrel-3:   Channels");
  const std::vector<std::string> sensors = {
      "RTD",    "FeCuNi", "FeCuNi", "FeCuNi", "FeCuNi", "FeCuNi", "FeCuNi", "FeCuNi",
      "FeCuNi", "------", "Linear", "?",      "?",      "NiCrNi", "NiCrNi", "NiCrNi"};
  for (int row = 0; row < kChannelRows; ++row) {
    EXPECT_EQ(room.Row(row).sensor, sensors.at(static_cast<std::size_t>(row))) << row;
    EXPECT_EQ(room.Row(row).sampling, row == 0 ? "" : "10") << row;
  }
  EXPECT_EQ(room.Row(0).actual, "25.12");
  EXPECT_EQ(room.Row(1).actual, "-20.05");
  EXPECT_EQ(room.Row(2).actual, "");
  EXPECT_EQ(room.Row(15).actual, "20.75");
  EXPECT_EQ(room.Row(0).buffer, "");
  EXPECT_EQ(room.Row(1).buffer, "3");
  EXPECT_EQ(room.Row(2).buffer, "0");
  EXPECT_EQ(room.Row(3).offset, "-77");
  EXPECT_EQ(room.Row(15).offset, "25");
  EXPECT_EQ(room.Row(0).gain, "1.2000");
  EXPECT_EQ(room.Row(3).gain, "1.7500");
  EXPECT_EQ(room.Row(4).gain, "32766.0000");
  EXPECT_FALSE(room.Values().ComIcon);
}

TEST(ChannelSheet, SamplingTimesOfAFastInstrumentAreSeconds) {
  ChannelBench room;
  room.Register('T', 0) = 1;
  room.Register('S', 7) = 3;
  room.OpenIdle();
  EXPECT_EQ(room.Row(7).sampling, "3");
  EXPECT_EQ(room.Row(1).sampling, "1");
}

TEST(ChannelSheet, MenusComeWithTheIdleLoop) {
  ChannelBench room;
  room.Open();
  while (room.dialog->State() != AdjState::kIdle) {
    EXPECT_FALSE(room.Values().MenusEnabled);
    room.dialog->Mnu_FeCuNi_Click();
    EXPECT_NE(room.dialog->State(), AdjState::kBeginInputs);
    room.Tick();
  }
  EXPECT_TRUE(room.Values().MenusEnabled);
  EXPECT_THAT(room.bench.events.pointers,
              ElementsAre(Pointer::kHourglass, Pointer::kHourglass, Pointer::kNormal));
}

TEST(ChannelSheet, IsRefreshedEveryFiveSeconds) {
  ChannelBench room;
  room.OpenIdle();
  room.Tick(4.4);
  EXPECT_THAT(room.commands, IsEmpty());
  room.Register('Y', 5) = 999;
  room.bench.line.buffers[{3, 5}] = {1};
  room.Tick(1);
  EXPECT_EQ(room.commands, Joined(Reads("Y"), Reads("R", 1)));
  EXPECT_EQ(room.Row(5).actual, "49.95");
  EXPECT_EQ(room.Row(5).buffer, "1");
  room.Forget();
  room.Tick(10);
  EXPECT_EQ(room.commands.size(), 62U);
}

// Seconds since midnight begin anew; the five seconds do not.
TEST(ChannelSheet, IsRefreshedAcrossMidnight) {
  ChannelBench room;
  room.bench.clock.timer_at_start = 86390;
  room.OpenIdle();
  room.Tick(60);
  EXPECT_GE(room.commands.size(), 10U * 31U);
}

TEST(ChannelSheet, OpenedWithoutALinkSendsNothing) {
  ChannelBench room;
  room.fails = [](const std::string&) { return true; };
  room.Greet();
  room.fails = [](const std::string&) { return false; };
  room.OpenAsItIs();
  EXPECT_EQ(room.dialog->State(), AdjState::kNoLink);
  room.Tick(60);
  EXPECT_EQ(room.dialog->State(), AdjState::kNoLink);
  EXPECT_THAT(room.commands, IsEmpty());
  EXPECT_EQ(room.Row(0).sensor, "");
  EXPECT_TRUE(room.Values().ComIcon);
  EXPECT_FALSE(room.Values().MenusEnabled);
  room.dialog->Quit();
  EXPECT_FALSE(room.dialog->IsOpen());
}

TEST(ChannelSheet, WithoutASelectedInstrumentItIsTheFirst) {
  ChannelBench room;
  room.bench.state.ActiveInet = 0;
  room.bench.link.ComInet = 1;
  room.bench.link.ComLetter = "Y";
  room.bench.link.ComIndex = 0;
  room.bench.link.ReadReg();
  room.OpenAsItIs();
  room.Tick(0.2);
  EXPECT_EQ(room.Values().Caption, " Tavrel-1:   Channels");
  EXPECT_EQ(room.commands.at(0), "L00?");
}

TEST(ChannelSheet, StandsStillWhileThePortIsAway) {
  ChannelBench room;
  room.Open();
  room.bench.link.PortOpen = false;
  room.Tick(5);
  EXPECT_EQ(room.dialog->State(), AdjState::kEmptySheet);
  EXPECT_THAT(room.commands, IsEmpty());
}

TEST(ChannelSheet, ViewIsGivenBack) {
  ChannelBench room;
  room.OpenIdle();
  EXPECT_EQ(room.bench.state.ActiveView, View::kTavChann);
  room.dialog->Quit();
  EXPECT_FALSE(room.dialog->IsOpen());
  EXPECT_EQ(room.bench.state.ActiveView, View::kMainSheet);
  room.Forget();
  room.Tick(10);
  EXPECT_THAT(room.commands, IsEmpty()) << "a form that has closed uses the line no more";
}

// Sixteen reads at 4800 baud last a third of a second, thirty-two do not fit. The link itself adds
// ten milliseconds to each.
TEST(ChannelSheet, NoStepHoldsTheWindowForMoreThanHalfASecond) {
  for (const int milliseconds : {2, 11, 30, 80, 99}) {
    ChannelBench room;
    room.Open();
    room.takes = std::chrono::milliseconds(milliseconds);
    int ticks = 0;
    while (room.dialog->State() != AdjState::kIdle && ticks < 1000) {
      const auto begin = room.bench.clock.Elapsed();
      room.dialog->Timer_chann();
      EXPECT_LE(room.bench.clock.Elapsed() - begin, std::chrono::milliseconds(500));
      ++ticks;
    }
    EXPECT_EQ(room.dialog->State(), AdjState::kIdle);
    EXPECT_EQ(room.commands.size(), 17U + 15 + 16 + 32 + 16 + 15);
    EXPECT_EQ(room.Row(15).gain, "1.2000");
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
      ChannelBench room;
      room.failure = failure;
      room.Open();
      room.FailNext(at, 1);
      ASSERT_TRUE(room.TickTo(AdjState::kIdle));
      for (int row = 0; row < kChannelRows; ++row) {
        EXPECT_NE(room.Row(row).sensor, "") << at << NameOf(failure);
        EXPECT_NE(room.Row(row).actual, "") << at << NameOf(failure);
        EXPECT_NE(room.Row(row).gain, "") << at << NameOf(failure);
        EXPECT_NE(room.Row(row).offset, "") << at << NameOf(failure);
        EXPECT_EQ(room.Row(row).sampling, row == 0 ? "" : "10") << at << NameOf(failure);
        EXPECT_EQ(room.Row(row).buffer, row == 0 ? "" : "0") << at << NameOf(failure);
      }
    }
  }
}

TEST(ChannelSheet, SilentInstrumentIsNotAskedForEachRegister) {
  ChannelBench room;
  room.OpenIdle();
  room.fails = [](const std::string&) { return true; };
  room.Tick(4.5);
  room.Forget();
  room.Tick(6);
  EXPECT_LE(room.commands.size(), 6U * 2) << "three in each of two columns, in one or two rounds";
  EXPECT_EQ(room.Row(3).actual, "");
  EXPECT_EQ(room.Row(3).buffer, "");
  EXPECT_EQ(room.Row(3).offset, "13") << "what does not change by itself stays";
  EXPECT_TRUE(room.Values().ComIcon);
}

TEST(ChannelSheet, SilenceHoldsNoStepForLongerThanOneExchange) {
  ChannelBench room;
  room.OpenIdle();
  room.fails = [](const std::string&) { return true; };
  for (int tick = 0; tick < 200; ++tick) {
    const auto begin = room.bench.clock.Elapsed();
    room.dialog->Timer_chann();
    EXPECT_LE(room.bench.clock.Elapsed() - begin, std::chrono::milliseconds(115));
    room.bench.clock.Advance(std::chrono::milliseconds(100));
  }
}

TEST(ChannelSheet, FillsItsGapsWhenTheInstrumentAnswersAgain) {
  ChannelBench room;
  room.Open();
  room.Tick();
  room.fails = [](const std::string& command) { return command[0] != 'Y' && command[0] != 'R'; };
  ASSERT_TRUE(room.TickTo(AdjState::kIdle));
  EXPECT_EQ(room.Row(3).sensor, "");
  EXPECT_EQ(room.Row(3).gain, "");
  EXPECT_EQ(room.Row(3).sampling, "");
  room.Tick(20);
  room.fails = [](const std::string&) { return false; };
  room.Tick(30);
  for (int row = 0; row < kChannelRows; ++row) {
    EXPECT_NE(room.Row(row).sensor, "") << row;
    EXPECT_EQ(room.Row(row).gain, "1.2000") << row;
    EXPECT_EQ(room.Row(row).sampling, row == 0 ? "" : "10") << row;
  }
}

TEST(ChannelSheet, ComIconFollowsTheInstrument) {
  ChannelBench room;
  room.OpenIdle();
  EXPECT_FALSE(room.Values().ComIcon);
  room.fails = [](const std::string&) { return true; };
  room.Tick(6);
  EXPECT_TRUE(room.Values().ComIcon);
  room.fails = [](const std::string&) { return false; };
  room.Tick(6);
  EXPECT_FALSE(room.Values().ComIcon);
}

TEST(ChannelSheet, NoClickChoosesARowWhileNoneIsAskedFor) {
  ChannelBench room;
  room.OpenIdle();
  room.dialog->Sheet_Click(3);
  EXPECT_FALSE(room.Row(3).selected);
  EXPECT_FALSE(room.Values().CmdOKShown);
  room.dialog->CmdOK_Click();
  EXPECT_EQ(room.dialog->State(), AdjState::kIdle);
}

TEST(ChannelSheet, AnswersFromTheStoreInSimulation) {
  ChannelBench room;
  room.bench.link.LinkOpen({"----", 0, 4});
  room.Open();
  ASSERT_TRUE(room.TickTo(AdjState::kIdle));
  EXPECT_EQ(room.Row(1).sensor, "------");
  EXPECT_EQ(room.Row(1).actual, "0.00");
  EXPECT_EQ(room.Row(1).gain, "0.0000");
  EXPECT_THAT(room.commands, IsEmpty());
}

}  // namespace
}  // namespace tavrel
