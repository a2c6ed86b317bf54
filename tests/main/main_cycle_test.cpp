#include "main/main_cycle.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "tests/support/bench_program.h"
#include "tests/support/known_order.h"

namespace tavrel {
namespace {

class Cycle : public testing::Test {
 protected:
  // One slot of INET 1 with two recorded inputs, recording, and both inputs holding `sets`.
  void StartRecordingSlot(int sets) {
    bench.Install(1, "M260314A.OVN", BenchProgram::Header(1, 1, 2, true));
    for (int set = 0; set < sets; ++set) {
      bench.line.buffers[{1, 1}].push_back(static_cast<std::int16_t>(1000 + set));
      bench.line.buffers[{1, 2}].push_back(static_cast<std::int16_t>(2000 + set));
    }
    bench.Start();
    bench.state.Columns[1].Order = KnownOrder(1);
    bench.port.sent.clear();
  }
  void Tick() { bench.cycle.Tick(); }
  int Exchanges() {
    bench.port.sent.clear();
    Tick();
    return static_cast<int>(bench.port.sent.size());
  }

  BenchProgram bench;
};

TEST_F(Cycle, ServesOneRowOfTheSheetATickAndThenThePump) {
  StartRecordingSlot(5);
  Tick();
  EXPECT_EQ(bench.port.sent, (std::vector<std::string>{"Y02?", "Y01?", "Z01?"}));
  for (int row = 2; row <= kSlots && bench.state.SheetSlot != 0; ++row) {
    EXPECT_EQ(Exchanges(), 0);
  }
  bench.port.sent.clear();
  Tick();
  EXPECT_EQ(bench.port.sent, (std::vector<std::string>{"X02?"}));
  Tick();
  EXPECT_EQ(bench.port.sent, (std::vector<std::string>{"X02?", "X01?"}));
}

TEST_F(Cycle, ReachesTheLastRowInOneTickWithNothingConfigured) {
  bench.Start();
  bench.state.SlotFile = {};
  Tick();
  EXPECT_EQ(bench.state.SheetSlot, 0);
  EXPECT_FLOAT_EQ(bench.state.TickRefresh.At, static_cast<float>(bench.clock.Timer()) + 5);
  bench.port.sent.clear();
  Tick();
  EXPECT_TRUE(bench.port.sent.empty());
  EXPECT_EQ(bench.state.PumpSlot, 12);
  EXPECT_EQ(bench.state.PumpChannel, 15);
}

TEST_F(Cycle, KeepsTheArgumentsOfADialogThatIsComposingACommand) {
  StartRecordingSlot(3);
  bench.link.ComInet = 5;
  bench.link.ComLetter = "8000";
  bench.link.ComIndex = 9;
  bench.link.ComValue = 77;
  bench.Run(3);
  EXPECT_EQ(bench.link.ComInet, 5);
  EXPECT_EQ(bench.link.ComLetter, "8000");
  EXPECT_EQ(bench.link.ComIndex, 9);
  EXPECT_EQ(bench.link.ComValue, 77);
}

TEST_F(Cycle, LeavesTheLineAloneWhileNumbersAreAssigned) {
  StartRecordingSlot(3);
  bench.state.ActiveView = View::kTavNum;
  EXPECT_EQ(Exchanges(), 0);
  EXPECT_TRUE(bench.state.Trigger);
  EXPECT_EQ(Exchanges(), 0);
  EXPECT_FALSE(bench.state.Trigger);
}

TEST_F(Cycle, TogglesTheRunningLightOfServiceScreensOnly) {
  StartRecordingSlot(0);
  for (const View view : {View::kAllCom, View::kAllMem, View::kAllQs, View::kAllRam, View::kAllRegs,
                          View::kSpTavHs, View::kAllWdog}) {
    bench.state.ActiveView = view;
    const bool before = bench.state.Trigger;
    Tick();
    EXPECT_NE(bench.state.Trigger, before);
  }
  for (const View view : {View::kMainSheet, View::kTavWork, View::kTavProg, View::kTavSett}) {
    bench.state.ActiveView = view;
    const bool before = bench.state.Trigger;
    Tick();
    EXPECT_EQ(bench.state.Trigger, before);
  }
}

TEST_F(Cycle, DoesNotBlinkBeforeItsTime) {
  StartRecordingSlot(0);
  bench.state.ActiveView = View::kAllMem;
  bench.state.TickBlink = bench.clock.Elapsed() + std::chrono::milliseconds(200);
  Tick();
  EXPECT_FALSE(bench.state.Trigger);
  bench.clock.AdvanceSeconds(0.25);
  Tick();
  EXPECT_TRUE(bench.state.Trigger);
}

TEST_F(Cycle, PumpsBeneathOtherScreens) {
  StartRecordingSlot(3);
  bench.state.ActiveView = View::kTavProg;
  bench.port.sent.clear();
  Tick();
  EXPECT_EQ(bench.port.sent, (std::vector<std::string>{"X02?"}));
}

TEST_F(Cycle, LeavesTheTickToAGraphThatIsDrawing) {
  StartRecordingSlot(3);
  bench.state.ActiveView = View::kTavGraph;
  bench.state.GraphIdle = false;
  EXPECT_EQ(Exchanges(), 0);
  bench.state.GraphIdle = true;
  EXPECT_EQ(Exchanges(), 1);
}

TEST_F(Cycle, DoesNotBlockThePumpForAViewedFileOnTheWorksheet) {
  StartRecordingSlot(3);
  int refreshed = 0;
  bench.cycle.SetHandlers({[&refreshed] { ++refreshed; }, {}, {}});
  bench.state.ActiveView = View::kTavWork;
  bench.state.TickRefresh.At = 0;
  bench.state.SelSlot = 1;
  EXPECT_EQ(Exchanges(), 0);
  bench.state.SelSlot = kViewedFile;
  EXPECT_EQ(Exchanges(), 1);
  EXPECT_EQ(refreshed, 2);
}

TEST_F(Cycle, AdvancesTheWaitBarOnItsOwnSeconds) {
  StartRecordingSlot(3);
  int advanced = 0;
  bench.cycle.SetHandlers({{},
                           [&] {
                             ++advanced;
                             bench.state.TickWait.At = static_cast<float>(bench.clock.Timer()) + 1;
                           },
                           {}});
  bench.state.ActiveView = View::kTavWait;
  EXPECT_EQ(Exchanges(), 0);
  EXPECT_EQ(Exchanges(), 1);
  bench.clock.AdvanceSeconds(1.1);
  EXPECT_EQ(Exchanges(), 0);
  EXPECT_EQ(advanced, 2);
}

TEST_F(Cycle, StepsProgramsOnAFixedGridOfMinutes) {
  StartRecordingSlot(0);
  std::vector<int> stepped;
  bench.cycle.SetHandlers({{}, {}, [&stepped](int slot) { stepped.push_back(slot); }});
  bench.state.ActiveView = View::kTavProg;
  bench.state.TickMinute.At = static_cast<float>(bench.clock.Timer());
  const float grid = bench.state.TickMinute.At;
  bench.clock.AdvanceSeconds(0.05);
  Tick();
  EXPECT_EQ(stepped, (std::vector<int>{1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12}));
  EXPECT_FLOAT_EQ(bench.state.TickMinute.At, grid + 60);
  bench.clock.AdvanceSeconds(125);
  Tick();
  Tick();
  EXPECT_EQ(stepped.size(), 36U);
  EXPECT_FLOAT_EQ(bench.state.TickMinute.At, grid + 180);
}

TEST_F(Cycle, StepsProgramsOfSeveralSilentInstrumentsInTicksOfTheirOwn) {
  bench.Start();
  bench.line.silent = {1, 2, 3, 4, 5, 6};
  std::vector<int> stepped;
  bench.cycle.SetHandlers({{}, {}, [this, &stepped](int slot) {
                             stepped.push_back(slot);
                             bench.link.ComInet = static_cast<std::int16_t>((slot + 1) / 2);
                             bench.link.WriteReg();
                           }});
  bench.state.ActiveView = View::kTavProg;
  bench.state.TickMinute.At = static_cast<float>(bench.clock.Timer()) - 60;  // two minutes are due
  std::chrono::nanoseconds longest{0};
  for (int tick = 0; tick < 200; ++tick) {
    bench.clock.Advance(std::chrono::milliseconds(kTickMilliseconds));
    const auto before = bench.clock.Elapsed();
    Tick();
    longest = std::max(longest, bench.clock.Elapsed() - before);
  }
  EXPECT_EQ(stepped, (std::vector<int>{1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12,
                                       1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12}));
  EXPECT_LE(longest, std::chrono::milliseconds(112));
}

TEST_F(Cycle, ReadsAWaitingSlotAgainEveryTenSeconds) {
  StartRecordingSlot(0);
  bench.Run(1);
  EXPECT_EQ(bench.state.ReadState[1], ReadState::kWaiting);
  bench.line.buffers[{1, 1}] = {5};
  bench.line.buffers[{1, 2}] = {6};
  bench.Run(11);
  EXPECT_EQ(bench.Samples("M260314A.OVN"), (std::vector<std::int16_t>{5, 6, 5, 6}));
}

// A header that was edited is on the disk after twenty minutes at the latest, also where nothing
// records.
TEST_F(Cycle, PutsEditedHeadersToTheDiskEveryTwentyMinutes) {
  StartRecordingSlot(0);
  const auto name_on_disk = [this] {
    return bench.home.Read("tavdat/M260314A.OVN").substr(204, 6);
  };
  for (const char* name : {"first ", "second"}) {
    bench.sheet.tx_Des_Change(1, name);
    bench.Run(1185);
    EXPECT_NE(name_on_disk(), name);
    bench.Run(25);
    EXPECT_EQ(name_on_disk(), name);
    EXPECT_FALSE(bench.state.SlotDirty[1]);
  }
}

TEST_F(Cycle, ArmsAllDeadlinesAnewAfterMidnight) {
  bench.clock.timer_at_start = 86290;
  StartRecordingSlot(0);
  bench.state.TickBlink = std::chrono::seconds(86300);
  bench.Run(20);
  bench.port.sent.clear();
  bench.clock.AdvanceSeconds(60);
  Tick();
  EXPECT_TRUE(bench.port.sent.empty()) << "the cycle stands still from 86300 s on";

  bench.clock.AdvanceSeconds(35);
  Tick();
  const auto now = static_cast<float>(bench.clock.Timer());
  ASSERT_LT(now, 10);
  EXPECT_FLOAT_EQ(bench.state.TickTen.At, now + 10);
  EXPECT_FLOAT_EQ(bench.state.TickMinute.At, now + 60);
  EXPECT_FLOAT_EQ(bench.state.TickRefresh.At, now + 5);
  EXPECT_FLOAT_EQ(bench.state.TickFlush.At, now + 100);
  EXPECT_FLOAT_EQ(bench.state.TickWait.At, now + 1);
  EXPECT_EQ(bench.state.TickBlink.count(), 0);
}

TEST_F(Cycle, ArmsAllDeadlinesAfterSleepingOverMidnight) {
  bench.clock.timer_at_start = 80000;
  StartRecordingSlot(0);
  bench.Run(2);
  bench.clock.AdvanceSeconds(7000);
  Tick();
  EXPECT_NEAR(bench.state.TickTen.At, 602 + 10, 1);
}

TEST_F(Cycle, OpensALostPortAgainOnTheTenSecondTick) {
  StartRecordingSlot(0);
  bench.Run(1);
  bench.port.Vanish();
  bench.Run(6);
  EXPECT_FALSE(bench.link.PortOpen) << "the pass over the sheet has met the loss";
  EXPECT_EQ(bench.Row(1).sh_TavNo, kOrange);
  bench.Run(5);
  EXPECT_TRUE(bench.link.PortOpen);
  EXPECT_EQ(bench.port.opened.size(), 2U);
  EXPECT_TRUE(bench.dialogs.boxes.empty());
}

TEST_F(Cycle, LeavesTicksOutWhileALateReplyMayCome) {
  StartRecordingSlot(3);
  bench.state.ActiveView = View::kTavRec;
  bench.line.silent = {1};
  EXPECT_EQ(Exchanges(), 1);
  bench.line.silent.clear();
  bench.state.ReadState[1] = ReadState::kReading;
  EXPECT_EQ(Exchanges(), 0);
  bench.clock.AdvanceSeconds(0.151);
  EXPECT_EQ(Exchanges(), 1);
}

TEST_F(Cycle, DropsATickThatComesWhileOneRuns) {
  StartRecordingSlot(2);
  int nested = 0;
  bench.cycle.SetHandlers({{}, {}, [&](int) {
                             ++nested;
                             bench.cycle.Tick();
                           }});
  bench.state.ActiveView = View::kTavProg;
  Tick();
  EXPECT_EQ(nested, kSlots);
}

TEST_F(Cycle, StandsStillWhileItIsStopped) {
  StartRecordingSlot(2);
  {
    const MainCycle::Pause pause(bench.cycle);
    EXPECT_EQ(Exchanges(), 0);
  }
  EXPECT_GT(Exchanges(), 0);
}

}  // namespace
}  // namespace tavrel
