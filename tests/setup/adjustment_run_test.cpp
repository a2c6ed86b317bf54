#include <gmock/gmock.h>

#include <cmath>
#include <limits>

#include "base/number.h"
#include "tests/setup/channel_bench.h"

namespace tavrel {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

using Commands = std::vector<std::string>;

// Ten times the same.
Commands Ten(const Commands& commands) {
  Commands all;
  for (int time = 0; time < 10; ++time) {
    all.insert(all.end(), commands.begin(), commands.end());
  }
  return all;
}

TEST(AdjustmentRun, BeginsWithTheChoiceOfRows) {
  for (const std::int16_t code : {sensor::kFeCuNi, sensor::kNiCrNi, sensor::kLinear}) {
    ChannelBench room;
    room.OpenIdle();
    room.Choose(code);
    EXPECT_EQ(room.dialog->State(), AdjState::kBeginInputs);
    room.Tick();
    EXPECT_EQ(room.dialog->State(), AdjState::kSelect);
    EXPECT_EQ(room.Values().Lbl_Instr, "Select channel(s):   click on row");
    EXPECT_TRUE(room.Values().Lbl_InstrShown);
    EXPECT_FALSE(room.Values().MenusEnabled);
    EXPECT_FALSE(room.Values().CmdOKShown);
    room.dialog->CmdOK_Click();
    EXPECT_EQ(room.dialog->State(), AdjState::kSelect) << "no row is chosen yet";
    room.dialog->Sheet_Click(9);
    EXPECT_TRUE(room.Values().CmdOKShown);
    EXPECT_TRUE(room.Row(9).selected);
    EXPECT_EQ(room.Row(9).sensor, SensorName(code));
    room.dialog->Sheet_Click(9);
    EXPECT_TRUE(room.Row(9).selected) << "nothing takes the choice back";
    EXPECT_THAT(room.commands, IsEmpty());
  }
}

TEST(AdjustmentRun, ReferenceSensorCannotBeChosenAsARow) {
  ChannelBench room;
  room.OpenIdle();
  room.dialog->Mnu_FeCuNi_Click();
  room.Tick();
  for (const int row : {-1, 0, 16, 100}) {
    room.dialog->Sheet_Click(row);
  }
  EXPECT_FALSE(room.Values().CmdOKShown);
}

TEST(AdjustmentRun, WritesSensorNoneToTheChosenRows) {
  ChannelBench room;
  room.OpenIdle();
  room.dialog->Mnu_FeCuNi_Click();
  room.Tick();
  for (const int row : {15, 7, 10}) {
    room.dialog->Sheet_Click(row);
  }
  room.dialog->CmdOK_Click();
  EXPECT_EQ(room.dialog->State(), AdjState::kShort);
  EXPECT_THAT(room.commands, IsEmpty());
  room.Tick();
  EXPECT_EQ(room.dialog->State(), AdjState::kAwaitShorted);
  EXPECT_THAT(room.commands, ElementsAre("L27=0\r", "L2A=0\r", "L2F=0\r"));
  EXPECT_EQ(room.Values().Lbl_Instr, "short the input(s) using shorting jumpers");
  EXPECT_TRUE(room.Values().CmdOKShown);
}

TEST(AdjustmentRun, CollectsTenReadingsInAHundredSeconds) {
  ChannelBench room;
  room.OpenIdle();
  room.dialog->Mnu_FeCuNi_Click();
  room.Tick();
  room.dialog->Sheet_Click(7);
  room.dialog->Sheet_Click(9);
  room.dialog->CmdOK_Click();
  ASSERT_TRUE(room.TickTo(AdjState::kAwaitShorted));
  room.Forget();
  room.dialog->CmdOK_Click();
  const auto begin = room.bench.clock.Elapsed();
  room.Tick();
  EXPECT_EQ(room.Values().Lbl_Instr, "... collecting data for offset adjustments ...");
  EXPECT_TRUE(room.Values().pBarShown);
  EXPECT_EQ(room.Values().pBar, 0);
  EXPECT_FALSE(room.Values().CmdOKShown);
  room.Tick();
  EXPECT_EQ(room.Values().pBar, 1) << "the first count comes with the next tick";
  room.Tick(8.5);
  EXPECT_THAT(room.commands, IsEmpty());
  ASSERT_TRUE(room.TickTo(AdjState::kRaise));
  const double seconds = std::chrono::duration<double>(room.bench.clock.Elapsed() - begin).count();
  EXPECT_NEAR(seconds, 110, 3) << "a tick beyond each second";
  EXPECT_EQ(room.bench.events.beeps, 10);
  // Row 7 shows 407, row 9 shows 409: the offsets are their means.
  Commands expected = Ten({"Y27?", "Y29?"});
  expected.insert(expected.end(), {"O27=197\r", "O29=199\r"});
  EXPECT_EQ(room.commands, expected);
  EXPECT_EQ(room.Values().pBar, 100);
  room.Forget();
  room.Tick();
  EXPECT_EQ(room.dialog->State(), AdjState::kAwaitRaised);
  EXPECT_EQ(room.Values().Lbl_Instr, "raise thermocouples to a known temperature");
  EXPECT_FALSE(room.Values().pBarShown);
  EXPECT_TRUE(room.Values().CmdOKShown);
  EXPECT_THAT(room.commands, IsEmpty());
}

TEST(AdjustmentRun, RoundsTheOffsetToTheNearestEvenOfTwo) {
  const std::vector<std::pair<int, std::string>> sums = {
      {125, "C"}, {135, "E"}, {126, "D"}, {-125, "FFF4"}, {-135, "FFF2"}};
  for (const auto& [sum, digits] : sums) {
    ChannelBench room;
    room.OpenIdle();
    room.dialog->Mnu_FeCuNi_Click();
    room.Tick();
    room.dialog->Sheet_Click(7);
    room.dialog->CmdOK_Click();
    ASSERT_TRUE(room.TickTo(AdjState::kAwaitShorted));
    room.Register('Y', 7) = 0;
    int reading = 0;
    room.on_command = [&, all = sum](const std::string& command) {
      if (command == "Y27?") {
        room.Register('Y', 7) = static_cast<std::int16_t>(++reading == 10 ? all : 0);
      }
    };
    room.dialog->CmdOK_Click();
    ASSERT_TRUE(room.TickTo(AdjState::kRaise));
    EXPECT_EQ(room.commands.back(), "O27=" + digits + "\r");
  }
}

TEST(AdjustmentRun, GainReadsTheReferenceBehindTheRows) {
  ChannelBench room;
  room.OpenIdle();
  room.RunToRaised(sensor::kNiCrNi, {7, 8});
  room.Forget();
  room.bench.clock.AdvanceSeconds(2);
  room.dialog->CmdOK_Click();
  room.Tick();
  EXPECT_EQ(room.Values().Lbl_Instr, "... collecting data for gain adjustments ...");
  EXPECT_EQ(room.Values().pBar, 1) << "the first count comes at once";
  EXPECT_FALSE(room.Values().CmdOKShown);
  ASSERT_TRUE(room.TickTo(AdjState::kAwaitFinal));
  EXPECT_EQ(room.commands, Ten({"Y27?", "Y28?", "Y20?"}));
  EXPECT_EQ(room.Values().Lbl_Instr, "enter the final value:  the known temperature");
  EXPECT_TRUE(room.Values().CmdOKShown);
  EXPECT_TRUE(room.Values().txt_FinalShown);
  EXPECT_FALSE(room.Values().pBarShown);
  EXPECT_EQ(room.Values().FinalAsked, 1);
}

// Raw 407 at the reference of 25.12 degrees and 4007 at 200 degrees, by hand: 4000 - 502.4 + 27 -
// 68 counts of linear distance.
TEST(AdjustmentRun, WritesTheCoefficientsOfAThermocouple) {
  ChannelBench room;
  room.OpenIdle();
  room.RunToFinal(sensor::kFeCuNi, {7, 10});
  room.Forget();
  room.dialog->txt_Final_Change("200");
  room.dialog->CmdOK_Click();
  EXPECT_EQ(room.dialog->State(), AdjState::kCompute);
  room.Tick();
  const float distance = 4000.0F - 502.4F + 27.0F - 68.0F;
  const float divisor = (4007.0F - 407.0F) / distance;
  const auto parts = static_cast<int>(std::lrint((divisor - 1) * 65536));
  const std::string fraction = Hex(static_cast<std::int16_t>(parts));
  EXPECT_EQ(static_cast<int>(divisor), 1);
  EXPECT_EQ(room.commands, (Commands{"J27=1\r", "K27=" + fraction + "\r", "L27=3\r", "J2A=1\r",
                                     "K2A=" + fraction + "\r", "L2A=3\r"}));
  EXPECT_EQ(room.dialog->State(), AdjState::kEmptySheet);
  EXPECT_THAT(room.bench.dialogs.boxes, IsEmpty());
  ASSERT_TRUE(room.TickTo(AdjState::kIdle));
  EXPECT_EQ(room.Row(7).gain, FormatMask(1 + parts / 65536.0, "##0.0000"));
  EXPECT_EQ(room.Row(7).offset, "407");
  EXPECT_FALSE(room.Values().CmdOKShown);
  EXPECT_FALSE(room.Values().txt_FinalShown);
  EXPECT_FALSE(room.Values().Lbl_InstrShown);
  EXPECT_FALSE(room.Row(7).selected);
  EXPECT_TRUE(room.Values().MenusEnabled);
}

TEST(AdjustmentRun, LinearInputHasWordsOfItsOwn) {
  ChannelBench room;
  room.OpenIdle();
  room.RunToRaised(sensor::kLinear, {7});
  EXPECT_EQ(room.Values().Lbl_Instr, "set input voltage equivalent to final-position");
  room.Register('Y', 7) = 2907;
  room.dialog->CmdOK_Click();
  ASSERT_TRUE(room.TickTo(AdjState::kAwaitFinal));
  EXPECT_EQ(room.Values().Lbl_Instr, "enter the final value");
  room.Forget();
  room.dialog->txt_Final_Change("100");
  room.dialog->CmdOK_Click();
  room.Tick();
  // 2500 raw counts for 100 degrees, which are 2000 counts.
  EXPECT_THAT(room.commands, ElementsAre("J27=1\r", "K27=4000\r", "L27=1\r"));
}

TEST(AdjustmentRun, ZeroPositionOfALinearInput) {
  ChannelBench room;
  room.OpenIdle();
  room.dialog->Mnu_Linear_Click();
  room.Tick();
  room.dialog->Sheet_Click(5);
  room.dialog->CmdOK_Click();
  room.Tick();
  EXPECT_EQ(room.Values().Lbl_Instr, "set input voltage equivalent to zero-position");
}

// Exactly the lower bound as the box told it, and exactly the upper.
TEST(AdjustmentRun, TakesAFinalValueAtItsBounds) {
  for (const std::string text : {"26.12", "26,12", "500"}) {
    ChannelBench room;
    room.OpenIdle();
    room.RunToFinal(sensor::kFeCuNi, {7});
    room.dialog->txt_Final_Change(text);
    room.dialog->CmdOK_Click();
    room.Tick();
    EXPECT_THAT(room.bench.dialogs.boxes, IsEmpty()) << text;
    EXPECT_EQ(room.dialog->State(), AdjState::kEmptySheet) << text;
  }
}

TEST(AdjustmentRun, RefusedFinalValueIsAskedForOnceMore) {
  for (const std::string text : {"26.11", "500.1", "", "abc", "-200"}) {
    ChannelBench room;
    room.OpenIdle();
    room.RunToFinal(sensor::kFeCuNi, {7});
    room.Forget();
    room.dialog->txt_Final_Change(text);
    room.dialog->CmdOK_Click();
    room.Tick();
    EXPECT_EQ(room.LastBox(), "final value: range: 26.12 ... 500") << text;
    EXPECT_EQ(room.dialog->State(), AdjState::kAwaitRaised);
    EXPECT_TRUE(room.Values().CmdOKShown);
    room.bench.clock.AdvanceSeconds(2);
    room.dialog->CmdOK_Click();
    room.Tick();
    EXPECT_EQ(room.dialog->State(), AdjState::kAwaitFinal) << "one count and no more";
    EXPECT_EQ(room.Values().FinalAsked, 2);
    EXPECT_THAT(room.commands, IsEmpty());
  }
}

TEST(AdjustmentRun, RangeOfALinearInput) {
  ChannelBench room;
  room.OpenIdle();
  room.RunToFinal(sensor::kLinear, {7});
  room.dialog->txt_Final_Change("1000.1");
  room.dialog->CmdOK_Click();
  room.Tick();
  EXPECT_EQ(room.LastBox(), "final value: range: 1 ... 1000");
}

// The hundred-and-tenth count reads once more; the sum of eleven is divided by ten all the same.
TEST(AdjustmentRun, TenRefusedFinalValuesTakeOneMoreReading) {
  ChannelBench room;
  room.OpenIdle();
  room.RunToFinal(sensor::kLinear, {7});
  room.Forget();
  for (int refusal = 0; refusal < 10; ++refusal) {
    room.dialog->txt_Final_Change("0");
    room.dialog->CmdOK_Click();
    room.Tick();
    EXPECT_EQ(room.dialog->State(), AdjState::kAwaitRaised);
    room.bench.clock.AdvanceSeconds(2);
    room.dialog->CmdOK_Click();
    room.Tick();
    ASSERT_EQ(room.dialog->State(), AdjState::kAwaitFinal);
  }
  EXPECT_THAT(room.commands, ElementsAre("Y27?", "Y20?"));
  room.Forget();
  room.dialog->txt_Final_Change("100");
  room.dialog->CmdOK_Click();
  room.Tick();
  const float divisor = (4007.0F * 11 / 10 - 407.0F) / 2000;
  EXPECT_EQ(room.commands.at(0), "J27=2\r");
  EXPECT_EQ(room.commands.at(1),
            "K27=" + Hex(static_cast<std::int16_t>(std::lrint((divisor - 2) * 65536))) + "\r");
}

TEST(AdjustmentRun, DivisorOutOfRangeEndsTheRun) {
  ChannelBench room;
  room.OpenIdle();
  room.RunToRaised(sensor::kFeCuNi, {5, 7, 9});
  room.Register('Y', 5) = 4000;
  room.Register('Y', 7) = 300;  // below its offset of 407
  room.Register('Y', 9) = 4000;
  room.dialog->CmdOK_Click();
  ASSERT_TRUE(room.TickTo(AdjState::kAwaitFinal));
  room.Forget();
  room.dialog->txt_Final_Change("200");
  room.dialog->CmdOK_Click();
  room.Tick();
  EXPECT_EQ(room.LastBox(), "adjustment: error, check settings");
  EXPECT_EQ(room.dialog->State(), AdjState::kEmptySheet);
  ASSERT_EQ(room.commands.size(), 3U) << "the row before it keeps what was written";
  EXPECT_EQ(room.commands.at(2), "L25=3\r");
  EXPECT_EQ(room.Register('L', 7), 0);
  EXPECT_EQ(room.Register('L', 9), 0) << "rows not reached stay as they are";
}

TEST(AdjustmentRun, EscapeDropsTheRun) {
  ChannelBench room;
  room.OpenIdle();
  room.RunToRaised(sensor::kFeCuNi, {7});
  room.dialog->CmdOK_Click();
  room.Tick(30);
  room.Forget();
  room.dialog->Quit();
  EXPECT_TRUE(room.dialog->IsOpen());
  EXPECT_EQ(room.dialog->State(), AdjState::kEmptySheet);
  ASSERT_TRUE(room.TickTo(AdjState::kIdle));
  EXPECT_EQ(room.commands.at(0), "L20?");
  EXPECT_EQ(room.Register('L', 7), 0) << "the row stays without a sensor";
  EXPECT_EQ(room.Row(7).sensor, "------");
  EXPECT_FALSE(room.Values().pBarShown);
  room.dialog->Quit();
  EXPECT_FALSE(room.dialog->IsOpen());
}

TEST(AdjustmentRun, NextRunKnowsNothingOfTheOneBefore) {
  ChannelBench room;
  room.OpenIdle();
  room.RunToFinal(sensor::kFeCuNi, {7});
  room.dialog->Quit();
  ASSERT_TRUE(room.TickTo(AdjState::kIdle));
  room.Register('Y', 8) = 400;
  room.RunToFinal(sensor::kLinear, {8});
  room.Forget();
  room.dialog->txt_Final_Change("100");
  room.dialog->CmdOK_Click();
  room.Tick();
  const float divisor = (4008.0F - 400.0F) / 2000;
  EXPECT_EQ(
      room.commands,
      (Commands{"J28=1\r",
                "K28=" + Hex(static_cast<std::int16_t>(std::lrint((divisor - 1) * 65536))) + "\r",
                "L28=1\r"}));
}

TEST(AdjustmentRun, CollectsAcrossMidnight) {
  ChannelBench room;
  room.bench.clock.timer_at_start = 86350;
  room.OpenIdle();
  const auto begin = room.bench.clock.Elapsed();
  room.RunToRaised(sensor::kFeCuNi, {7});
  EXPECT_LT(room.bench.clock.Elapsed() - begin, std::chrono::seconds(115));
}

// The reference sensor.

TEST(ReferenceRun, AsksTwiceAndCancelIsPreset) {
  ChannelBench room;
  room.OpenIdle();
  room.dialog->Mnu_RTD_Click();
  ASSERT_EQ(room.Boxes(), (Commands{"RTD: Warning:  this should be performed by the factory",
                                    "RTD: Warning:  are you sure ?"}));
  for (const Notice& notice : room.bench.dialogs.boxes) {
    EXPECT_EQ(notice.Icon, BoxIcon::kCritical);
    EXPECT_TRUE(notice.PresetIsNo);
  }
  EXPECT_EQ(room.dialog->State(), AdjState::kBeginReference);
}

TEST(ReferenceRun, BeginsWithBothAnswersOnly) {
  for (const auto& [ok, yes] : {std::pair{false, true}, std::pair{true, false}}) {
    ChannelBench room;
    room.bench.dialogs.ok = ok;
    room.bench.dialogs.yes = yes;
    room.OpenIdle();
    room.dialog->Mnu_RTD_Click();
    EXPECT_EQ(room.bench.dialogs.boxes.size(), ok ? 2U : 1U);
    EXPECT_EQ(room.dialog->State(), AdjState::kIdle);
    EXPECT_TRUE(room.Values().MenusEnabled);
    room.dialog->Quit();
    EXPECT_FALSE(room.dialog->IsOpen()) << "no run is on";
  }
}

TEST(ReferenceRun, CollectsZeroAndSpanAndWrites) {
  ChannelBench room;
  room.OpenIdle();
  room.dialog->Mnu_RTD_Click();
  room.Forget();
  room.Tick();
  EXPECT_EQ(room.dialog->State(), AdjState::kAwaitZero);
  EXPECT_THAT(room.commands, ElementsAre("L20=0\r"));
  EXPECT_EQ(room.Values().Lbl_Instr, "set rtd-simulator to 0°C");
  EXPECT_TRUE(room.Values().CmdOKShown);
  EXPECT_FALSE(room.Values().MenusEnabled);
  room.Forget();
  room.Register('Y', 0) = 12;
  room.dialog->CmdOK_Click();
  room.Tick();
  EXPECT_EQ(room.Values().Lbl_Instr, "... collecting data ...  (2min)");
  EXPECT_EQ(room.Values().pBar, 0);
  EXPECT_FALSE(room.Values().CmdOKShown);
  room.Tick(10.8);
  EXPECT_EQ(room.Values().pBar, 0);
  room.Tick(0.4);
  EXPECT_EQ(room.Values().pBar, 1) << "the first count comes after eleven seconds";
  ASSERT_TRUE(room.TickTo(AdjState::kAwaitSpan));
  Commands expected = Ten({"Y20?"});
  expected.emplace_back("O20=C\r");
  EXPECT_EQ(room.commands, expected);
  EXPECT_EQ(room.Values().Lbl_Instr, "set rtd-simulator to 100°C");
  EXPECT_FALSE(room.Values().pBarShown);
  room.Forget();
  room.Register('Y', 0) = 12512;
  room.dialog->CmdOK_Click();
  room.Tick(11);
  EXPECT_EQ(room.Values().pBar, 0);
  EXPECT_EQ(room.Values().Lbl_Instr, "... collecting data ...  (2min)");
  ASSERT_TRUE(room.TickTo(AdjState::kEmptySheet));
  expected = Ten({"Y20?"});
  expected.insert(expected.end(), {"J20=1\r", "K20=4000\r", "L20=2\r"});
  EXPECT_EQ(room.commands, expected);
  EXPECT_FALSE(room.Values().Lbl_InstrShown);
  room.dialog->Quit();
  EXPECT_FALSE(room.dialog->IsOpen()) << "the run is over";
}

TEST(ReferenceRun, DivisorOutOfRangeIsTold) {
  ChannelBench room;
  room.OpenIdle();
  room.dialog->Mnu_RTD_Click();
  ASSERT_TRUE(room.TickTo(AdjState::kAwaitZero));
  room.dialog->CmdOK_Click();
  ASSERT_TRUE(room.TickTo(AdjState::kAwaitSpan));
  room.Register('Y', 0) = 0;  // below the zero reading
  room.Forget();
  room.dialog->CmdOK_Click();
  ASSERT_TRUE(room.TickTo(AdjState::kEmptySheet));
  EXPECT_EQ(room.LastBox(), "adjustment: error, check settings");
  EXPECT_EQ(room.commands, Ten({"Y20?"}));
  EXPECT_EQ(room.Register('L', 0), 0);
}

}  // namespace
}  // namespace tavrel
