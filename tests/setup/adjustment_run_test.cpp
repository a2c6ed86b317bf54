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
    ChannelBench fixture;
    fixture.OpenIdle();
    fixture.Choose(code);
    EXPECT_EQ(fixture.dialog->State(), AdjState::kBeginInputs);
    fixture.Tick();
    EXPECT_EQ(fixture.dialog->State(), AdjState::kSelect);
    EXPECT_EQ(fixture.Values().Lbl_Instr, "Select channel(s):   click on row");
    EXPECT_TRUE(fixture.Values().Lbl_InstrShown);
    EXPECT_FALSE(fixture.Values().MenusEnabled);
    EXPECT_FALSE(fixture.Values().CmdOKShown);
    fixture.dialog->CmdOK_Click();
    EXPECT_EQ(fixture.dialog->State(), AdjState::kSelect) << "no row is chosen yet";
    fixture.dialog->Sheet_Click(9);
    EXPECT_TRUE(fixture.Values().CmdOKShown);
    EXPECT_TRUE(fixture.Row(9).selected);
    EXPECT_EQ(fixture.Row(9).sensor, SensorName(code));
    fixture.dialog->Sheet_Click(9);
    EXPECT_TRUE(fixture.Row(9).selected) << "nothing takes the choice back";
    EXPECT_THAT(fixture.commands, IsEmpty());
  }
}

TEST(AdjustmentRun, ReferenceSensorCannotBeChosenAsARow) {
  ChannelBench fixture;
  fixture.OpenIdle();
  fixture.dialog->Mnu_FeCuNi_Click();
  fixture.Tick();
  for (const int row : {-1, 0, 16, 100}) {
    fixture.dialog->Sheet_Click(row);
  }
  EXPECT_FALSE(fixture.Values().CmdOKShown);
}

TEST(AdjustmentRun, WritesSensorNoneToTheChosenRows) {
  ChannelBench fixture;
  fixture.OpenIdle();
  fixture.dialog->Mnu_FeCuNi_Click();
  fixture.Tick();
  for (const int row : {15, 7, 10}) {
    fixture.dialog->Sheet_Click(row);
  }
  fixture.dialog->CmdOK_Click();
  EXPECT_EQ(fixture.dialog->State(), AdjState::kShort);
  EXPECT_THAT(fixture.commands, IsEmpty());
  fixture.Tick();
  EXPECT_EQ(fixture.dialog->State(), AdjState::kAwaitShorted);
  EXPECT_THAT(fixture.commands, ElementsAre("L27=0\r", "L2A=0\r", "L2F=0\r"));
  EXPECT_EQ(fixture.Values().Lbl_Instr, "short the input(s) using shorting jumpers");
  EXPECT_TRUE(fixture.Values().CmdOKShown);
}

TEST(AdjustmentRun, CollectsTenReadingsInAHundredSeconds) {
  ChannelBench fixture;
  fixture.OpenIdle();
  fixture.dialog->Mnu_FeCuNi_Click();
  fixture.Tick();
  fixture.dialog->Sheet_Click(7);
  fixture.dialog->Sheet_Click(9);
  fixture.dialog->CmdOK_Click();
  ASSERT_TRUE(fixture.TickTo(AdjState::kAwaitShorted));
  fixture.Forget();
  fixture.dialog->CmdOK_Click();
  const auto begin = fixture.bench.clock.Elapsed();
  fixture.Tick();
  EXPECT_EQ(fixture.Values().Lbl_Instr, "... collecting data for offset adjustments ...");
  EXPECT_TRUE(fixture.Values().pBarShown);
  EXPECT_EQ(fixture.Values().pBar, 0);
  EXPECT_FALSE(fixture.Values().CmdOKShown);
  fixture.Tick();
  EXPECT_EQ(fixture.Values().pBar, 1) << "the first count comes with the next tick";
  fixture.Tick(8.5);
  EXPECT_THAT(fixture.commands, IsEmpty());
  ASSERT_TRUE(fixture.TickTo(AdjState::kRaise));
  const double seconds =
      std::chrono::duration<double>(fixture.bench.clock.Elapsed() - begin).count();
  EXPECT_NEAR(seconds, 110, 3) << "a tick beyond each second";
  EXPECT_EQ(fixture.bench.events.beeps, 10);
  // Row 7 shows 407, row 9 shows 409: the offsets are their means.
  Commands expected = Ten({"Y27?", "Y29?"});
  expected.insert(expected.end(), {"O27=197\r", "O29=199\r"});
  EXPECT_EQ(fixture.commands, expected);
  EXPECT_EQ(fixture.Values().pBar, 100);
  fixture.Forget();
  fixture.Tick();
  EXPECT_EQ(fixture.dialog->State(), AdjState::kAwaitRaised);
  EXPECT_EQ(fixture.Values().Lbl_Instr, "raise thermocouples to a known temperature");
  EXPECT_FALSE(fixture.Values().pBarShown);
  EXPECT_TRUE(fixture.Values().CmdOKShown);
  EXPECT_THAT(fixture.commands, IsEmpty());
}

TEST(AdjustmentRun, RoundsTheOffsetToTheNearestEvenOfTwo) {
  const std::vector<std::pair<int, std::string>> sums = {
      {125, "C"}, {135, "E"}, {126, "D"}, {-125, "FFF4"}, {-135, "FFF2"}};
  for (const auto& [sum, digits] : sums) {
    ChannelBench fixture;
    fixture.OpenIdle();
    fixture.dialog->Mnu_FeCuNi_Click();
    fixture.Tick();
    fixture.dialog->Sheet_Click(7);
    fixture.dialog->CmdOK_Click();
    ASSERT_TRUE(fixture.TickTo(AdjState::kAwaitShorted));
    fixture.Register('Y', 7) = 0;
    int reading = 0;
    fixture.on_command = [&, all = sum](const std::string& command) {
      if (command == "Y27?") {
        fixture.Register('Y', 7) = static_cast<std::int16_t>(++reading == 10 ? all : 0);
      }
    };
    fixture.dialog->CmdOK_Click();
    ASSERT_TRUE(fixture.TickTo(AdjState::kRaise));
    EXPECT_EQ(fixture.commands.back(), "O27=" + digits + "\r");
  }
}

TEST(AdjustmentRun, GainReadsTheReferenceBehindTheRows) {
  ChannelBench fixture;
  fixture.OpenIdle();
  fixture.RunToRaised(sensor::kNiCrNi, {7, 8});
  fixture.Forget();
  fixture.bench.clock.AdvanceSeconds(2);
  fixture.dialog->CmdOK_Click();
  fixture.Tick();
  EXPECT_EQ(fixture.Values().Lbl_Instr, "... collecting data for gain adjustments ...");
  EXPECT_EQ(fixture.Values().pBar, 1) << "the first count comes at once";
  EXPECT_FALSE(fixture.Values().CmdOKShown);
  ASSERT_TRUE(fixture.TickTo(AdjState::kAwaitFinal));
  EXPECT_EQ(fixture.commands, Ten({"Y27?", "Y28?", "Y20?"}));
  EXPECT_EQ(fixture.Values().Lbl_Instr, "enter the final value:  the known temperature");
  EXPECT_TRUE(fixture.Values().CmdOKShown);
  EXPECT_TRUE(fixture.Values().txt_FinalShown);
  EXPECT_FALSE(fixture.Values().pBarShown);
  EXPECT_EQ(fixture.Values().FinalAsked, 1);
}

// Raw 407 at the reference of 25.12 degrees and 4007 at 200 degrees, by hand: 4000 - 502.4 + 27 -
// 68 counts of linear distance.
TEST(AdjustmentRun, WritesTheCoefficientsOfAThermocouple) {
  ChannelBench fixture;
  fixture.OpenIdle();
  fixture.RunToFinal(sensor::kFeCuNi, {7, 10});
  fixture.Forget();
  fixture.dialog->txt_Final_Change("200");
  fixture.dialog->CmdOK_Click();
  EXPECT_EQ(fixture.dialog->State(), AdjState::kCompute);
  fixture.Tick();
  const float distance = 4000.0F - 502.4F + 27.0F - 68.0F;
  const float divisor = (4007.0F - 407.0F) / distance;
  const auto parts = static_cast<int>(std::lrint((divisor - 1) * 65536));
  const std::string fraction = Hex(static_cast<std::int16_t>(parts));
  EXPECT_EQ(static_cast<int>(divisor), 1);
  EXPECT_EQ(fixture.commands, (Commands{"J27=1\r", "K27=" + fraction + "\r", "L27=3\r", "J2A=1\r",
                                        "K2A=" + fraction + "\r", "L2A=3\r"}));
  EXPECT_EQ(fixture.dialog->State(), AdjState::kEmptySheet);
  EXPECT_THAT(fixture.bench.dialogs.boxes, IsEmpty());
  ASSERT_TRUE(fixture.TickTo(AdjState::kIdle));
  EXPECT_EQ(fixture.Row(7).gain, FormatMask(1 + parts / 65536.0, "##0.0000"));
  EXPECT_EQ(fixture.Row(7).offset, "407");
  EXPECT_FALSE(fixture.Values().CmdOKShown);
  EXPECT_FALSE(fixture.Values().txt_FinalShown);
  EXPECT_FALSE(fixture.Values().Lbl_InstrShown);
  EXPECT_FALSE(fixture.Row(7).selected);
  EXPECT_TRUE(fixture.Values().MenusEnabled);
}

TEST(AdjustmentRun, LinearInputHasWordsOfItsOwn) {
  ChannelBench fixture;
  fixture.OpenIdle();
  fixture.RunToRaised(sensor::kLinear, {7});
  EXPECT_EQ(fixture.Values().Lbl_Instr, "set input voltage equivalent to final-position");
  fixture.Register('Y', 7) = 2907;
  fixture.dialog->CmdOK_Click();
  ASSERT_TRUE(fixture.TickTo(AdjState::kAwaitFinal));
  EXPECT_EQ(fixture.Values().Lbl_Instr, "enter the final value");
  fixture.Forget();
  fixture.dialog->txt_Final_Change("100");
  fixture.dialog->CmdOK_Click();
  fixture.Tick();
  // 2500 raw counts for 100 degrees, which are 2000 counts.
  EXPECT_THAT(fixture.commands, ElementsAre("J27=1\r", "K27=4000\r", "L27=1\r"));
}

TEST(AdjustmentRun, ZeroPositionOfALinearInput) {
  ChannelBench fixture;
  fixture.OpenIdle();
  fixture.dialog->Mnu_Linear_Click();
  fixture.Tick();
  fixture.dialog->Sheet_Click(5);
  fixture.dialog->CmdOK_Click();
  fixture.Tick();
  EXPECT_EQ(fixture.Values().Lbl_Instr, "set input voltage equivalent to zero-position");
}

// Exactly the lower bound as the box told it, and exactly the upper.
TEST(AdjustmentRun, TakesAFinalValueAtItsBounds) {
  for (const std::string text : {"26.12", "26,12", "500"}) {
    ChannelBench fixture;
    fixture.OpenIdle();
    fixture.RunToFinal(sensor::kFeCuNi, {7});
    fixture.dialog->txt_Final_Change(text);
    fixture.dialog->CmdOK_Click();
    fixture.Tick();
    EXPECT_THAT(fixture.bench.dialogs.boxes, IsEmpty()) << text;
    EXPECT_EQ(fixture.dialog->State(), AdjState::kEmptySheet) << text;
  }
}

TEST(AdjustmentRun, RefusedFinalValueIsAskedForOnceMore) {
  for (const std::string text : {"26.11", "500.1", "", "abc", "-200"}) {
    ChannelBench fixture;
    fixture.OpenIdle();
    fixture.RunToFinal(sensor::kFeCuNi, {7});
    fixture.Forget();
    fixture.dialog->txt_Final_Change(text);
    fixture.dialog->CmdOK_Click();
    fixture.Tick();
    EXPECT_EQ(fixture.LastBox(), "final value: range: 26.12 ... 500") << text;
    EXPECT_EQ(fixture.dialog->State(), AdjState::kAwaitRaised);
    EXPECT_TRUE(fixture.Values().CmdOKShown);
    fixture.bench.clock.AdvanceSeconds(2);
    fixture.dialog->CmdOK_Click();
    fixture.Tick();
    EXPECT_EQ(fixture.dialog->State(), AdjState::kAwaitFinal) << "one count and no more";
    EXPECT_EQ(fixture.Values().FinalAsked, 2);
    EXPECT_THAT(fixture.commands, IsEmpty());
  }
}

TEST(AdjustmentRun, RangeOfALinearInput) {
  ChannelBench fixture;
  fixture.OpenIdle();
  fixture.RunToFinal(sensor::kLinear, {7});
  fixture.dialog->txt_Final_Change("1000.1");
  fixture.dialog->CmdOK_Click();
  fixture.Tick();
  EXPECT_EQ(fixture.LastBox(), "final value: range: 1 ... 1000");
}

// The hundred-and-tenth count reads once more; the sum of eleven is divided by ten all the same.
TEST(AdjustmentRun, TenRefusedFinalValuesTakeOneMoreReading) {
  ChannelBench fixture;
  fixture.OpenIdle();
  fixture.RunToFinal(sensor::kLinear, {7});
  fixture.Forget();
  for (int refusal = 0; refusal < 10; ++refusal) {
    fixture.dialog->txt_Final_Change("0");
    fixture.dialog->CmdOK_Click();
    fixture.Tick();
    EXPECT_EQ(fixture.dialog->State(), AdjState::kAwaitRaised);
    fixture.bench.clock.AdvanceSeconds(2);
    fixture.dialog->CmdOK_Click();
    fixture.Tick();
    ASSERT_EQ(fixture.dialog->State(), AdjState::kAwaitFinal);
  }
  EXPECT_THAT(fixture.commands, ElementsAre("Y27?", "Y20?"));
  fixture.Forget();
  fixture.dialog->txt_Final_Change("100");
  fixture.dialog->CmdOK_Click();
  fixture.Tick();
  const float divisor = (4007.0F * 11 / 10 - 407.0F) / 2000;
  EXPECT_EQ(fixture.commands.at(0), "J27=2\r");
  EXPECT_EQ(fixture.commands.at(1),
            "K27=" + Hex(static_cast<std::int16_t>(std::lrint((divisor - 2) * 65536))) + "\r");
}

TEST(AdjustmentRun, DivisorOutOfRangeEndsTheRun) {
  ChannelBench fixture;
  fixture.OpenIdle();
  fixture.RunToRaised(sensor::kFeCuNi, {5, 7, 9});
  fixture.Register('Y', 5) = 4000;
  fixture.Register('Y', 7) = 300;  // below its offset of 407
  fixture.Register('Y', 9) = 4000;
  fixture.dialog->CmdOK_Click();
  ASSERT_TRUE(fixture.TickTo(AdjState::kAwaitFinal));
  fixture.Forget();
  fixture.dialog->txt_Final_Change("200");
  fixture.dialog->CmdOK_Click();
  fixture.Tick();
  EXPECT_EQ(fixture.LastBox(), "adjustment: error, check settings");
  EXPECT_EQ(fixture.dialog->State(), AdjState::kEmptySheet);
  ASSERT_EQ(fixture.commands.size(), 3U) << "the row before it keeps what was written";
  EXPECT_EQ(fixture.commands.at(2), "L25=3\r");
  EXPECT_EQ(fixture.Register('L', 7), 0);
  EXPECT_EQ(fixture.Register('L', 9), 0) << "rows not reached stay as they are";
}

TEST(AdjustmentRun, EscapeDropsTheRun) {
  ChannelBench fixture;
  fixture.OpenIdle();
  fixture.RunToRaised(sensor::kFeCuNi, {7});
  fixture.dialog->CmdOK_Click();
  fixture.Tick(30);
  fixture.Forget();
  fixture.dialog->Quit();
  EXPECT_TRUE(fixture.dialog->IsOpen());
  EXPECT_EQ(fixture.dialog->State(), AdjState::kEmptySheet);
  ASSERT_TRUE(fixture.TickTo(AdjState::kIdle));
  EXPECT_EQ(fixture.commands.at(0), "L20?");
  EXPECT_EQ(fixture.Register('L', 7), 0) << "the row stays without a sensor";
  EXPECT_EQ(fixture.Row(7).sensor, "------");
  EXPECT_FALSE(fixture.Values().pBarShown);
  fixture.dialog->Quit();
  EXPECT_FALSE(fixture.dialog->IsOpen());
}

TEST(AdjustmentRun, NextRunKnowsNothingOfTheOneBefore) {
  ChannelBench fixture;
  fixture.OpenIdle();
  fixture.RunToFinal(sensor::kFeCuNi, {7});
  fixture.dialog->Quit();
  ASSERT_TRUE(fixture.TickTo(AdjState::kIdle));
  fixture.Register('Y', 8) = 400;
  fixture.RunToFinal(sensor::kLinear, {8});
  fixture.Forget();
  fixture.dialog->txt_Final_Change("100");
  fixture.dialog->CmdOK_Click();
  fixture.Tick();
  const float divisor = (4008.0F - 400.0F) / 2000;
  EXPECT_EQ(
      fixture.commands,
      (Commands{"J28=1\r",
                "K28=" + Hex(static_cast<std::int16_t>(std::lrint((divisor - 1) * 65536))) + "\r",
                "L28=1\r"}));
}

TEST(AdjustmentRun, CollectsAcrossMidnight) {
  ChannelBench fixture;
  fixture.bench.clock.timer_at_start = 86350;
  fixture.OpenIdle();
  const auto begin = fixture.bench.clock.Elapsed();
  fixture.RunToRaised(sensor::kFeCuNi, {7});
  EXPECT_LT(fixture.bench.clock.Elapsed() - begin, std::chrono::seconds(115));
}

// The reference sensor.

TEST(ReferenceRun, AsksTwiceAndCancelIsPreset) {
  ChannelBench fixture;
  fixture.OpenIdle();
  fixture.dialog->Mnu_RTD_Click();
  ASSERT_EQ(fixture.Boxes(), (Commands{"RTD: Warning:  this should be performed by the factory",
                                       "RTD: Warning:  are you sure ?"}));
  for (const Notice& notice : fixture.bench.dialogs.boxes) {
    EXPECT_EQ(notice.Icon, BoxIcon::kCritical);
    EXPECT_TRUE(notice.PresetIsNo);
  }
  EXPECT_EQ(fixture.dialog->State(), AdjState::kBeginReference);
}

TEST(ReferenceRun, BeginsWithBothAnswersOnly) {
  for (const auto& [ok, yes] : {std::pair{false, true}, std::pair{true, false}}) {
    ChannelBench fixture;
    fixture.bench.dialogs.ok = ok;
    fixture.bench.dialogs.yes = yes;
    fixture.OpenIdle();
    fixture.dialog->Mnu_RTD_Click();
    EXPECT_EQ(fixture.bench.dialogs.boxes.size(), ok ? 2U : 1U);
    EXPECT_EQ(fixture.dialog->State(), AdjState::kIdle);
    EXPECT_TRUE(fixture.Values().MenusEnabled);
    fixture.dialog->Quit();
    EXPECT_FALSE(fixture.dialog->IsOpen()) << "no run is on";
  }
}

TEST(ReferenceRun, CollectsZeroAndSpanAndWrites) {
  ChannelBench fixture;
  fixture.OpenIdle();
  fixture.dialog->Mnu_RTD_Click();
  fixture.Forget();
  fixture.Tick();
  EXPECT_EQ(fixture.dialog->State(), AdjState::kAwaitZero);
  EXPECT_THAT(fixture.commands, ElementsAre("L20=0\r"));
  EXPECT_EQ(fixture.Values().Lbl_Instr, "set rtd-simulator to 0°C");
  EXPECT_TRUE(fixture.Values().CmdOKShown);
  EXPECT_FALSE(fixture.Values().MenusEnabled);
  fixture.Forget();
  fixture.Register('Y', 0) = 12;
  fixture.dialog->CmdOK_Click();
  fixture.Tick();
  EXPECT_EQ(fixture.Values().Lbl_Instr, "... collecting data ...  (2min)");
  EXPECT_EQ(fixture.Values().pBar, 0);
  EXPECT_FALSE(fixture.Values().CmdOKShown);
  fixture.Tick(10.8);
  EXPECT_EQ(fixture.Values().pBar, 0);
  fixture.Tick(0.4);
  EXPECT_EQ(fixture.Values().pBar, 1) << "the first count comes after eleven seconds";
  ASSERT_TRUE(fixture.TickTo(AdjState::kAwaitSpan));
  Commands expected = Ten({"Y20?"});
  expected.emplace_back("O20=C\r");
  EXPECT_EQ(fixture.commands, expected);
  EXPECT_EQ(fixture.Values().Lbl_Instr, "set rtd-simulator to 100°C");
  EXPECT_FALSE(fixture.Values().pBarShown);
  fixture.Forget();
  fixture.Register('Y', 0) = 12512;
  fixture.dialog->CmdOK_Click();
  fixture.Tick(11);
  EXPECT_EQ(fixture.Values().pBar, 0);
  EXPECT_EQ(fixture.Values().Lbl_Instr, "... collecting data ...  (2min)");
  ASSERT_TRUE(fixture.TickTo(AdjState::kEmptySheet));
  expected = Ten({"Y20?"});
  expected.insert(expected.end(), {"J20=1\r", "K20=4000\r", "L20=2\r"});
  EXPECT_EQ(fixture.commands, expected);
  EXPECT_FALSE(fixture.Values().Lbl_InstrShown);
  fixture.dialog->Quit();
  EXPECT_FALSE(fixture.dialog->IsOpen()) << "the run is over";
}

TEST(ReferenceRun, DivisorOutOfRangeIsTold) {
  ChannelBench fixture;
  fixture.OpenIdle();
  fixture.dialog->Mnu_RTD_Click();
  ASSERT_TRUE(fixture.TickTo(AdjState::kAwaitZero));
  fixture.dialog->CmdOK_Click();
  ASSERT_TRUE(fixture.TickTo(AdjState::kAwaitSpan));
  fixture.Register('Y', 0) = 0;  // below the zero reading
  fixture.Forget();
  fixture.dialog->CmdOK_Click();
  ASSERT_TRUE(fixture.TickTo(AdjState::kEmptySheet));
  EXPECT_EQ(fixture.LastBox(), "adjustment: error, check settings");
  EXPECT_EQ(fixture.commands, Ten({"Y20?"}));
  EXPECT_EQ(fixture.Register('L', 0), 0);
}

}  // namespace
}  // namespace tavrel
