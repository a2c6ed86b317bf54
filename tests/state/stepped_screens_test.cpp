#include "state/stepped_screen.h"

#include <gtest/gtest.h>

#include <memory>

#include "link/register_access.h"
#include "state/modal_screen.h"
#include "tests/support/bench_program.h"

namespace tavrel {
namespace {

constexpr View kServiceViews[] = {View::kAllCom,  View::kAllMem,  View::kAllQs,  View::kAllRam,
                                  View::kAllRegs, View::kSpTavHs, View::kAllWdog};

// A screen of that number comes to the front.
class ScreenInFront : public ModalScreen {
 public:
  ScreenInFront(RunState& state, View view) : ModalScreen(state, view) { OpenScreen(); }
};

// A running cycle, with a recording in slot 7 of INET 2 whose inputs 1 and 2 hold `sets`.
class SteppedScreen : public testing::Test {
 protected:
  void Start(int sets = 0) {
    bench.Install(7, "M260314A.OVN", BenchProgram::Header(2, 1, 2, true));
    for (int set = 0; set < sets; ++set) {
      bench.line.buffers[{2, 1}].push_back(static_cast<std::int16_t>(1000 + set));
      bench.line.buffers[{2, 2}].push_back(static_cast<std::int16_t>(2000 + set));
    }
    bench.Start();
    bench.port.sent.clear();
  }
  void Tick() { bench.cycle.Tick(); }
  std::vector<std::string> SentInATick() {
    bench.port.sent.clear();
    Tick();
    return bench.port.sent;
  }

  BenchProgram bench;
  int steps = 0;
};

TEST_F(SteppedScreen, HasOneStepInEachTickBesideThePump) {
  Start(20);
  for (const View view : kServiceViews) {
    const ScreenInFront front(bench.state, view);
    const SteppedScreens::Turn turn(bench.stepped, view, [this] {
      ++steps;
      static_cast<void>(Read(bench.link, Register{5, "V", 6}));
    });
    steps = 0;
    const bool lit = bench.state.Trigger;
    EXPECT_EQ(SentInATick().front(), "V46?");
    EXPECT_NE(bench.state.Trigger, lit);
    EXPECT_EQ(SentInATick().front(), "V46?");
    EXPECT_EQ(bench.state.Trigger, lit);
    EXPECT_EQ(steps, 2);
  }
  const ScreenInFront front(bench.state, View::kAllRam);
  const SteppedScreens::Turn turn(bench.stepped, View::kAllRam, [this] { ++steps; });
  const auto sent = SentInATick();
  ASSERT_EQ(sent.size(), 1U);
  EXPECT_EQ(sent[0].front(), 'X') << "what the screen leaves of a tick is the pump's";
}

TEST_F(SteppedScreen, IsAloneOnTheLineWhileItAssignsNumbers) {
  Start(5);
  const ScreenInFront front(bench.state, View::kTavNum);
  const SteppedScreens::Turn turn(bench.stepped, View::kTavNum, [this] {
    static_cast<void>(Read(bench.link, Register{3, "Y", 0}));
  });
  for (int tick = 0; tick < 5; ++tick) {
    EXPECT_EQ(SentInATick(), std::vector<std::string>{"Y20?"});
  }
}

TEST_F(SteppedScreen, HasItsTurnOnlyWhileItIsInFront) {
  Start();
  const SteppedScreens::Turn turn(bench.stepped, View::kAllRam, [this] { ++steps; });
  Tick();
  EXPECT_EQ(steps, 0);
  {
    const ScreenInFront front(bench.state, View::kAllRam);
    Tick();
    EXPECT_EQ(steps, 1);
    const ScreenInFront above(bench.state, View::kAllMsg);
    Tick();
    EXPECT_EQ(steps, 1);
  }
  Tick();
  EXPECT_EQ(steps, 1);
}

TEST_F(SteppedScreen, OfTwoTheOneInFrontIsServedAndThenTheOther) {
  Start();
  int above = 0;
  const ScreenInFront front(bench.state, View::kAllRam);
  const SteppedScreens::Turn turn(bench.stepped, View::kAllRam, [this] { ++steps; });
  {
    const ScreenInFront second(bench.state, View::kAllWdog);
    const SteppedScreens::Turn turn_above(bench.stepped, View::kAllWdog, [&above] { ++above; });
    Tick();
  }
  EXPECT_EQ(above, 1);
  EXPECT_EQ(steps, 0);
  Tick();
  EXPECT_EQ(above, 1);
  EXPECT_EQ(steps, 1);
}

TEST_F(SteppedScreen, MayCloseInItsOwnStep) {
  Start();
  const ScreenInFront front(bench.state, View::kTavNum);
  std::unique_ptr<SteppedScreens::Turn> turn;
  turn = std::make_unique<SteppedScreens::Turn>(bench.stepped, View::kTavNum, [this, &turn] {
    turn.reset();
    ++steps;
  });
  Tick();
  Tick();
  EXPECT_EQ(steps, 1);
}

TEST_F(SteppedScreen, WaitsForItsTimeByTheClockThatRunsOn) {
  bench.clock.timer_at_start = 86399.9;  // the time of the day begins anew within the wait
  Start();
  const ScreenInFront front(bench.state, View::kAllMem);
  const SteppedScreens::Turn turn(bench.stepped, View::kAllMem, [this] { ++steps; });
  bench.state.TickBlink = bench.clock.Elapsed() + std::chrono::milliseconds(200);
  bench.clock.AdvanceSeconds(0.05);
  Tick();
  EXPECT_EQ(steps, 0);
  bench.clock.AdvanceSeconds(0.2);
  Tick();
  EXPECT_EQ(steps, 1);
}

TEST_F(SteppedScreen, GoesOnAtMidnightWhileTheRestStands) {
  bench.clock.timer_at_start = 86310;
  Start(5);
  for (const View view : {View::kTavNum, View::kAllMem, View::kAllWdog, View::kSpTavHs}) {
    const ScreenInFront front(bench.state, view);
    const SteppedScreens::Turn turn(bench.stepped, view, [this] {
      static_cast<void>(Read(bench.link, Register{2, "G", 0}));
    });
    EXPECT_EQ(SentInATick(), std::vector<std::string>{"G10?"}) << static_cast<int>(view);
    EXPECT_EQ(SentInATick(), std::vector<std::string>{"G10?"});
  }
}

// A step that failed leaves the line unsettled for a while: neither the next step nor the pump
// makes the user wait for it.
TEST_F(SteppedScreen, LeavesTheTicksOutInWhichALateReplyMayCome) {
  Start(5);
  bench.line.silent = {6};
  for (const View view : {View::kTavNum, View::kAllRam}) {
    const ScreenInFront front(bench.state, view);
    const SteppedScreens::Turn turn(bench.stepped, view, [this] {
      ++steps;
      static_cast<void>(Read(bench.link, Register{6, "Y", 0}));
    });
    steps = 0;
    EXPECT_EQ(SentInATick(), std::vector<std::string>{"Y50?"});
    EXPECT_TRUE(SentInATick().empty());
    EXPECT_EQ(steps, 1);
    bench.clock.AdvanceSeconds(0.2);
    EXPECT_EQ(SentInATick(), std::vector<std::string>{"Y50?"});
    bench.clock.AdvanceSeconds(0.2);
  }
}

TEST_F(SteppedScreen, TellsWhatItReportsWithoutABoxThatStopsTheCycle) {
  Start();
  const ScreenInFront front(bench.state, View::kTavNum);
  const SteppedScreens::Turn turn(bench.stepped, View::kTavNum, [this] {
    bench.messages.Report(0, {"text of a step", "title"});
  });
  Tick();
  EXPECT_TRUE(bench.dialogs.boxes.empty());
  ASSERT_EQ(bench.dialogs.announced.size(), 1U);
  EXPECT_EQ(bench.dialogs.announced[0].Text, "text of a step");
}

}  // namespace
}  // namespace tavrel
